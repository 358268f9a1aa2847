// The trace file "trc" shared by all tracing scanners: created (emptied) when the first
// tracing scanner opens, closed when the last one closes.
#pragma once

#include <tivlib/scan.h>

#include <cstdint>

namespace tiv::language {

// Registers a tracing scanner and gives its trace id (the new number of tracing scanners).
int32_t trace_attach() noexcept;

// Unregisters a tracing scanner; the last one out closes the file.
void trace_detach() noexcept;

// Writes the record of one token. Does nothing while no trace file could be created.
void trace_write(int32_t id, int32_t kind, const scan_record& record) noexcept;

}  // namespace tiv::language
