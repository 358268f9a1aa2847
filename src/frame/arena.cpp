// The arena: a chain of equal blocks from which small pieces are cut by bumping a pointer.
// Nothing goes back to a block; all blocks are freed together by heap_close.
#include <tivlib/heap.h>
#include <tivlib/zv.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {
constexpr const char* kSource = "Heap";
constexpr int64_t kAlignment = 8;
}  // namespace

// One block of an arena; its data area follows the header directly. The heap ID of an arena
// is the address of its first block. Invariants: cachesize and free are multiples of 8,
// next_free stays 8-aligned, free never rises, cachesize and clear are the same in all blocks.
struct heap_id {
  int32_t cachesize;  // bytes of the data area of every block of the arena
  int32_t free;       // bytes of this block not yet handed out
  int32_t clear;      // not 0: pieces handed out are zeroed
  char* next_free;    // next byte to hand out in this block
  heap_id* next;      // next block of the chain, nil in the last
};

static_assert(offsetof(heap_id, cachesize) == 0);
static_assert(offsetof(heap_id, free) == 4);
static_assert(offsetof(heap_id, clear) == 8);
static_assert(sizeof(heap_id) % kAlignment == 0, "the data area must start 8-aligned");

namespace {

constexpr int64_t round_up(int64_t size) { return (size + kAlignment - 1) / kAlignment * kAlignment; }

// The largest data area a block may have: its whole allocation must fit the 32-bit size of
// heap_malloc, and cachesize must fit its signed 32-bit field.
constexpr int64_t kMaxCacheSize =
    (INT32_MAX - static_cast<int64_t>(sizeof(heap_id))) / kAlignment * kAlignment;

char* data_of(heap_id* block) { return reinterpret_cast<char*>(block + 1); }

// A fresh block with an empty data area of cachesize bytes, or nil when memory is out.
heap_id* new_block(int32_t cachesize, int32_t clear) {
  auto* block = static_cast<heap_id*>(heap_malloc(static_cast<uint32_t>(sizeof(heap_id)) +
                                                  static_cast<uint32_t>(cachesize)));
  if (block == nullptr) return nullptr;
  block->cachesize = cachesize;
  block->free = cachesize;
  block->clear = clear;
  block->next_free = data_of(block);
  block->next = nullptr;
  return block;
}

// Cuts rounded bytes from block, which must have them.
char* cut(heap_id* block, int32_t rounded) {
  char* piece = block->next_free;
  block->free -= rounded;
  block->next_free += rounded;
  return piece;
}

}  // namespace

extern "C" {

// A negative cachesize, or one whose block would not fit a 32-bit size, is treated as
// memory out: nil with the "out of space" report.
heap_id* heap_open(int32_t cachesize, int32_t clear) noexcept {
  const int64_t rounded = round_up(cachesize);
  heap_id* block = nullptr;
  if (cachesize >= 0 && rounded <= kMaxCacheSize)
    block = new_block(static_cast<int32_t>(rounded), clear);
  if (block == nullptr) {
    zv_error("heap_open: out of space", nullptr, nullptr, kSource, __LINE__);
    return nullptr;
  }
  return block;
}

void heap_close(heap_id* id) noexcept {
  while (id != nullptr) {
    heap_id* next = id->next;
    heap_free(id);
    id = next;
  }
}

// A block serves a piece from the walk only while it keeps at least one byte more than the
// piece; a block added for a piece may end with free 0. A negative size is refused.
void* heap_allocate(heap_id* id, int32_t size) noexcept {
  if (id == nullptr) {
    zv_error("heap_allocate: incorrect ID for this heap", nullptr, nullptr, kSource, __LINE__);
    return nullptr;
  }
  if (size < 0) {
    zv_error("heap_allocate: negative parameter 'size'", nullptr, nullptr, kSource, __LINE__);
    return nullptr;
  }
  const int64_t rounded64 = round_up(size);
  if (rounded64 > id->cachesize) {
    zv_error("heap_allocate: parameter 'size' greater than cachesize", nullptr, nullptr, kSource,
             __LINE__);
    return nullptr;
  }
  const auto rounded = static_cast<int32_t>(rounded64);

  char* piece = nullptr;
  heap_id* last = id;
  for (heap_id* block = id; block != nullptr; block = block->next) {
    last = block;
    if (block->free > rounded) {
      piece = cut(block, rounded);
      break;
    }
  }
  if (piece == nullptr) {
    heap_id* block = new_block(last->cachesize, last->clear);
    if (block == nullptr) {
      zv_error("heap_allocate: out of space", nullptr, nullptr, kSource, __LINE__);
      return nullptr;
    }
    last->next = block;
    piece = cut(block, rounded);
  }
  if (id->clear != 0) std::memset(piece, 0, static_cast<size_t>(size));
  return piece;
}

void heap_deallocate(heap_id* id) noexcept {
  if (id == nullptr)
    zv_error("heap_deallocate: incorrect ID for this heap", nullptr, nullptr, kSource, __LINE__);
}

}  // extern "C"
