// The scanner object and the internal entry that opens one with a keyword order prepared in
// advance (the calculator sorts its fixed table once, not for every expression).
#pragma once

#include <tivlib/scan.h>

#include <cstdint>

// The whole state of a scanner between calls. Fields keep the order of the public model.
// lookahead is the character read and not yet consumed; line and column are its position
// (column -1 until the first read). keyword_order lists positions of the caller's table so
// that the keywords they name ascend; it lives in the same heap block as the object, or
// points at a constant order owned by the opener.
struct scanner {
  scan_reader reader;
  int32_t lookahead;
  int32_t pending_dot;
  int32_t flags;
  const char* const* keywords;
  int32_t line;
  int32_t column;
  int32_t trace_id;
  int32_t keyword_count;
  const int32_t* keyword_order;
};

namespace tiv::language {

// Opens a scanner on a keyword table of count entries whose ascending order is given by
// order (count entries, kept by reference like the table). One heap block, nil if memory ran
// out.
scanner* open_scanner(scan_reader reader, int32_t flags, const char* const* keywords,
                      int32_t count, const int32_t* order) noexcept;

}  // namespace tiv::language
