// The one in-place comparison sort behind every vector sort: an introspective quicksort.
//
// - Pivot: median of three for mid-sized ranges, Tukey's ninther past kNintherThreshold.
// - Partition: Hoare style around the pivot parked at the front; elements equal to the pivot
//   stop both scans, so runs of duplicates split evenly instead of degrading.
// - Ranges of kInsertionThreshold elements or fewer finish with insertion sort.
// - Past a depth of 2*log2(n) a range is finished by heapsort, so the worst case is O(n log n).
// - The smaller side is handled by recursion, the larger by the loop: stack depth O(log n).
// No heap memory is used.
//
// The algorithm sees the data only through an `Ops` object with index-based operations:
//   bool less(size_t a, size_t b);  void swap(size_t a, size_t b);
//   void insert(size_t lo, size_t i);   // moves element i into the sorted run [lo, i)
// and a static `kTrusted`: when true, `less` is a strict weak order and the partition scans
// may run unguarded (they are stopped by the pivot and by the median's sentinels). A caller's
// comparison is not trusted: its scans stay within the range, so even an inconsistent
// comparison cannot make the sort read or write outside the vector.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

namespace tiv::containers::sorting {

inline constexpr size_t kInsertionThreshold = 16;
inline constexpr size_t kNintherThreshold = 128;

// Orders a, b, c so that the element at b is the median of the three.
template <class Ops>
inline void sort3(Ops &ops, size_t a, size_t b, size_t c) {
    if (ops.less(b, a)) ops.swap(a, b);
    if (ops.less(c, b)) {
        ops.swap(b, c);
        if (ops.less(b, a)) ops.swap(a, b);
    }
}

template <class Ops>
void insertion_sort(Ops &ops, size_t lo, size_t hi) {
    for (size_t i = lo + 1; i < hi; ++i) ops.insert(lo, i);
}

template <class Ops>
void sift_down(Ops &ops, size_t base, size_t root, size_t count) {
    for (;;) {
        size_t child = 2 * root + 1;
        if (child >= count) return;
        if (child + 1 < count && ops.less(base + child, base + child + 1)) ++child;
        if (!ops.less(base + root, base + child)) return;
        ops.swap(base + root, base + child);
        root = child;
    }
}

template <class Ops>
void heap_sort(Ops &ops, size_t lo, size_t hi) {
    const size_t count = hi - lo;
    for (size_t i = count / 2; i-- > 0;) sift_down(ops, lo, i, count);
    for (size_t end = count; end-- > 1;) {
        ops.swap(lo, lo + end);
        sift_down(ops, lo, 0, end);
    }
}

// Parks the chosen pivot at `lo`. Every sample group keeps its largest element at or behind
// the last third of the range, so an element not less than the pivot stays in (lo, hi):
// that is the sentinel of the unguarded left scan.
template <class Ops>
void choose_pivot(Ops &ops, size_t lo, size_t hi) {
    const size_t n = hi - lo;
    const size_t mid = lo + n / 2;
    if (n > kNintherThreshold) {
        sort3(ops, lo + 1, mid, hi - 1);
        sort3(ops, lo + 2, mid - 1, hi - 2);
        sort3(ops, lo + 3, mid + 1, hi - 3);
        sort3(ops, mid - 1, mid, mid + 1);
    } else {
        sort3(ops, lo + 1, mid, hi - 1);
    }
    ops.swap(lo, mid);
}

// Hoare partition of (lo, hi) around the pivot at lo. Gives the cut: everything before it is
// not greater than the pivot, everything from it on not less.
template <class Ops>
size_t partition(Ops &ops, size_t lo, size_t hi) {
    size_t first = lo + 1;
    size_t last = hi;
    for (;;) {
        if constexpr (Ops::kTrusted) {
            while (ops.less(first, lo)) ++first;
            --last;
            while (ops.less(lo, last)) --last;
        } else {
            while (first < hi && ops.less(first, lo)) ++first;
            --last;
            while (last > lo && ops.less(lo, last)) --last;
        }
        if (!(first < last)) return first;
        ops.swap(first, last);
        ++first;
    }
}

template <class Ops>
void introsort_loop(Ops &ops, size_t lo, size_t hi, int depth) {
    while (hi - lo > kInsertionThreshold) {
        if (depth == 0) {
            heap_sort(ops, lo, hi);
            return;
        }
        --depth;
        choose_pivot(ops, lo, hi);
        const size_t cut = partition(ops, lo, hi);
        if (cut - lo < hi - cut) {
            introsort_loop(ops, lo, cut, depth);
            lo = cut;
        } else {
            introsort_loop(ops, cut, hi, depth);
            hi = cut;
        }
    }
    insertion_sort(ops, lo, hi);
}

template <class Ops>
void introsort(Ops &ops, size_t n) {
    if (n < 2) return;
    int depth = 0;
    for (size_t k = n; k > 1; k >>= 1) depth += 2;
    introsort_loop(ops, 0, n, depth);
}

// Operations on a typed array with a comparison `Less` (a function object on values).
template <class T, class Less, bool Trusted>
struct TypedOps {
    static constexpr bool kTrusted = Trusted;
    T *base;
    Less less_than;

    bool less(size_t a, size_t b) { return less_than(base[a], base[b]); }
    void swap(size_t a, size_t b) { std::swap(base[a], base[b]); }
    void insert(size_t lo, size_t i) {
        T value = std::move(base[i]);
        size_t j = i;
        if constexpr (Trusted) {
            // base[lo] is the smallest once checked, so the inner loop needs no bound.
            if (less_than(value, base[lo])) {
                for (; j > lo; --j) base[j] = std::move(base[j - 1]);
            } else {
                for (; less_than(value, base[j - 1]); --j) base[j] = std::move(base[j - 1]);
            }
        } else {
            for (; j > lo && less_than(value, base[j - 1]); --j) base[j] = std::move(base[j - 1]);
        }
        base[j] = std::move(value);
    }
};

// An element of a fixed byte size, copied as a unit (no alignment assumed).
template <size_t Size>
struct Blob {
    unsigned char bytes[Size];
};

// Operations on elements of a byte size known only at run time: swaps in place, insertion by
// adjacent swaps, no temporary element.
template <class Compare>
struct BytesOps {
    static constexpr bool kTrusted = false;
    unsigned char *base;
    size_t size;
    Compare compare;  // three-way, on element addresses

    unsigned char *at(size_t i) const { return base + i * size; }
    bool less(size_t a, size_t b) { return compare(at(a), at(b)) < 0; }
    void swap(size_t a, size_t b) {
        unsigned char *p = at(a);
        unsigned char *q = at(b);
        unsigned char chunk[64];
        for (size_t left = size; left > 0;) {
            const size_t step = left < sizeof chunk ? left : sizeof chunk;
            std::memcpy(chunk, p, step);
            std::memcpy(p, q, step);
            std::memcpy(q, chunk, step);
            p += step;
            q += step;
            left -= step;
        }
    }
    void insert(size_t lo, size_t i) {
        for (size_t j = i; j > lo && less(j, j - 1); --j) swap(j, j - 1);
    }
};

}  // namespace tiv::containers::sorting
