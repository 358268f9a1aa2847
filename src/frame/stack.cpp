// Last-in-first-out stack of opaque words. Every operation accepts a nil stack.
#include <tivlib/heap.h>
#include <tivlib/stack.h>

namespace {

struct stack_node {
  intptr_t value;
  stack_node* next;
};

}  // namespace

// top is the newest node, nil when the stack is empty.
struct stack_handle {
  stack_node* top;
};

extern "C" {

stack_handle* stack_open(void) noexcept {
  return static_cast<stack_handle*>(heap_calloc(1, sizeof(stack_handle)));
}

// A value whose node can't be allocated is lost without a word.
void stack_push(stack_handle* stack, intptr_t value) noexcept {
  if (stack == nullptr) return;
  auto* node = static_cast<stack_node*>(heap_malloc(sizeof(stack_node)));
  if (node == nullptr) return;
  node->value = value;
  node->next = stack->top;
  stack->top = node;
}

intptr_t stack_pop(stack_handle* stack) noexcept {
  if (stack == nullptr || stack->top == nullptr) return 0;
  stack_node* node = stack->top;
  const intptr_t value = node->value;
  stack->top = node->next;
  heap_free(node);
  return value;
}

intptr_t stack_get(stack_handle* stack) noexcept {
  if (stack == nullptr || stack->top == nullptr) return 0;
  return stack->top->value;
}

void stack_close(stack_handle* stack) noexcept {
  if (stack == nullptr) return;
  while (stack->top != nullptr) stack_pop(stack);
  heap_free(stack);
}

}  // extern "C"
