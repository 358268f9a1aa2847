// In-memory settings handles: loading, reads and writes in memory, and the merge at update.
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tivlib/ini.h>
#include <tivlib/mini.h>

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
}

TEST_F(Mini, ReadsSetTheSizeAndKeepCountsOnFailure) {
  write_file("a.ini", " [s] \nten = 0123456789\nl=-7\nd=2.5\nls=1,2,3\n");
  mini_file* h = mini_open(nullptr, "a.ini", 0);
  ASSERT_NE(h, nullptr);
  char buf[32];
  int32_t size = 20;
  EXPECT_EQ(mini_read_string(h, " s ", "ten", buf, &size), INI_OK);
  EXPECT_STREQ(buf, " 0123456789");
  EXPECT_EQ(size, 11);
  size = 5;
  EXPECT_EQ(mini_read_string(h, "s", "ten", buf, &size), INI_TOO_SMALL);
  EXPECT_STREQ(buf, " 0123");
  EXPECT_EQ(size, 5);
  EXPECT_EQ(mini_read_string(h, "s", "ten", nullptr, &size), INI_TOO_SMALL);
  EXPECT_EQ(mini_read_string(nullptr, "s", "ten", buf, &size), INI_ERROR);
  EXPECT_EQ(mini_read_string(h, "none", "ten", buf, &size), INI_NO_SECTION);
  EXPECT_EQ(mini_read_string(h, "s", "none", buf, &size), INI_NO_ENTRY);
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
  EXPECT_EQ(mini_update_file(h), 1);
  // The loaded section keeps its comment, the new entry closes it, the section never loaded
  // passes through stripped, and the new section comes last behind one blank line.
  EXPECT_EQ(read_file("a.ini"),
            "; head\n[s]\n; in s\na=10\nb=2\nd=1.5\n\n[other]\nx = 1\nbad\n\n[s2]\nk=v\n\n[new]\nn=4");
  EXPECT_EQ(temporary_files(), 0);
  // A second update without changes gives the same file.
  EXPECT_EQ(mini_update_file(h), 1);
  EXPECT_EQ(read_file("a.ini"),
            "; head\n[s]\n; in s\na=10\nb=2\nd=1.5\n\n[other]\nx = 1\nbad\n\n[s2]\nk=v\n\n[new]\nn=4");
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

TEST_F(Mini, FailedUpdateLeavesTheFile) {
  std::string content = "[s]\ne=1\n";
  for (int i = 0; i < 40; ++i) content += "k" + std::to_string(i) + "=some value\n";
  write_file("a.ini", content);
  const pid_t child = fork();
  ASSERT_NE(child, -1);
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    mini_file* h = mini_open(nullptr, "a.ini", MINI_LOAD_ALL);
    mini_write_string(h, "s", "e", "2");
    const rlimit limit{200, 200};
    setrlimit(RLIMIT_FSIZE, &limit);
    const int32_t code = mini_update_file(h);
    _exit(code == 0 ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(read_file("a.ini"), content);
  EXPECT_EQ(temporary_files(), 0);
}

}  // namespace
