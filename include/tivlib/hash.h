/* Tivlib: string-keyed tables with chained scopes.
 *
 * A table has a fixed prime number of slots (open addressing, no growth) and holds one word per
 * name. A table may be opened on top of a parent: lookups search the table and all its
 * ancestors and tell which table answered, while writes go to the table at hand. Values and
 * table ids are pointer-wide words that the table never interprets. Slot indexes run from 0 to
 * the size minus 1; -1 means "none" (nil argument, not found, full table, no memory). */
#ifndef TIVLIB_HASH_H
#define TIVLIB_HASH_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

typedef struct hash_table hash_table;

/* Gives any 32-bit number except the most negative one for a key. */
typedef int32_t (*hash_function_fn)(const char *key);

/* Opens a table with the smallest odd prime number of slots (at least 3) not below size. A nil
 * function takes the parent's, or the default (sum of the key's bytes as signed chars). Gives
 * nil if memory ran out. */
TIV_API hash_table *hash_open(intptr_t id, int32_t size, hash_function_fn function,
                              hash_table *parent) TIV_NOEXCEPT;
/* Frees the table unless other open tables have it as parent: close a chain inside out. */
TIV_API void hash_close(hash_table *table) TIV_NOEXCEPT;
/* Forgets every name; the table stays open with its parent, size and id. */
TIV_API void hash_reset(hash_table *table) TIV_NOEXCEPT;

/* Stores or replaces the value of name in this table (never in a parent). */
TIV_API int32_t hash_put(hash_table *table, const char *name, intptr_t value) TIV_NOEXCEPT;
/* Searches the table and its ancestors; on a hit stores the value and the id of the table that
 * holds it (either pointer may be nil) and gives the slot index in that table. */
TIV_API int32_t hash_get(hash_table *table, const char *name, intptr_t *value,
                         intptr_t *id) TIV_NOEXCEPT;
/* Reads one slot: *name receives a heap copy of its name (free with heap_free; nil if no copy
 * could be made) and *value its value. A free slot or bad index gives -1 and a nil *name. */
TIV_API int32_t hash_get_index(hash_table *table, int32_t index, char **name,
                               intptr_t *value) TIV_NOEXCEPT;
/* Frees the slot of name (or of index) in this table; leaves no marker behind. */
TIV_API int32_t hash_remove_name(hash_table *table, const char *name) TIV_NOEXCEPT;
TIV_API int32_t hash_remove_index(hash_table *table, int32_t index) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_HASH_H */
