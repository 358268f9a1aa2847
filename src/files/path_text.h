// Bounded path texts and the three-part split of a path (host, directory, name).
//
// Everything here is pure text: no file system is asked. A PathText never holds more than its
// capacity; appends beyond it are cut, so no caller can overrun a 256-character buffer.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include <tivlib/fio.h>

namespace tiv::files {

inline constexpr std::size_t kPathMax = FIO_PATH_MAX;  // characters of a composed path
inline constexpr std::size_t kNameMax = FIO_NAME_MAX;  // characters of a name part
inline constexpr std::size_t kHostMax = FIO_HOST_MAX;  // "c:"

constexpr bool is_separator(char c) { return c == '\\' || c == '/'; }

// A text of at most Capacity characters, always nul-terminated.
template <std::size_t Capacity>
class BoundedText {
 public:
  BoundedText() { text_[0] = '\0'; }
  explicit BoundedText(std::string_view s) { assign(s); }

  void clear() {
    size_ = 0;
    text_[0] = '\0';
  }
  void assign(std::string_view s) {
    clear();
    append(s);
  }
  void append(std::string_view s) {
    const std::size_t n = s.size() < Capacity - size_ ? s.size() : Capacity - size_;
    std::memcpy(text_ + size_, s.data(), n);
    size_ += n;
    text_[size_] = '\0';
  }
  void push_back(char c) { append(std::string_view(&c, 1)); }
  // Drops the first n characters.
  void drop_front(std::size_t n) {
    if (n > size_) n = size_;
    std::memmove(text_, text_ + n, size_ - n + 1);
    size_ -= n;
  }
  void pop_back() {
    if (size_ > 0) text_[--size_] = '\0';
  }

  std::string_view view() const { return {text_, size_}; }
  const char* c_str() const { return text_; }
  char* data() { return text_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  char front() const { return size_ ? text_[0] : '\0'; }
  char back() const { return size_ ? text_[size_ - 1] : '\0'; }

 private:
  char text_[Capacity + 1];
  std::size_t size_ = 0;
};

using PathText = BoundedText<kPathMax>;

// The parts of a path. host is "" or two characters ending in ':'; dir runs up to and
// including the last separator; name is the rest, extension included.
struct PathParts {
  BoundedText<kHostMax> host;
  PathText dir;
  PathText name;
};

// Splits path into its three parts; nil counts as the empty text.
void divide(const char* path, PathParts& parts);

}  // namespace tiv::files
