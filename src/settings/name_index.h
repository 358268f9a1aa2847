// The first node of each name in a list of the settings in memory (loaded sections of a
// handle, entries of a section), so that a lookup by name costs the same at any length of the
// list. The list keeps its file order; the index only points into it, built at the first
// lookup in a list of kIndexedFrom nodes or more, kept up to date by appends, and built again
// after any other change. Names compare exactly (as str_eq does); the first match wins.
#pragma once

#include <tivlib/list.h>
#include <tivlib/str.h>

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace tiv::settings {

inline constexpr int32_t kIndexedFrom = 16;

template <class Node>  // a list element with `next` and an owned `name`
class FirstByName {
 public:
  // The first node of `list` named `name`, or none.
  Node* find(const listdescriptor& list, const char* name) noexcept {
    if (list.count >= kIndexedFrom && (valid_ || build(list))) {
      const auto it = first_.find(std::string_view(name));
      return it != first_.end() ? it->second : nullptr;
    }
    for (auto* n = static_cast<Node*>(list.first); n != nullptr; n = n->next)
      if (str_eq(n->name, name)) return n;
    return nullptr;
  }
  // Node was appended to the list: it is the first of its name unless one stands before it.
  void appended(Node* node) noexcept {
    if (!valid_) return;
    try {
      first_.emplace(std::string_view(node->name), node);
    } catch (...) {
      valid_ = false;
    }
  }
  // Any other change (a removal, a rename, an insertion in front): built again when needed.
  void invalidate() noexcept { valid_ = false; }

 private:
  bool build(const listdescriptor& list) noexcept {
    try {
      first_.clear();
      for (auto* n = static_cast<Node*>(list.first); n != nullptr; n = n->next)
        first_.emplace(std::string_view(n->name), n);
      valid_ = true;
    } catch (...) {
      first_.clear();
      valid_ = false;
    }
    return valid_;
  }

  std::unordered_map<std::string_view, Node*> first_;
  bool valid_ = false;
};

}  // namespace tiv::settings
