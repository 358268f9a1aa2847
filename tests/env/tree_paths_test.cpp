// Handles, the path language, lookups, puts and the parent chain.
#include <tivlib/env.h>

#include <cstring>
#include <string>

#include "env_test_util.h"
#include "rows.h"

namespace tiv::test {
namespace {

class EnvTree : public InTempDir {
 protected:
  Root env_{7};
};

TEST_F(EnvTree, FreshRootFindsNothingAndPutCreatesEveryComponent) {
  const char* name = nullptr;
  const char* data = nullptr;
  int32_t id = -1;
  EXPECT_EQ(env_get_core(env_, "s", "a@b", 1, 0, &id, &name, &data, nullptr), ENV_NOT_FOUND);
  EXPECT_EQ(env_put_core(env_, "s", "a@b", "v", 0), ENV_OK);
  EXPECT_EQ(env_get_core(env_, "s", "a@b", 1, 0, &id, &name, &data, nullptr), ENV_IS_DATA);
  EXPECT_EQ(id, 7);
  EXPECT_STREQ(name, "b");
  EXPECT_STREQ(data, "v");
  EXPECT_EQ(env_check(env_, "s", "a", 1), ENV_IS_BLOCK);
  EXPECT_FALSE(file_exists("zv.err"));
}

TEST_F(EnvTree, PositionBeyondTheEndCreatesEmptyFillers) {
  EXPECT_EQ(env_put(env_, "s", "wall@3", "x"), ENV_OK);
  EXPECT_EQ(env_count_path(env_, "s", "wall", 1), 3);
  EXPECT_EQ(write_string(env_), "[s]\n  wall =\n  wall =\n  wall =x\n");
}

TEST_F(EnvTree, PutReplacesInPlaceAndChangesKinds) {
  env_put(env_, "s", "a", "1");
  env_put(env_, "s", "b", "2");
  env_put(env_, "s", "a", "3");
  EXPECT_EQ(write_string(env_), "[s]\n  a =3\n  b =2\n");  // sibling order kept
  env_put(env_, "s", "a", "text");
  env_put(env_, "s", "a@b", "1");
  EXPECT_EQ(env_check(env_, "s", "a", 1), ENV_IS_BLOCK);
  EXPECT_EQ(get_text(env_, "s", "a@b"), "1");
  env_put(env_, "s", "a", "flat");
  EXPECT_EQ(env_check(env_, "s", "a", 1), ENV_IS_DATA);
  EXPECT_EQ(env_check(env_, "s", "a@b", 1), ENV_NOT_FOUND);
}

TEST_F(EnvTree, PathOfDelimitersOnlyIsReportedAndStoresNothing) {
  EXPECT_EQ(env_put(env_, "s", "@@@", "x"), ENV_OK);
  EXPECT_EQ(log_text(), error_record("Bad Path was given"));
  EXPECT_EQ(env_count_elements(env_, "s", nullptr, 1), 0);
  EXPECT_EQ(env_get(env_, "s", "@@", 1, 10, nullptr), ENV_BAD_PATH);
}

TEST_F(EnvTree, PositionsCountAmongTheirNameAndZeroTakesTheFirstChild) {
  ASSERT_EQ(read_string(env_, "[s]\nx =0\nwall ={\nh =1\n}\nwall ={\nh =2\nh =3\n}\n"), ENV_OK);
  // wall@0 is the first child, whatever its name.
  for (const auto& [path, want] : Rows<const char*, const char*>{
           {"wall@2@h", "2"}, {"wall@2@h@2", "3"}, {"wall@h@2", "<-4>"}, {"wall@0", "0"}})
    EXPECT_EQ(get_text(env_, "s", path), want) << path;
  const char* name = nullptr;
  EXPECT_EQ(env_get_core(env_, "s", "wall@2@h@0", 1, 0, nullptr, &name, nullptr, nullptr), ENV_IS_DATA);
  EXPECT_STREQ(name, "h");
  EXPECT_EQ(get_text(env_, "s", "wall@2@0"), "<-4>");  // a name of digits behind a position
  EXPECT_EQ(get_text(env_, "s", "wall@3@h"), "<-4>");
}

TEST_F(EnvTree, SearchIsBreadthFirstAndCountsPositionsPerBlock) {
  ASSERT_EQ(read_string(env_,
                        "[s]\n"
                        "a ={\n  deep ={\n    k =deepest\n  }\n  k =a1\n}\n"
                        "b ={\n  k =b1\n  k =b2\n}\n"),
            ENV_OK);
  for (const auto& [path, want] : Rows<const char*, const char*>{
           {"k", "a1"}, {"k@2", "b2"}, {"deep@k", "deepest"}, {"k@3", "<-4>"}})
    EXPECT_EQ(get_text(env_, "s", path, 0), want) << path;
  EXPECT_EQ(get_text(env_, "s", "k", 1), "<-4>");
}

TEST_F(EnvTree, ParentChainAnswersFullAddressesOnly) {
  Root parent{3};
  env_put(parent, "s", "only", "from parent");
  env_handle* child = env_open(4, parent);
  ASSERT_NE(child, nullptr);
  int32_t id = -1;
  const char* data = nullptr;
  EXPECT_EQ(env_get_core(child, "s", "only", 1, 0, &id, nullptr, &data, nullptr), ENV_IS_DATA);
  EXPECT_EQ(id, 3);
  EXPECT_STREQ(data, "from parent");
  EXPECT_EQ(env_get(child, "s", "only", 1, 32, nullptr), ENV_TOO_SMALL);
  EXPECT_EQ(env_get_core(child, "s", nullptr, 1, 0, nullptr, nullptr, nullptr, nullptr), ENV_NOT_FOUND);
  EXPECT_EQ(env_get_core(child, "s", "only", 1, 1, nullptr, nullptr, nullptr, nullptr), ENV_NOT_FOUND);
  env_put(child, "s", "only", "own");
  EXPECT_EQ(env_get_core(child, "s", "only", 1, 0, &id, nullptr, &data, nullptr), ENV_IS_DATA);
  EXPECT_EQ(id, 4);
  // The parent can't close while the child stands on it.
  EXPECT_EQ(env_close(parent, 0), ENV_IN_USE);
  EXPECT_EQ(env_close(child, 0), ENV_OK);
}

TEST_F(EnvTree, CloseRefusesWhileSubEnvironmentsOrChildrenStand) {
  env_put(env_, "s", "a@b", "1");
  env_handle* sub = env_open_subenv(env_, "s", "a", 1);
  ASSERT_NE(sub, nullptr);
  env_handle* subsub = env_open_subenv(sub, nullptr, "b", 1);
  ASSERT_NE(subsub, nullptr);
  EXPECT_EQ(env_close(env_, 0), ENV_IN_USE);
  EXPECT_EQ(env_close(sub, 0), ENV_IN_USE);
  EXPECT_EQ(get_text(subsub, nullptr, nullptr), "1");
  EXPECT_EQ(env_close(subsub, 0), ENV_OK);
  EXPECT_EQ(env_close(sub, 0), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "a@b"), "1");
  // A chained close stops at a parent in use.
  env_handle* grand = env_open(1, nullptr);
  env_handle* parent = env_open(2, grand);
  env_handle* a = env_open(3, parent);
  env_handle* b = env_open(4, parent);
  EXPECT_EQ(env_close(a, 1), ENV_IN_USE);  // a is gone, parent still carries b
  EXPECT_EQ(env_close(b, 1), ENV_OK);      // closes b, parent and grand
}

TEST_F(EnvTree, SubEnvironmentSeesRelativePathsAndItsParent) {
  Root parent{9};
  env_put(parent, "s", "p", "inherited");
  Root child{1, parent};
  env_put(child, "s", "a@b", "1");
  env_handle* sub = env_open_subenv(child, "s", "a", 1);
  ASSERT_NE(sub, nullptr);
  EXPECT_EQ(get_text(sub, nullptr, "b"), "1");
  int32_t id = -1;
  EXPECT_EQ(env_get_core(sub, "s", "p", 1, 0, &id, nullptr, nullptr, nullptr), ENV_IS_DATA);
  EXPECT_EQ(id, 9);
  EXPECT_EQ(env_open_subenv(child, "s", "missing", 1), nullptr);
  EXPECT_EQ(env_open_subenv(child, "s", "@", 1), nullptr);
  EXPECT_EQ(env_close(sub, 0), ENV_OK);
}

TEST_F(EnvTree, PutOnASubEnvironmentWithoutPathReplacesItsElement) {
  env_put(env_, "s", "a@b", "1");
  env_handle* section = env_open_subenv(env_, "s", nullptr, 1);
  ASSERT_NE(section, nullptr);
  EXPECT_EQ(env_put_core(section, nullptr, nullptr, "section text", 0), ENV_OK);
  EXPECT_EQ(env_close(section, 0), ENV_OK);
  EXPECT_EQ(env_check(env_, "s", nullptr, 1), ENV_IS_BLOCK);  // a section counts as there
  EXPECT_EQ(write_string(env_), "[s]section text\n");
}

TEST_F(EnvTree, NilHandlesAndSectionsAreReported) {
  EXPECT_EQ(env_put(nullptr, "s", "a", "1"), ENV_ERROR);
  EXPECT_EQ(env_open_subenv(nullptr, "s", nullptr, 1), nullptr);
  EXPECT_EQ(env_close(nullptr, 0), ENV_ERROR);
  EXPECT_EQ(env_put(env_, nullptr, "a", "1"), ENV_ERROR);
  EXPECT_EQ(env_open_subenv(env_, nullptr, "a", 1), nullptr);
  EXPECT_EQ(log_text(), error_record("Nil parametr") + error_record("Nil parametr") +
                            error_record("Nil parametr") + error_record("bypass Nil section") +
                            error_record("bypass Nil section"));
  EXPECT_EQ(env_count_elements(env_, nullptr, nullptr, 1), 0);
}

TEST_F(EnvTree, NoSectionAndNegativePositionIsReported) {
  EXPECT_EQ(env_get_core(env_, nullptr, nullptr, 1, -1, nullptr, nullptr, nullptr, nullptr), ENV_NOT_FOUND);
  env_put(env_, "s", "a", "1");
  get_text(env_, "s", "a");
  EXPECT_EQ(env_get_core(env_, nullptr, nullptr, 1, -1, nullptr, nullptr, nullptr, nullptr), ENV_OK);
  EXPECT_EQ(log_text(), error_record("section == NIL and pos == 0") +
                            error_record("section == NIL and pos == 0") +
                            switch_record(0, "Env_core"));
}

TEST_F(EnvTree, PathsAndPositionsBeyondTheLimits) {
  const std::string long_path(512, 'a');
  EXPECT_EQ(env_put(env_, "s", long_path.c_str(), "x"), ENV_OK);
  EXPECT_EQ(env_count_elements(env_, "s", nullptr, 1), 0);
  std::string many;
  for (int i = 0; i < 127; ++i) many += "a@";
  EXPECT_EQ(env_get(env_, "s", many.c_str(), 1, 8, nullptr), ENV_BAD_PATH);
  EXPECT_EQ(log_text(), error_record("Can not separate path") + error_record("Can not separate path"));
  // 511 characters and 126 delimiters still split.
  std::string fits;
  for (int i = 0; i < 126; ++i) fits += "a@";
  fits += std::string(511 - fits.size(), 'b');
  EXPECT_EQ(env_get(env_, "s", fits.c_str(), 1, 8, nullptr), ENV_NOT_FOUND);
  // Huge positions are refused instead of filled.
  EXPECT_EQ(env_put(env_, "s", "a@99999999", "x"), ENV_ERROR);
  EXPECT_EQ(env_count_elements(env_, "s", nullptr, 1), 0);
  EXPECT_EQ(get_text(env_, "s", "a@99999999999999999999"), "<-4>");
}

TEST_F(EnvTree, DelimiterIsSwappedThroughItsCell) {
  char* cell = env_set_delimiter(nullptr);
  EXPECT_STREQ(cell, "@");
  cell = env_set_delimiter("/.");
  EXPECT_STREQ(cell, "@");
  env_put(env_, "s", "a/b.c", "v");
  EXPECT_EQ(get_text(env_, "s", "a.b/c"), "v");
  EXPECT_STREQ(env_set_delimiter(cell), "/.");  // its own cell changes nothing
  const std::string longer(300, '#');
  env_set_delimiter(longer.c_str());
  EXPECT_EQ(std::strlen(env_set_delimiter("@")), 254u);
  EXPECT_EQ(get_text(env_, "s", "a@b@c"), "v");
}

}  // namespace
}  // namespace tiv::test
