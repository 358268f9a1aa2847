// The memory of an in-memory settings handle: the loaded sections with their entries, and
// the loading of sections from the file.
//
// A handle keeps the file's place (directory and name) and the sections read so far, in file
// order with the unnamed section first. A section is loaded at most once; loading reads the
// file from its top to the section's first header. A loaded section is clean until a write
// sets its dirty bit; an update clears it again.
#pragma once

#include <cstdint>

#include <tivlib/fio.h>
#include <tivlib/list.h>
#include <tivlib/mini.h>

#include "settings/name_index.h"

// An entry: list links first, then its trimmed name and its value, both owned.
struct mini_entry {
  mini_entry* prev;
  mini_entry* next;
  char* name;
  char* value;
};

// A section: list links first, then its trimmed name (empty for the unnamed section, owned),
// its entries in file order (new ones at the end), its state bits and the index of its entry
// names (made at the first lookup that needs it, owned).
struct mini_section {
  mini_section* prev;
  mini_section* next;
  char* name;
  listdescriptor entries;
  int32_t state;
  tiv::settings::FirstByName<mini_entry>* index;
};

// The handle: the file's directory and name (owned), the flags of mini_open, and the loaded
// sections.
struct mini_file {
  char* directory;
  char* name;
  int32_t flags;
  listdescriptor sections;
  tiv::settings::FirstByName<mini_section>* index;  // of the section names, as for entries
};

namespace tiv::settings {

// State bits of a section.
inline constexpr int32_t kDirty = 1;    // written to since the last update
inline constexpr int32_t kMerged = 2;   // its header has been met in the running update

// Results of the line reader of this family.
inline constexpr int kMiniEnd = 0;
inline constexpr int kMiniHeader = 1;
inline constexpr int kMiniEntry = 2;
inline constexpr int kMiniComment = 3;
inline constexpr int kMiniBlank = 4;

// Reads one line (at most kMiniLineMax characters; a nul byte also ends it) into text
// (kLineBuffer characters), stripped; a header gives its trimmed name. A nil input gives
// kMiniEnd.
int mini_read_line(fio_handle* in, char* text);

// Reports failed memory (a message box, a log record and a quit request).
void report_no_memory(int32_t line);

// The loaded section of that name (compared exactly), or nil.
mini_section* find_loaded(const mini_file* handle, const char* name);
// How a section was looked for.
enum class Lookup {
  found,      // loaded before or now
  absent,     // neither memory nor the file holds it (or the name is a directory)
  unusable    // the file may hold it but couldn't be read, or memory ran out loading it
};
// The loaded section, or the section loaded now from the file; nil if it isn't there. A
// section that can't be loaded whole (memory ran out) is not kept, so its lines stay in the
// file untouched.
mini_section* find_or_load(mini_file* handle, const char* name, Lookup* how = nullptr);
// True when the handle's file exists (whether or not it could be opened).
bool file_exists(const mini_file* handle);
// A new empty section: at the front if its name is empty, otherwise at the end. Nil (after a
// report) when memory is out.
mini_section* add_section(mini_file* handle, const char* name);
// Unlinks and frees a section with its entries.
void free_section(mini_file* handle, mini_section* section);

// Loads every section of an open file (used at open with MINI_LOAD_ALL). A section that can't
// be loaded whole is left out.
void load_all(mini_file* handle, fio_handle* in);

// The first entry of that name (compared exactly), or nil.
mini_entry* find_entry(const mini_section* section, const char* name);
// A new entry at the end of the section with copies of name and value; nil (after a report)
// when memory is out.
mini_entry* add_entry(mini_section* section, const char* name, const char* value);
// Unlinks and frees an entry.
void free_entry(mini_section* section, mini_entry* entry);

// Replaces the heap text in slot with a copy of text. When memory is out (reported) the slot
// keeps its old text and the result is false.
bool replace_text(char*& slot, const char* text);

// The path of the handle's file, as fio_makepath builds it (FIO_PATH_BUFFER characters).
char* file_path(const mini_file* handle, char* path);

}  // namespace tiv::settings
