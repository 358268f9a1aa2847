// Small text and file helpers of the tool. Numbers are read and written in the C locale
// whatever locale the user has set: "1.5" is one and a half everywhere.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tiv::cli {

// "%.15g" in the C locale: 7, 0.5, 3.14159265358979, 1e+20.
std::string format_number(double value);
// The shortest text that reads back as the same double ("0.1", "1e+300"), in the C locale.
std::string shortest_number(double value);
// Fixed notation with `decimals` digits behind the point ("%.*f" in the C locale).
std::string format_fixed(double value, int decimals);

// The whole text must be a number (blanks around it allowed); otherwise nothing.
std::optional<double> parse_double(std::string_view text);
std::optional<std::int32_t> parse_long(std::string_view text);

std::vector<std::string> split(std::string_view text, char separator);
// The text with every LF that has no CR in front of it turned into CR LF.
std::string with_crlf(std::string_view text);
std::string_view trim(std::string_view text);

// Reads a whole file. On failure gives nothing and sets `error` to the system's reason.
std::optional<std::string> read_file(const std::string& path, std::string& error);
}  // namespace tiv::cli
