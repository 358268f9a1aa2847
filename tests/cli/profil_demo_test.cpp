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
    write_file("catalog/BAR.PRO", "Kind Size d A\nBAR 10 10 0.785\nBAR 20 20 3.14\n");
  }
  Outcome profil(std::vector<std::string> args) {
    args.insert(args.begin(), "profil");
    args.insert(args.begin() + 2, {"--dir", "catalog"});
    return tiv(args);
  }
};

TEST_F(Profil, ListNamesTheFamiliesWithAMatchingSection) {
  EXPECT_EQ(profil({"list"}).out, "BAR\nRHS\n");
  EXPECT_EQ(profil({"list", "100x50"}).out, "RHS\n");
  EXPECT_EQ(profil({"list", "--json"}).out, "[\n  \"BAR\",\n  \"RHS\"\n]\n");
  Outcome r = profil({"list", "999"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.out, "");
}

TEST_F(Profil, GetShowsTheFirstSectionLargeEnough) {
  Outcome r = profil({"get", "rhs 110"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "Kind  Size    h    b   A     Iy\nRHS   120x60  120  60  16.4  293\n");
  EXPECT_EQ(profil({"get", "RHS 100", "--items", "A,Iy"}).out, "Kind  Size    A     Iy\nRHS   100x50  12.5  nil\n");
  EXPECT_EQ(profil({"get", "RHS (120x60)", "--items", "h,Iy", "--si", "--json"}).out,
            "[\n  {\n    \"family\": \"RHS\",\n    \"kind\": \"RHS\",\n    \"size\": \"120x60\",\n"
            "    \"values\": {\n      \"h\": 0.12,\n      \"Iy\": 2.93e-06\n    }\n  }\n]\n");
  r = profil({"get", "RHS 999"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.err, "tiv: no section matches 'RHS 999'\n");
}

TEST_F(Profil, SearchAppliesEveryConditionAndPassesOverFamiliesWithoutTheProperty) {
  EXPECT_EQ(profil({"search", "", "--where", "A > 3", "--items", "A"}).out,
            "Kind  Size  A\nBAR   20    3.14\n\nKind  Size     A\nRHS   100x50   12.5\nRHS   120x60   16.4\n"
            "RHS   150x100  27.6\n");
  EXPECT_EQ(profil({"search", "", "--where", "Iy>=0", "--where", "Iy<800", "--items", "Iy"}).out,
            "Kind  Size    Iy\nRHS   120x60  293\n");
  EXPECT_EQ(profil({"search", "RHS", "--where", "A>1", "--limit", "1", "--items", "A"}).out,
            "Kind  Size    A\nRHS   100x50  12.5\n");
  Outcome r = profil({"search", "", "--where", "A=>3"});
  EXPECT_EQ(r.code, 2);
  EXPECT_EQ(r.err, "tiv: --where \"A=>3\": expected PROPERTY OPERATOR NUMBER, such as \"A>10\"\n");
}

TEST_F(Profil, NextAndPrevPageThroughAFamily) {
  EXPECT_EQ(profil({"next", "RHS", "--limit", "2", "--items", "h"}).out,
            "Kind  Size    h\nRHS   100x50  100\nRHS   120x60  120\n");
  EXPECT_EQ(profil({"next", "RHS", "RHS 120", "--limit", "0", "--items", "h"}).out,
            "Kind  Size     h\nRHS   120x60   120\nRHS   150x100  150\n");
  EXPECT_EQ(profil({"prev", "RHS", "--items", "h"}).out,
            "Kind  Size     h\nRHS   150x100  150\nRHS   120x60   120\nRHS   100x50   100\n");
  EXPECT_EQ(profil({"prev", "BAR", "BAR 20", "--limit", "5", "--items", "d"}).out,
            "Kind  Size  d\nBAR   20    20\nBAR   10    10\n");
}

TEST_F(Profil, TheDirectoryComesFromTheCentralSettingsFile) {
  Outcome r = tiv({"profil", "list"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.err,
            "tiv: no catalogue directory: give --dir DIR, or set Profile in [System] of zv2.ini\n"
            "tiv: note: the library wrote a report to zv.err\n");
  write_file("zv2.ini", "[System]\nProfile=catalog\n");
  r = tiv({"profil", "list"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "BAR\nRHS\n");
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
