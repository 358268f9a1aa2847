/* Tivlib: sorting of vectors and of intrusive lists.
 *
 * The vector sorts work in place with no heap memory and are not stable. The typed sorts order
 * ascending; a NaN orders after every number (NaNs tie among themselves). The _by_index forms
 * leave the vector alone and fill index with n pointers to its elements in ascending order of
 * their values. A count of 0 or less changes nothing. */
#ifndef TIVLIB_SORT_H
#define TIVLIB_SORT_H

#include <tivlib/types.h>
#include <tivlib/list.h>

TIV_BEGIN_DECLS

/* Vector comparison: negative if a orders before b, 0 for a tie, positive if behind. */
typedef int32_t (*sort_compare_fn)(const void *a, const void *b);
/* List comparison: 1 if placed orders before placing in direction 1, 2 if it orders before in
 * the other direction, any other value for a tie. */
typedef int32_t (*sort_list_compare_fn)(void *placed, void *placing);

TIV_API void sort_dvector(double *vector, int32_t n) TIV_NOEXCEPT;
TIV_API void sort_dvector_by_index(const double *vector, const double **index, int32_t n) TIV_NOEXCEPT;
TIV_API void sort_lvector(int32_t *vector, int32_t n) TIV_NOEXCEPT;
TIV_API void sort_lvector_by_index(const int32_t *vector, const int32_t **index, int32_t n) TIV_NOEXCEPT;
TIV_API void sort_quick(void *vector, uint32_t n, uint32_t size, sort_compare_fn compare) TIV_NOEXCEPT;

/* Insertion sort by relinking: direction 1 uses result 1 as "before", every other direction
 * result 2. Of tying elements the one that came last ends first. Not reentrant. */
TIV_API void sort_list(listdescriptor *list, int32_t direction, sort_list_compare_fn compare) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_SORT_H */
