#include "text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <sstream>

namespace tiv::cli {

namespace {

constexpr int kGeneralDigits = 15;     // significant digits of format_number
constexpr int kMaxDecimals = 30;       // digits behind the point of format_fixed
constexpr std::size_t kNumberRoom = 400;  // enough for any double in fixed notation

std::string to_text(double value, std::chars_format format, int precision) {
  char buffer[kNumberRoom];
  auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, format, precision);
  if (ec != std::errc{}) return "?";
  return std::string(buffer, end);
}

}  // namespace

std::string format_number(double value) {
  return to_text(value, std::chars_format::general, kGeneralDigits);
}

std::string format_fixed(double value, int decimals) {
  if (decimals < 0) decimals = 0;
  if (decimals > kMaxDecimals) decimals = kMaxDecimals;
  return to_text(value, std::chars_format::fixed, decimals);
}

std::string_view trim(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  std::size_t last = text.find_last_not_of(blanks);
  return text.substr(first, last - first + 1);
}

std::optional<double> parse_double(std::string_view text) {
  text = trim(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  double value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<std::int32_t> parse_long(std::string_view text) {
  text = trim(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  std::int32_t value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string shortest_number(double value) {
  char out[64];
  auto [end, ec] = std::to_chars(out, out + sizeof out, value);
  return ec == std::errc{} ? std::string(out, end) : format_number(value);
}

std::string with_crlf(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  return out;
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  for (;;) {
    std::size_t at = text.find(separator);
    parts.emplace_back(text.substr(0, at));
    if (at == std::string_view::npos) break;
    text.remove_prefix(at + 1);
  }
  return parts;
}

std::optional<std::string> read_file(const std::string& path, std::string& error) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error = std::strerror(errno);
    return std::nullopt;
  }
  std::ostringstream all;
  all << in.rdbuf();
  if (in.bad()) {
    error = "read error";
    return std::nullopt;
  }
  return all.str();
}

}  // namespace tiv::cli
