// Real file names and streams for the library's paths.
//
// Paths inside the library have the form fio_makepath gives them: lower case, back-slashes,
// maybe a drive ("c:\data\x.pro"). Every file the library opens or names goes through here,
// which turns such a path into a Linux name: back-slashes become '/', a drive maps to a
// directory (see drives.h), and each component is matched exactly first, then
// case-insensitively. A name with no match on disk keeps the spelling given, so a file that
// is being created gets the name as given.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace tiv::platform {

// What a name is resolved for. Both intents resolve alike: an existing file of another case
// is found (and a file created under its name overwrites it, as on a case-insensitive file
// system); a name without match keeps the spelling given.
enum class Intent { existing, create };

// The Linux name of a library path. Relative paths stay relative to the process working
// directory when they address the current drive. Gives "" only for an empty path.
std::string real_path(std::string_view path, Intent intent = Intent::existing);

// fopen on the resolved name; modes as for fopen ("r", "w", "a", "rb", "r+b", ...).
// A 't' in the mode is accepted and dropped. Nil on failure (never throws).
std::FILE* open_file(const char* path, const char* mode) noexcept;

// fread for text streams: CR LF arrives as a single LF. Gives the number of bytes delivered.
std::size_t read_text(std::FILE* stream, char* buffer, std::size_t size) noexcept;

// One character of a text stream: CR LF arrives as a single LF, a lone CR stays CR.
// EOF at the end of the file. Uses the unlocked stdio forms: one caller per stream.
inline int get_text_char(std::FILE* stream) noexcept {
  int c = getc_unlocked(stream);
  if (c == '\r') {
    const int d = getc_unlocked(stream);
    if (d == '\n') return '\n';
    if (d != EOF) std::ungetc(d, stream);
  }
  return c;
}

// Creates a new file for writing that nobody else can read (mode 0600), exclusively: nil if
// the name exists already, also as a symbolic link, which is never followed.
std::FILE* create_private_file(const char* path) noexcept;

// Writes what the stream holds to the disk (fflush and fsync). False on a write fault.
bool flush_to_disk(std::FILE* stream) noexcept;

// Writes the file's data to the disk (fsync). False if it can't be opened or synced.
bool sync_file(const char* path) noexcept;

// How the failure log's place was found.
enum class LogPlaceKind {
  file,        // a regular file, opened
  not_a_file,  // a FIFO, device, directory or socket, or a link the user doesn't own
  failed       // it can't be opened (no permission, no directory, ...)
};

// Opens the failure log at `path` for writing at its end, emptied first if `empty_first`. It
// never blocks (a FIFO nobody reads is refused at once) and writes only to a regular file: a
// symbolic link is followed only where the link and its target belong to the user running
// the process. Nil, with *kind telling why, when the log can't be used.
std::FILE* open_log_file(const char* path, bool empty_first, LogPlaceKind* kind) noexcept;

}  // namespace tiv::platform
