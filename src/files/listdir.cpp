// fio_listdir: the entries of a directory search as one heap array of fio_dir_entry.
#include <cstddef>
#include <cstring>
#include <new>
#include <vector>

#include <tivlib/clock.h>
#include <tivlib/fio.h>
#include <tivlib/heap.h>

#include "files/path_text.h"
#include "platform/dir_search.h"
#include "platform/wall_clock.h"

static_assert(sizeof(fio_dir_entry) == 96);
static_assert(offsetof(fio_dir_entry, name) == 0);
static_assert(offsetof(fio_dir_entry, attributes) == 80);
static_assert(offsetof(fio_dir_entry, size) == 84);
static_assert(offsetof(fio_dir_entry, time) == 88);
static_assert(offsetof(fio_dir_entry, reserved) == 92);

namespace tiv::files {
namespace {

constexpr uint32_t kRoomStep = 10;               // records added at a time
constexpr std::time_t kNoWriteTime = 315529200;  // taken when a file has no write time

// Directories carry FIO_ATTR_DIR alone. A regular file is marked for archiving (new files
// are on the file system the library came from); other files (devices, pipes, sockets)
// count as system files. Read-only and hidden come from the mode and the name.
uint32_t attributes_of(const platform::FoundEntry& e) {
  if (e.directory) return FIO_ATTR_DIR;
  uint32_t a = e.special ? FIO_ATTR_SYSTEM : FIO_ATTR_ARCHIVE;
  if (e.read_only) a |= FIO_ATTR_READONLY;
  if (e.hidden) a |= FIO_ATTR_HIDDEN;
  return a | FIO_ATTR_FILE;
}

// The time of the last write through the local calendar, as clock_makevalue gives it;
// 1 January 1980 when the local conversion fails.
int32_t time_of(std::time_t modified) {
  if (modified == -1) modified = kNoWriteTime;
  std::tm local{};
  clock_fields f{};
  if (platform::to_local(modified, local)) {
    f.second = local.tm_sec;
    f.minute = local.tm_min;
    f.hour = local.tm_hour;
    f.day = local.tm_mday;
    f.month = local.tm_mon;
    f.year = local.tm_year;
  } else {
    f.day = 1;
    f.year = 80;
  }
  return clock_makevalue(&f);
}

// Names longer than 79 characters are cut to their first 79.
void fill(fio_dir_entry& r, const platform::FoundEntry& e) {
  const std::size_t n = e.name.size() < FIO_NAME_MAX ? e.name.size() : FIO_NAME_MAX;
  std::memcpy(r.name, e.name.data(), n);
  r.name[n] = '\0';
  r.attributes = attributes_of(e);
  r.size = e.size > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<uint32_t>(e.size);
  r.time = time_of(e.modified);
  r.reserved = 0;
}

}  // namespace
}  // namespace tiv::files

extern "C" int32_t fio_listdir(const char* dir, const char* mask, int32_t /*filter*/,
                               fio_dir_entry** list, int32_t* count) noexcept {
  if (list == nullptr || count == nullptr) return -1;
  *list = nullptr;
  *count = 0;
  if (mask == nullptr || mask[0] == '\0') mask = "*.*";
  uint32_t room = tiv::files::kRoomStep;
  auto* records = static_cast<fio_dir_entry*>(heap_malloc(room * sizeof(fio_dir_entry)));
  if (records == nullptr) return 0;
  try {
    // The search path keeps its case and separators: it does not pass through composition.
    std::string search;
    if (dir != nullptr && dir[0] != '\0') {
      search = dir;
      if (!tiv::files::is_separator(search.back())) search += '\\';
    }
    search += mask;
    std::vector<tiv::platform::FoundEntry> found;
    if (!tiv::platform::search_directory(search, found) || found.empty()) {
      heap_free(records);
      return -1;
    }
    uint32_t used = 0;
    for (const auto& entry : found) {
      if (used == room) {
        room += tiv::files::kRoomStep;
        auto* grown = static_cast<fio_dir_entry*>(heap_realloc(records, room * sizeof(fio_dir_entry)));
        if (grown == nullptr) {
          heap_free(records);
          return -1;
        }
        records = grown;
      }
      tiv::files::fill(records[used++], entry);
    }
    *list = records;
    *count = static_cast<int32_t>(used);
    return 0;
  } catch (const std::bad_alloc&) {
    heap_free(records);
    return -1;
  }
}
