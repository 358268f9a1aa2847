// tiv env end to end: values, typed reads, changes written back in normal form, the leaf
// dump, syntax checks with lines, merges in the four modes, and normal form.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

constexpr const char* kWall =
    "; a comment\n"
    "[Wall]\n"
    "  height =2.75\n"
    "  layer ={\n"
    "    name =outer\n"
    "    thickness =0.24\n"
    "  }\n"
    "  layer ={\n"
    "    name =inner\n"
    "  }\n"
    "  counts =1, 2 ,3\n"
    "[Roof]\n";

class Env : public InTempDir {
 protected:
  void SetUp() override { write_file("wall.env", kWall); }
};

TEST_F(Env, GetPrintsTextsAndTypedValues) {
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "layer@2@name"}).out, "inner\n");
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "height", "--double"}).out, "2.75\n");
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "counts", "--list", "--long"}).out, "1\n2\n3\n");
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "counts", "--list", "--long", "--json"}).out,
            "[\n  1,\n  2,\n  3\n]\n");
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "--names"}).out, "height\nlayer\nlayer\ncounts\n");
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "thickness", "--search"}).out, "0.24\n");
}

TEST_F(Env, GetFailuresHaveTheirExitCodes) {
  Outcome r = tiv({"env", "get", "wall.env", "Wall", "width"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "tiv: wall.env: no element [Wall] width\n");

  expect_exit(
      tiv({"env", "get", "wall.env", "Wall", "layer@1"}), 3,
      "tiv: wall.env: [Wall] layer@1 is a block, not a value (--names lists its elements)\n");
  expect_exit(tiv({"env", "get", "wall.env", "Wall", "layer@1@name", "--double"}), 3,
               "tiv: wall.env: [Wall] layer@1@name is not a number: 'outer'\n");
  expect_exit(tiv({"env", "get", "missing.env", "Wall"}), 4,
               "tiv: missing.env: cannot read: No such file or directory\n");
  EXPECT_FALSE(file_exists("zv.err"));
}

TEST_F(Env, SetWritesTheFileBackInNormalForm) {
  Outcome r = tiv({"env", "set", "wall.env", "Wall", "layer@2@thickness", "0.12"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out + r.err, "");
  EXPECT_EQ(read_file("wall.env"),
            "[Wall]\n"
            "  height =2.75\n"
            "  layer ={\n"
            "    name =outer\n"
            "    thickness =0.24\n"
            "  }\n"
            "  layer ={\n"
            "    name =inner\n"
            "    thickness =0.12\n"
            "  }\n"
            "  counts =1, 2 ,3\n"
            "[Roof]\n");
}

TEST_F(Env, SetCreatesAMissingFileAndStoresTypedNumbers) {
  EXPECT_EQ(tiv({"env", "set", "new.env", "S", "a@b", "3.14159265", "--double"}).code, 0);
  EXPECT_EQ(read_file("new.env"), "[S]\n  a ={\n    b =3.14159\n  }\n");
  expect_exit(tiv({"env", "set", "new.env", "S", "n", "x1", "--long"}), 2,
               "tiv: not a whole number: 'x1'\n");
}

TEST_F(Env, AChangeToAFileWithASyntaxErrorLeavesItAlone) {
  const std::string broken = "[A]\n  x =1\n  b ={\n";
  write_file("broken.env", broken);
  Outcome r = tiv({"env", "set", "broken.env", "A", "x", "2"});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.err,
            "tiv: broken.env:3: syntax error: \"}\" was expected to close a block\n"
            "tiv: note: the library wrote a report to zv.err\n");
  EXPECT_EQ(read_file("broken.env"), broken);
}

TEST_F(Env, DeleteRemovesASubtreeOrReportsItMissing) {
  EXPECT_EQ(tiv({"env", "delete", "wall.env", "Wall", "layer@1"}).code, 0);
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "layer@1@name"}).out, "inner\n");
  EXPECT_EQ(tiv({"env", "delete", "wall.env", "Roof"}).code, 0);
  std::string before = read_file("wall.env");
  expect_exit(tiv({"env", "delete", "wall.env", "Roof"}), 1, "tiv: wall.env: no element [Roof]\n");
  EXPECT_EQ(read_file("wall.env"), before);
}

TEST_F(Env, DumpGivesEveryLeafWithItsPositionPath) {
  Outcome r = tiv({"env", "dump", "wall.env"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out,
            "[Wall] height@1 = 2.75\n"
            "[Wall] layer@1@name@1 = outer\n"
            "[Wall] layer@1@thickness@1 = 0.24\n"
            "[Wall] layer@2@name@1 = inner\n"
            "[Wall] counts@1 = 1, 2 ,3\n");
  write_file("one.env", "[S]\n  x =1\n");
  EXPECT_EQ(tiv({"env", "dump", "one.env", "--json"}).out,
            "[\n  {\n    \"path\": \"x@1\",\n    \"section\": \"S\",\n    \"value\": \"1\"\n  }\n]\n");
  write_file("empty.env", "");
  r = tiv({"env", "dump", "empty.env"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "");
}

TEST_F(Env, CheckTellsTheLineOfTheFirstErrorOfEachFile) {
  write_file("open.env", "[Wall]\n  height =2.75\n  layer ={\n    name =brick\n[Roof]\n  pitch =35\n");
  Outcome r = tiv({"env", "check", "wall.env", "open.env", "nowhere.env"});
  EXPECT_EQ(r.code, 4);
  EXPECT_EQ(r.out, "wall.env: ok\n");
  EXPECT_EQ(r.err,
            "tiv: open.env:5: syntax error: \"}\" was expected to close a block\n"
            "tiv: nowhere.env: cannot read: No such file or directory\n"
            "tiv: note: the library wrote a report to zv.err\n");
}

class Merge : public InTempDir {
 protected:
  void SetUp() override {
    write_file("target.env", "[A]\n  x =1\n  y =2\n");
    write_file("source.env", "[A]\n  x =10\n  z =30\n[B]\n  w =4\n");
  }
  std::string merged(const char* mode) {
    Outcome r = tiv({"env", "merge", "target.env", "source.env", "--mode", mode, "-o", "-"});
    EXPECT_EQ(r.code, 0) << r.err;
    return r.out;
  }
};

TEST_F(Merge, TheFourModes) {
  EXPECT_EQ(merged("add"), "[A]\n  x =1\n  y =2\n  z =30\n[B]\n  w =4\n");
  EXPECT_EQ(merged("replace"), "[A]\n  x =10\n  y =2\n  z =30\n[B]\n  w =4\n");
  EXPECT_EQ(merged("update"), "[A]\n  x =10\n  y =2\n");
  EXPECT_EQ(merged("append"), "[A]\n  x =1\n  y =2\n  x =10\n  z =30\n[B]\n  w =4\n");
  EXPECT_EQ(read_file("target.env"), "[A]\n  x =1\n  y =2\n");
}

TEST_F(Merge, WritesTheTargetAndRejectsUnknownModes) {
  EXPECT_EQ(tiv({"env", "merge", "target.env", "source.env", "--mode", "update"}).code, 0);
  EXPECT_EQ(read_file("target.env"), "[A]\n  x =10\n  y =2\n");
  Outcome r = tiv({"env", "merge", "target.env", "source.env", "--mode", "mix"});
  EXPECT_EQ(r.code, 2);
  EXPECT_EQ(read_file("target.env"), "[A]\n  x =10\n  y =2\n");
}

TEST_F(Merge, AValueTooLongToCopyLeavesTheTargetUnchanged) {
  write_file("source.env", "[A]\n  x =" + std::string(300, 'v') + "\n");
  Outcome r = tiv({"env", "merge", "target.env", "source.env", "--mode", "replace"});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(read_file("target.env"), "[A]\n  x =1\n  y =2\n");
}

TEST_F(Env, FmtRewritesChecksAndPrints) {
  expect_exit(tiv({"env", "fmt", "wall.env", "--check"}), 3,
               "tiv: wall.env: not in normal form\n");
  EXPECT_EQ(read_file("wall.env"), kWall);
  Outcome r = tiv({"env", "fmt", "wall.env", "--stdout"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, std::string(kWall).substr(std::string("; a comment\n").size()));
  EXPECT_EQ(tiv({"env", "fmt", "wall.env"}).code, 0);
  EXPECT_EQ(read_file("wall.env"), r.out);
  EXPECT_EQ(tiv({"env", "fmt", "wall.env", "--check"}).code, 0);
}

}  // namespace
}  // namespace tiv::test
