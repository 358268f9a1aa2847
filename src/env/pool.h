// Memory of one root environment: elements, blocks and texts.
//
// A tree is many small pieces that mostly live as long as the tree. The pool serves them by
// bumping a pointer through chunks taken from heap_malloc, keeps given-back pieces in free
// lists by size (8-byte classes up to kSmallMax), and passes larger pieces straight to
// heap_malloc, linked so that reset() finds them. reset() returns everything at once, which
// is how a root's close and a fresh read throw a whole tree away.
#pragma once

#include <cstddef>

namespace tiv::env {

class Pool {
 public:
  Pool() = default;
  ~Pool() { reset(); }
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

  // A piece of at least size bytes, 8-aligned; nullptr when memory is out.
  void* allocate(std::size_t size) noexcept;
  // Gives back a piece from allocate() of the same size.
  void release(void* piece, std::size_t size) noexcept;
  // Gives back every piece at once.
  void reset() noexcept;

 private:
  static constexpr std::size_t kGranule = 8;
  static constexpr std::size_t kSmallMax = 512;
  static constexpr std::size_t kClasses = kSmallMax / kGranule + 1;
  static constexpr std::size_t kFirstChunk = 4096;
  static constexpr std::size_t kLargestChunk = std::size_t{1} << 20;

  struct FreePiece { FreePiece* next; };
  struct Chunk { Chunk* next; std::size_t size; };
  struct Large { Large* prev; Large* next; };

  void* refill(std::size_t rounded) noexcept;

  FreePiece* free_[kClasses] = {};
  Chunk* chunks_ = nullptr;
  char* bump_ = nullptr;
  char* bump_end_ = nullptr;
  Large* large_ = nullptr;
  std::size_t next_chunk_ = kFirstChunk;
};

}  // namespace tiv::env
