// Building and freeing the element tree; see tree.h.
#include "env/tree.h"

#include <cstring>

#include "env/name_index.h"

namespace tiv::env {

namespace {

std::size_t element_size(std::size_t name_length) { return sizeof(Element) + name_length + 1; }

void release_text(Store& store, Element* e) noexcept {
  if (e->kind == kData && e->value.text != nullptr) store.pool.release(e->value.text, e->text_size);
  e->value.text = nullptr;
  e->text_size = 0;
}

// Frees e and every sibling behind it, with everything below them. Child lists are spliced
// into the walk instead of recursing, so any depth of nesting costs no stack.
void destroy_chain(Store& store, Element* e) noexcept {
  while (e != nullptr) {
    Element* next = e->next;
    if (e->kind == kBlock && e->value.child != nullptr) {
      Block* b = e->value.child;
      if (b->first != nullptr) {
        b->last->next = next;
        next = b->first;
      }
      store.pool.release(b, sizeof(Block));
    } else {
      release_text(store, e);
    }
    store.pool.release(e, element_size(e->name_length()));
    e = next;
  }
}

}  // namespace

int32_t kind_status(const Element* e) noexcept {
  switch (e->kind) {
    case kExternal: return ENV_IS_EXTERNAL;
    case kData: return ENV_IS_DATA;
    default: return ENV_IS_BLOCK;
  }
}

Element* new_element(Store& store, std::string_view name) noexcept {
  auto* e = static_cast<Element*>(store.pool.allocate(element_size(name.size())));
  if (e == nullptr) return nullptr;
  e->kind = kExternal;
  e->name_size = name.size() < Element::kNameSizeUnknown ? static_cast<uint16_t>(name.size())
                                                         : Element::kNameSizeUnknown;
  e->text_size = 0;
  e->value.word = 0;
  e->next = nullptr;
  e->block = nullptr;
  if (!name.empty()) std::memcpy(e->name(), name.data(), name.size());
  e->name()[name.size()] = '\0';
  return e;
}

Block* new_block(Store& store, Element* owner) noexcept {
  auto* b = static_cast<Block*>(store.pool.allocate(sizeof(Block)));
  if (b == nullptr) return nullptr;
  b->count = 0;
  b->first = b->last = nullptr;
  b->owner = owner;
  return b;
}

void append(Block* b, Element* e) noexcept {
  e->next = nullptr;
  e->block = b->owner != nullptr ? b : nullptr;
  if (b->last != nullptr) b->last->next = e;
  else b->first = e;
  b->last = e;
  ++b->count;
}

void clear_value(Store& store, Element* e) noexcept {
  if (e->kind == kBlock) {
    if (e->value.child != nullptr) {
      clear_block(store, e->value.child);
      store.pool.release(e->value.child, sizeof(Block));
    }
  } else {
    release_text(store, e);
  }
  e->kind = kExternal;
  e->value.word = 0;
}

bool set_text(Store& store, Element* e, std::string_view text) noexcept {
  auto* copy = static_cast<char*>(store.pool.allocate(text.size() + 1));
  if (copy == nullptr) return false;
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  clear_value(store, e);
  e->kind = kData;
  e->value.text = copy;
  e->text_size = static_cast<uint32_t>(text.size() + 1);
  return true;
}

void make_block(Store& store, Element* e) noexcept {
  if (e->kind == kBlock) return;
  clear_value(store, e);
  e->kind = kBlock;
  e->value.child = nullptr;
}

bool ensure_child_block(Store& store, Element* e) noexcept {
  if (e->value.child != nullptr) return true;
  e->value.child = new_block(store, e);
  return e->value.child != nullptr;
}

void destroy(Store& store, Element* e) noexcept {
  if (e == nullptr) return;
  ++store.reshapes;
  e->next = nullptr;
  destroy_chain(store, e);
}

void free_element(Store& store, Block* b, Element* before, Element* e) noexcept {
  if (before != nullptr) before->next = e->next;
  else b->first = e->next;
  if (b->last == e) b->last = before;
  --b->count;
  destroy(store, e);
}

Element* predecessor(const Block* b, const Element* e) noexcept {
  Element* before = nullptr;
  for (Element* x = b->first; x != nullptr && x != e; x = x->next) before = x;
  return before;
}

Store::~Store() { drop_name_indexes(*this); }

uint64_t next_store_serial() noexcept {
  static uint64_t g_store_serials = 0;
  return ++g_store_serials;
}

Element* nth_child(const Store& store, const Block* b, int32_t pos) noexcept {
  // The last answer, valid while the same store keeps the shape of its lists.
  static struct {
    uint64_t serial = 0;
    uint64_t reshapes = 0;
    const Block* block = nullptr;
    int32_t pos = 0;
    Element* element = nullptr;
  } g_last;
  if (b == nullptr || pos < 1) return nullptr;
  Element* e = nullptr;
  if (g_last.serial == store.serial && g_last.reshapes == store.reshapes && g_last.block == b &&
      g_last.element != nullptr && (pos == g_last.pos || pos == g_last.pos + 1)) {
    e = pos == g_last.pos ? g_last.element : g_last.element->next;
  } else {
    e = b->first;
    for (int32_t i = 1; e != nullptr && i < pos; ++i) e = e->next;
  }
  g_last = {store.serial, store.reshapes, b, pos, e};
  return e;
}

void clear_block(Store& store, Block* b) noexcept {
  ++store.reshapes;
  destroy_chain(store, b->first);
  b->first = b->last = nullptr;
  b->count = 0;
}

}  // namespace tiv::env
