// Last-in-first-out stack of opaque words. Every operation accepts a nil stack.
#include <tivlib/heap.h>
#include <tivlib/stack.h>

#include "frame/word_chain.h"

using tiv::frame::WordNode;

// top is the newest node, nil when the stack is empty.
struct stack_handle {
  WordNode* top;
};

extern "C" {

stack_handle* stack_open(void) noexcept {
  return static_cast<stack_handle*>(heap_calloc(1, sizeof(stack_handle)));
}

// A value whose node can't be allocated is lost without a word.
void stack_push(stack_handle* stack, intptr_t value) noexcept {
  if (stack == nullptr) return;
  if (WordNode* node = tiv::frame::new_word_node(value, stack->top)) stack->top = node;
}

intptr_t stack_pop(stack_handle* stack) noexcept {
  if (stack == nullptr || stack->top == nullptr) return 0;
  return tiv::frame::take_first_word(stack->top);
}

intptr_t stack_get(stack_handle* stack) noexcept {
  if (stack == nullptr || stack->top == nullptr) return 0;
  return stack->top->value;
}

void stack_close(stack_handle* stack) noexcept {
  if (stack == nullptr) return;
  tiv::frame::free_word_chain(stack->top);
  heap_free(stack);
}

}  // extern "C"
