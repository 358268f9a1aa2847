#include "frame/errlog.h"

#include <cstdarg>

#include "platform/files.h"

namespace tiv::frame {
namespace {
uint32_t opens = 0;  // every opening since load; never reset
}  // namespace

namespace {
// The name resolution may allocate; a log that can't be opened for any reason is dropped.
std::FILE* open_log(const char* mode) noexcept {
  try {
    return platform::open_file(kLogName, mode);
  } catch (...) {
    return nullptr;
  }
}
}  // namespace

LogRecord::LogRecord() noexcept : file_(open_log(opens == 0 ? "w" : "a")) { ++opens; }

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

}  // namespace tiv::frame
