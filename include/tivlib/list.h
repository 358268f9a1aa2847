/* Tivlib: intrusive doubly linked lists.
 *
 * The caller owns every element and the descriptor; the list allocates nothing and frees
 * nothing by itself. An element is any record whose first two fields are the links `prev` and
 * `next` (list_links is a ready head for such records). Insertion and removal take constant
 * time; only the searches, numbered access and list_isinlist walk the list. */
#ifndef TIVLIB_LIST_H
#define TIVLIB_LIST_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

/* The descriptor of one list. count is 0 exactly when first and last are nil; first has a nil
 * prev and last a nil next. A zero-filled descriptor is an initialised empty list. */
typedef struct listdescriptor {
    int32_t count;
    void *first;
    void *last;
} listdescriptor;

/* The two links every element starts with. */
typedef struct list_links {
    void *prev;
    void *next;
} list_links;

/* Callbacks. A match result of exactly 1 means found; every other value goes on. */
typedef int32_t (*list_match_fn)(void *element, intptr_t key);
typedef void (*list_visit_fn)(void *element, intptr_t key);
typedef void (*list_destroy_fn)(void *element);

/* Setting up and changing a list. A nil position puts the element at the front (before) or the
 * end (after). A position whose links disagree with the descriptor is reported to the log and
 * nothing changes. */
TIV_API void list_init(listdescriptor *list) TIV_NOEXCEPT;
TIV_API void list_insert_before(listdescriptor *list, void *position, void *element) TIV_NOEXCEPT;
TIV_API void list_insert_after(listdescriptor *list, void *position, void *element) TIV_NOEXCEPT;
TIV_API void list_delete(listdescriptor *list, void *element) TIV_NOEXCEPT;
TIV_API void list_free(listdescriptor *list, void *element, list_destroy_fn destroy) TIV_NOEXCEPT;
TIV_API void list_free_all(listdescriptor *list, list_destroy_fn destroy) TIV_NOEXCEPT;

/* Searches: each calls match element after element until it returns 1 and gives that element,
 * or nil when the range runs out. A nil from gives nil; a to the walk never meets (nil too)
 * lets the walk run to the end of the list. */
TIV_API void *list_search(const listdescriptor *list, list_match_fn match, intptr_t key) TIV_NOEXCEPT;
TIV_API void *list_search_from(const listdescriptor *list, void *from, list_match_fn match,
                               intptr_t key) TIV_NOEXCEPT;
TIV_API void *list_search_to(const listdescriptor *list, void *to, list_match_fn match,
                             intptr_t key) TIV_NOEXCEPT;
TIV_API void *list_search_from_to(const listdescriptor *list, void *from, void *to,
                                  list_match_fn match, intptr_t key) TIV_NOEXCEPT;
TIV_API void *list_search_backward(const listdescriptor *list, list_match_fn match,
                                   intptr_t key) TIV_NOEXCEPT;

/* Traversals fetch the next link before calling visit, so visit may unlink or free its element. */
TIV_API void list_traverse(const listdescriptor *list, list_visit_fn visit, intptr_t key) TIV_NOEXCEPT;
TIV_API void list_traverse_backward(const listdescriptor *list, list_visit_fn visit,
                                    intptr_t key) TIV_NOEXCEPT;

/* Numbered access counts from 1; a number of 1 or less gives first, nil past the end. */
TIV_API void *list_get_element_by_number(const listdescriptor *list, int32_t number) TIV_NOEXCEPT;
TIV_API void *list_next_elem(const void *element) TIV_NOEXCEPT;
TIV_API void *list_prev_elem(const void *element) TIV_NOEXCEPT;
TIV_API int32_t list_isinlist(const listdescriptor *list, const void *element) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_LIST_H */
