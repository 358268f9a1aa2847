// Real file names and streams for the library's paths.
//
// Paths inside the library have the form fio_makepath gives them: lower case, back-slashes,
// maybe a drive ("c:\data\x.pro"). Every file the library opens or names goes through here,
// which turns such a path into a Linux name: back-slashes become '/', a drive maps to a
// directory, and each component is matched exactly first, then case-insensitively.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace tiv::platform {

// What a name is resolved for: an existing file, or one that may be created (its last
// component keeps the spelling given when nothing on disk matches).
enum class Intent { existing, create };

// The Linux name of a library path.
std::string real_path(std::string_view path, Intent intent = Intent::existing);

// fopen on the resolved name; modes as for fopen ("r", "w", "a", "rb", "r+b", ...).
// A 't' in the mode is accepted and dropped.
std::FILE* open_file(const char* path, const char* mode);

// fread for text streams: CR LF arrives as a single LF. Gives the number of bytes delivered.
std::size_t read_text(std::FILE* stream, char* buffer, std::size_t size);

}  // namespace tiv::platform
