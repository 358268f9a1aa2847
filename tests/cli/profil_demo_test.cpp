// tiv profil on a small catalogue of its own, and tiv demo on the samples of the source tree.
#include <filesystem>

#include "tiv_runner.h"

namespace tiv::test {
namespace {

class Profil : public InTempDir {
 protected:
  void SetUp() override {
    std::filesystem::create_directory("catalog");
    write_file("catalog/RHS.PRO",
               "Kind Size h b A Iy\n"
               "RHS 100x50 100 50 12.5 nil\n"
               "RHS 120x60 120 60 16.4 293\n"
               "RHS 150x100 150 100 27.6 849\n");
  }
  Outcome profil(std::vector<std::string> args) {
    args.insert(args.begin(), "profil");
    args.insert(args.begin() + 2, {"--dir", "catalog"});
    return tiv(args);
  }
};

TEST_F(Profil, GetShowsTheFirstSectionLargeEnough) {
  expect_run(profil({"get", "rhs 110"}), 0,
             "Kind  Size    h    b   A     Iy\nRHS   120x60  120  60  16.4  293\n");
  expect_exit(profil({"get", "RHS 999"}), 1, "tiv: no section matches 'RHS 999'\n");
}

using Demo = InTempDir;

TEST_F(Demo, TheTourRunsOnTheSamplesAndLeavesThemUnchanged) {
  std::string wall = read_file(examples() / "data" / "wall.env");
  Outcome r = tiv({"demo", "--examples", examples().string()});
  EXPECT_EQ(r.code, 0) << r.out;
  EXPECT_EQ(r.err, "");
  for (const char* piece : {"$ tiv env get wall.env Wall height --double\n2.75\n",
                            "broken.env:5: syntax error: \"}\" was expected to close a block\n",
                            "$ tiv fio header motorola.bin\n", "byte order  big-endian (MOTOROLA)\n",
                            "$ tiv profil list\n", "The tour is over"}) {
    EXPECT_NE(r.out.find(piece), std::string::npos) << piece;
  }
  EXPECT_EQ(read_file(examples() / "data" / "wall.env"), wall);
  EXPECT_TRUE(std::filesystem::is_empty(std::filesystem::current_path()));
}

TEST_F(Demo, MissingSamplesAreReported) {
  expect_exit(tiv({"demo", "--examples", "nowhere"}), 1,
               "tiv: nowhere: no samples (data/wall.env) in this directory\n");
}

}  // namespace
}  // namespace tiv::test
