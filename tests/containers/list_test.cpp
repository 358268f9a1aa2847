#include <gtest/gtest.h>
#include <tivlib/heap.h>
#include <tivlib/list.h>

#include <regex>
#include <string>
#include <vector>

#include "test_dir.h"

namespace {

struct Node {
    void *prev;
    void *next;
    int value;
};

Node *junk() { return reinterpret_cast<Node *>(uintptr_t{0x10}); }

// Values by next from first; also checks that the descriptor and the back links agree.
std::vector<int> values(const listdescriptor &l) {
    std::vector<int> out;
    void *prev = nullptr;
    for (void *e = l.first; e != nullptr; e = static_cast<Node *>(e)->next) {
        EXPECT_EQ(static_cast<Node *>(e)->prev, prev);
        out.push_back(static_cast<Node *>(e)->value);
        prev = e;
    }
    EXPECT_EQ(l.last, prev);
    EXPECT_EQ(l.count, static_cast<int32_t>(out.size()));
    return out;
}

std::string error_record(const std::string &text) {
    return ">ERROR   in \"List\" line \\d+:\n  " + text + "!\n\n\n\n\n";
}

int32_t match_value(void *e, intptr_t key) { return static_cast<Node *>(e)->value == key ? 1 : 0; }
int32_t match_two(void *, intptr_t) { return 2; }
int destroyed = 0;
void count_destroy(void *) { ++destroyed; }

class ListTest : public tiv::test::InTempDir {
 protected:
    listdescriptor list{};
    // Links start as garbage, so tests see every link being set.
    Node a{junk(), junk(), 1}, b{junk(), junk(), 2}, c{junk(), junk(), 3}, d{junk(), junk(), 4};
    void fill() {
        for (Node *n : {&a, &b, &c}) list_insert_after(&list, nullptr, n);
    }
    std::string log() { return tiv::test::read_file("zv.err"); }
};

TEST_F(ListTest, InsertionsSetEveryLink) {
    list_insert_before(&list, nullptr, &b);  // on an empty list: both links nil
    EXPECT_EQ((std::vector<void *>{b.prev, b.next}), (std::vector<void *>(2, nullptr)));
    list_insert_before(&list, &b, &a);  // before first
    list_insert_after(&list, &b, &d);   // after last
    list_insert_before(&list, &d, &c);  // between
    EXPECT_EQ(values(list), (std::vector<int>{1, 2, 3, 4}));
    Node e{junk(), junk(), 5}, f{junk(), junk(), 6};
    list_insert_after(&list, &a, &e);
    list_insert_before(&list, nullptr, &f);
    EXPECT_EQ(values(list), (std::vector<int>{6, 1, 5, 2, 3, 4}));
    EXPECT_FALSE(tiv::test::file_exists("zv.err"));
}

TEST_F(ListTest, PositionOutOfTheListIsReportedAndChangesNothing) {
    fill();
    Node lone{nullptr, nullptr, 9};
    list_insert_before(&list, &lone, &d);
    list_insert_after(&list, &lone, &d);
    EXPECT_EQ(values(list), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(d.prev, junk());
    EXPECT_EQ(lone.next, nullptr);
    EXPECT_TRUE(std::regex_match(log(), std::regex(error_record("list_insert_before: list is not in order") +
                                                    error_record("list_insert_after: list is not in order"))))
        << log();
}

TEST_F(ListTest, RemovalKeepsTheElementsOwnLinks) {
    fill();
    list_delete(&list, &a);
    EXPECT_EQ(values(list), (std::vector<int>{2, 3}));
    EXPECT_EQ(list_next_elem(&a), &b);
    list_delete(&list, &c);
    EXPECT_EQ(list_prev_elem(&c), &b);
    list_delete(&list, nullptr);
    list_delete(&list, &b);
    EXPECT_EQ(values(list), std::vector<int>{});
    EXPECT_EQ(list.first, nullptr);

    fill();
    destroyed = 0;
    list_free(&list, nullptr, count_destroy);
    EXPECT_EQ(destroyed, 0);
    list_free(&list, &b, count_destroy);
    list_free(&list, &c, nullptr);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(values(list), std::vector<int>{1});
}

TEST_F(ListTest, FreeAll) {
    for (int i = 0; i < 4; ++i) list_insert_after(&list, nullptr, heap_calloc(1, sizeof(Node)));
    list_free_all(&list, heap_free);  // the leak checker sees a missed element
    EXPECT_EQ(values(list), std::vector<int>{});
    destroyed = 0;
    list_free_all(&list, count_destroy);
    EXPECT_EQ(destroyed, 0);
    fill();
    list_free_all(&list, nullptr);
    EXPECT_EQ(list.first, nullptr);
    EXPECT_EQ(a.next, &b);  // forgotten elements keep their links
}

TEST_F(ListTest, SearchRanges) {
    fill();
    list_insert_after(&list, nullptr, &d);
    EXPECT_EQ(list_search(&list, match_value, 3), &c);
    EXPECT_EQ(list_search(&list, match_two, 0), nullptr);  // 2 does not stop a search
    EXPECT_EQ(list_search_from(&list, &b, match_value, 1), nullptr);
    EXPECT_EQ(list_search_from(&list, &b, match_value, 4), &d);
    EXPECT_EQ(list_search_from(&list, nullptr, match_value, 1), nullptr);
    EXPECT_EQ(list_search_to(&list, &c, match_value, 3), &c);
    EXPECT_EQ(list_search_to(&list, nullptr, match_value, 4), &d);
    EXPECT_EQ(list_search_from_to(&list, &b, &c, match_value, 4), nullptr);
    EXPECT_EQ(list_search_from_to(&list, &c, &a, match_value, 4), &d);  // to never met
    Node b2{nullptr, nullptr, 2};
    list_insert_after(&list, nullptr, &b2);
    EXPECT_EQ(list_search_backward(&list, match_value, 2), &b2);
}

struct Visit {
    listdescriptor *list;
    std::vector<int> seen;
};

void visit_and_unlink(void *e, intptr_t key) {
    auto *v = reinterpret_cast<Visit *>(key);
    v->seen.push_back(static_cast<Node *>(e)->value);
    list_delete(v->list, e);
    static_cast<Node *>(e)->next = static_cast<Node *>(e)->prev = nullptr;
}

TEST_F(ListTest, TraversalsMayUnlinkTheVisitedElement) {
    fill();
    Visit v{&list, {}};
    list_traverse(&list, visit_and_unlink, reinterpret_cast<intptr_t>(&v));
    fill();
    list_traverse_backward(&list, visit_and_unlink, reinterpret_cast<intptr_t>(&v));
    EXPECT_EQ(v.seen, (std::vector<int>{1, 2, 3, 3, 2, 1}));
    EXPECT_EQ(values(list), std::vector<int>{});
}

TEST_F(ListTest, NumberedAccessAndMembership) {
    EXPECT_EQ(list_get_element_by_number(&list, 1), nullptr);
    fill();
    EXPECT_EQ(list_get_element_by_number(&list, -5), &a);
    EXPECT_EQ(list_get_element_by_number(&list, 3), &c);
    EXPECT_EQ(list_get_element_by_number(&list, 4), nullptr);
    EXPECT_EQ(list_isinlist(&list, &b), 1);
    EXPECT_EQ(list_isinlist(&list, &d), 0);
}

TEST_F(ListTest, NilArgumentsDoNothing) {
    fill();
    list_insert_before(nullptr, nullptr, &d);
    list_insert_after(&list, nullptr, nullptr);
    list_delete(nullptr, &a);
    list_free_all(nullptr, count_destroy);
    list_traverse(&list, nullptr, 0);
    EXPECT_EQ(list_search(nullptr, match_value, 1), nullptr);
    EXPECT_EQ(list_search(&list, nullptr, 1), nullptr);
    EXPECT_EQ(values(list), (std::vector<int>{1, 2, 3}));
    EXPECT_FALSE(tiv::test::file_exists("zv.err"));
}

}  // namespace
