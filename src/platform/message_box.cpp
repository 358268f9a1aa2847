#include "platform/message_box.h"

#include <cstdio>
#include <string_view>

namespace tiv::platform {
namespace {

message_box_fn box_handler = nullptr;
std::intptr_t box_user = 0;
beep_fn beep_handler = nullptr;
std::intptr_t beep_user = 0;
bool quit_flag = false;

constexpr std::string_view kTrimmed = " \t\r\n";

// The text without surrounding blanks and line ends.
std::string_view trimmed(const char* text) {
  if (text == nullptr) return {};
  std::string_view s(text);
  const auto first = s.find_first_not_of(kTrimmed);
  if (first == std::string_view::npos) return {};
  const auto last = s.find_last_not_of(kTrimmed);
  return s.substr(first, last - first + 1);
}

// Writes s with every line end turned into a blank, so the whole box stays on one line.
void put_flat(std::string_view s) {
  for (char c : s) std::fputc(c == '\n' || c == '\r' ? ' ' : c, stderr);
}

// The default box: "caption text" as one line on standard error.
void box_to_stderr(const char* caption, const char* text) {
  const std::string_view c = trimmed(caption);
  const std::string_view t = trimmed(text);
  put_flat(c);
  if (!c.empty() && !t.empty()) std::fputc(' ', stderr);
  put_flat(t);
  std::fputc('\n', stderr);
  std::fflush(stderr);
}

}  // namespace

void show_message_box(const char* caption, const char* text) noexcept {
  if (box_handler != nullptr)
    box_handler(caption != nullptr ? caption : "", text != nullptr ? text : "", box_user);
  else
    box_to_stderr(caption, text);
}

void set_message_box_handler(message_box_fn handler, std::intptr_t user) noexcept {
  box_handler = handler;
  box_user = handler != nullptr ? user : 0;
}

void beep() noexcept {
  if (beep_handler != nullptr) beep_handler(beep_user);
}

void set_beep_handler(beep_fn handler, std::intptr_t user) noexcept {
  beep_handler = handler;
  beep_user = handler != nullptr ? user : 0;
}

void post_quit() noexcept { quit_flag = true; }
bool quit_requested() noexcept { return quit_flag; }
void clear_quit_request() noexcept { quit_flag = false; }

}  // namespace tiv::platform
