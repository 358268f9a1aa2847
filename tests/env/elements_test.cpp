// Element operations: insert, delete, counts, checks and the child walk.
#include <tivlib/env.h>

#include <string>
#include <utility>
#include <vector>

#include "env_test_util.h"
#include "rows.h"

namespace tiv::test {
namespace {

class EnvElements : public InTempDir {
 protected:
  Root env_{0};
  void SetUp() override {
    ASSERT_EQ(read_string(env_, "[s]\na =1\nb ={\n}\na =2\n[t]\n"), ENV_OK);
  }
};

TEST_F(EnvElements, InsertBeforeAPath) {
  EXPECT_EQ(env_insert_before(env_, "s", "b", "new"), ENV_OK);
  EXPECT_EQ(env_insert_before(env_, "s", "a", "first"), ENV_OK);
  EXPECT_EQ(env_put(env_, "s", "new", "v"), ENV_OK);
  EXPECT_EQ(env_put(env_, "s", "first", "f"), ENV_OK);
  EXPECT_EQ(write_string(env_), "[s]\n  first =f\n  a =1\n  new =v\n  b ={\n  }\n  a =2\n[t]\n");
}

TEST_F(EnvElements, InsertOnSubEnvironmentAndSections) {
  env_handle* sub = env_open_subenv(env_, "s", "b", 1);
  EXPECT_EQ(env_insert_before(sub, nullptr, nullptr, "before_b"), ENV_OK);
  env_close(sub, 0);
  char names[64];
  EXPECT_EQ(env_list_elem_names(env_, "s", nullptr, 1, ',', sizeof names, names), ENV_OK);
  EXPECT_STREQ(names, "a,before_b,b,a,");
  EXPECT_EQ(env_insert_before(env_, "t", nullptr, "u"), ENV_OK);
  EXPECT_EQ(env_list_elem_names(env_, nullptr, nullptr, 1, ',', sizeof names, names), ENV_OK);
  EXPECT_STREQ(names, "s,u,t,");
  EXPECT_EQ(env_check(env_, "u", nullptr, 1), ENV_IS_BLOCK);
  EXPECT_EQ(env_insert_before(env_, "nope", nullptr, "v"), ENV_NOT_FOUND);
  EXPECT_EQ(env_count_elements(env_, nullptr, nullptr, 1), 3);
  Root empty;
  EXPECT_EQ(env_insert_before(empty, "s", nullptr, "v"), ENV_NOT_FOUND);
}

TEST_F(EnvElements, NilTextsWhereOneIsNeededAreReported) {
  env_handle* section = env_open_subenv(env_, "s", nullptr, 1);
  EXPECT_EQ(env_insert_before(env_, nullptr, nullptr, "n"), ENV_ERROR);
  EXPECT_EQ(env_delete(env_, nullptr, nullptr), ENV_ERROR);
  EXPECT_EQ(env_insert_before(env_, "s", "a", nullptr), ENV_ERROR);
  EXPECT_EQ(env_insert_before(section, nullptr, nullptr, "n"), ENV_ERROR);  // a section has no list
  EXPECT_EQ(env_count_path(env_, "s", nullptr, 1), ENV_BAD_PATH);
  EXPECT_EQ(env_traverse(env_, "s", nullptr, 1, nullptr, 0), ENV_ERROR);
  env_close(section, 0);
  EXPECT_EQ(write_string(env_), "[s]\n  a =1\n  b ={\n  }\n  a =2\n[t]\n");
  EXPECT_EQ(log_text(), error_record("bypass Nil section") + error_record("bypass Nil section") +
                            error_record("Nil parametr") + error_record("Unexpected nil") +
                            error_record("Unexpected nil path") +
                            error_record("Can not separate path") + error_record("Nil parametr"));
}

TEST_F(EnvElements, DeleteKeepsTheListWhole) {
  EXPECT_EQ(env_delete(env_, "s", "a@2"), ENV_OK);  // the last child
  env_put(env_, "s", "c@2", "3");                      // appends behind b
  EXPECT_EQ(write_string(env_), "[s]\n  a =1\n  b ={\n  }\n  c =\n  c =3\n[t]\n");
  EXPECT_EQ(env_delete(env_, "s", "zzz"), ENV_NOT_FOUND);
  EXPECT_EQ(env_delete(env_, "s", "@"), ENV_BAD_PATH);
  EXPECT_EQ(env_delete(env_, "s", nullptr), ENV_OK);
  EXPECT_EQ(env_check(env_, "s", nullptr, 1), ENV_NOT_FOUND);
  EXPECT_EQ(env_delete(env_, "s", nullptr), ENV_NOT_FOUND);
  env_put(env_, "t", "only", "1");
  EXPECT_EQ(env_delete(env_, "t", "only"), ENV_OK);
  EXPECT_EQ(env_count_elements(env_, "t", nullptr, 1), 0);
  EXPECT_EQ(env_check(env_, "t", nullptr, 1), ENV_IS_BLOCK);
  env_put(env_, "t", "again", "1");
  EXPECT_EQ(write_string(env_), "[t]\n  again =1\n");
  env_handle* sub = env_open_subenv(env_, "t", nullptr, 1);
  EXPECT_EQ(env_delete(sub, nullptr, nullptr), ENV_ERROR);
  EXPECT_EQ(env_delete(sub, nullptr, "again"), ENV_OK);
  env_close(sub, 0);
}

TEST_F(EnvElements, CheckExistAndDataLength) {
  for (const auto& [address, want] : Rows<std::pair<const char*, const char*>, int32_t>{
           {{nullptr, nullptr}, ENV_IS_BLOCK}, {{nullptr, "zz"}, ENV_IS_BLOCK},
           {{nullptr, "a"}, ENV_IS_BLOCK}, {{"t", nullptr}, ENV_IS_BLOCK},
           {{"s", "b"}, ENV_IS_BLOCK}, {{"s", "a"}, ENV_IS_DATA}, {{"s", "@"}, ENV_NOT_FOUND}})
    EXPECT_EQ(env_check(env_, address.first, address.second, 1), want) << address.second;
  env_handle* t = env_open_subenv(env_, "t", nullptr, 1);
  EXPECT_EQ(env_check(t, nullptr, nullptr, 1), ENV_NOT_FOUND);  // an empty block
  EXPECT_EQ(env_exist_block(t, nullptr, nullptr, 1), 0);
  env_close(t, 0);
  EXPECT_EQ(env_exist_block(env_, "s", "b", 1), 1);
  EXPECT_EQ(env_exist_data(env_, "s", "a", 1), 1);
  env_put_external(env_, "s", "e", 5);
  EXPECT_EQ(env_exist_external(env_, "s", "e", 1), 1);
  EXPECT_EQ(env_exist(nullptr, "s", "a", 1), 0);
  // A root without a section answers for its sections whatever the path; the listing there
  // names the sections.
  EXPECT_EQ(env_exist(env_, nullptr, "zz", 1), 1);
  EXPECT_EQ(env_exist_block(env_, nullptr, "zz", 1), 1);
  char names[64];
  EXPECT_EQ(env_list_elem_names(env_, nullptr, "zz", 1, ',', sizeof names, names), ENV_OK);
  EXPECT_STREQ(names, "s,t,");
  Root empty{0, nullptr};
  EXPECT_EQ(env_check(empty, nullptr, "zz", 1), ENV_NOT_FOUND);
  // The data length falls through to the parent; check and exist do not.
  Root child{1, env_};
  EXPECT_EQ(env_data_length(child, "s", "a@2", 1), 1);
  EXPECT_EQ(env_check(child, "s", "a", 1), ENV_NOT_FOUND);
  EXPECT_EQ(env_exist(child, "s", "a", 1), 0);
  env_put(env_, "s", "empty", "");
  env_put_external(env_, "s", "ext", 1);
  for (const char* p : {"b", "ext", "zzz", "empty", "@"}) EXPECT_EQ(env_data_length(env_, "s", p, 1), 0) << p;
}

struct Visit {
  std::string section;
  std::string path;
  std::string kind;
};

int32_t record_visit(env_handle* env, const char* section, char* path, intptr_t user) {
  auto* visits = reinterpret_cast<std::vector<Visit>*>(user);
  const char* kinds[] = {"", "data", "block", "external"};
  const int32_t k = env_check(env, nullptr, nullptr, 1);
  visits->push_back({section ? section : "<nil>", path ? path : "<nil>", k < 0 && k > -4 ? kinds[-k] : "none"});
  return 0;
}

// The visits of one walk as "section|path|kind;" each, after checking the walk's result.
std::string walk(env_handle* env, const char* section, const char* path, int32_t want = ENV_OK) {
  std::vector<Visit> visits;
  EXPECT_EQ(env_traverse(env, section, path, 1, record_visit, reinterpret_cast<intptr_t>(&visits)), want);
  std::string s;
  for (const auto& v : visits) s += v.section + "|" + v.path + "|" + v.kind + ";";
  return s;
}

TEST_F(EnvElements, TraverseGeneratesPositionPaths) {
  EXPECT_EQ(walk(env_, "s", nullptr), "s|a@1|data;s|b@1|none;s|a@2|data;");
  env_put(env_, "s", "p@q", "1");
  env_put(env_, "s", "p@r", "2");
  EXPECT_EQ(walk(env_, "s", "p"), "s|p@q@1|data;s|p@r@1|data;");
  EXPECT_EQ(walk(env_, nullptr, nullptr), "s|<nil>|block;t|<nil>|none;");
}

TEST_F(EnvElements, VisitMayDeleteItsOwnElement) {
  auto visit = [](env_handle* env, const char*, char*, intptr_t) -> int32_t {
    env_put(env, nullptr, nullptr, "gone");
    return 0;
  };
  EXPECT_EQ(env_traverse(env_, "s", nullptr, 1, visit, 0), ENV_OK);
  EXPECT_EQ(write_string(env_), "[s]\n  a =gone\n  b =gone\n  a =gone\n[t]\n");
  struct Ctx {
    env_handle* root;
    int visits;
  } ctx{env_, 0};
  auto deleting = [](env_handle*, const char* section, char* path, intptr_t user) -> int32_t {
    auto* c = reinterpret_cast<Ctx*>(user);
    ++c->visits;
    env_delete(c->root, section, path);
    return 0;
  };
  EXPECT_EQ(env_traverse(env_, "s", nullptr, 1, deleting, reinterpret_cast<intptr_t>(&ctx)), ENV_OK);
  EXPECT_EQ(ctx.visits, 3);
  EXPECT_EQ(env_count_elements(env_, "s", nullptr, 1), 0);
}

// Walks of small and large sections give the same visits: positions of repeated names, a
// visit that deletes its element, and one that inserts in front of it.
TEST_F(EnvElements, WalksOfSmallAndLargeSectionsAgree) {
  for (int n : {6, 1500}) {
    Root root;
    std::string expected;
    for (int i = 0; i < n; ++i) {
      const std::string name = "n" + std::to_string(i % 3);
      env_put(root, "s", (name + "@" + std::to_string(i / 3 + 1)).c_str(), "v");
      expected += "s|" + name + "@" + std::to_string(i / 3 + 1) + "|data;";
    }
    EXPECT_EQ(walk(root, "s", nullptr), expected) << n;
    int visits = 0;
    auto inserting = [](env_handle* sub, const char*, char*, intptr_t user) -> int32_t {
      ++*reinterpret_cast<int*>(user);
      env_insert_before(sub, nullptr, nullptr, "new");
      return 0;
    };
    EXPECT_EQ(env_traverse(root, "s", nullptr, 1, inserting, reinterpret_cast<intptr_t>(&visits)), ENV_OK);
    EXPECT_EQ(visits, n);
    EXPECT_EQ(env_count_elements(root, "s", nullptr, 1), 2 * n);
    visits = 0;
    struct Ctx {
      env_handle* root;
      int visits;
    } ctx{root, 0};
    auto deleting = [](env_handle*, const char* section, char* path, intptr_t user) -> int32_t {
      auto* c = reinterpret_cast<Ctx*>(user);
      ++c->visits;
      env_delete(c->root, section, path);
      return 0;
    };
    EXPECT_EQ(env_traverse(root, "s", nullptr, 1, deleting, reinterpret_cast<intptr_t>(&ctx)), ENV_OK);
    EXPECT_EQ(ctx.visits, 2 * n);
    EXPECT_EQ(env_count_elements(root, "s", nullptr, 1), 0);
  }
}

// Lookups by name and position give the same answers in small and large blocks (large ones
// are indexed), also after an insertion in front, a delete, appends and puts that make fillers.
TEST_F(EnvElements, LookupsAgreeInSmallAndLargeBlocks) {
  for (int n : {10, 2000}) {
    Root root;
    for (int i = 0; i < n; ++i) {
      env_put(root, "s", ("k" + std::to_string(i)).c_str(), std::to_string(i).c_str());
      if (i % (n / 5) == 0) env_put(root, "s", ("r@" + std::to_string(i / (n / 5) + 1)).c_str(), std::to_string(i).c_str());
    }
    const auto text = [&](const char* path) {
      const char* value = nullptr;
      return env_get_reference(root, "s", path, 1, &value) >= 0 && value != nullptr ? std::string(value) : "<none>";
    };
    const std::string last = "k" + std::to_string(n - 1);
    EXPECT_EQ(text(last.c_str()), std::to_string(n - 1)) << n;
    EXPECT_EQ(text("r@3"), std::to_string(2 * (n / 5))) << n;
    EXPECT_EQ(text("r@6"), "<none>") << n;
    EXPECT_EQ(env_insert_before(root, "s", "r@1", "r"), ENV_OK);
    EXPECT_EQ(text("r@1"), "<none>") << n;  // the new one, external
    EXPECT_EQ(text("r@2"), "0") << n;
    EXPECT_EQ(env_delete(root, "s", "r@2"), ENV_OK);
    EXPECT_EQ(text("r@2"), std::to_string(n / 5)) << n;
    EXPECT_EQ(env_put(root, "s", "appended", "a"), ENV_OK);
    EXPECT_EQ(text("appended"), "a") << n;
    EXPECT_EQ(env_put(root, "s", "r@8", "eight"), ENV_OK);  // fillers up to the eighth r
    EXPECT_EQ(env_count_path(root, "s", "r", 1), 8) << n;
    EXPECT_EQ(text("r@8"), "eight") << n;
    EXPECT_EQ(env_count_elements(root, "s", nullptr, 1), n + 8 + 1) << n;
  }
}

TEST_F(EnvElements, UnreachableNamesAreSkippedWithAnError) {
  Root odd;
  ASSERT_EQ(read_string(odd, "[s]\nmail@home =1\nok =2\n"), ENV_OK);
  EXPECT_EQ(walk(odd, "s", nullptr, ENV_ERROR), "s|ok@1|data;");
}

}  // namespace
}  // namespace tiv::test
