// The buffer of env_read_file and env_write_file.
#pragma once

#include <cstddef>
#include <cstdio>

namespace tiv::env {

// A zeroed buffer of 30000 bytes from heap_calloc, or half as much plus one, again and again,
// while memory is short (15001, 7501, ... down to 2). Gives none if even 2 bytes are refused.
// size receives the size that succeeded.
char* file_buffer(std::size_t& size) noexcept;

// Gives the stream a stdio buffer of kStreamBuffer bytes, so that the file buffer's 30000-byte
// reads and writes reach the system in few calls (each system call costs about as much as
// copying 30000 bytes). Gives that memory, from heap_malloc, for the caller to free with
// heap_free after fclose; gives none when memory is short, and the stream then keeps its
// default buffer. Must come before the first read or write.
constexpr std::size_t kStreamBuffer = std::size_t{1} << 20;
char* widen_stream_buffer(std::FILE* stream) noexcept;

}  // namespace tiv::env
