// The reader's field splitting: fields end at blanks, tabs and line ends (CR LF reads as LF, a
// lone CR is a field character, a byte 255 ends the file), rows are column-count fields even
// across lines, and files larger than the read window keep every row whole.
#include <gtest/gtest.h>

#include <tivlib/profil.h>

#include <string>
#include <vector>

#include "catalogue_fixture.h"

namespace {

using tiv::test::Catalogue;

struct Case {
  std::string body;  // the rows after the header "K S c2"
  std::vector<std::string> rows;  // "kind size=c2" as delivered by profil_next
};

TEST_F(Catalogue, ReaderSplitsFieldsAndRows) {
  const std::string long_field(40, '7');
  std::string many;  // more than the read window
  for (int i = 0; i < 3000; ++i) many += "KQ " + long_field + " 4.25\r\n";
  const std::vector<Case> cases = {
      {"A\t1 \t 2.5\r\nB  2\n\n3\n", {"A 1=2.5", "B 2=3"}},
      {"A 1 1\r5\nB 2 nil\n", {"A 1=1", "B 2=-1"}},
      {"A 1 2\n\xff" "B 2 3\n", {"A 1=2"}},
      {many, std::vector<std::string>(3000, "KQ " + long_field + "=4.25")},
  };
  for (const Case& c : cases) {
    profil_handle* h = open("r.pro", "K S c2\n" + c.body, {"c2"});
    ASSERT_NE(h, nullptr);
    std::vector<std::string> rows;
    double v[1];
    char result[PROFIL_RESULT_SIZE];
    while (profil_next(h, v, result) == 0) {
      char value[32];
      snprintf(value, sizeof value, "%g", v[0]);
      rows.push_back(std::string(result) + "=" + value);
    }
    EXPECT_EQ(rows, c.rows) << c.body.substr(0, 40);
    close(h);
  }
}

}  // namespace
