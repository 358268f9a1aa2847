// The memory of an in-memory settings handle and the loading of sections.
#include "settings/mini_store.h"

#include <cstddef>
#include <cstring>
#include <new>

#include <tivlib/heap.h>
#include <tivlib/str.h>
#include <tivlib/zv.h>

#include "platform/fs_ops.h"
#include "settings/line.h"

// The list operations see sections and entries through their leading links.
static_assert(offsetof(mini_entry, prev) == offsetof(list_links, prev));
static_assert(offsetof(mini_entry, next) == offsetof(list_links, next));
static_assert(offsetof(mini_section, prev) == offsetof(list_links, prev));
static_assert(offsetof(mini_section, next) == offsetof(list_links, next));
static_assert(offsetof(mini_file, directory) == 0 && offsetof(mini_section, name) == 2 * sizeof(void*));

namespace tiv::settings {

namespace {

constexpr const char* kSource = "Mini";
constexpr const char* kNoName = "Section's name is not defined. Description is ignored";

// Splits a stripped entry line in place: name (trimmed) and value become nul-terminated texts
// inside line. False if the line has no "=".
bool split_in_place(char* line, char** name, char** value) {
  char* eq = std::strchr(line, '=');
  if (eq == nullptr) return false;
  *eq = '\0';
  *value = eq + 1;
  *name = str_trim(line);
  return true;
}

void free_entry_memory(void* element) {
  auto* entry = static_cast<mini_entry*>(element);
  heap_free(entry->name);
  heap_free(entry->value);
  heap_free(entry);
}

// Reads the entries of a section up to the next header or the end, into section (or drops
// them when section is nil). Gives the reader's last result, with a header's name in text.
// *complete turns false when an entry could not be stored.
int read_entries(mini_section* section, fio_handle* in, char* text, bool* complete = nullptr) {
  for (;;) {
    const int kind = mini_read_line(in, text);
    if (kind == kMiniEnd || kind == kMiniHeader) return kind;
    if (kind != kMiniEntry || section == nullptr) continue;
    char* name = nullptr;
    char* value = nullptr;
    if (!split_in_place(text, &name, &value)) {
      zv_error(kMalformedEntry, nullptr, nullptr, kSource, __LINE__);
      continue;
    }
    if (add_entry(section, name, value) == nullptr && complete != nullptr) *complete = false;
  }
}

// Loads one section under name from the input's position; the result as read_entries. A
// section that could not be stored whole is freed again (after the report of zv_exit), so
// that an update passes its lines through instead of losing the entries memory lacks.
int load_section(mini_file* handle, fio_handle* in, const char* name, char* text,
                 bool* loaded = nullptr) {
  mini_section* section = add_section(handle, name);
  bool complete = section != nullptr;
  const int kind = read_entries(section, in, text, &complete);
  if (section != nullptr && !complete) free_section(handle, section);
  if (loaded != nullptr) *loaded = complete;
  return kind;
}

}  // namespace

int mini_read_line(fio_handle* in, char* text) {
  if (in == nullptr) return kMiniEnd;
  if (fio_getstring(in, kMiniLineMax, text) != 0) return kMiniEnd;
  strip_line(text);
  switch (text[0]) {
    case '\0':
      return kMiniBlank;
    case ';':
      return kMiniComment;
    case '[':
      header_name_in_place(text);
      return kMiniHeader;
    default:
      return kMiniEntry;
  }
}

void report_no_memory(int32_t line) {
  zv_exit("Insufficient of memory.", nullptr, nullptr, kSource, line);
}

bool replace_text(char*& slot, const char* text) {
  char* copy = str_alloc(text);
  if (copy == nullptr) {
    report_no_memory(__LINE__);
    return false;
  }
  heap_free(slot);
  slot = copy;
  return true;
}

namespace {

// The index of a list, made when first needed; none when memory is out (the list is then
// searched from its start).
template <class Node>
FirstByName<Node>* index_of(FirstByName<Node>*& index) {
  if (index == nullptr) index = new (std::nothrow) FirstByName<Node>();
  return index;
}

template <class Node>
Node* find_first(FirstByName<Node>*& index, const listdescriptor& list, const char* name) {
  if (FirstByName<Node>* ix = index_of(index)) return ix->find(list, name);
  for (auto* n = static_cast<Node*>(list.first); n != nullptr; n = n->next)
    if (str_eq(n->name, name)) return n;
  return nullptr;
}

}  // namespace

mini_section* find_loaded(const mini_file* handle, const char* name) {
  return find_first(const_cast<mini_file*>(handle)->index, handle->sections, name);
}

bool file_exists(const mini_file* handle) {
  return fio_exist(handle->directory, handle->name) != 0;
}

namespace {
bool names_a_directory(const mini_file* handle) {
  char path[FIO_PATH_BUFFER];
  return fio_makepath(path, nullptr, handle->directory, handle->name) != nullptr &&
         tiv::platform::is_directory(path);
}
}  // namespace

mini_section* find_or_load(mini_file* handle, const char* name, Lookup* how) {
  Lookup dummy;
  if (how == nullptr) how = &dummy;
  *how = Lookup::found;
  if (mini_section* s = find_loaded(handle, name)) return s;
  fio_handle* in = fio_open(handle->directory, handle->name, FIO_READ | FIO_TEXT);
  // A name that is missing or no file at all (a directory) holds no section that a write could
  // replace: what the update later does with it is the update's own result. A file that is
  // there but couldn't be opened (memory, permission) may hold the section.
  if (in == nullptr) {
    *how = file_exists(handle) && !names_a_directory(handle) ? Lookup::unusable : Lookup::absent;
    return nullptr;
  }
  char text[kLineBuffer];
  bool found = name[0] == '\0';  // the unnamed section needs no header
  while (!found) {
    const int kind = mini_read_line(in, text);
    if (kind == kMiniEnd) break;
    found = kind == kMiniHeader && str_eq(text, name);
  }
  bool loaded = false;
  if (found) load_section(handle, in, name, text, &loaded);
  fio_close(in);
  *how = !found ? Lookup::absent : loaded ? Lookup::found : Lookup::unusable;
  return loaded ? find_loaded(handle, name) : nullptr;
}

mini_section* add_section(mini_file* handle, const char* name) {
  auto* s = static_cast<mini_section*>(heap_calloc(1, sizeof(mini_section)));
  char* copy = str_alloc(name);
  if (s == nullptr || copy == nullptr) {
    heap_free(s);
    heap_free(copy);
    report_no_memory(__LINE__);
    return nullptr;
  }
  s->name = copy;
  if (name[0] == '\0') {
    list_insert_before(&handle->sections, nullptr, s);
    if (handle->index != nullptr) handle->index->invalidate();
  } else {
    list_insert_after(&handle->sections, nullptr, s);
    if (handle->index != nullptr) handle->index->appended(s);
  }
  return s;
}

void free_section(mini_file* handle, mini_section* section) {
  if (handle->index != nullptr) handle->index->invalidate();
  delete section->index;
  list_free_all(&section->entries, free_entry_memory);
  list_delete(&handle->sections, section);
  heap_free(section->name);
  heap_free(section);
}

// A repeated header is not loaded a second time: its lines stay in the file, untouched by
// updates, and the first section of the name answers every lookup. A header with an empty
// name is reported and its lines are skipped. Once memory has run out, no further section is
// loaded (a later repeat of a section left out must not take its place).
void load_all(mini_file* handle, fio_handle* in) {
  char text[kLineBuffer];
  bool loaded = true;
  int kind = load_section(handle, in, "", text, &loaded);
  while (kind == kMiniHeader) {
    if (text[0] == '\0') {
      zv_error(kNoName, nullptr, nullptr, kSource, __LINE__);
      kind = read_entries(nullptr, in, text);
    } else if (!loaded || find_loaded(handle, text) != nullptr) {
      kind = read_entries(nullptr, in, text);
    } else {
      char name[kLineBuffer];
      std::strcpy(name, text);
      kind = load_section(handle, in, name, text, &loaded);
    }
  }
}

mini_entry* find_entry(const mini_section* section, const char* name) {
  return find_first(const_cast<mini_section*>(section)->index, section->entries, name);
}

mini_entry* add_entry(mini_section* section, const char* name, const char* value) {
  auto* e = static_cast<mini_entry*>(heap_calloc(1, sizeof(mini_entry)));
  char* name_copy = str_alloc(name);
  char* value_copy = str_alloc(value);
  if (e == nullptr || name_copy == nullptr || value_copy == nullptr) {
    heap_free(e);
    heap_free(name_copy);
    heap_free(value_copy);
    report_no_memory(__LINE__);
    return nullptr;
  }
  e->name = name_copy;
  e->value = value_copy;
  list_insert_after(&section->entries, nullptr, e);
  if (section->index != nullptr) section->index->appended(e);
  return e;
}

void free_entry(mini_section* section, mini_entry* entry) {
  if (section->index != nullptr) section->index->invalidate();
  list_delete(&section->entries, entry);
  free_entry_memory(entry);
}

char* file_path(const mini_file* handle, char* path) {
  return fio_makepath(path, nullptr, handle->directory, handle->name);
}

}  // namespace tiv::settings
