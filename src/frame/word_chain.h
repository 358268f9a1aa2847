// Singly linked chains of opaque words, shared by the queue and the stack. Nodes come from
// heap_malloc and go back through heap_free; what the words point to is not the chain's.
#pragma once

#include <cstdint>

#include <tivlib/heap.h>

namespace tiv::frame {

struct WordNode {
  intptr_t value;
  WordNode* next;
};

// A new node holding value in front of next; nil when memory is out.
inline WordNode* new_word_node(intptr_t value, WordNode* next) {
  auto* node = static_cast<WordNode*>(heap_malloc(sizeof(WordNode)));
  if (node == nullptr) return nullptr;
  node->value = value;
  node->next = next;
  return node;
}

// Unlinks the first node of a non-empty chain, frees it and gives its value.
inline intptr_t take_first_word(WordNode*& head) {
  WordNode* node = head;
  const intptr_t value = node->value;
  head = node->next;
  heap_free(node);
  return value;
}

// Frees every node from node on.
inline void free_word_chain(WordNode* node) {
  while (node != nullptr) {
    WordNode* next = node->next;
    heap_free(node);
    node = next;
  }
}

}  // namespace tiv::frame
