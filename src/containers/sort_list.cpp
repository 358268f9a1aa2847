// sort_list: insertion sort of an intrusive list by relinking, with no copying and no memory.
//
// Each element, taken from the front of the given list, is placed in front of the first
// already placed element that does not order before it. So of tying elements the one that
// came last ends first, in either direction. A list already in the requested order costs
// about n*n/2 comparisons; one in the opposite order n-1.
#include <tivlib/sort.h>

namespace {

// The comparison and direction of the sort in progress: process-wide, so only one list sort
// may run at a time and a comparison must not start another.
sort_list_compare_fn g_compare = nullptr;
int32_t g_before = 1;  // the comparison result that means "placed orders before placing"

// Stops the search at the first placed element that does not order before the placing one,
// which arrives as the key.
int32_t stops_before(void *placed, intptr_t placing) noexcept {
    return g_compare(placed, reinterpret_cast<void *>(placing)) != g_before ? 1 : 0;
}

}  // namespace

extern "C" {

void sort_list(listdescriptor *list, int32_t direction, sort_list_compare_fn compare) noexcept {
    if (list == nullptr || compare == nullptr) return;
    listdescriptor sorted;
    list_init(&sorted);
    g_compare = compare;
    g_before = direction == 1 ? 1 : 2;
    for (void *e = list->first; e != nullptr;) {
        void *next = list_next_elem(e);
        void *stop = list_search(&sorted, stops_before, reinterpret_cast<intptr_t>(e));
        if (stop != nullptr)
            list_insert_before(&sorted, stop, e);
        else
            list_insert_after(&sorted, nullptr, e);
        e = next;
    }
    list->count = sorted.count;
    list->first = sorted.first;
    list->last = sorted.last;
}

}  // extern "C"
