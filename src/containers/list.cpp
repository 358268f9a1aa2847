// Intrusive doubly linked lists.
//
// The list owns nothing: elements and descriptor belong to the caller, and every operation
// only rewrites links. Insertion and removal are constant time and never allocate. The only
// checks are the three reported ones (nil descriptor for list_init, a position whose links
// disagree with the descriptor on insertion); everything else trusts the caller, apart from
// nil descriptors, elements and callbacks, which make an operation do nothing (or give nil)
// instead of faulting.
#include <tivlib/list.h>
#include <tivlib/zv.h>

#include <cstddef>

#include "containers/list_links.h"

static_assert(offsetof(listdescriptor, count) == 0);
static_assert(offsetof(listdescriptor, first) == sizeof(void *));
static_assert(offsetof(listdescriptor, last) == 2 * sizeof(void *));
static_assert(offsetof(list_links, prev) == 0);
static_assert(offsetof(list_links, next) == sizeof(void *));

namespace {

using tiv::containers::links;

constexpr const char *kSource = "List";

// Makes `element` the only element of the empty `list`.
void make_only(listdescriptor *list, void *element) noexcept {
    links(element)->prev = nullptr;
    links(element)->next = nullptr;
    list->first = element;
    list->last = element;
    list->count = 1;
}

// One direction of a list: the link that leads that way, the link that leads back, and the
// end of the descriptor that lies that way.
struct Direction {
    void *list_links::*toward;
    void *list_links::*back;
    void *listdescriptor::*end;
};
constexpr Direction kForward{&list_links::next, &list_links::prev, &listdescriptor::last};
constexpr Direction kBackward{&list_links::prev, &list_links::next, &listdescriptor::first};

// Walks from `from` along `step` and gives the first element that `match` accepts with exactly
// 1. The walk stops after trying `to` (nil: never stops early). The link is read after match
// returns, so match must leave the element in the list.
void *search(void *from, const void *to, list_match_fn match, intptr_t key,
             void *list_links::*step) noexcept {
    if (match == nullptr) return nullptr;
    for (void *e = from; e != nullptr;) {
        if (match(e, key) == 1) return e;
        if (e == to) return nullptr;
        e = links(e)->*step;
    }
    return nullptr;
}

// Visits from `from` along `step`, reading the link before calling visit, so visit may unlink
// or free its element.
void traverse(void *from, list_visit_fn visit, intptr_t key, void *list_links::*step) noexcept {
    if (visit == nullptr) return;
    for (void *e = from; e != nullptr;) {
        void *following = links(e)->*step;
        visit(e, key);
        e = following;
    }
}

// Links `element` next to `position` on the side `way` (nil position: at that end of the
// list). A position whose link toward that side is nil though the descriptor's end is not the
// position is reported with `disorder` and nothing changes.
void insert(listdescriptor *list, void *position, void *element, const Direction &way,
            const char *disorder) noexcept {
    if (list == nullptr || element == nullptr) return;
    if (position == nullptr) {
        if (list->count == 0) {
            make_only(list, element);
            return;
        }
        links(element)->*way.toward = nullptr;
        links(element)->*way.back = list->*way.end;
        links(list->*way.end)->*way.toward = element;
        list->*way.end = element;
        ++list->count;
        return;
    }
    void *neighbour = links(position)->*way.toward;
    if (neighbour == nullptr && list->*way.end != position) {
        zv_error(disorder, nullptr, nullptr, kSource, __LINE__);
        return;
    }
    links(element)->*way.toward = neighbour;
    links(element)->*way.back = position;
    links(position)->*way.toward = element;
    if (neighbour != nullptr)
        links(neighbour)->*way.back = element;
    else
        list->*way.end = element;
    ++list->count;
}

}  // namespace

extern "C" {

void list_init(listdescriptor *list) noexcept {
    if (list == nullptr) {
        zv_error("list_open: invalid listdescriptor", nullptr, nullptr, kSource, __LINE__);
        return;
    }
    list->count = 0;
    list->first = nullptr;
    list->last = nullptr;
}

void list_insert_before(listdescriptor *list, void *position, void *element) noexcept {
    insert(list, position, element, kBackward, "list_insert_before: list is not in order");
}

void list_insert_after(listdescriptor *list, void *position, void *element) noexcept {
    insert(list, position, element, kForward, "list_insert_after: list is not in order");
}

// Unlinks `element` from its neighbours (or the descriptor's ends). The element keeps its own
// links, so list_next_elem on it still gives the old neighbour.
void list_delete(listdescriptor *list, void *element) noexcept {
    if (list == nullptr || element == nullptr) return;
    void *before = links(element)->prev;
    void *behind = links(element)->next;
    if (before != nullptr)
        links(before)->next = behind;
    else
        list->first = behind;
    if (behind != nullptr)
        links(behind)->prev = before;
    else
        list->last = before;
    --list->count;
}

void list_free(listdescriptor *list, void *element, list_destroy_fn destroy) noexcept {
    if (list == nullptr || element == nullptr) return;
    list_delete(list, element);
    if (destroy != nullptr) destroy(element);
}

// Destroys every element (reading each `next` first) and leaves the descriptor zeroed. With no
// destroy the elements are merely forgotten and keep their links.
void list_free_all(listdescriptor *list, list_destroy_fn destroy) noexcept {
    if (list == nullptr) return;
    if (destroy != nullptr) {
        for (void *e = list->first; e != nullptr;) {
            void *next = links(e)->next;
            destroy(e);
            e = next;
        }
    }
    list->count = 0;
    list->first = nullptr;
    list->last = nullptr;
}

void *list_search(const listdescriptor *list, list_match_fn match, intptr_t key) noexcept {
    if (list == nullptr) return nullptr;
    return search(list->first, nullptr, match, key, &list_links::next);
}

void *list_search_from(const listdescriptor *, void *from, list_match_fn match,
                       intptr_t key) noexcept {
    return search(from, nullptr, match, key, &list_links::next);
}

void *list_search_to(const listdescriptor *list, void *to, list_match_fn match,
                     intptr_t key) noexcept {
    if (list == nullptr) return nullptr;
    return search(list->first, to, match, key, &list_links::next);
}

void *list_search_from_to(const listdescriptor *, void *from, void *to, list_match_fn match,
                          intptr_t key) noexcept {
    return search(from, to, match, key, &list_links::next);
}

void *list_search_backward(const listdescriptor *list, list_match_fn match,
                           intptr_t key) noexcept {
    if (list == nullptr) return nullptr;
    return search(list->last, nullptr, match, key, &list_links::prev);
}

void list_traverse(const listdescriptor *list, list_visit_fn visit, intptr_t key) noexcept {
    if (list != nullptr) traverse(list->first, visit, key, &list_links::next);
}

void list_traverse_backward(const listdescriptor *list, list_visit_fn visit,
                            intptr_t key) noexcept {
    if (list != nullptr) traverse(list->last, visit, key, &list_links::prev);
}

// Counts from 1 by following links; count is not consulted. Numbers of 1 or less give first.
void *list_get_element_by_number(const listdescriptor *list, int32_t number) noexcept {
    if (list == nullptr) return nullptr;
    void *e = list->first;
    for (int32_t i = 1; i < number && e != nullptr; ++i) e = links(e)->next;
    return e;
}

void *list_next_elem(const void *element) noexcept {
    return element == nullptr ? nullptr : links(element)->next;
}

void *list_prev_elem(const void *element) noexcept {
    return element == nullptr ? nullptr : links(element)->prev;
}

int32_t list_isinlist(const listdescriptor *list, const void *element) noexcept {
    if (list == nullptr || element == nullptr) return 0;
    for (const void *e = list->first; e != nullptr; e = links(e)->next)
        if (e == element) return 1;
    return 0;
}

}  // extern "C"
