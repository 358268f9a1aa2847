// The reader against a plain model of the format on random files: fields split at blanks, tabs
// and line ends (CR LF read as LF, a byte 255 ends the file), rows of column-count fields.
// The files are larger than the read window and mix long fields, tabs, blank lines, lone CRs
// and CR LF, so that every fast path of the reader meets its edges.
#include <gtest/gtest.h>

#include <tivlib/convert.h>
#include <tivlib/profil.h>

#include <random>
#include <string>
#include <vector>

#include "catalogue_fixture.h"

namespace {

using tiv::test::Catalogue;

constexpr int kColumns = 9;

std::string random_file(std::mt19937& rng, size_t rows, bool ragged) {
  std::string s = "K S c2 c3 c4 c5 c6 c7 c8\n";
  const char* separators[] = {" ", "  ", "\t", " \t ", "                 "};
  const char* line_ends[] = {"\n", "\r\n", "\n\n", "\n"};
  for (size_t r = 0; r < rows; ++r) {
    for (int c = 0; c < kColumns; ++c) {
      if (c > 0) s += separators[rng() % 5];
      const unsigned kind = rng() % 10;
      if (c == 0) {
        s += "K" + std::string(rng() % 3, 'Q');
      } else if (kind == 0) {
        s += "nil";
      } else if (kind == 1) {
        s += std::string(1 + rng() % 40, '7');  // long, more than one block
      } else if (kind == 2) {
        s += "1\r5";  // a lone CR is a field character
      } else {
        s += std::to_string(rng() % 100000) + "." + std::to_string(rng() % 100);
      }
    }
    if (ragged && rng() % 50 == 0) continue;  // a ragged row: the next line completes it
    s += line_ends[rng() % 4];
  }
  return s;
}

struct Row {
  std::string name;
  std::vector<double> values;
};

// The model: rows as profil_next delivers them, with the values of columns 2, 5 and 8.
std::vector<Row> model_rows(std::string content) {
  if (const size_t ff = content.find('\xff'); ff != std::string::npos) content.resize(ff);
  std::string text;
  for (size_t i = 0; i < content.size(); ++i)
    if (!(content[i] == '\r' && i + 1 < content.size() && content[i + 1] == '\n')) text += content[i];
  std::vector<std::string> fields;
  std::string field;
  for (char ch : text.substr(text.find('\n') + 1)) {
    if (ch == ' ' || ch == '\t' || ch == '\n') {
      if (!field.empty()) fields.push_back(field);
      field.clear();
    } else {
      field += ch;
    }
  }
  if (!field.empty()) fields.push_back(field);
  std::vector<Row> rows;
  for (size_t at = 0; at < fields.size(); at += kColumns) {
    auto f = [&](size_t k) { return at + k < fields.size() ? fields[at + k] : std::string(); };
    auto value = [&](size_t k) { return f(k) == "nil" ? -1.0 : convert_stod(f(k).c_str()); };
    rows.push_back({f(0) + " " + f(1), {value(2), value(5), value(8)}});
  }
  return rows;
}

TEST_F(Catalogue, ReaderAgreesWithModelOnRandomFiles) {
  std::mt19937 rng(7);
  for (int round = 0; round < 4; ++round) {
    const bool ragged = round < 2;
    std::string content = random_file(rng, 3000, ragged);
    if (round == 3) content.insert(content.size() / 2, "\xff");
    profil_handle* h = open("r.pro", content, {"c2", "c5", "c8"});
    ASSERT_NE(h, nullptr);
    const std::vector<Row> expected = model_rows(content);
    double v[3];
    char result[PROFIL_RESULT_SIZE];
    size_t n = 0;
    for (; profil_next(h, v, result) == 0; ++n) {
      ASSERT_LT(n, expected.size());
      ASSERT_EQ(result, expected[n].name) << "row " << n;
      for (int k = 0; k < 3; ++k) ASSERT_EQ(v[k], expected[n].values[k]) << "row " << n;
    }
    EXPECT_EQ(n, expected.size());

    // A search that passes over most rows: c5 above a bound, name query on the kind "KQ". Rows
    // that fail the name are skipped by lines, so the model holds only for files whose rows
    // each end their line.
    if (ragged) {
      close(h);
      continue;
    }
    char gt[] = ">";
    profil_term t[] = {{"c5", gt, 90000.0}};
    std::vector<std::string> found;
    for (int code = profil_search(h, t, 1, "KQ", v, result); code == 0;
         code = profil_search_next(h, nullptr, 0, "KQ", v, result))
      found.push_back(result);
    std::vector<std::string> wanted;
    for (const Row& r : expected)
      if (r.name.rfind("KQ ", 0) == 0 && r.values[1] > 90000.0) {
        // Only rows whose size field starts like a number match the name query.
        const char first = r.name[3];
        if ((first >= '0' && first <= '9') || first == '.' || first == 'e' || first == 'E')
          wanted.push_back(r.name);
      }
    EXPECT_EQ(found, wanted);
    close(h);
  }
}

}  // namespace
