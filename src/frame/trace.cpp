// zv_begin / zv_end: a stack of at most 20 frames that compresses direct recursion into a
// count. An overflow turns the trace off for the rest of the process.
#include <tivlib/zv.h>

#include <cstring>

#include "frame/errlog.h"
#include "frame/trace.h"
#include "platform/message_box.h"

static_assert(tiv::frame::kTraceDepthMax == ZV_TRACE_DEPTH_MAX);
static_assert(tiv::frame::kTraceNameMax == ZV_TRACE_NAME_MAX);

namespace tiv::frame {
namespace {

constexpr const char* kSource = "Zv";

bool trace_on = true;          // set to false by an overflow, and never back
int32_t trace_depth = 0;       // frames on the stack, 0 to kTraceDepthMax
TraceFrame frames[kTraceDepthMax] = {};

// Compares name with a stored frame name as it would have been stored: names beyond
// kTraceNameMax characters are cut, so only their first kTraceNameMax characters count.
bool same_name(const char* stored, const char* name) {
  return std::strncmp(stored, name, kTraceNameMax) == 0;
}

}  // namespace

TraceView trace_view() noexcept { return {trace_on, trace_depth, frames}; }

void LogRecord::put_traceback() noexcept {
  if (trace_on && trace_depth > 0) {
    put("  traceback:\n");
    for (int32_t i = trace_depth - 1; i >= 0; --i) {
      if (frames[i].count == 1)
        put("  - %s called from ...\n", frames[i].name);
      else
        put("  - %d * %s called from ...\n\n", frames[i].count, frames[i].name);
    }
    put("  - main.\n");
  }
  put("\n\n");
}

}  // namespace tiv::frame

using namespace tiv::frame;

extern "C" {

// A name of more than 79 characters is cut to its first 79; a nil name counts as empty.
void zv_begin(const char* name) noexcept {
  if (!trace_on) return;
  if (name == nullptr) name = "";
  if (trace_depth >= 1 && same_name(frames[trace_depth - 1].name, name)) {
    // The count has no upper limit in principle; it stops at the largest 32-bit value.
    if (frames[trace_depth - 1].count < INT32_MAX) ++frames[trace_depth - 1].count;
    return;
  }
  if (trace_depth >= kTraceDepthMax) {
    trace_on = false;
    zv_error("zv_begin: runtime stack overflow", nullptr, nullptr, kSource, __LINE__);
    return;
  }
  TraceFrame& frame = frames[trace_depth];
  std::strncpy(frame.name, name, kTraceNameMax);
  frame.name[kTraceNameMax] = '\0';
  frame.count = 1;
  ++trace_depth;
}

void zv_end(void) noexcept {
  if (!trace_on) return;
  if (trace_depth > 0) {
    if (frames[trace_depth - 1].count >= 2)
      --frames[trace_depth - 1].count;
    else
      --trace_depth;
    return;
  }
  tiv::platform::show_message_box("MISSMATCH WITH BEGIN-END-BRACKET:\n", "  END without BEGIN!\n\n");
  LogRecord log;
  log.put("> MISSMATCH WITH BEGIN-END-BRACKET:\n");
  log.put("  END without BEGIN!\n\n");
}

}  // extern "C"
