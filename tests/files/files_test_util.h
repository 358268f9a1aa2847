// Helpers of the file I/O tests: bytes of files, log records with their line numbers masked.
#pragma once

#include <regex>
#include <string>

#include "test_dir.h"

namespace tiv::test {

// zv.err with every "line <n>:" written as "line #:".
inline std::string masked_log() {
  return std::regex_replace(read_file("zv.err"), std::regex("line [0-9]+:"), "line #:");
}

// The record of one zv_error of the Fio source with one text and an empty trace stack.
inline std::string fio_error(const std::string& text) {
  return ">ERROR   in \"Fio\" line #:\n  " + text + "!\n\n\n\n\n";
}

inline std::string bytes(std::initializer_list<unsigned char> b) {
  return std::string(b.begin(), b.end());
}

}  // namespace tiv::test
