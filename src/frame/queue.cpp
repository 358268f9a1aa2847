// First-in-first-out queue of opaque words. The queue owns its nodes, not what the values
// point to.
#include <tivlib/heap.h>
#include <tivlib/queue.h>
#include <tivlib/zv.h>

namespace {

constexpr const char* kSource = "Queue";

struct queue_node {
  intptr_t value;
  queue_node* next;
};

void free_nodes(queue_node* node) {
  while (node != nullptr) {
    queue_node* next = node->next;
    heap_free(node);
    node = next;
  }
}

}  // namespace

// head is nil when the queue is empty; tail has a meaning only while head is not nil.
struct queue_handle {
  queue_node* head;
  queue_node* tail;
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
  auto* node = static_cast<queue_node*>(heap_malloc(sizeof(queue_node)));
  if (node == nullptr) {
    zv_error("queue_post: out of space", "value has been lost", nullptr, kSource, __LINE__);
    return;
  }
  node->value = value;
  node->next = nullptr;
  if (queue->head == nullptr)
    queue->head = node;
  else
    queue->tail->next = node;
  queue->tail = node;
}

intptr_t queue_get(queue_handle* queue) noexcept {
  if (queue == nullptr || queue->head == nullptr) return 0;
  queue_node* node = queue->head;
  const intptr_t value = node->value;
  queue->head = node->next;
  heap_free(node);
  return value;
}

intptr_t queue_look(queue_handle* queue) noexcept {
  if (queue == nullptr || queue->head == nullptr) return 0;
  return queue->head->value;
}

void queue_clear(queue_handle* queue) noexcept {
  if (queue == nullptr) return;
  free_nodes(queue->head);
  queue->head = nullptr;
  queue->tail = nullptr;
}

void queue_close(queue_handle* queue) noexcept {
  if (queue == nullptr) return;
  free_nodes(queue->head);
  heap_free(queue);
}

}  // extern "C"
