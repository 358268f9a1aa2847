// In-memory settings handles: loading, reads and writes in memory, and the merge at update.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <tivlib/ini.h>
#include <tivlib/mini.h>

#include "../reliability/write_limit.h"
#include "rows.h"
#include "settings_test_util.h"

namespace {

using tiv::test::error_record;
using tiv::test::file_exists;
using tiv::test::log_text;
using tiv::test::read_file;
using tiv::test::write_file;

class Mini : public tiv::test::SettingsDir {
 protected:
  std::string get(mini_file* h, const char* section, const char* entry) {
    char buf[600];
    int32_t size = 599;
    if (mini_read_string(h, section, entry, buf, &size) != INI_OK) return "<none>";
    return buf;
  }
};

TEST_F(Mini, OpenWithoutNamesUsesZvIniAndCreatesItAtClose) {
  mini_file* h = mini_open(nullptr, nullptr, 0);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(mini_write_string(h, "s", "e", "v"), INI_OK);
  EXPECT_FALSE(file_exists("zv.ini"));
  EXPECT_EQ(mini_close(&h), 1);
  EXPECT_EQ(h, nullptr);
  EXPECT_EQ(read_file("zv.ini"), "[s]\ne=v");
  EXPECT_EQ(mini_close(&h), 0);
  EXPECT_EQ(mini_close(nullptr), 0);
  EXPECT_EQ(temporary_files(), 0);
}

TEST_F(Mini, PlaceOfTheFile) {
  std::filesystem::create_directory("d");
  write_file("d/a.ini", "[s]\ne=in d\n");
  mini_file* h = mini_open(nullptr, "d/a.ini", MINI_READ_ONLY);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(get(h, "s", "e"), "in d");
  mini_close(&h);
  h = mini_open("d", "a.ini", MINI_READ_ONLY);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(get(h, "s", "e"), "in d");
  mini_close(&h);
  EXPECT_EQ(mini_open(nullptr, "missing.ini", MINI_READ_ONLY), nullptr);
  // A name that exists but is no file gives a good handle; a write creates its section in
  // memory, and the update leaves the directory alone.
  h = mini_open(nullptr, "d", 0);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(mini_write_string(h, "s", "e", "v"), INI_OK);
  EXPECT_EQ(get(h, "s", "e"), "v");
  EXPECT_EQ(mini_update_file(h), 0);
  EXPECT_TRUE(std::filesystem::is_directory("d"));
  mini_close(&h);
}

// Lookups by name give the same answers in short and long sections: the first of a repeated
// name, the next one after a rename or delete of the first, new entries and sections.
TEST_F(Mini, LookupsAgreeInShortAndLongSections) {
  for (int n : {4, 3000}) {
    std::string text = "[s]\n";
    for (int i = 0; i < n; ++i) text += "e" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    text += "dup=first\ndup=second\n";
    for (int i = 0; i < n; ++i) text += "[t" + std::to_string(i) + "]\nx=" + std::to_string(i) + "\n";
    write_file("big.ini", text);
    mini_file* h = mini_open(nullptr, "big.ini", MINI_LOAD_ALL);
    ASSERT_NE(h, nullptr);
    for (int i = 0; i < n; i += 1 + n / 50) {
      EXPECT_EQ(get(h, "s", ("e" + std::to_string(i)).c_str()), std::to_string(i)) << n;
      EXPECT_EQ(get(h, ("t" + std::to_string(i)).c_str(), "x"), std::to_string(i)) << n;
    }
    EXPECT_EQ(get(h, "s", "dup"), "first");
    EXPECT_EQ(mini_rename_entry(h, "s", "dup", "renamed"), INI_OK);
    EXPECT_EQ(get(h, "s", "dup"), "second");
    EXPECT_EQ(get(h, "s", "renamed"), "first");
    EXPECT_EQ(mini_delete_entry(h, "s", "dup"), INI_OK);
    EXPECT_EQ(get(h, "s", "dup"), "<none>");
    EXPECT_EQ(mini_write_string(h, "s", "new", "v"), INI_OK);
    EXPECT_EQ(get(h, "s", "new"), "v");
    EXPECT_EQ(mini_rename_section(h, "t0", "moved"), INI_OK);
    EXPECT_EQ(get(h, "moved", "x"), "0");
    EXPECT_EQ(mini_delete_section(h, "t1"), INI_OK);
    EXPECT_EQ(get(h, "t1", "x"), "<none>");
    mini_close(&h);
  }
}

TEST_F(Mini, ReadsSetTheSizeAndKeepCountsOnFailure) {
  write_file("a.ini", " [s] \nten = 0123456789\nl=-7\nd=2.5\nls=1,2,3\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  ASSERT_NE(h, nullptr);
  char buf[32];
  int32_t size = 20;
  EXPECT_EQ(mini_read_string(h, " s ", "ten", buf, &size), INI_OK);
  EXPECT_EQ(std::string(buf) + "/" + std::to_string(size), " 0123456789/11");
  size = 5;
  EXPECT_EQ(mini_read_string(h, "s", "ten", buf, &size), INI_TOO_SMALL);
  EXPECT_EQ(std::string(buf) + "/" + std::to_string(size), " 0123/5");
  EXPECT_EQ(mini_read_string(h, "s", "ten", nullptr, &size), INI_TOO_SMALL);
  EXPECT_EQ(mini_read_string(nullptr, "s", "ten", buf, &size), INI_ERROR);
  EXPECT_EQ(mini_read_string(h, "none", "ten", buf, &size), INI_NO_SECTION);
  EXPECT_EQ(mini_read_string(h, "s", "none", buf, &size), INI_NO_ENTRY);
  size = 20;  // a nil entry lists the names, each behind its terminator, and one more
  EXPECT_EQ(mini_read_string(h, " s ", nullptr, buf, &size), INI_OK);
  EXPECT_EQ(std::string(buf, 12) + std::to_string(size), std::string("ten\0l\0d\0ls\0\0" "11", 14));
  mini_close(&h);
}

// Number reads take the value from memory with the section trimmed; the out value changes only
// on success, and a failed list read keeps the count (the direct reads set it to 0).
TEST_F(Mini, NumberReads) {
  write_file("a.ini", "[s]\nn= 42\nls=1,,3\nend=1,2,\nempty=\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  ASSERT_NE(h, nullptr);
  struct One { mini_file* h; const char *section, *entry; int32_t code; double value; };
  for (const One& r : {One{h, " s ", "n", INI_OK, 42}, {h, "s", "empty", INI_OK, 0},
                       {h, "s", "none", INI_NO_ENTRY, -1}, {h, "t", "n", INI_NO_SECTION, -1},
                       {h, "s", nullptr, INI_NO_ENTRY, -1}, {nullptr, "s", "n", INI_ERROR, -1}}) {
    SCOPED_TRACE(r.value);
    int32_t l = -1;
    double d = -1;
    EXPECT_EQ(mini_read_long(r.h, r.section, r.entry, &l), r.code);
    EXPECT_EQ(mini_read_double(r.h, r.section, r.entry, &d), r.code);
    EXPECT_EQ(std::vector<double>({static_cast<double>(l), d}), std::vector<double>(2, r.value));
  }
  EXPECT_EQ(mini_read_long(h, "s", "n", nullptr), INI_TOO_SMALL);
  EXPECT_EQ(mini_read_double(h, "s", "n", nullptr), INI_TOO_SMALL);

  // items: the whole array of 4, 9 where nothing was stored.
  struct List { const char* entry; int32_t room, code, count; std::vector<double> items; };
  for (const List& r : {List{"ls", 4, INI_OK, 3, {1, 0, 3, 9}}, {"end", 4, INI_OK, 2, {1, 2, 9, 9}},
                        {"ls", 2, INI_TOO_SMALL, 2, {1, 0, 9, 9}}, {"empty", 4, 0, 0, {9, 9, 9, 9}},
                        {"none", 4, INI_NO_ENTRY, 4, {9, 9, 9, 9}},
                        {nullptr, 4, INI_NO_ENTRY, 4, {9, 9, 9, 9}}}) {
    SCOPED_TRACE(r.entry != nullptr ? r.entry : "nil");
    int32_t l[4] = {9, 9, 9, 9}, nl = r.room, nd = r.room;
    double d[4] = {9, 9, 9, 9};
    EXPECT_EQ(mini_read_longs(h, "s", r.entry, l, &nl), r.code);
    EXPECT_EQ(mini_read_doubles(h, "s", r.entry, d, &nd), r.code);
    EXPECT_EQ(std::vector<int32_t>({nl, nd}), std::vector<int32_t>(2, r.count));
    EXPECT_EQ(std::vector<double>(l, l + 4), r.items);
    EXPECT_EQ(std::vector<double>(d, d + 4), r.items);
  }
  int32_t l[1], n = 1;
  double d[1];
  EXPECT_EQ(mini_read_longs(h, "s", "ls", nullptr, &n), INI_TOO_SMALL);
  EXPECT_EQ(mini_read_longs(h, "s", "ls", l, nullptr), INI_TOO_SMALL);
  EXPECT_EQ(mini_read_doubles(h, "s", "ls", nullptr, &n), INI_TOO_SMALL);
  EXPECT_EQ(mini_read_doubles(h, "s", "ls", d, nullptr), INI_TOO_SMALL);
  EXPECT_EQ(mini_read_doubles(nullptr, "s", "ls", d, &n), INI_ERROR);
  mini_close(&h);
}

// The rw forms store in memory (a double in "%lg" form) and read back from memory; the file
// follows at the close.
TEST_F(Mini, RwFamilyWritesMemoryAndReadsItBack) {
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  ASSERT_NE(h, nullptr);
  char text[8] = "text";
  int32_t l = -7, ls[3] = {1, -2, 3}, three = 3, two = 2;
  double d = 1.5, ds[3] = {0.5, 2, 9};
  EXPECT_EQ(mini_rw_string(1, h, "s", " t ", text, nullptr), INI_OK);
  EXPECT_EQ(mini_rw_long(1, h, "s", "l", &l), INI_OK);
  EXPECT_EQ(mini_rw_double(1, h, "s", "d", &d), INI_OK);
  EXPECT_EQ(mini_rw_longs(1, h, "s", "ls", ls, &three), INI_OK);
  EXPECT_EQ(mini_rw_doubles(1, h, "s", "ds", ds, &two), INI_OK);
  EXPECT_EQ(mini_rw_string(1, h, "s", "t", nullptr, nullptr), INI_TOO_SMALL);
  for (int32_t write : {0, 1}) {
    EXPECT_EQ(mini_rw_long(write, h, "s", "l", nullptr), INI_TOO_SMALL);
    EXPECT_EQ(mini_rw_double(write, h, "s", "d", nullptr), INI_TOO_SMALL);
    EXPECT_EQ(mini_rw_longs(write, h, "s", "ls", nullptr, &three), INI_TOO_SMALL);
    EXPECT_EQ(mini_rw_longs(write, h, "s", "ls", ls, nullptr), INI_TOO_SMALL);
    EXPECT_EQ(mini_rw_doubles(write, h, "s", "ds", nullptr, &two), INI_TOO_SMALL);
    EXPECT_EQ(mini_rw_doubles(write, h, "s", "ds", ds, nullptr), INI_TOO_SMALL);
  }
  EXPECT_FALSE(file_exists("a.ini"));

  char back[8] = "";
  int32_t size = 7, l2 = 0, ls2[3] = {}, nl = 3, nd = 3;
  double d2 = 0, ds2[3] = {};
  EXPECT_EQ(mini_rw_string(0, h, " s ", "t", back, &size), INI_OK);
  EXPECT_EQ(std::string(back) + "/" + std::to_string(size), "text/4");
  EXPECT_EQ(mini_rw_long(0, h, "s", "l", &l2), INI_OK);
  EXPECT_EQ(mini_rw_double(0, h, "s", "d", &d2), INI_OK);
  EXPECT_EQ(mini_rw_longs(0, h, "s", "ls", ls2, &nl), INI_OK);
  EXPECT_EQ(mini_rw_doubles(0, h, "s", "ds", ds2, &nd), INI_OK);
  EXPECT_EQ(std::vector<double>({static_cast<double>(l2), d2}), (std::vector<double>{-7, 1.5}));
  EXPECT_EQ(std::vector<int32_t>(ls2, ls2 + nl), (std::vector<int32_t>{1, -2, 3}));
  EXPECT_EQ(std::vector<double>(ds2, ds2 + nd), (std::vector<double>{0.5, 2}));
  EXPECT_EQ(mini_close(&h), 1);
  EXPECT_EQ(read_file("a.ini"), "[s]\nt=text\nl=-7\nd=1.5\nls=1,-2,3\nds=0.5,2");
}

// Never nil: with a buffer, an empty buffer on any failure; without one, the stored value
// itself, found by the section name as passed (untrimmed).
TEST_F(Mini, GetString) {
  write_file("a.ini", "[s]\ne= v\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  ASSERT_NE(h, nullptr);
  struct Row { mini_file* h; const char *section, *entry, *want; int32_t size, size_after; };
  for (const Row& r : {Row{h, " s ", "e", " v", 7, 2}, {h, "s", "e", "", 1, 1},
                       {h, "s", "none", "", 7, 7}, {h, "t", "e", "", 7, 7},
                       {nullptr, "s", "e", "", 7, 7}}) {
    SCOPED_TRACE(std::string(r.section) + "/" + r.entry);
    char buf[8] = "junk";
    int32_t size = r.size;
    EXPECT_EQ(mini_get_string(r.h, r.section, r.entry, buf, &size), buf);
    EXPECT_STREQ(buf, r.want);
    EXPECT_EQ(size, r.size_after);
  }
  const char* stored = mini_get_string(h, "s", "e", nullptr, nullptr);
  EXPECT_STREQ(stored, " v");
  EXPECT_EQ(mini_get_string(h, "s", "e", nullptr, nullptr), stored);
  for (const auto& [section, entry] : tiv::test::Rows<const char*, const char*>{
           {" s ", "e"}, {nullptr, "e"}, {"s", nullptr}, {"s", "none"}, {"t", "e"}}) {
    const char* p = mini_get_string(h, section, entry, nullptr, nullptr);
    ASSERT_NE(p, nullptr);
    EXPECT_STREQ(p, "");
  }
  EXPECT_STREQ(mini_get_string(nullptr, "s", "e", nullptr, nullptr), "");
  EXPECT_EQ(mini_write_string(h, "s", "e", "w"), INI_OK);
  EXPECT_STREQ(mini_get_string(h, "s", "e", nullptr, nullptr), "w");
  mini_close(&h);
}

TEST_F(Mini, WritesStayInMemoryUntilTheUpdate) {
  write_file("a.ini", "; head\n\n[s]\n; in s\na=1\n\nb=2\n\n[other]\n  x = 1  \n\nbad\n[s2]\nk=v\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(mini_write_double(h, "s", "d", 1.5), INI_OK);
  EXPECT_EQ(mini_write_string(h, "s", "a", "10"), INI_OK);
  EXPECT_EQ(mini_write_long(h, "new", " n ", 4), INI_OK);
  EXPECT_EQ(get(h, "new", "n"), "4");
  // The loaded section keeps its comment, the new entry closes it, the section never loaded
  // passes through stripped, and the new section comes last behind one blank line. A second
  // update without changes gives the same file.
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(mini_update_file(h), 1);
    EXPECT_EQ(read_file("a.ini"), "; head\n[s]\n; in s\na=10\nb=2\nd=1.5\n\n[other]\nx = 1\nbad\n"
                                  "\n[s2]\nk=v\n\n[new]\nn=4");
  }
  EXPECT_EQ(temporary_files(), 0);
  mini_close(&h);
}

TEST_F(Mini, ReplaceWritesMemoryAlone) {
  write_file("a.ini", "top=1\n[s]\na=1\n[t]\nb=2\n");
  mini_file* h = mini_open(nullptr, "a.ini", MINI_REPLACE);
  EXPECT_EQ(get(h, "s", "a"), "1");
  mini_write_string(h, "u", "c", "3");
  mini_close(&h);
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1\n[u]\nc=3");
}

TEST_F(Mini, ReadOnlyHandleNeverWrites) {
  write_file("a.ini", "[s]\na=1\n");
  mini_file* h = mini_open(nullptr, "a.ini", MINI_READ_ONLY);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(mini_write_string(h, "s", "a", "2"), INI_OK);
  EXPECT_EQ(get(h, "s", "a"), "2");
  EXPECT_EQ(mini_update_file(h), 0);
  EXPECT_EQ(mini_delete_entry(h, "s", "a"), INI_READ_ONLY);
  EXPECT_EQ(mini_delete_section(h, "s"), INI_READ_ONLY);
  EXPECT_EQ(mini_rename_entry(h, "s", "a", "b"), INI_READ_ONLY);
  EXPECT_EQ(mini_rename_section(h, "s", "t"), INI_READ_ONLY);
  EXPECT_EQ(mini_close(&h), 1);
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1\n");
}

TEST_F(Mini, DeletesAndRenamesOfSectionsNotLoadedGoToTheFile) {
  write_file("a.ini", "[s]\na=1\nb=2\n[t]\nc=3\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  EXPECT_EQ(mini_delete_entry(h, "s", "a"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\nb=2\n[t]\nc=3\n");
  EXPECT_EQ(mini_unload_one_section(h, "s"), 1);  // nothing was loaded
  EXPECT_EQ(mini_rename_entry(h, "s", "b", "bb"), INI_OK);
  EXPECT_EQ(mini_rename_section(h, "t", "tt"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\nbb=2\n\n[tt]\nc=3\n");
  EXPECT_EQ(mini_delete_section(h, "tt"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\nbb=2\n");
  EXPECT_EQ(mini_rename_section(h, "s", "   "), INI_EMPTY_NAME);
  EXPECT_EQ(mini_rename_entry(h, "s", "bb", " "), INI_EMPTY_NAME);
  EXPECT_EQ(mini_rename_section(h, nullptr, "x"), INI_NO_ENTRY);
  EXPECT_EQ(mini_delete_entry(h, "s", nullptr), INI_NO_ENTRY);
  EXPECT_EQ(mini_delete_entry(nullptr, "s", "a"), INI_ERROR);
  EXPECT_EQ(read_file("a.ini"), "[s]\nbb=2\n");
  mini_close(&h);
}

TEST_F(Mini, DeletesAndRenamesInLoadedSections) {
  write_file("a.ini", "[s]\na=1\nb=2\nc=3\n[t]\nx=1\n");
  mini_file* h = mini_open(nullptr, "a.ini", MINI_LOAD_ALL);
  EXPECT_EQ(mini_delete_entry(h, "s", "b"), INI_OK);
  EXPECT_EQ(mini_delete_entry(h, "s", "b"), INI_NO_ENTRY);
  EXPECT_EQ(mini_rename_entry(h, "s", "a", " z "), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1\nb=2\nc=3\n[t]\nx=1\n");  // not yet
  EXPECT_EQ(mini_rename_section(h, "t", "u"), INI_OK);           // at once in the file
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1\nb=2\nc=3\n\n[u]\nx=1\n");
  EXPECT_EQ(get(h, "u", "x"), "1");
  mini_close(&h);
  EXPECT_EQ(read_file("a.ini"), "[s]\nz=1\nc=3\n\n[u]\nx=1");

  // Deleting a loaded section unloads it and changes the file at once; 0 even when the file
  // doesn't hold it.
  h = mini_open(nullptr, "a.ini", MINI_LOAD_ALL);
  EXPECT_EQ(mini_write_string(h, "mem", "k", "1"), INI_OK);
  EXPECT_EQ(mini_delete_section(h, " mem "), INI_OK);
  EXPECT_EQ(mini_delete_section(h, "u"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\nz=1\nc=3\n");
  EXPECT_EQ(get(h, "u", "x"), "<none>");
  mini_close(&h);
  EXPECT_EQ(read_file("a.ini"), "[s]\nz=1\nc=3");
}

TEST_F(Mini, LoadAllReportsEmptyHeadersAndKeepsRepeatedSections) {
  write_file("a.ini", "u=0\n[s]\na=1\n[]\nlost=1\n[s]\na=2\nb=3\n");
  mini_file* h = mini_open(nullptr, "a.ini", MINI_LOAD_ALL);
  EXPECT_EQ(log_text(), error_record("Mini", "Section's name is not defined. Description is ignored"));
  EXPECT_EQ(get(h, "s", "b"), "<none>");
  EXPECT_EQ(mini_write_string(h, "s", "a", "9"), INI_OK);
  mini_close(&h);
  EXPECT_EQ(read_file("a.ini"), "u=0\n\n[s]\na=9\n\n[]\nlost=1\n\n[s]\na=2\nb=3");
}

TEST_F(Mini, MalformedLines) {
  write_file("a.ini", "[s]\nbad\na=1\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  EXPECT_EQ(get(h, "s", "a"), "1");
  EXPECT_EQ(log_text(), error_record("Mini", "Incorrect entry's format. '=' is not found."));
  mini_close(&h);
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1");
  EXPECT_EQ(log_text(), error_record("Mini", "Incorrect entry's format. '=' is not found.") +
                            error_record("Mini", "Incorrect entry's format. '=' is not found;",
                                         "entry has been ignored"));
}

TEST_F(Mini, WriteChecksAndLists) {
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  EXPECT_EQ(mini_write_string(nullptr, "s", "e", "v"), INI_ERROR);
  EXPECT_EQ(mini_write_string(h, "s", nullptr, "v"), INI_NO_ENTRY);
  EXPECT_EQ(mini_write_string(h, "s", "e", nullptr), INI_TOO_SMALL);
  EXPECT_EQ(mini_write_string(h, "blank", "   ", "v"), INI_NO_ENTRY);  // the section stays
  const double ds[] = {1.5, 2.0};
  EXPECT_EQ(mini_write_doubles(h, "s", "ds", ds, 2), INI_OK);
  int32_t many[65];
  for (int32_t& v : many) v = 1234567;
  EXPECT_EQ(mini_write_longs(h, "s", "ls", many, 65), INI_TOO_SMALL);
  EXPECT_EQ(mini_write_string(h, nullptr, "top", "1"), INI_OK);
  mini_close(&h);
  // A section that was created but never written to is not saved.
  EXPECT_EQ(read_file("a.ini"), "top=1\n\n[s]\nds=1.5,2");
}

TEST_F(Mini, UnloadDropsUnsavedChanges) {
  write_file("a.ini", "[s]\na=1\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  mini_write_string(h, "s", "a", "2");
  EXPECT_EQ(mini_unload_one_section(h, nullptr), 1);
  EXPECT_EQ(mini_unload_one_section(h, "s"), INI_OK);
  EXPECT_EQ(get(h, "s", "a"), "1");
  mini_write_string(h, "s", "a", "3");
  EXPECT_EQ(mini_unload_all_sections(h), INI_OK);
  EXPECT_EQ(mini_unload_all_sections(nullptr), INI_ERROR);
  mini_close(&h);
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1");
}

// A file-size limit stands in for a full disk: the update fails and the file stays whole.
TEST_F(Mini, FailedUpdateLeavesTheFile) {
  std::string content = "[s]\ne=1\n";
  for (int i = 0; i < 40; ++i) content += "k" + std::to_string(i) + "=some value\n";
  write_file("a.ini", content);
  EXPECT_EQ(tiv::test::run_with_file_limit(200, [] {
              mini_file* h = mini_open(nullptr, "a.ini", MINI_LOAD_ALL);
              mini_write_string(h, "s", "e", "2");
              const int32_t updated = mini_update_file(h);
              mini_unload_all_sections(h);  // the change is dropped; the close frees the rest
              mini_close(&h);
              return updated;
            }),
            0);
  EXPECT_EQ(read_file("a.ini"), content);
  EXPECT_EQ(temporary_files(), 0);
}

}  // namespace
