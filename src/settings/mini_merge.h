// The merge of a handle's memory into its settings file, written to out.
#pragma once

#include <cstdio>

#include <tivlib/fio.h>

#include "settings/mini_store.h"

namespace tiv::settings {

// Writes the new file content to out from the source in (nil when the file doesn't exist).
// Gives false if any write fell short.
bool merge(mini_file* handle, fio_handle* in, std::FILE* out);

}  // namespace tiv::settings
