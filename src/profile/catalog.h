// Internal services of the catalogue shared by its operations.
#pragma once

#include "profile/handle.h"

#include <string_view>

namespace tiv::profile {

// The catalogue directory: profil_directory if set, otherwise [System] Profile of the central
// settings file, read anew at each call. out has room for kDirectoryMax + 1 characters.
void catalogue_directory(char* out);

// Makes a path that begins with a dot or a back-slash absolute, in place, and brings every
// path into the form of fio_makepath. path has room for kPathMax + 1 characters.
void normalise_path(char* path);

// Copies at most kQueryMax characters of query into out (room for kQueryMax + 1) and deletes
// all blanks and tabs from the copy. A nil query gives false.
bool clean_query(const char* query, char* out);

// Column tables: the first column of that name, or -1.
int32_t find_column(const profil_handle& h, std::string_view name);

// Sets the column tables from an item list (nil-terminated) and optional factors.
void apply_items(profil_handle& h, const char* const* items, const double* factors);

// Frees the conditions and leaves none.
void drop_terms(profil_handle& h);

// Name query against the kind and size fields of a row; query is free of blanks and tabs.
bool name_matches(std::string_view query, std::string_view kind, std::string_view size);

// The kind and size fields of a row.
struct RowName {
  char kind[kFieldMax + 1];
  char size[kFieldMax + 1];
  int kind_length = 0;
  int size_length = 0;
  std::string_view kind_view() const { return {kind, static_cast<size_t>(kind_length)}; }
  std::string_view size_view() const { return {size, static_cast<size_t>(size_length)}; }
};

// Row reading. read_name gives false when the kind is empty (end of the file).
bool read_name(profil_handle& h, RowName& name);
void clear_values(const profil_handle& h, double* values);
double field_value(const profil_handle& h, int32_t column, const char* token, int length);
// Reads columns 2.. of a row, storing the wanted ones.
void read_wanted_values(profil_handle& h, double* values);
// "kind size" into result (kResultSize characters), if result is given.
void write_result(const RowName& name, char* result);

}  // namespace tiv::profile
