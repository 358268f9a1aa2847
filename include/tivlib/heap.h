/* Tivlib: allocation and the arena (many small pieces, freed all at once). */
#ifndef TIVLIB_HEAP_H
#define TIVLIB_HEAP_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

typedef struct heap_id heap_id; /* an arena: the address of its first block */

TIV_API void *heap_malloc(uint32_t size) TIV_NOEXCEPT;
TIV_API void *heap_calloc(uint32_t count, uint32_t size) TIV_NOEXCEPT;
TIV_API void *heap_realloc(void *block, uint32_t size) TIV_NOEXCEPT;
TIV_API void heap_free(void *block) TIV_NOEXCEPT;
TIV_API void heap_smart_free(void **ref) TIV_NOEXCEPT;

TIV_API heap_id *heap_open(int32_t cachesize, int32_t clear) TIV_NOEXCEPT;
TIV_API void heap_close(heap_id *id) TIV_NOEXCEPT;
TIV_API void *heap_allocate(heap_id *id, int32_t size) TIV_NOEXCEPT;
TIV_API void heap_deallocate(heap_id *id) TIV_NOEXCEPT;
TIV_API void heap_statistic(void) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_HEAP_H */
