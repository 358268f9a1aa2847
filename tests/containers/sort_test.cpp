#include <gtest/gtest.h>
#include <tivlib/sort.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>


namespace {

// Inputs that stress a quicksort: random with few or many distinct values, sorted, nearly
// sorted, reversed, all equal, organ pipe, sawtooth, and sizes around the insertion, block and
// ninther thresholds.
std::vector<std::vector<int32_t>> shapes() {
    std::vector<std::vector<int32_t>> out;
    std::mt19937 rng(12345);
    for (size_t n : {0u, 1u, 2u, 3u, 23u, 24u, 25u, 64u, 65u, 128u, 129u, 200u, 1000u, 20000u}) {
        std::vector<int32_t> random(n), few(n), sorted(n), reversed(n), equal(n, 7), pipe(n), saw(n);
        for (size_t i = 0; i < n; ++i) {
            random[i] = static_cast<int32_t>(rng());
            few[i] = static_cast<int32_t>(rng() % 4) - 2;
            sorted[i] = static_cast<int32_t>(i);
            reversed[i] = static_cast<int32_t>(n - i);
            pipe[i] = static_cast<int32_t>(i < n / 2 ? i : n - i);
            saw[i] = static_cast<int32_t>(i % 37);
        }
        auto nearly = sorted;
        for (size_t k = 0; n > 1 && k < 3; ++k) std::swap(nearly[rng() % n], nearly[rng() % n]);
        for (auto *v : {&random, &few, &sorted, &nearly, &reversed, &equal, &pipe, &saw})
            out.push_back(*v);
    }
    return out;
}

TEST(SortVector, TypedSortsAscending) {
    std::vector<int32_t> v{INT32_MAX, 0, INT32_MIN, -1, 1};
    sort_lvector(v.data(), 5);
    EXPECT_EQ(v, (std::vector<int32_t>{INT32_MIN, -1, 0, 1, INT32_MAX}));
    std::vector<double> d{2.0, -1.0, 2.0, 0.0};
    sort_dvector(d.data(), 4);
    EXPECT_EQ(d, (std::vector<double>{-1.0, 0.0, 2.0, 2.0}));
    for (const auto &shape : shapes()) {
        auto got = shape, want = shape;
        sort_lvector(got.data(), static_cast<int32_t>(got.size()));
        std::sort(want.begin(), want.end());
        ASSERT_EQ(got, want) << "size " << shape.size();
        std::vector<double> dgot(shape.begin(), shape.end());
        for (double &x : dgot) x /= 3.0;
        sort_dvector(dgot.data(), static_cast<int32_t>(dgot.size()));
        ASSERT_TRUE(std::is_sorted(dgot.begin(), dgot.end()));
    }
    sort_lvector(v.data(), 0);  // counts of 0 or less change nothing
    sort_lvector(v.data(), -3);
    sort_lvector(nullptr, 3);
    std::vector<int32_t> w{3, 2, 1};
    sort_lvector(w.data(), -1);
    EXPECT_EQ(w, (std::vector<int32_t>{3, 2, 1}));
}

TEST(SortVector, NanOrdersAfterEveryNumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    std::vector<double> v{nan, 3.0, -inf, nan, 1.0, inf, nan, -2.0};
    sort_dvector(v.data(), static_cast<int32_t>(v.size()));
    EXPECT_EQ(std::vector<double>(v.begin(), v.begin() + 5),
              (std::vector<double>{-inf, -2.0, 1.0, 3.0, inf}));
    EXPECT_TRUE(std::isnan(v[5]) && std::isnan(v[6]) && std::isnan(v[7]));
}

TEST(SortVector, ByIndexLeavesTheVectorAndFillsPointers) {
    const std::vector<double> v{3.0, 1.0, 2.0};
    std::vector<const double *> index(3);
    sort_dvector_by_index(v.data(), index.data(), 3);
    EXPECT_EQ(v, (std::vector<double>{3.0, 1.0, 2.0}));
    EXPECT_EQ(index, (std::vector<const double *>{&v[1], &v[2], &v[0]}));
    const std::vector<int32_t> l{5, -1, 5, 0};
    std::vector<const int32_t *> lindex(4);
    sort_lvector_by_index(l.data(), lindex.data(), 4);
    EXPECT_EQ((std::vector<int32_t>{*lindex[0], *lindex[1], *lindex[2], *lindex[3]}),
              (std::vector<int32_t>{-1, 0, 5, 5}));
}

int32_t compare_doubles(const void *a, const void *b) {
    const double x = *static_cast<const double *>(a), y = *static_cast<const double *>(b);
    return x < y ? -1 : x > y ? 1 : 0;
}

// Orders records by their first 4 bytes, read byte-wise so any size and alignment works.
int32_t compare_leading_int(const void *a, const void *b) {
    int32_t x, y;
    std::memcpy(&x, a, 4);
    std::memcpy(&y, b, 4);
    return x < y ? -1 : x > y ? 1 : 0;
}

int32_t compare_at_random(const void *, const void *) {
    static std::mt19937 rng(99);
    return static_cast<int32_t>(rng() % 3) - 1;
}

// Records of several sizes, aligned and not, each carrying its key in front and a tag behind
// that must travel with it.
TEST(SortQuick, RecordsOfAnySizeMoveWhole) {
    std::mt19937 rng(3);
    for (uint32_t size : {4u, 5u, 8u, 12u, 16u, 24u, 32u, 40u, 100u}) {
        for (size_t offset : {0u, 1u}) {
            const size_t n = 700;
            std::vector<unsigned char> buffer(n * size + offset);
            unsigned char *records = buffer.data() + offset;
            for (size_t i = 0; i < n; ++i) {
                const int32_t key = static_cast<int32_t>(rng() % 50);
                std::memcpy(records + i * size, &key, 4);
                for (uint32_t b = 4; b < size; ++b) records[i * size + b] = static_cast<unsigned char>(key + b);
            }
            sort_quick(records, n, size, compare_leading_int);
            for (size_t i = 0; i < n; ++i) {
                int32_t key;
                std::memcpy(&key, records + i * size, 4);
                if (i > 0) {
                    ASSERT_LE(compare_leading_int(records + (i - 1) * size, records + i * size), 0);
                }
                for (uint32_t b = 4; b < size; ++b)
                    ASSERT_EQ(records[i * size + b], static_cast<unsigned char>(key + b)) << size;
            }
        }
    }
}

TEST(SortQuick, InconsistentComparisonKeepsAPermutation) {
    for (uint32_t size : {4u, 7u}) {
        std::vector<unsigned char> v(5000 * size);
        for (size_t i = 0; i < v.size(); ++i) v[i] = static_cast<unsigned char>(i * 31);
        auto before = v;
        sort_quick(v.data(), 5000, size, compare_at_random);
        std::vector<std::string> a, b;
        for (size_t i = 0; i < 5000; ++i) {
            a.emplace_back(reinterpret_cast<char *>(&v[i * size]), size);
            b.emplace_back(reinterpret_cast<char *>(&before[i * size]), size);
        }
        std::sort(a.begin(), a.end());
        std::sort(b.begin(), b.end());
        EXPECT_EQ(a, b);
    }
    std::vector<double> d{2, 1};
    sort_quick(d.data(), 2, 0, compare_doubles);
    sort_quick(d.data(), 2, 8, nullptr);
    EXPECT_EQ(d, (std::vector<double>{2, 1}));
}

struct Item {
    void *prev;
    void *next;
    int key;
    char tag;
};

int comparisons = 0;
// 1 for less, 2 for greater, 0 for a tie.
int32_t compare_items(void *placed, void *placing) {
    ++comparisons;
    const int x = static_cast<Item *>(placed)->key, y = static_cast<Item *>(placing)->key;
    return x < y ? 1 : x > y ? 2 : 0;
}

class SortList : public ::testing::Test {
 protected:
    listdescriptor list{};
    std::vector<Item> items;
    void make(const std::vector<std::pair<int, char>> &keys) {
        items.clear();
        for (auto [k, t] : keys) items.push_back(Item{nullptr, nullptr, k, t});
        list_init(&list);
        for (Item &i : items) list_insert_after(&list, nullptr, &i);
        comparisons = 0;
    }
    std::string tags() {
        std::string out;
        void *prev = nullptr;
        for (void *e = list.first; e != nullptr; e = list_next_elem(e)) {
            EXPECT_EQ(list_prev_elem(e), prev);
            out += static_cast<Item *>(e)->tag;
            prev = e;
        }
        EXPECT_EQ(list.last, prev);
        EXPECT_EQ(list.count, static_cast<int32_t>(out.size()));
        return out;
    }
};

TEST_F(SortList, SingleElementGetsItsLinksSetWithoutComparisons) {
    make({{1, 'a'}});
    items[0].prev = &items;  // the links are set anew
    sort_list(&list, 1, compare_items);
    EXPECT_EQ(comparisons, 0);
    EXPECT_EQ(items[0].prev, nullptr);
    EXPECT_EQ(tags(), "a");
}

// Direction 1 sorts ascending, any other value descending; ties come out reversed.
TEST_F(SortList, DirectionsAndTies) {
    using Keys = std::vector<std::pair<int, char>>;
    const Keys mixed{{2, 'b'}, {5, 'e'}, {1, 'a'}, {4, 'd'}, {3, 'c'}};
    const struct { Keys keys; int32_t direction; const char *want; } rows[] = {
        {{}, 1, ""}, {{{1, 'a'}, {2, 'b'}, {1, 'A'}}, 1, "Aab"},
        {{{1, 'a'}, {2, 'b'}, {1, 'A'}, {2, 'B'}}, 0, "BbAa"}, {mixed, 0, "edcba"},
        {mixed, 2, "edcba"}, {mixed, -1, "edcba"},
        {{{5, 'e'}, {4, 'd'}, {3, 'c'}, {2, 'b'}, {1, 'a'}}, 1, "abcde"}};
    for (const auto &r : rows) {
        make(r.keys);
        sort_list(&list, r.direction, compare_items);
        EXPECT_EQ(tags(), r.want) << r.direction;
    }
}

}  // namespace
