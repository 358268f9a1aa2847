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

LogRecord::LogRecord() noexcept : file_(nullptr) {
  LogPlace& place = g_log_place;
  if (place.kind == LogPlace::Kind::off) return;
  bool empty_first = opens == 0;
  if (place.kind == LogPlace::Kind::file) {
    empty_first = place.opens_here == 0;
    ++place.opens_here;
  }
  ++opens;
  platform::LogPlaceKind kind;
  file_ = platform::open_log_file(place.kind == LogPlace::Kind::file ? place.path : kLogName,
                                  empty_first, &kind);
  // What stands at the log's place is no file (a FIFO, device, directory, a link of another
  // user): the record goes to standard error instead.
  if (kind == platform::LogPlaceKind::not_a_file) file_ = stderr;
}

LogRecord::~LogRecord() {
  if (file_ == stderr) std::fflush(stderr);
  else if (file_ != nullptr) std::fclose(file_);
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
