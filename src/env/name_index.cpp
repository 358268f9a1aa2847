#include "env/name_index.h"

#include <functional>
#include <memory>
#include <new>
#include <unordered_map>
#include <vector>

namespace tiv::env {

namespace {

std::string_view name_of(const Element* e) { return {e->name(), e->name_length()}; }

// The names of one block: an open-addressing table of the first child of each name, and the
// children of the names that repeat, in list order.
class BlockIndex {
 public:
  // Takes in the children behind the last one taken in.
  void extend(const Block* b) {
    for (Element* e = last_ != nullptr ? last_->next : b->first; e != nullptr; e = e->next) {
      add(e);
      last_ = e;
    }
  }

  bool lookup(std::string_view name, int32_t position, Element** found, int32_t* count) const {
    *found = nullptr;
    *count = 0;
    if (slots_.empty()) return true;
    for (std::size_t at = hash(name) & mask(); slots_[at] != nullptr; at = (at + 1) & mask()) {
      Element* first = slots_[at];
      if (name_of(first) != name) continue;
      const auto more = repeats_.find(first);
      if (more == repeats_.end()) {
        *count = 1;
        if (position == 1) *found = first;
      } else {
        *count = static_cast<int32_t>(more->second.size());
        if (position <= *count) *found = more->second[static_cast<std::size_t>(position - 1)];
      }
      return true;
    }
    return true;
  }

 private:
  static std::size_t hash(std::string_view name) { return std::hash<std::string_view>{}(name); }
  std::size_t mask() const { return slots_.size() - 1; }

  void add(Element* e) {
    if ((names_ + 1) * 2 > slots_.size()) grow();
    const std::string_view name = name_of(e);
    std::size_t at = hash(name) & mask();
    for (; slots_[at] != nullptr; at = (at + 1) & mask()) {
      Element* first = slots_[at];
      if (name_of(first) != name) continue;
      auto& list = repeats_[first];
      if (list.empty()) list.push_back(first);
      list.push_back(e);
      return;
    }
    slots_[at] = e;
    ++names_;
  }

  void grow() {
    std::vector<Element*> old(slots_.empty() ? 64 : slots_.size() * 2, nullptr);
    old.swap(slots_);
    for (Element* first : old) {
      if (first == nullptr) continue;
      std::size_t at = hash(name_of(first)) & mask();
      while (slots_[at] != nullptr) at = (at + 1) & mask();
      slots_[at] = first;
    }
  }

  std::vector<Element*> slots_;
  std::size_t names_ = 0;
  std::unordered_map<Element*, std::vector<Element*>> repeats_;
  Element* last_ = nullptr;
};

}  // namespace

// Every index of one store, valid for one value of its reshape count.
struct NameIndexes {
  uint64_t reshapes = 0;
  std::unordered_map<const Block*, BlockIndex> blocks;
};

bool indexed_child(Store& store, Block* b, std::string_view name, int32_t position,
                   Element** found, int32_t* count) noexcept {
  if (b == nullptr || b->count < kIndexedFrom) return false;
  try {
    if (store.name_indexes == nullptr) {
      store.name_indexes = new NameIndexes{store.reshapes, {}};
    } else if (store.name_indexes->reshapes != store.reshapes) {
      store.name_indexes->blocks.clear();
      store.name_indexes->reshapes = store.reshapes;
    }
    BlockIndex& index = store.name_indexes->blocks[b];
    index.extend(b);
    return index.lookup(name, position, found, count);
  } catch (...) {
    drop_name_indexes(store);
    return false;
  }
}

void drop_name_indexes(Store& store) noexcept {
  delete store.name_indexes;
  store.name_indexes = nullptr;
}

}  // namespace tiv::env
