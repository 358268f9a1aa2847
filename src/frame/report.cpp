// The four report operations. Each writes one record to zv.err; none stops the caller.
#include <tivlib/zv.h>

#include <string_view>

#include "frame/errlog.h"
#include "platform/message_box.h"

namespace {

using tiv::frame::LogRecord;

constexpr size_t kBoxTextMax = ZV_BOX_TEXT_MAX;

// A nil source name is written as an empty one.
const char* source_or_empty(const char* source) { return source != nullptr ? source : ""; }

// The heading line "<kind> in "<source>" line <line>:" and the three texts of a record, then
// the blank line that ends its text part.
void put_record(LogRecord& log, const char* kind, const char* text1, const char* text2,
                const char* text3, const char* source, int32_t line) {
  log.put("%s in \"%s\" line %d:\n", kind, source_or_empty(source), line);
  log.put_text(text1);
  log.put_text(text2);
  log.put_text(text3);
  log.put("\n\n");
}

// The text of zv_exit's box: the texts that are not nil, back to back, cut at kBoxTextMax
// characters.
class BoxText {
 public:
  void append(const char* text) {
    if (text == nullptr) return;
    for (; *text != '\0' && length_ < kBoxTextMax; ++text) text_[length_++] = *text;
    text_[length_] = '\0';
  }
  const char* c_str() const { return text_; }

 private:
  char text_[kBoxTextMax + 1] = {};
  size_t length_ = 0;
};

}  // namespace

extern "C" {

void zv_message(const char* text1, const char* text2, const char* text3, const char* source,
                int32_t line) noexcept {
  LogRecord log;
  put_record(log, "> MESSAGE", text1, text2, text3, source, line);
}

void zv_error(const char* text1, const char* text2, const char* text3, const char* source,
              int32_t line) noexcept {
  LogRecord log;
  put_record(log, ">ERROR  ", text1, text2, text3, source, line);
  log.put_traceback();
}

void zv_switch_error(int32_t value, const char* source, int32_t line) noexcept {
  LogRecord log;
  log.put("SWITCH ERROR in \"%s\" line %d:\n", source_or_empty(source), line);
  log.put("  switch value = %d!\n\n", value);
  log.put_traceback();
}

// Shows the box, writes the record, then posts the quit request and returns: the process
// goes on until the host sees the request.
void zv_exit(const char* text1, const char* text2, const char* text3, const char* source,
             int32_t line) noexcept {
  BoxText box;
  box.append(text1);
  box.append(text2);
  box.append(text3);
  tiv::platform::show_message_box("EXIT :", box.c_str());
  {
    LogRecord log;
    put_record(log, "> EXIT   ", text1, text2, text3, source, line);
    log.put_traceback();
  }
  tiv::platform::post_quit();
}

}  // extern "C"
