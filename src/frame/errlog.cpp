#include "frame/errlog.h"

#include <cstdarg>
#include <cstring>

#include "platform/files.h"

namespace tiv::frame {
namespace {
uint32_t opens = 0;  // every opening since load; never reset

// Where records go. By default zv.err in the working directory; a host may name another file
// or switch the log off. The first record written to a newly chosen place empties it.
struct LogPlace {
  enum class Kind { standard, file, off } kind = Kind::standard;
  char path[kLogPathMax + 1] = {};
  uint32_t opens_here = 0;
};
LogPlace g_log_place;
}  // namespace

namespace {
// The name resolution may allocate; a log that can't be opened for any reason is dropped.
std::FILE* open_log(const char* name, const char* mode) noexcept {
  try {
    return platform::open_file(name, mode);
  } catch (...) {
    return nullptr;
  }
}
}  // namespace

LogRecord::LogRecord() noexcept : file_(nullptr) {
  LogPlace& place = g_log_place;
  if (place.kind == LogPlace::Kind::off) return;
  const char* mode = opens == 0 ? "w" : "a";
  if (place.kind == LogPlace::Kind::file) {
    mode = place.opens_here == 0 ? "w" : "a";
    ++place.opens_here;
  }
  file_ = open_log(place.kind == LogPlace::Kind::file ? place.path : kLogName, mode);
  ++opens;
}

LogRecord::~LogRecord() {
  if (file_ != nullptr) std::fclose(file_);
}

void LogRecord::put(const char* format, ...) noexcept {
  if (file_ == nullptr) return;
  va_list args;
  va_start(args, format);
  std::vfprintf(file_, format, args);
  va_end(args);
}

void LogRecord::put_text(const char* text) noexcept {
  if (text != nullptr) put("  %s!\n", text);
}

uint32_t errlog_opens() noexcept { return opens; }

bool set_log_place(const char* path) noexcept {
  LogPlace& place = g_log_place;
  if (path == nullptr) {
    place.kind = LogPlace::Kind::off;
    return true;
  }
  const std::size_t length = std::strlen(path);
  if (length > kLogPathMax) return false;
  if (length == 0) {
    place.kind = LogPlace::Kind::standard;
    return true;
  }
  // The place it had before (perhaps before the log was switched off) is kept as it is: only
  // a new place is emptied by its first record.
  if (std::strcmp(place.path, path) != 0) {
    std::memcpy(place.path, path, length + 1);
    place.opens_here = 0;
  }
  place.kind = LogPlace::Kind::file;
  return true;
}

}  // namespace tiv::frame
