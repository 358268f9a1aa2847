// Code pages of the files the tool reads. Files from Windows hold Windows-1252 (sometimes DOS
// 437) bytes; JSON output must be UTF-8. Plain output passes the file's bytes unchanged.
//
// A text that is valid UTF-8 passes unchanged; any other text is read byte by byte in the
// chosen code page (Windows-1252 unless --encoding says otherwise).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tiv::cli {

enum class Encoding { utf8, cp1252, cp437, latin1 };

// The names --encoding takes, in the order of the enumeration.
inline constexpr std::string_view kEncodingNames[] = {"utf-8", "cp1252", "cp437", "latin1"};

std::optional<Encoding> parse_encoding(std::string_view name);

// The code page of the files of this run.
void set_file_encoding(Encoding encoding);
Encoding file_encoding();

// True if `text` is well-formed UTF-8.
bool is_utf8(std::string_view text);

// A file's text as UTF-8: unchanged if it is UTF-8 already, else each byte read in the file's
// code page (with utf-8 chosen, a byte that is no part of a character becomes U+FFFD).
std::string to_utf8(std::string_view bytes);

// A text of the command line as the file's bytes: a UTF-8 text is encoded in the file's code
// page; nothing when a character has no byte there. A text that is no UTF-8 is taken as bytes.
std::optional<std::string> to_file_bytes(std::string_view text);

// to_file_bytes, or a failure (kBadFormat) naming the code page that can't hold the text.
std::string file_text(std::string_view text);

}  // namespace tiv::cli
