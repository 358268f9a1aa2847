// The element tree of an environment and the handles that stand on it.
//
// A root owns a Store: its top-level block and the pool that every element, block and text
// of the tree comes from. An element owns its name (kept inline, right behind the record),
// its text if it is data and its child block if it is a block. Siblings form a singly linked
// list whose block header keeps count, first and last, so that appending is constant-time
// and count always equals the length of the list.
#pragma once

#include <tivlib/env.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "env/pool.h"

namespace tiv::env {

// Kinds of element, as stored in the element.
enum Kind : int16_t { kExternal = 0, kData = 1, kBlock = 2 };

struct Block;

// One node of the tree. The name follows the record in the same piece of memory; its length
// is kept beside the kind (kNameSizeUnknown for names too long to count there), so that
// writers and frees need not measure it.
struct Element {
  int16_t kind;
  uint16_t name_size;
  uint32_t text_size;  // bytes held for a data text, terminator included; 0 when none
  union {
    intptr_t word;     // external
    char* text;        // data
    Block* child;      // block: the child block, or none for an empty block
  } value;
  Element* next;       // next sibling
  Block* block;        // the block that holds this element; none for a section

  static constexpr uint16_t kNameSizeUnknown = UINT16_MAX;

  char* name() noexcept { return reinterpret_cast<char*>(this + 1); }
  const char* name() const noexcept { return reinterpret_cast<const char*>(this + 1); }
  std::size_t name_length() const noexcept {
    return name_size != kNameSizeUnknown ? name_size : std::strlen(name());
  }
};
static_assert(sizeof(Element) == 32, "an element record stays four words");
static_assert(sizeof(Element) % 8 == 0, "the inline name starts 8-aligned");

// The header of a sibling list.
struct Block {
  int32_t count;
  Element* first;
  Element* last;
  Element* owner;  // the element whose value this block is; none for a root's top level
};

// A number no store of this process had before.
uint64_t next_store_serial() noexcept;

// What a root owns. `reshapes` counts every change to a sibling list other than an append
// (an unlink, an insertion in front of an element, a list emptied): a walk that saw the same
// count before and after a step knows that the elements it passed are still where they were.
struct NameIndexes;  // see name_index.h
struct Store {
  Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;
  ~Store();

  Block top{};
  Pool pool;
  uint64_t reshapes = 0;
  uint64_t serial = next_store_serial();  // tells stores apart, even at one address
  NameIndexes* name_indexes = nullptr;    // of the large blocks, made when needed
};

// The body of a sub-environment.
struct Anchor {
  Element* element;  // where the handle stands
  env_handle* owner; // the handle it was opened from
};

}  // namespace tiv::env

// A root or sub-environment handle. The first seven fields are the handle as the family
// describes it; store points to the root's store (a sub-environment's elements live there)
// and anchor is the body of a sub-environment.
struct env_handle {
  int32_t is_subenv;
  void* body;                     // root: &store->top; sub-environment: &anchor
  tiv::env::Element* cursor;      // where the last lookup stopped
  int32_t status;
  int32_t open_count;             // handles standing on this one
  int32_t id;
  env_handle* parent;             // where failed lookups go on
  tiv::env::Store* store;
  tiv::env::Anchor anchor;
};

namespace tiv::env {

inline Block* top_block(env_handle* env) noexcept { return &env->store->top; }
inline Element* anchor_element(env_handle* env) noexcept { return env->anchor.element; }

// Status code from the element's kind: -3 external, -1 data, -2 block.
int32_t kind_status(const Element* e) noexcept;

// A new element with a copy of name, external with word 0, linked nowhere; none when memory
// is out.
Element* new_element(Store& store, std::string_view name) noexcept;
// A new empty child block owned by owner; none when memory is out.
Block* new_block(Store& store, Element* owner) noexcept;

// Appends e to b. Elements of the top level get no block reference.
void append(Block* b, Element* e) noexcept;

// Frees what the element's value holds (text or child block with all below it); the
// element is then external with word 0.
void clear_value(Store& store, Element* e) noexcept;
// Makes e data with a copy of text. False when memory is out (e is then unchanged).
bool set_text(Store& store, Element* e, std::string_view text) noexcept;
// Makes e an empty block (no child block) after freeing its value, if it is no block yet.
void make_block(Store& store, Element* e) noexcept;
// Gives e a child block if it has none. False when memory is out.
bool ensure_child_block(Store& store, Element* e) noexcept;

// Frees e and all below it; e must be linked nowhere.
void destroy(Store& store, Element* e) noexcept;
// Unlinks e from b, whose element before it is before (none if e is first), and frees it.
void free_element(Store& store, Block* b, Element* before, Element* e) noexcept;
// The element in front of e in b, or none; found by walking the list.
Element* predecessor(const Block* b, const Element* e) noexcept;
// Frees every element of b; b stays, empty.
void clear_block(Store& store, Block* b) noexcept;

// The pos-th element (from 1) of b, a list of store, or none. Reading the positions of a list
// one after the other costs a step each: the last answer is kept while the store's lists
// keep their shape.
Element* nth_child(const Store& store, const Block* b, int32_t pos) noexcept;

}  // namespace tiv::env
