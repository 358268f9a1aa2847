// Chunked pool with size-class free lists; see pool.h.
#include "env/pool.h"

#include <tivlib/heap.h>

#include <cstdint>

namespace tiv::env {

namespace {
constexpr std::size_t round_up(std::size_t n, std::size_t g) { return (n + g - 1) / g * g; }

// Under AddressSanitizer every piece is its own heap block, so that a use after release is
// caught; fault-injection builds do the same, so that each piece is one allocation to fail.
#if defined(__SANITIZE_ADDRESS__) || defined(TIVLIB_FAULT_INJECTION)
constexpr bool kDirect = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kDirect = true;
#else
constexpr bool kDirect = false;
#endif
#else
constexpr bool kDirect = false;
#endif
}  // namespace

void* Pool::allocate(std::size_t size) noexcept {
  const std::size_t rounded = round_up(size == 0 ? 1 : size, kGranule);
  if (rounded > kSmallMax || kDirect) {
    if (rounded > UINT32_MAX - sizeof(Large)) return nullptr;
    auto* big = static_cast<Large*>(heap_malloc(static_cast<uint32_t>(rounded + sizeof(Large))));
    if (big == nullptr) return nullptr;
    big->prev = nullptr;
    big->next = large_;
    if (large_ != nullptr) large_->prev = big;
    large_ = big;
    return big + 1;
  }
  FreePiece*& list = free_[rounded / kGranule];
  if (list != nullptr) {
    FreePiece* piece = list;
    list = piece->next;
    return piece;
  }
  if (static_cast<std::size_t>(bump_end_ - bump_) >= rounded) {
    void* piece = bump_;
    bump_ += rounded;
    return piece;
  }
  return refill(rounded);
}

// Starts a new chunk (each twice the last, up to kLargestChunk) and serves from it. The rest
// of the old chunk is put on the free lists so that nothing is lost.
void* Pool::refill(std::size_t rounded) noexcept {
  const std::size_t header = round_up(sizeof(Chunk), kGranule);
  auto* chunk = static_cast<Chunk*>(heap_malloc(static_cast<uint32_t>(next_chunk_)));
  if (chunk == nullptr) return nullptr;
  while (static_cast<std::size_t>(bump_end_ - bump_) >= kGranule) {
    std::size_t left = static_cast<std::size_t>(bump_end_ - bump_);
    if (left > kSmallMax) left = kSmallMax;
    release(bump_, left);
    bump_ += left;
  }
  chunk->next = chunks_;
  chunk->size = next_chunk_;
  chunks_ = chunk;
  bump_ = reinterpret_cast<char*>(chunk) + header;
  bump_end_ = reinterpret_cast<char*>(chunk) + next_chunk_;
  if (next_chunk_ < kLargestChunk) next_chunk_ *= 2;
  void* piece = bump_;
  bump_ += rounded;
  return piece;
}

void Pool::release(void* piece, std::size_t size) noexcept {
  if (piece == nullptr) return;
  const std::size_t rounded = round_up(size == 0 ? 1 : size, kGranule);
  if (rounded > kSmallMax || kDirect) {
    Large* big = static_cast<Large*>(piece) - 1;
    if (big->prev != nullptr) big->prev->next = big->next;
    else large_ = big->next;
    if (big->next != nullptr) big->next->prev = big->prev;
    heap_free(big);
    return;
  }
  auto* node = static_cast<FreePiece*>(piece);
  node->next = free_[rounded / kGranule];
  free_[rounded / kGranule] = node;
}

void Pool::reset() noexcept {
  while (large_ != nullptr) {
    Large* next = large_->next;
    heap_free(large_);
    large_ = next;
  }
  while (chunks_ != nullptr) {
    Chunk* next = chunks_->next;
    heap_free(chunks_);
    chunks_ = next;
  }
  for (auto& list : free_) list = nullptr;
  bump_ = bump_end_ = nullptr;
  next_chunk_ = kFirstChunk;
}

}  // namespace tiv::env
