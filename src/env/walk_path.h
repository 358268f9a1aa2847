// Paths that the walks generate: every component spells its position (name@N), so that a
// name made of digits stays a name and siblings of one name are told apart.
#pragma once

namespace tiv::env {

inline constexpr int kWalkPathMax = 79;  // characters of a generated path

// Writes prefix, the delimiter, name, the delimiter and position ("%s%s%s%s%ld"), or without
// a prefix name, the delimiter and position ("%s%s%ld"), into out (kWalkPathMax + 1 bytes).
// False, with out empty, if the result would not fit, or if name is empty or holds a delimiter
// character and so could not be found again by the path.
bool join_walk_path(char* out, const char* prefix, const char* name, long position) noexcept;

// Writes prefix, the delimiter and path ("%s%s%s"), or path alone without a prefix, into
// out (kWalkPathMax + 1 bytes). False, with out empty, if it would not fit.
bool join_full_path(char* out, const char* prefix, const char* path) noexcept;

}  // namespace tiv::env
