#include "language/trace.h"

#include <charconv>
#include <cstdio>

#include "platform/files.h"

namespace tiv::language {
namespace {

constexpr const char* kTraceFileName = "trc";

// Process-wide: the stream (nil while no tracing scanner is open, or while "trc" could not
// be created) and the number of open tracing scanners.
std::FILE* trace_file = nullptr;
int32_t trace_count = 0;

// The label a record prints for each token kind.
constexpr const char* label_of(int32_t kind) noexcept {
  switch (kind) {
    case SCAN_T_KEYWORD: return "keyword";
    case SCAN_T_IDENTIFIER: return "identifier";
    case SCAN_T_LONG: return "long";
    case SCAN_T_DOUBLE: return "double";
    case SCAN_T_CHAR: return "char";
    case SCAN_T_STRING: return "string";
    case SCAN_T_EOL: return "eol";
    case SCAN_T_EOF: return "eof";
    default: break;
  }
  if (kind >= SCAN_T_QUOTED && kind <= SCAN_T_DQUOTE) return "symbol";
  return "** void **";
}

}  // namespace

// If "trc" can't be created the scanner still opens and works; its records are dropped,
// and the next tracing scanner that opens tries to create the file again.
int32_t trace_attach() noexcept {
  ++trace_count;
  if (trace_file == nullptr) trace_file = tiv::platform::open_file(kTraceFileName, "w");
  return trace_count;
}

void trace_detach() noexcept {
  if (trace_count > 0) --trace_count;
  if (trace_count == 0 && trace_file != nullptr) {
    std::fclose(trace_file);
    trace_file = nullptr;
  }
}

// "S%-3ld[%2ld:%2ld]\t%-10s <%s>" and a tail by kind: " #lvalue" for keywords, "  %ld" for
// longs and "  %lf" for doubles (six decimals, C locale whatever the host set).
void trace_write(int32_t id, int32_t kind, const scan_record& record) noexcept {
  if (trace_file == nullptr) return;
  std::fprintf(trace_file, "S%-3d[%2d:%2d]\t%-10s <%s>", static_cast<int>(id),
               static_cast<int>(record.line), static_cast<int>(record.column), label_of(kind),
               record.text);
  if (kind == SCAN_T_KEYWORD) {
    std::fprintf(trace_file, " #%d\n", static_cast<int>(record.lvalue));
  } else if (kind == SCAN_T_LONG) {
    std::fprintf(trace_file, "  %d\n", static_cast<int>(record.lvalue));
  } else if (kind == SCAN_T_DOUBLE) {
    // Wide enough for the fixed form of the largest double with six decimals.
    char number[400];
    const auto r = std::to_chars(number, number + sizeof number, record.dvalue,
                                 std::chars_format::fixed, 6);
    const int length = r.ec == std::errc{} ? static_cast<int>(r.ptr - number) : 0;
    std::fprintf(trace_file, "  %.*s\n", length, number);
  } else {
    std::fputc('\n', trace_file);
  }
}

}  // namespace tiv::language
