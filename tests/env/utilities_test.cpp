// Leaf walks, merge copies, block copies, sub-environment creation, path joining, name lists.
#include <tivlib/env.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "env_test_util.h"

namespace tiv::test {
namespace {

class EnvUtil : public InTempDir {
 protected:
  Root env_{0};
};

int32_t collect_leaf(env_handle* leaf, const char* section, char* path, intptr_t user) {
  auto* out = reinterpret_cast<std::string*>(user);
  *out += std::string(section ? section : "<nil>") + ":" + path + "=" + get_text(leaf, nullptr, nullptr) + ";";
  path[0] = 'X';  // the path is the visitor's to change
  return 0;
}

TEST_F(EnvUtil, LeafWalkIsDepthFirstWithPositionsEverywhere) {
  ASSERT_EQ(read_string(env_,
                        "[wall]\nh =3\nlayer ={\n  name =outer\n  empty ={\n  }\n}\n"
                        "layer ={\n  name =inner\n}\n[roof]\n[x]\nz =1\n"),
            ENV_OK);
  env_put_external(env_, "x", "ext", 4);
  std::string seen;
  EXPECT_EQ(env_traverse_leafs(env_, collect_leaf, reinterpret_cast<intptr_t>(&seen)), ENV_OK);
  EXPECT_EQ(seen,
            "wall:h@1=3;wall:layer@1@name@1=outer;wall:layer@2@name@1=inner;x:z@1=1;x:ext@1=<-1>;");
  seen.clear();
  env_handle* sub = env_open_subenv(env_, "wall", "layer@2", 1);
  EXPECT_EQ(env_traverse_leafs(sub, collect_leaf, reinterpret_cast<intptr_t>(&seen)), ENV_OK);
  EXPECT_EQ(seen, "<nil>:name@1=inner;");
  env_close(sub, 0);
}

TEST_F(EnvUtil, LeafWalkOfNothingOrBeyondThePathLimitFails) {
  std::string seen;
  EXPECT_EQ(env_traverse_leafs(env_, collect_leaf, reinterpret_cast<intptr_t>(&seen)), ENV_ERROR);
  env_put_core(env_, "s", nullptr, nullptr, 0);
  env_handle* sub = env_open_subenv(env_, "s", nullptr, 1);
  EXPECT_EQ(env_traverse_leafs(sub, collect_leaf, reinterpret_cast<intptr_t>(&seen)), ENV_ERROR);
  env_close(sub, 0);
  const std::string a = std::string(40, 'a'), b = std::string(40, 'b');
  for (const std::string& path : {a + "@" + b, a + "@" + b + "@c"}) {  // a leaf, then a block
    env_delete(env_, "s", nullptr);
    env_put(env_, "s", path.c_str(), "1");
    EXPECT_EQ(env_traverse_leafs(env_, collect_leaf, reinterpret_cast<intptr_t>(&seen)), ENV_ERROR);
  }
  EXPECT_EQ(seen, "");
  EXPECT_EQ(log_text(), error_record("Path too long", "Env_uti2", (b + "@1").c_str()) +
                            error_record("Path too long", "Env_uti2", (b + "@1").c_str()));
}

TEST_F(EnvUtil, NilHandlesAndMismatchedSinksStop) {
  ASSERT_EQ(read_string(env_, "[s]\na =1\n"), ENV_OK);
  Root target;
  EXPECT_EQ(env_traverse_leafs(env_, nullptr, 0), ENV_ERROR);
  EXPECT_EQ(env_sink(nullptr, env_, ENV_SINK_ADD), ENV_ERROR);
  // A walk from a sub-environment has no section, which a root target can't take: APPEND
  // counts (not found, with a report), then its put fails as REPLACE's does.
  env_handle* sub = env_open_subenv(env_, "s", nullptr, 1);
  for (int32_t mode : {ENV_SINK_APPEND, ENV_SINK_REPLACE})
    EXPECT_EQ(env_sink(target, sub, mode), ENV_ERROR) << mode;
  env_close(sub, 0);
  EXPECT_EQ(env_count_elements(target, nullptr, nullptr, 1), 0);
  EXPECT_EQ(log_text(), error_record("Nil parametr", "Env_uti2") +
                            error_record("Nil parametr", "Env_uti2") +
                            error_record("bypass Nil section") + error_record("bypass Nil section") +
                            error_record("bypass Nil section"));
}

class EnvSink : public EnvUtil {
 protected:
  Root target_{1};
  void SetUp() override {
    ASSERT_EQ(read_string(env_, "[s]\na =new\nb =new\n"), ENV_OK);
    ASSERT_EQ(read_string(target_, "[s]\na =old\nc =old\n"), ENV_OK);
  }
};

TEST_F(EnvSink, ModesAddUpdateReplace) {
  // ADD keeps what is there, UPDATE adds no new paths, REPLACE overwrites and keeps the rest.
  const std::pair<int32_t, const char*> cases[] = {
      {ENV_SINK_ADD, "[s]\n  a =old\n  c =old\n  b =new\n"},
      {ENV_SINK_UPDATE, "[s]\n  a =new\n  c =old\n"},
      {ENV_SINK_REPLACE, "[s]\n  a =new\n  c =old\n  b =new\n"}};
  for (const auto& [mode, expected] : cases) {
    ASSERT_EQ(read_string(target_, "[s]\na =old\nc =old\n"), ENV_OK);
    EXPECT_EQ(env_sink(target_, env_, mode), ENV_OK) << mode;
    EXPECT_EQ(write_string(target_), expected) << mode;
  }
}

TEST_F(EnvSink, AppendAddsBehindTheLastOfTheName) {
  Root two;
  ASSERT_EQ(read_string(two, "[s]\na =1\na =2\n"), ENV_OK);
  Root one;
  ASSERT_EQ(read_string(one, "[s]\na =3\n"), ENV_OK);
  EXPECT_EQ(env_sink(two, one, ENV_SINK_APPEND), ENV_OK);
  EXPECT_EQ(env_sink(two, one, ENV_SINK_APPEND), ENV_OK);
  EXPECT_EQ(write_string(two), "[s]\n  a =1\n  a =2\n  a =3\n  a =3\n");
}

TEST_F(EnvSink, ExternalsStayBehindAndLongTextsStop) {
  env_put_external(env_, "s", "e", 3);
  EXPECT_EQ(env_sink(target_, env_, ENV_SINK_REPLACE), ENV_OK);
  EXPECT_EQ(env_exist(target_, "s", "e", 1), 0);
  env_put(env_, "s", "a", std::string(254, 'x').c_str());
  EXPECT_EQ(env_sink(target_, env_, ENV_SINK_REPLACE), ENV_OK);
  EXPECT_EQ(env_data_length(target_, "s", "a", 1), 254);
  env_put(env_, "s", "a", std::string(255, 'y').c_str());
  EXPECT_EQ(env_sink(target_, env_, ENV_SINK_REPLACE), ENV_ERROR);
  EXPECT_EQ(env_data_length(target_, "s", "a", 1), 254);
}

TEST_F(EnvSink, BadModeAndNilSource) {
  EXPECT_EQ(env_sink(target_, env_, 9), ENV_ERROR);
  EXPECT_EQ(env_sink(target_, nullptr, ENV_SINK_ADD), ENV_ERROR);
  EXPECT_EQ(log_text(), switch_record(9, "Env_uti2") + error_record("Nil parametr"));
  EXPECT_EQ(write_string(target_), "[s]\n  a =old\n  c =old\n");
}

TEST_F(EnvUtil, CopyBlock) {
  ASSERT_EQ(read_string(env_, "[s]\nb ={\n  x =1\n  y ={\n    z =2\n  }\n}\nempty ={\n}\n"), ENV_OK);
  Root target;
  EXPECT_EQ(env_copy_block(target, env_, "s", "missing", ENV_SINK_ADD), ENV_ERROR);
  EXPECT_EQ(env_count_elements(target, nullptr, nullptr, 1), 0);
  env_put_core(target, "s", nullptr, nullptr, 0);
  EXPECT_EQ(env_copy_block(target, env_, "s", "b", ENV_SINK_ADD), ENV_OK);
  EXPECT_EQ(write_string(target), "[s]\n  b ={\n    x =1\n    y ={\n      z =2\n    }\n  }\n");
}

TEST_F(EnvUtil, CreateSubenv) {
  env_handle* a = env_create_subenv(env_, "s", "p@q");
  env_handle* b = env_create_subenv(env_, "s", "p@q");
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(env_check(env_, "s", "p@q", 1), ENV_IS_EXTERNAL);
  env_put(a, nullptr, "r", "1");
  EXPECT_EQ(env_check(env_, "s", "p@q", 1), ENV_IS_BLOCK);
  EXPECT_EQ(get_text(b, nullptr, "r"), "1");
  env_close(a, 0);
  env_close(b, 0);
  env_handle* section = env_create_subenv(env_, "new", nullptr);
  ASSERT_NE(section, nullptr);
  EXPECT_EQ(env_check(env_, "new", nullptr, 1), ENV_IS_BLOCK);
  env_close(section, 0);
  EXPECT_EQ(env_create_subenv(nullptr, "s", nullptr), nullptr);
  EXPECT_EQ(log_text(), error_record("Nil parametr") + error_record("Nil parametr"));
}

TEST_F(EnvUtil, CreatePathAndArrayPath) {
  char buffer[8] = "keep";
  EXPECT_EQ(env_create_path(5, buffer, "ab", "c", nullptr), ENV_OK);
  EXPECT_STREQ(buffer, "ab@c");
  EXPECT_EQ(env_create_path(4, buffer, "ab", "c", nullptr), ENV_TOO_SMALL);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(env_create_path(8, buffer, nullptr), ENV_OK);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(env_create_path(0, buffer, "a", nullptr), ENV_TOO_SMALL);
  // Joined with the delimiter's first character; a path of size - 1 characters fits, and
  // whatever doesn't fit, a name or a joint, leaves an empty buffer and -7.
  const std::vector<const char*> ab_c{"ab", "c", nullptr}, abc_d{"abc", "d", nullptr},
      abc{"abc", nullptr}, none{nullptr}, gap{"a", "", "b", nullptr};
  for (const auto& [size, names, want, path] :
       {std::tuple{5, &ab_c, ENV_OK, "ab@c"}, {4, &ab_c, ENV_TOO_SMALL, ""},
        {4, &abc_d, ENV_TOO_SMALL, ""}, {4, &abc, ENV_OK, "abc"}, {3, &abc, ENV_TOO_SMALL, ""},
        {8, &none, ENV_OK, ""},
        {8, &gap, ENV_OK, "a@@b"}, {1, &abc, ENV_TOO_SMALL, ""}, {1, &none, ENV_OK, ""}}) {
    char buffer[8] = "keep";
    EXPECT_EQ(env_create_array_path(size, buffer, names->data()), want) << size;
    EXPECT_STREQ(buffer, path) << size;
  }
  EXPECT_EQ(env_create_array_path(0, buffer, ab_c.data()), ENV_TOO_SMALL);
  const std::string saved = env_set_delimiter(nullptr);
  env_set_delimiter("/.");
  EXPECT_EQ(env_create_array_path(8, buffer, ab_c.data()), ENV_OK);
  env_set_delimiter(saved.c_str());
  EXPECT_STREQ(buffer, "ab/c");
}

TEST_F(EnvUtil, ListElementNames) {
  ASSERT_EQ(read_string(env_, "[s]\na =1\nb ={\n}\na =2\n[t]\n"), ENV_OK);
  // A list that does not fit, or the names under a datum, leave an empty buffer.
  using Row = std::tuple<const char*, const char*, char, int32_t, int32_t, const char*>;
  for (const auto& [section, path, separator, size, want, names] :
       {Row{"s", nullptr, ',', 16, ENV_OK, "a,b,a,"}, Row{"s", nullptr, ',', 7, ENV_TOO_SMALL, ""},
        Row{"s", "a", ',', 16, ENV_IS_BLOCK, ""}, Row{nullptr, nullptr, ' ', 16, ENV_OK, "s t "}}) {
    char buffer[16] = "junk";
    EXPECT_EQ(env_list_elem_names(env_, section, path, 1, separator, size, buffer), want) << size;
    EXPECT_STREQ(buffer, names) << size;
  }
}

}  // namespace
}  // namespace tiv::test
