// The text form: what the reader takes, what the writer gives, and the round trip.
#include <tivlib/env.h>

#include <string>
#include <utility>

#include "env_test_util.h"
#include "rows.h"

namespace tiv::test {
namespace {

class EnvText : public InTempDir {
 protected:
  Root env_{0};
  std::string read_and_write(const std::string& text, int32_t expected = ENV_OK) {
    EXPECT_EQ(read_string(env_, text), expected);
    return write_string(env_);
  }
};

TEST_F(EnvText, WriterGivesTheDocumentedLayout) {
  env_put(env_, "Wall", "height", "2.75");
  env_put(env_, "Wall", "layer@1@name", "outer");
  env_put(env_, "Wall", "layer@1@thickness", "0.24");
  env_put(env_, "Wall", "layer@2@name", "inner");
  env_put_core(env_, "Roof", nullptr, nullptr, 0);
  const std::string text =
      "[Wall]\n  height =2.75\n  layer ={\n    name =outer\n    thickness =0.24\n  }\n"
      "  layer ={\n    name =inner\n  }\n[Roof]\n";
  EXPECT_EQ(write_string(env_), text);
  Root again;
  ASSERT_EQ(read_string(again, text), ENV_OK);
  EXPECT_EQ(write_string(again), text);
}

// Inputs the reader takes, with what the writer then gives.
TEST_F(EnvText, ReadThenWrite) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"a =1\n} = {\n", ""},  // text before the first section is passed over
      {"junk = } {\n[s]\na =1\n", "[s]\n  a =1\n"},
      // comments only in the first column
      {"[s]\n; comment = x\na =1 ; not a comment\n ;b =2\n", "[s]\n  a =1 ; not a comment\n  ;b =2\n"},
      {"[s]\n[s]\n[]\n", "[s]\n[s]\n[]\n"}};
  for (const auto& [input, output] : cases) EXPECT_EQ(read_and_write(input), output) << input;
  env_put(env_, "old", "a", "1");  // a read replaces the old content
  EXPECT_EQ(read_and_write("[new]\n"), "[new]\n");
}

TEST_F(EnvText, Continuations) {
  ASSERT_EQ(read_string(env_, "[s]\na =x\\\n  y\nb =p\\   \nq\nc =m\\\t\nd =1\\\\\ne =2\n"), ENV_OK);
  // A tab is no continuation; trailing blanks go.
  for (const auto& [path, want] : Rows<const char*, const char*>{
           {"a", "x  y"}, {"b", "pq"}, {"c", "m\\"}, {"d", "1\\\\"}, {"e", "2"}})
    EXPECT_EQ(get_text(env_, "s", path), want) << path;
}

TEST_F(EnvText, BlanksAroundNamesAndValues) {
  ASSERT_EQ(read_string(env_, "[s]   a=1\n\t b   =   two words \t\n  c =\n d ="), ENV_OK);
  for (const auto& [path, want] : Rows<const char*, const char*>{
           {"a", "1"}, {"b", "two words"}, {"c", ""}, {"d", ""}})
    EXPECT_EQ(get_text(env_, "s", path), want) << path;
}

TEST_F(EnvText, BlocksOnTheirOwnLineAndEntriesBehindBraces) {
  ASSERT_EQ(read_string(env_, "[s] a ={ b =1\n c ={\n}\n}\n"), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "a@b"), "1");
  EXPECT_EQ(env_check(env_, "s", "a@c", 1), ENV_IS_BLOCK);
  EXPECT_EQ(env_count_elements(env_, "s", "a@c", 1), 0);
  EXPECT_EQ(write_string(env_), "[s]\n  a ={\n    b =1\n    c ={\n    }\n  }\n");
}

TEST_F(EnvText, SyntaxErrorsKeepTheSectionsBefore) {
  EXPECT_EQ(read_and_write("[a]\nx =1\n[b]\ny =2\n}\n[c]\n", ENV_BAD_FORMAT),
            "[a]\n  x =1\n[b]\n  y =2\n");
  EXPECT_EQ(read_and_write("[a]\nx =1\n[b]\nlonely\n", ENV_BAD_FORMAT), "[a]\n  x =1\n");
  EXPECT_EQ(read_and_write("[a]\nx ={\ny =1\n", ENV_BAD_FORMAT), "");
  EXPECT_EQ(log_text(), error_record("Section waited") + error_record("Equal sign waited") +
                            error_record("Cbracesymbol waited"));
  // The environment stays usable after a failed read.
  EXPECT_EQ(env_put(env_, "z", "k", "v"), ENV_OK);
  EXPECT_EQ(read_and_write("[q]\n"), "[q]\n");
}

TEST_F(EnvText, WriterBreaksLongLinesAtColumnSixty) {
  env_put(env_, "s", "x", std::string(100, 'a').c_str());
  // At indentation 2 the break comes before line index 57, counting "x =".
  const std::string expected = "[s]\n  x =" + std::string(54, 'a') + "\\\n" + std::string(46, 'a') + "\n";
  EXPECT_EQ(write_string(env_), expected);
  Root back;
  ASSERT_EQ(read_string(back, expected), ENV_OK);
  EXPECT_EQ(get_text(back, "s", "x"), std::string(100, 'a'));
  Root top;
  env_put_core(top, std::string(130, 's').c_str(), nullptr, nullptr, 0);
  EXPECT_EQ(write_string(top), "[" + std::string(58, 's') + "\\\n" + std::string(60, 's') + "\\\n" +
                                   std::string(12, 's') + "]\n");
  env_put(env_, "s", "b@c@name", std::string(130, 'n').c_str());
  for (env_handle* env : {env_.get(), top.get()}) {  // the file writer breaks at the same places
    env_write_file("long.env", env);
    EXPECT_EQ(read_file("long.env"), write_string(env));
  }
}

TEST_F(EnvText, ExternalElementsHaveNoTextForm) {
  env_put_external(env_, "s", "a@ext", 42);
  env_put_external(env_, "ext", nullptr, 1);
  env_handle* sub = env_open_subenv(env_, "ext", nullptr, 1);
  env_put_external(sub, nullptr, nullptr, 5);
  env_close(sub, 0);
  EXPECT_EQ(write_string(env_), "[s]\n  a ={\n  }\n");
}

TEST_F(EnvText, NilAndSubEnvironmentHandles) {
  EXPECT_EQ(read_string(nullptr, "[s]\n"), ENV_ERROR);
  env_put(env_, "s", "a", "1");
  env_handle* sub = env_open_subenv(env_, "s", nullptr, 1);
  EXPECT_EQ(read_string(sub, "[t]\n"), ENV_ERROR);
  EXPECT_EQ(write_string(sub), "");
  env_close(sub, 0);
  env_write(nullptr, 0, env_);
  EXPECT_EQ(get_text(env_, "s", "a"), "1");
  EXPECT_EQ(log_text(), error_record("Nil parametr") + error_record("can not read subenv") +
                            error_record("can not write subenv") + error_record("Nil parametr"));
}

std::string nested(int depth, bool closed) {
  std::string text = "[s]\n";
  for (int i = 0; i < depth; ++i) text += "b ={\n";
  text += "leaf =1\n";
  if (closed)
    for (int i = 0; i < depth; ++i) text += "}\n";
  return text;
}

TEST_F(EnvText, DeepNestingReadsAndCloses) {
  ASSERT_EQ(read_string(env_, nested(10000, true)), ENV_OK);
  std::string path = "b";
  for (int i = 1; i < 100; ++i) path += "@b";
  EXPECT_EQ(env_check(env_, "s", path.c_str(), 1), ENV_IS_BLOCK);
  EXPECT_EQ(read_string(env_, nested(10000, false)), ENV_BAD_FORMAT);
  EXPECT_EQ(log_text(), error_record("Cbracesymbol waited"));
  // Writing indents every level by two more blanks, so the text grows with the square of the
  // depth: the round trip is checked at a smaller depth.
  ASSERT_EQ(read_string(env_, nested(300, true)), ENV_OK);
  const std::string written = write_string(env_);
  Root back;
  ASSERT_EQ(read_string(back, written), ENV_OK);
  EXPECT_EQ(write_string(back), written);
}

TEST_F(EnvText, FilesLargerThanTheBufferWithAByteFFOrUnopenable) {
  std::string text = "[s]\n";
  for (int i = 0; i < 5000; ++i) text += "  k =" + std::to_string(i) + "\n";
  write_file("big.env", text);
  ASSERT_EQ(env_read_file("big.env", env_), ENV_OK);
  EXPECT_EQ(env_count_elements(env_, "s", nullptr, 1), 5000);
  env_write_file("big.out", env_);
  EXPECT_EQ(read_file("big.out"), text);
  // 0xFF reads as the end of input, and the file source goes on behind it.
  // CR LF line ends read as LF.
  write_file("ff.env", "[s]\r\nb =1\r\na =x\xffyz =2\n");
  ASSERT_EQ(env_read_file("ff.env", env_), ENV_OK);
  for (const auto& [path, want] : Rows<const char*, const char*>{{"b", "1"}, {"a", "x"}, {"yz", "2"}})
    EXPECT_EQ(get_text(env_, "s", path), want) << path;
  // Files that can't be opened.
  EXPECT_EQ(env_read_file("missing.env", env_), ENV_ERROR);
  env_write_file("no/such/dir/out.env", env_);
  EXPECT_EQ(log_text(), error_record("cann't open to read:", "Env_uti2", "missing.env") +
                            error_record("cann't open to write:", "Env_uti2", "no/such/dir/out.env"));
}

}  // namespace
}  // namespace tiv::test
