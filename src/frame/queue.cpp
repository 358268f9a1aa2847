// First-in-first-out queue of opaque words. The queue owns its nodes, not what the values
// point to.
#include <tivlib/heap.h>
#include <tivlib/queue.h>
#include <tivlib/zv.h>

#include "frame/word_chain.h"

using tiv::frame::WordNode;

namespace {
constexpr const char* kSource = "Queue";
}  // namespace

// head is nil when the queue is empty; tail has a meaning only while head is not nil.
struct queue_handle {
  WordNode* head;
  WordNode* tail;
};

extern "C" {

// When memory is out, queue_open reports and gives nil, and queue_post reports and loses the
// value; a nil queue is taken as an empty one by every operation.
queue_handle* queue_open(void) noexcept {
  auto* queue = static_cast<queue_handle*>(heap_calloc(1, sizeof(queue_handle)));
  if (queue == nullptr) zv_error("queue_open: out of space", nullptr, nullptr, kSource, __LINE__);
  return queue;
}

void queue_post(queue_handle* queue, intptr_t value) noexcept {
  if (queue == nullptr) return;
  WordNode* node = tiv::frame::new_word_node(value, nullptr);
  if (node == nullptr) {
    zv_error("queue_post: out of space", "value has been lost", nullptr, kSource, __LINE__);
    return;
  }
  if (queue->head == nullptr)
    queue->head = node;
  else
    queue->tail->next = node;
  queue->tail = node;
}

intptr_t queue_get(queue_handle* queue) noexcept {
  if (queue == nullptr || queue->head == nullptr) return 0;
  return tiv::frame::take_first_word(queue->head);
}

intptr_t queue_look(queue_handle* queue) noexcept {
  if (queue == nullptr || queue->head == nullptr) return 0;
  return queue->head->value;
}

void queue_clear(queue_handle* queue) noexcept {
  if (queue == nullptr) return;
  tiv::frame::free_word_chain(queue->head);
  queue->head = nullptr;
  queue->tail = nullptr;
}

void queue_close(queue_handle* queue) noexcept {
  if (queue == nullptr) return;
  tiv::frame::free_word_chain(queue->head);
  heap_free(queue);
}

}  // extern "C"
