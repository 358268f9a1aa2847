// The settings text format, line by line: stripping, kinds of lines, names and values.
//
// A line is stripped at both ends of every byte up to 0x20 (bytes of 0x80 and above stay).
// What is left is blank, a comment (";"), a header ("[" name, up to "]" or the end) or an
// entry (name "=" value). Names are trimmed of blanks only; a value is everything behind the
// first "=", untouched.
#pragma once

#include <cstddef>
#include <string_view>

namespace tiv::settings {

// Characters taken as one line by the direct operations; a longer line arrives in pieces.
inline constexpr int kLineMax = 511;
// Characters taken as one line by the in-memory family (a nul byte also ends a line).
inline constexpr int kMiniLineMax = 512;
// A line and its terminator (for either reader).
inline constexpr std::size_t kLineBuffer = 513;
// Characters of a section argument, and of a new name (longer ones are cut).
inline constexpr std::size_t kNameMax = 79;
// Characters of the entry argument of mini_write_string.
inline constexpr std::size_t kMiniEntryMax = 255;

// The report of an entry line without "=".
inline constexpr const char* kMalformedEntry = "Incorrect entry's format. '=' is not found.";

// Strips the line in place (moving the text to the front) and gives its new length.
std::size_t strip_line(char* line);

// Turns a stripped header line "[ name ] rest" into its trimmed name, in place.
void header_name_in_place(char* line);

// Trims blanks (0x20) only, at both ends.
std::string_view trim_blanks(std::string_view text);

// Copies at most `limit` characters of text (nil counts as empty) into out (limit + 1
// characters) and trims blanks. Gives out.
char* trimmed_copy(char* out, const char* text, std::size_t limit);

// An entry line split at its first "=": the name trimmed, the value untouched. `found` is false
// when the line has no "=".
struct EntryLine {
  bool found = false;
  std::string_view name;      // trimmed of blanks
  std::string_view raw_name;  // everything in front of the "=", untrimmed
  std::string_view value;     // everything behind the "="
};
EntryLine split_entry(std::string_view line);

}  // namespace tiv::settings
