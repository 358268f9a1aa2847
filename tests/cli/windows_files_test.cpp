// Files from Windows and hostile arguments: CR LF line ends, code pages in JSON output,
// standard input, what is no regular file, typed reads of texts, and limits refused before
// anything is written.
#include <sys/stat.h>

#include "rows.h"
#include "tiv_runner.h"

namespace tiv::test {
namespace {

using WindowsFiles = InTempDir;

TEST_F(WindowsFiles, CrLfFilesReadLikeLfFiles) {
  write_file("w.env", "[Wall]\r\n  height =2.75\r\n  layer ={\r\n    name =brick\r\n  }\r\n[Roof]\r\n  pitch =35");
  write_file("p.ini", "[Project]\r\nname=Office\r\nstoreys=4");
  for (const auto& [args, out] : Rows<std::vector<std::string>, std::string>{
           {{"env", "get", "w.env", "Wall", "height", "--double"}, "2.75\n"},
           {{"env", "get", "w.env", "Wall", "layer@name"}, "brick\n"},
           {{"env", "get", "w.env", "Roof", "pitch"}, "35\n"},
           {{"env", "check", "w.env"}, "w.env: ok\n"},
           {{"env", "dump", "w.env"}, "[Wall] height@1 = 2.75\n[Wall] layer@1@name@1 = brick\n[Roof] pitch@1 = 35\n"},
           {{"ini", "get", "p.ini", "Project", "name"}, "Office\n"},
           {{"ini", "get", "p.ini", "Project", "storeys", "--long"}, "4\n"}})
    expect_run(tiv(args), 0, out);
}

TEST_F(WindowsFiles, JsonIsUtf8WhateverTheCodePage) {
  write_file("w.env", "[S]\n  name =gr\xfcn \x80 5\n  utf =gr\xc3\xbcn\n");
  write_file("p.ini", "[S]\nname=gr\xfcn\n");
  for (const auto& [args, out] : Rows<std::vector<std::string>, std::string>{
           {{"env", "get", "w.env", "S", "name", "--json"}, "\"gr\xc3\xbcn \xe2\x82\xac 5\"\n"},
           {{"env", "get", "w.env", "S", "utf", "--json"}, "\"gr\xc3\xbcn\"\n"},
           {{"--encoding", "latin1", "env", "get", "w.env", "S", "name", "--json"},
            "\"gr\xc3\xbcn \xc2\x80 5\"\n"},
           {{"--encoding", "cp437", "env", "get", "w.env", "S", "name", "--json"},
            "\"gr\xe2\x81\xbfn \xc3\x87 5\"\n"},
           {{"--encoding", "utf-8", "env", "get", "w.env", "S", "name", "--json"},
            "\"gr\xef\xbf\xbdn \xef\xbf\xbd 5\"\n"},
           {{"env", "get", "w.env", "S", "name"}, "gr\xfcn \x80 5\n"},  // plain output: the bytes
           {{"ini", "get", "p.ini", "S", "name", "--json"}, "\"gr\xc3\xbcn\"\n"},
           {{"env", "dump", "w.env", "--json"},
            "[\n  {\"path\":\"name@1\",\"section\":\"S\",\"value\":\"gr\xc3\xbcn \xe2\x82\xac 5\"},\n"
            "  {\"path\":\"utf@1\",\"section\":\"S\",\"value\":\"gr\xc3\xbcn\"}\n]\n"}})
    expect_run(tiv(args), 0, out);
  // A value given as UTF-8 is written in the file's code page and reads back byte for byte.
  expect_run(tiv({"env", "set", "w.env", "S", "new", "M\xc3\xbcller"}), 0, "");
  expect_run(tiv({"env", "get", "w.env", "S", "new"}), 0, "M\xfcller\n");
  expect_run(tiv({"env", "set", "w.env", "S", "new", "\xe2\x88\x9e"}), 3, "",
             "tiv: '\xe2\x88\x9e' has a character that cp1252 can't hold\n");
}

TEST_F(WindowsFiles, StandardInputForReadingCommands) {
  const std::string env = "[A]\r\n  x =1\r\n";
  expect_run(tiv({"env", "get", "-", "A", "x"}, env), 0, "1\n");
  expect_run(tiv({"env", "dump", "-"}, env), 0, "[A] x@1 = 1\n");
  expect_run(tiv({"ini", "get", "-", "s", "e"}, "[s]\ne=v\n"), 0, "v\n");
  expect_run(tiv({"ini", "list", "-"}, "[s]\ne=v\n"), 0, "s\n");
}

TEST_F(WindowsFiles, OnlyRegularFilesAreFiles) {
  std::filesystem::create_directory("dir");
  ASSERT_EQ(::mkfifo("fifo", 0600), 0);
  for (const auto& [args, err] : Rows<std::vector<std::string>, std::string>{
           {{"env", "check", "dir"}, "tiv: dir: cannot open: a directory, not a regular file\n"},
           {{"env", "merge", "dir", "dir"}, "tiv: dir: cannot open: a directory, not a regular file\n"},
           {{"ini", "get", "/dev/zero", "s", "e"}, "tiv: /dev/zero: cannot open: a device, not a regular file\n"},
           {{"ini", "set", "fifo", "s", "e", "v"}, "tiv: fifo: cannot open: a FIFO, not a regular file\n"},
           {{"env", "dump", "fifo"}, "tiv: fifo: cannot open: a FIFO, not a regular file\n"}})
    expect_run(tiv(args), 4, "", err);
  EXPECT_TRUE(std::filesystem::is_directory("dir"));
}

TEST_F(WindowsFiles, TypedValuesAreHonest) {
  write_file("p.ini", "[s]\nt=text\nn=12\n");
  expect_run(tiv({"ini", "get", "p.ini", "s", "t", "--long"}), 3, "", "tiv: p.ini: not a whole number: 'text'\n");
  expect_run(tiv({"ini", "get", "p.ini", "s", "t", "--double"}), 3, "", "tiv: p.ini: not a number: 'text'\n");
  expect_run(tiv({"ini", "get", "p.ini", "s", "n", "--long"}), 0, "12\n");
  for (const char* number : {"0.1", "0.3333333333333333", "1e+300", "123456789.12345679"}) {
    expect_run(tiv({"env", "set", "n.env", "S", "x", number, "--double"}), 0, "");
    expect_run(tiv({"env", "get", "n.env", "S", "x"}), 0, std::string(number) + "\n");
  }
}

TEST_F(WindowsFiles, WhatCantBeCarriedWholeIsRefused) {
  const std::string ini = "[s]\ne=v\n";
  write_file("p.ini", ini);
  for (const auto& [args, err] : Rows<std::vector<std::string>, std::string>{
           {{"ini", "set", "p.ini", "s", "e", std::string(2000, 'v')},
            "tiv: p.ini: the line 'entry=value' would be longer than the line limit of 511 characters\n"},
           {{"ini", "set", "p.ini", "s", std::string(600, 'n'), "v"},
            "tiv: p.ini: the line 'entry=value' would be longer than the line limit of 511 characters\n"},
           {{"ini", "set", "p.ini", std::string(80, 's'), "e", "v"},
            "tiv: p.ini: the section name is longer than 79 characters\n"}})
    expect_run(tiv(args), 3, "", err);
  EXPECT_EQ(read_file("p.ini"), ini);
  const std::string env = "[S]\n  v =a\xff" "b\n  w =c\n";
  write_file("ff.env", env);
  expect_run(tiv({"env", "set", "ff.env", "S", "w", "d"}), 3, "",
             "tiv: ff.env:2: byte 0xFF can't be read (the reader takes it for the end of the file)\n");
  expect_run(tiv({"env", "get", "ff.env", "S", "w"}), 3, "",
             "tiv: ff.env:2: byte 0xFF can't be read (the reader takes it for the end of the file)\n");
  EXPECT_EQ(read_file("ff.env"), env);
}

TEST_F(WindowsFiles, TheLengthOfABinaryFileBeyondTwoGibibytes) {
  write_file("big.bin", "");
  std::filesystem::resize_file("big.bin", 3ull << 30);  // sparse: no 3 GiB written
  const Outcome r = tiv({"fio", "header", "big.bin", "--json"});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.out.find("\"length\": 3221225472"), std::string::npos) << r.out;
}

TEST_F(WindowsFiles, ADumpThatCantShowAPathSaysSo) {
  std::string deep = "[S]\n";
  for (int i = 0; i < 30; ++i) deep += "  b" + std::to_string(i) + " ={\n";
  deep += "  x =1\n";
  for (int i = 0; i < 30; ++i) deep += "  }\n";
  write_file("deep.env", deep);
  const Outcome r = tiv({"env", "dump", "deep.env"});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.err.rfind("tiv: deep.env: the dump is incomplete: the walk stopped at an element whose path is longer than 79 characters, or for lack of memory\n", 0), 0u)
      << r.err;
}

// Hostile inputs of every family end in a result or a message, never in a signal.
TEST_F(WindowsFiles, HostileInputsEndInAResultOrAMessage) {
  write_file("binary.txt", std::string("\0\xff\x01[=}{\\\"'\n", 11) + std::string(70000, '\xfc'));
  write_file("long.txt", std::string(100000, 'x') + "\n" + std::string(5000, '(') + "\n");
  std::filesystem::create_directory("catalog");
  write_file("catalog/BAD.PRO", std::string("\xff\xfe garbage\n;;;;\n") + std::string(3000, '9') + "\n");
  write_file("zv2.ini", "[System]\nProfile=catalog\n");
  for (const auto& args : std::vector<std::vector<std::string>>{
           {"scan", "binary.txt", "--json"},
           {"scan", "long.txt"},
           {"calc", std::string(3000, '(') + "1" + std::string(3000, ')')},
           {"calc", "--json", std::string("1+\xff\xfc", 4)},
           {"env", "check", "binary.txt"},
           {"env", "dump", "long.txt", "--json"},
           {"ini", "list", "binary.txt", "--json"},
           {"ini", "get", "long.txt", "x", "y"},
           {"fio", "header", "binary.txt", "--json"},
           {"profil", "list", "IPE"},
           {"profil", "search", "", "--where", "h>=1"}}) {
    const Outcome r = tiv(args);
    EXPECT_TRUE(r.code >= 0 && r.code <= 4) << args[0] << " " << args[1] << ": exit " << r.code;
    if (r.code > 1) {
      EXPECT_EQ(r.err.rfind("tiv: ", 0), 0u) << args[0] << " " << args[1] << ": " << r.err;
    }
  }
}

}  // namespace
}  // namespace tiv::test
