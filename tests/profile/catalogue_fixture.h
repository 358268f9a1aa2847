// Test support for the catalogue: every test runs in its own temporary directory, which is also
// the catalogue directory, and opens small files written for it.
#pragma once

#include <tivlib/heap.h>
#include <tivlib/profil.h>

#include <string>
#include <vector>

#include "test_dir.h"

namespace tiv::test {

class Catalogue : public InTempDir {
 protected:
  void SetUp() override { profil_path("."); }
  void TearDown() override {
    for (profil_handle* h : open_) profil_close(h);
    profil_path("");
  }

  // Writes name (relative to the temporary directory) and opens it with the items.
  profil_handle* open(const std::string& name, const std::string& content,
                      std::vector<const char*> items = {"A"}, const double* factors = nullptr) {
    write_file(name, content);
    return open_existing(name, std::move(items), factors);
  }

  profil_handle* open_existing(const std::string& name, std::vector<const char*> items,
                               const double* factors = nullptr) {
    items.push_back(nullptr);
    std::string writable = name;
    profil_handle* h = profil_open(writable.data(), items.data(), factors);
    if (h) open_.push_back(h);
    return h;
  }

  // Closes a handle opened through this fixture before the end of the test.
  void close(profil_handle* h) {
    std::erase(open_, h);
    profil_close(h);
  }

  std::vector<profil_handle*> open_;
};

// "kind size" of the next row delivered by profil_next/prev, or "-1".
inline std::string row_text(int32_t code, const char* result) {
  return code == 0 ? std::string(result) : std::string("-1");
}

}  // namespace tiv::test
