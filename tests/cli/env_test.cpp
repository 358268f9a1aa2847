// tiv env end to end: a change written back in normal form and a failed read.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

constexpr const char* kWall =
    "; a comment\n"
    "[Wall]\n"
    "  height =2.75\n"
    "  layer ={\n"
    "    name =inner\n"
    "  }\n";

class Env : public InTempDir {
 protected:
  void SetUp() override { write_file("wall.env", kWall); }
};

TEST_F(Env, SetWritesTheFileBackInNormalForm) {
  expect_run(tiv({"env", "set", "wall.env", "Wall", "layer@1@thickness", "0.12"}), 0, "");
  EXPECT_EQ(read_file("wall.env"),
            "[Wall]\n"
            "  height =2.75\n"
            "  layer ={\n"
            "    name =inner\n"
            "    thickness =0.12\n"
            "  }\n");
  EXPECT_EQ(tiv({"env", "get", "wall.env", "Wall", "layer@1@thickness", "--double"}).out, "0.12\n");
}

TEST_F(Env, GetFailuresHaveTheirExitCodes) {
  expect_exit(tiv({"env", "get", "wall.env", "Wall", "width"}), 1,
               "tiv: wall.env: no element [Wall] width\n");
  expect_exit(tiv({"env", "get", "missing.env", "Wall"}), 4,
               "tiv: missing.env: cannot read: No such file or directory\n");
  EXPECT_FALSE(file_exists("zv.err"));
}

}  // namespace
}  // namespace tiv::test
