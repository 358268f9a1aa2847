// Indexes of the child names of large blocks, for the exact steps of lookups by name: the
// position-th child of a name is found without passing the siblings in front of it.
//
// An index is made at the first exact step into a block of kIndexedFrom children or more. It
// follows appends (the children behind the last one indexed are taken in at the next step);
// any other change to the store's lists (a reshape: an unlink, an insertion in front, a list
// emptied) drops every index of the store, to be made again when needed. An index holds one
// pointer per slot of a table at most half full, and a list per name that repeats.
#pragma once

#include <cstdint>
#include <string_view>

#include "env/tree.h"

namespace tiv::env {

inline constexpr int32_t kIndexedFrom = 32;

// The position-th child (from 1) named `name` of b. Sets *found (none if there are fewer) and
// *count to the number of children of that name. False when b is not indexed (too small, or
// memory is out): the caller then walks the list.
bool indexed_child(Store& store, Block* b, std::string_view name, int32_t position,
                   Element** found, int32_t* count) noexcept;

// Frees the indexes of the store (when the store goes).
void drop_name_indexes(Store& store) noexcept;

}  // namespace tiv::env
