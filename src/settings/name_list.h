// The listing of a section's entry names into a caller's buffer: each name followed by a
// terminator, in file order, and one more terminator closing the list. At most `size`
// characters are written, terminators included; a name that doesn't fit is cut, the list is
// closed the same way, and the listing reports that it was cut.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tiv::settings {

class NameList {
 public:
  NameList(char* buffer, int32_t size) : buffer_(buffer), size_(size < 0 ? 0 : size) {}

  // Adds one name; false once the list is full (this name was cut or left out).
  bool add(std::string_view name) {
    if (cut_) return false;
    const int32_t left = size_ - used_;  // room for this name, its terminator and the closing one
    const auto len = static_cast<int32_t>(name.size());
    int32_t take = len;
    if (len + 2 > left) {
      cut_ = true;
      take = left - 2;
      if (take < 0) return false;
    }
    std::memcpy(buffer_ + used_, name.data(), static_cast<std::size_t>(take));
    buffer_[used_ + take] = '\0';
    used_ += take + 1;
    return !cut_;
  }

  // Writes the closing terminator, sets *size to the characters written without it, and
  // gives 0, or 3 if the list was cut.
  int32_t close(int32_t* size) {
    if (used_ < size_)
      buffer_[used_] = '\0';
    else
      cut_ = true;
    *size = used_;
    return cut_ ? 3 : 0;
  }

 private:
  char* buffer_;
  int32_t size_;
  int32_t used_ = 0;
  bool cut_ = false;
};

}  // namespace tiv::settings
