// The failure log zv.err, in the current directory.
//
// Every record opens the log and closes it again, so a record is on disk before its report
// returns. The first opening of a process empties the log; later ones append. An opening that
// fails still counts as an opening, and the record is dropped without a word: the log is the
// end of the line for failures and has no second channel. The log is opened without blocking
// and only as a regular file: where a FIFO, device, directory or socket stands at its place, or
// a symbolic link that isn't the user's own, the record goes to standard error instead.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace tiv::frame {

inline constexpr const char* kLogName = "zv.err";
// Longest file name a host may choose for the log.
inline constexpr std::size_t kLogPathMax = 4095;

// One record being written. Writes on a log that could not be opened do nothing.
class LogRecord {
 public:
  LogRecord() noexcept;
  ~LogRecord();
  LogRecord(const LogRecord&) = delete;
  LogRecord& operator=(const LogRecord&) = delete;

  [[gnu::format(printf, 2, 3)]] void put(const char* format, ...) noexcept;
  // "  <text>!\n" for a text that is not nil; nothing for nil.
  void put_text(const char* text) noexcept;
  // The traceback block of the current trace stack, always ending in "\n\n".
  void put_traceback() noexcept;

 private:
  std::FILE* file_;
};

// How many times the log has been opened since the library was loaded.
uint32_t errlog_opens() noexcept;

// Chooses where later records go: nil switches the log off, "" restores zv.err in the working
// directory, any other name is that file (a new name is emptied by its first record; the name
// chosen before is taken up again where it was). False, and nothing changed, for a name longer
// than kLogPathMax.
bool set_log_place(const char* path) noexcept;

}  // namespace tiv::frame
