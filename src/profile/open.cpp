// Opening and closing catalogue files: the header, the item list, the handle's memory.
#include "profile/catalog.h"
#include "profile/reader.h"

#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <cstring>
#include <type_traits>

namespace tiv::profile {
namespace {

static_assert(std::is_standard_layout_v<profil_handle>);
static_assert(offsetof(profil_handle, file) == 0);
static_assert(offsetof(profil_handle, path) < offsetof(profil_handle, data_start));
static_assert(offsetof(profil_handle, line_offsets) < offsetof(profil_handle, item_count));
static_assert(offsetof(profil_handle, terms) < offsetof(profil_handle, current));
static_assert(sizeof(profil_condition) == 16 && offsetof(profil_condition, value) == 8);
static_assert(sizeof(profil_term) == 3 * sizeof(void*) || sizeof(profil_term) == 16);

constexpr bool is_blank_or_tab(int32_t c) { return c == ' ' || c == '\t'; }

// Reads past leading blanks and tabs from the start of the file.
void header_start(profil_handle& h) {
  seek(h, 0);
  h.current = ' ';
  raw_advance(h);
  while (is_blank_or_tab(h.current)) raw_advance(h);
}

// First pass over the header line: the number of columns and the size of the name block
// (each character one place, each run of blanks and tabs one, the line end one unless it
// closes such a run). Gives false if the file ends before the line does.
bool measure_header(profil_handle& h, int32_t& columns, int32_t& block) {
  header_start(h);
  columns = 0;
  block = 0;
  bool in_run = false;
  while (h.current != '\n') {
    if (h.current == -1) return false;
    if (is_blank_or_tab(h.current)) {
      if (!in_run) {
        ++columns;
        ++block;
        in_run = true;
      }
    } else {
      ++block;
      in_run = false;
    }
    raw_advance(h);
  }
  if (!in_run) {
    ++columns;
    ++block;
  }
  h.data_start = position(h);
  return block > 0;
}

// Second pass: the names into column_names, one zero byte per separator run, one more at the
// end. The block has block + 1 bytes.
void copy_header(profil_handle& h, int32_t block) {
  header_start(h);
  int32_t at = 0;
  bool in_run = false;
  while (h.current != '\n' && h.current != -1 && at < block) {
    if (is_blank_or_tab(h.current)) {
      if (!in_run) h.column_names[at++] = '\0';
      in_run = true;
    } else {
      h.column_names[at++] = static_cast<char>(h.current);
      in_run = false;
    }
    raw_advance(h);
  }
  while (at <= block) h.column_names[at++] = '\0';
}

// Reads the header into the column tables. False on a missing header line or no memory.
bool read_header(profil_handle& h) {
  int32_t columns = 0, block = 0;
  if (!measure_header(h, columns, block)) return false;
  const auto n = static_cast<uint32_t>(columns);
  h.column_names = static_cast<char*>(heap_calloc(static_cast<uint32_t>(block) + 1, 1));
  if (h.column_names == nullptr) return false;
  h.column_item = static_cast<int32_t*>(heap_calloc(n, sizeof(int32_t)));
  if (h.column_item == nullptr) return false;
  h.column_factor = static_cast<double*>(heap_calloc(n, sizeof(double)));
  if (h.column_factor == nullptr) return false;
  h.column_searched = static_cast<unsigned char*>(heap_calloc(n, 1));
  if (h.column_searched == nullptr) return false;
  h.column_count = columns;
  copy_header(h, block);
  return true;
}

// Frees everything a handle owns, and the handle.
void destroy(profil_handle* h) {
  if (h->file) fio_close(h->file);
  heap_free(h->path);
  heap_free(h->column_names);
  heap_free(h->column_item);
  heap_free(h->column_factor);
  heap_free(h->column_searched);
  heap_free(h->terms);
  heap_free(h);
}

// True if the last component of path has a dot, looking back from the end to the second
// character.
bool has_extension(const char* path) {
  for (size_t i = std::strlen(path); i-- > 1;) {
    if (path[i] == '.') return true;
    if (path[i] == '\\' || path[i] == '/') return false;
  }
  return false;
}

// The full path of a catalogue file into out (kPathMax + 1). False if it does not fit.
bool resolve_name(const char* name, char* out) {
  if (std::strlen(name) > static_cast<size_t>(kPathMax)) return false;
  char host[FIO_HOST_MAX + 1] = "", dir[FIO_PATH_BUFFER] = "", file[FIO_PATH_BUFFER] = "";
  fio_divide(name, host, dir, file);
  if (host[0] != '\0' || dir[0] != '\0') {
    std::strcpy(out, name);
  } else {
    char catalogue[kDirectoryMax + 1] = "";
    catalogue_directory(catalogue);
    fio_makepath(out, nullptr, catalogue, name);
  }
  normalise_path(out);
  if (!has_extension(out)) {
    // A path with no room left for the extension is not opened.
    if (std::strlen(out) + 4 > static_cast<size_t>(kPathMax)) return false;
    std::strcat(out, ".pro");
  }
  return true;
}

}  // namespace

int32_t find_column(const profil_handle& h, std::string_view name) {
  const char* at = h.column_names;
  for (int32_t c = 0; c < h.column_count; ++c) {
    const size_t length = std::strlen(at);
    if (std::string_view(at, length) == name) return c;
    at += length + 1;
  }
  return -1;
}

void apply_items(profil_handle& h, const char* const* items, const double* factors) {
  for (int32_t c = 0; c < h.column_count; ++c) {
    h.column_item[c] = -1;
    h.column_searched[c] = 0;
    h.column_factor[c] = 1.0;
  }
  h.term_count = 0;
  int32_t i = 0;
  for (; items != nullptr && items[i] != nullptr; ++i) {
    const int32_t c = find_column(h, items[i]);
    if (c < 0) continue;
    h.column_item[c] = i;  // a later item of the same name takes the column over
    if (factors) h.column_factor[c] = factors[i];
  }
  h.item_count = i;
}

void drop_terms(profil_handle& h) {
  h.term_count = 0;
  heap_free(h.terms);
  h.terms = nullptr;
}

}  // namespace tiv::profile

using namespace tiv::profile;

extern "C" profil_handle* profil_open(char* name, const char* const* items,
                                      const double* factors) noexcept {
  if (name == nullptr || items == nullptr) return nullptr;
  str_trim(name);
  char path[FIO_PATH_BUFFER] = "";
  if (!resolve_name(name, path)) return nullptr;

  fio_handle* file = fio_open(nullptr, path, FIO_READ | FIO_TEXT);
  if (file == nullptr) return nullptr;
  auto* h = static_cast<profil_handle*>(heap_calloc(1, sizeof(profil_handle)));
  if (h == nullptr) {
    fio_close(file);
    return nullptr;
  }
  h->file = file;
  h->path = str_alloc(path);
  h->current = ' ';
  if (h->path == nullptr || !read_header(*h)) {
    destroy(h);
    return nullptr;
  }
  apply_items(*h, items, factors);
  rewind(*h);
  return h;
}

extern "C" int32_t profil_close(profil_handle* h) noexcept {
  if (h != nullptr) destroy(h);
  return 0;
}

extern "C" int32_t profil_reset(profil_handle* h, const char* const* items,
                                const double* factors) noexcept {
  if (h == nullptr) return 0;
  drop_terms(*h);
  h->current = ' ';
  // Factors without items leave the item list as it is: there is nothing to pair them with.
  if (items != nullptr) apply_items(*h, items, factors);
  rewind(*h);
  return 0;
}

extern "C" const char* profil_get_all_items(profil_handle* h) noexcept {
  return h ? h->column_names : nullptr;
}
