// A growable byte buffer for texts being read, reused from one element to the next, with
// its memory from heap_realloc. A failed growth is remembered and leaves the text short.
#pragma once

#include <tivlib/heap.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tiv::env {

class TextBuffer {
 public:
  TextBuffer() = default;
  ~TextBuffer() { heap_free(data_); }
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;

  void clear() noexcept { length_ = 0; }
  void push(char c) noexcept {
    if (length_ == capacity_ && !grow(length_ + 1)) return;
    data_[length_++] = c;
  }
  void append(const char* p, std::size_t n) noexcept {
    if (n == 0) return;
    if (capacity_ - length_ < n && !grow(length_ + n)) return;
    std::memcpy(data_ + length_, p, n);
    length_ += n;
  }
  void shrink_to(std::size_t n) noexcept { if (n < length_) length_ = n; }
  std::size_t size() const noexcept { return length_; }
  char back() const noexcept { return data_[length_ - 1]; }
  std::string_view view() const noexcept { return {data_ != nullptr ? data_ : "", length_}; }
  bool failed() const noexcept { return failed_; }

 private:
  bool grow(std::size_t wanted) noexcept {
    std::size_t cap = capacity_ < 64 ? 64 : capacity_;
    while (cap < wanted) cap *= 2;
    if (cap > UINT32_MAX / 2) {
      failed_ = true;
      return false;
    }
    void* more = heap_realloc(data_, static_cast<uint32_t>(cap));
    if (more == nullptr) {
      failed_ = true;
      return false;
    }
    data_ = static_cast<char*>(more);
    capacity_ = cap;
    return true;
  }

  char* data_ = nullptr;
  std::size_t length_ = 0;
  std::size_t capacity_ = 0;
  bool failed_ = false;
};

}  // namespace tiv::env
