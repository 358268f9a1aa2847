// Which catalogue files of the directory hold a section matching a query.
#include "profile/catalog.h"

#include <tivlib/fio.h>
#include <tivlib/heap.h>

#include <cstring>

namespace {

using namespace tiv::profile;

// Catalogue files are listed with this mask. The directory search matches it without regard
// to case, so lower-case names on disk are listed too.
constexpr const char* kCatalogueMask = "*.PRO";

// Owns a directory listing.
struct Listing {
  fio_dir_entry* entries = nullptr;
  int32_t count = 0;
  ~Listing() { heap_free(entries); }
};

// True if the catalogue file holds a row matching query.
bool file_has_match(const char* directory, const char* name, const char* query) {
  char path[FIO_PATH_BUFFER] = "";
  fio_makepath(path, nullptr, directory, name);
  static const char* const kItems[] = {"A", nullptr};
  profil_handle* h = profil_open(path, kItems, nullptr);
  if (h == nullptr) return false;
  double value = -1.0;
  const bool hit = profil_get(h, query, &value, nullptr) == 0;
  profil_close(h);
  return hit;
}

}  // namespace

extern "C" int32_t profil_findfiles(const char* query, int32_t* count, char** list) noexcept {
  int32_t scratch_count = 0;
  char* scratch_list = nullptr;
  if (count == nullptr) count = &scratch_count;
  if (list == nullptr) list = &scratch_list;
  *count = 0;
  *list = nullptr;
  char cleaned[kQueryMax + 1];
  clean_query(query, cleaned);

  char directory[FIO_PATH_BUFFER] = "";
  catalogue_directory(directory);
  normalise_path(directory);
  Listing listing;
  if (fio_listdir(directory, kCatalogueMask, 0, &listing.entries, &listing.count) != 0) return 0;

  int32_t hits = 0;
  for (int32_t i = 0; i < listing.count; ++i) {
    fio_dir_entry& e = listing.entries[i];
    // Regular files carry the archive attribute and so the file bit; directories never do.
    if ((e.attributes & FIO_ATTR_FILE) == 0) continue;
    e.attributes &= ~static_cast<uint32_t>(FIO_ATTR_FILE);
    e.name[sizeof e.name - 1] = '\0';
    if (file_has_match(directory, e.name, cleaned)) {
      e.attributes |= FIO_ATTR_FILE;
      ++hits;
    }
  }
  if (hits == 0) return 1;

  auto* rows = static_cast<char*>(heap_calloc(static_cast<uint32_t>(hits), PROFIL_LIST_ROW));
  if (rows == nullptr) return 0;
  int32_t row = 0;
  for (int32_t i = 0; i < listing.count && row < hits; ++i) {
    const fio_dir_entry& e = listing.entries[i];
    if ((e.attributes & FIO_ATTR_FILE) == 0) continue;
    const size_t stem = std::strcspn(e.name, ".");
    std::memcpy(rows + static_cast<size_t>(row) * PROFIL_LIST_ROW, e.name,
                stem < PROFIL_LIST_ROW ? stem : PROFIL_LIST_ROW - 1);
    ++row;
  }
  *list = rows;
  *count = hits;
  if (list == &scratch_list) heap_free(scratch_list);
  return 1;
}
