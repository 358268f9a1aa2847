/* Tivlib: first-in-first-out queue of opaque words. */
#ifndef TIVLIB_QUEUE_H
#define TIVLIB_QUEUE_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

typedef struct queue_handle queue_handle;

/* A nil queue is not a valid argument to any of these. */
TIV_API queue_handle *queue_open(void) TIV_NOEXCEPT;
TIV_API void queue_post(queue_handle *queue, intptr_t value) TIV_NOEXCEPT;
TIV_API intptr_t queue_get(queue_handle *queue) TIV_NOEXCEPT;
TIV_API intptr_t queue_look(queue_handle *queue) TIV_NOEXCEPT;
TIV_API void queue_clear(queue_handle *queue) TIV_NOEXCEPT;
TIV_API void queue_close(queue_handle *queue) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_QUEUE_H */
