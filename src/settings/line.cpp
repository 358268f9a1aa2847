// The settings text format, line by line.
#include "settings/line.h"

#include <cstring>

namespace tiv::settings {

namespace {
constexpr bool is_strippable(char c) { return static_cast<unsigned char>(c) <= 0x20; }
}  // namespace

std::size_t strip_line(char* line) {
  std::size_t len = std::strlen(line);
  std::size_t begin = 0;
  while (begin < len && is_strippable(line[begin])) ++begin;
  while (len > begin && is_strippable(line[len - 1])) --len;
  const std::size_t n = len - begin;
  if (begin > 0) std::memmove(line, line + begin, n);
  line[n] = '\0';
  return n;
}

std::string_view trim_blanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

void header_name_in_place(char* line) {
  std::string_view body(line);
  if (!body.empty() && body.front() == '[') body.remove_prefix(1);
  if (const auto close = body.find(']'); close != std::string_view::npos) body = body.substr(0, close);
  body = trim_blanks(body);
  if (!body.empty()) std::memmove(line, body.data(), body.size());
  line[body.size()] = '\0';
}

char* trimmed_copy(char* out, const char* text, std::size_t limit) {
  std::string_view source = text != nullptr ? std::string_view(text) : std::string_view();
  if (source.size() > limit) source = source.substr(0, limit);
  const std::string_view kept = trim_blanks(source);
  if (!kept.empty()) std::memcpy(out, kept.data(), kept.size());
  out[kept.size()] = '\0';
  return out;
}

EntryLine split_entry(std::string_view line) {
  EntryLine entry;
  const auto eq = line.find('=');
  if (eq == std::string_view::npos) return entry;
  entry.found = true;
  entry.raw_name = line.substr(0, eq);
  entry.name = trim_blanks(entry.raw_name);
  entry.value = line.substr(eq + 1);
  return entry;
}

}  // namespace tiv::settings
