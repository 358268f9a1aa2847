// The call-trace stack that the host keeps with zv_begin and zv_end.
#pragma once

#include <cstdint>

namespace tiv::frame {

inline constexpr int32_t kTraceDepthMax = 20;  // frames on the stack
inline constexpr int32_t kTraceNameMax = 79;   // characters of a frame's name

// One frame: a routine name and how many times it entered itself in a row (at least 1).
struct TraceFrame {
  char name[kTraceNameMax + 1];
  int32_t count;
};

// The stack as the traceback shows it: frames[0] is the outermost.
struct TraceView {
  bool on;
  int32_t depth;
  const TraceFrame* frames;
};

TraceView trace_view() noexcept;

}  // namespace tiv::frame
