// The one in-place comparison sort behind every vector sort: a pattern-defeating introspective
// quicksort (after Orson Peters' pdqsort).
//
// - Pivot: median of three, Tukey's ninther past kNintherThreshold elements.
// - Partition: the pivot stays at the front during the scans and then goes to its final place;
//   elements equal to it go right. When the pivot equals the element just before the range
//   (the end of an earlier right part, so nothing in the range is smaller), equal elements go
//   left instead and are done: runs of duplicates cost linear time.
// - A partition that swapped nothing tries a bounded insertion sort on both sides, which
//   finishes sorted and nearly sorted input in linear time.
// - A badly unbalanced partition shuffles a few elements; after log2(n) of them the range is
//   finished by heapsort, so the worst case stays O(n log n).
// - Ranges below kInsertionThreshold finish with insertion sort.
// No heap memory is used; recursion goes into the left side only, and both sides shrink by at
// least 1/8 unless the bad-partition budget is spent, so the stack stays O(log n) deep.
//
// The data is seen through an `Ops` object with index-based operations:
//   bool less(size_t a, size_t b);  void swap(size_t a, size_t b);
//   size_t insert(size_t lo, size_t i);   // moves element i into the sorted run [lo, i) and
//                                         // gives how many places it moved
//   void insert_unguarded(size_t i);      // the same, with element i-1's run bounded below by
//                                         // a sentinel: only called when kTrusted
// and static flags: kTrusted when `less` is a strict weak order (then the scans may run
// unguarded, stopped by sentinels), kBlockPartition when Ops offers partition_right_block.
// A caller's comparison is not trusted: every scan is then bounded by the range, so even an
// inconsistent comparison cannot make the sort read or write outside the vector, and it ends.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

namespace tiv::containers::sorting {

inline constexpr size_t kInsertionThreshold = 24;
inline constexpr size_t kNintherThreshold = 128;
inline constexpr size_t kPartialInsertionLimit = 8;  // element moves allowed in a trial
inline constexpr size_t kBlockSize = 64;              // offsets per block of the block partition

struct Partition {
    size_t pivot;              // final place of the pivot
    bool already_partitioned;  // no element had to move
};

template <class Ops>
inline void sort2(Ops &ops, size_t a, size_t b) {
    if (ops.less(b, a)) ops.swap(a, b);
}

// Orders the elements at a, b, c.
template <class Ops>
inline void sort3(Ops &ops, size_t a, size_t b, size_t c) {
    sort2(ops, a, b);
    sort2(ops, b, c);
    sort2(ops, a, b);
}

template <class Ops>
void insertion_sort(Ops &ops, size_t lo, size_t hi) {
    for (size_t i = lo + 1; i < hi; ++i) ops.insert(lo, i);
}

// For a range that is not leftmost: the element before lo is not greater than any in it.
template <class Ops>
void insertion_sort_unguarded(Ops &ops, size_t lo, size_t hi) {
    if constexpr (Ops::kTrusted) {
        for (size_t i = lo + 1; i < hi; ++i) ops.insert_unguarded(i);
    } else {
        insertion_sort(ops, lo, hi);
    }
}

// Insertion sort that gives up once more than kPartialInsertionLimit moves were needed;
// true when [lo, hi) ends sorted.
template <class Ops>
bool partial_insertion_sort(Ops &ops, size_t lo, size_t hi) {
    size_t moves = 0;
    for (size_t i = lo + 1; i < hi; ++i) {
        moves += ops.insert(lo, i);
        if (moves > kPartialInsertionLimit) return false;
    }
    return true;
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

// Partitions [lo, hi) around the pivot at lo: smaller elements left of it, the others right.
// Trusted scans are stopped by the median-of-three sentinels and by the pivot itself.
template <class Ops>
Partition partition_right(Ops &ops, size_t lo, size_t hi) {
    size_t first = lo;
    size_t last = hi;
    if constexpr (Ops::kTrusted) {
        while (ops.less(++first, lo)) {}
        if (first - 1 == lo) {
            while (first < last && !ops.less(--last, lo)) {}
        } else {
            while (!ops.less(--last, lo)) {}
        }
    } else {
        while (++first < hi && ops.less(first, lo)) {}
        while (first < last && !ops.less(--last, lo)) {}
    }
    const bool already_partitioned = first >= last;
    while (first < last) {
        ops.swap(first, last);
        if constexpr (Ops::kTrusted) {
            while (ops.less(++first, lo)) {}
            while (!ops.less(--last, lo)) {}
        } else {
            while (++first < hi && ops.less(first, lo)) {}
            while (--last > lo && !ops.less(last, lo)) {}
        }
    }
    const size_t pivot = first - 1;
    ops.swap(lo, pivot);
    return {pivot, already_partitioned};
}

// Partitions [lo, hi) around the pivot at lo with the elements equal to it on the left; gives
// the pivot's final place. Used when no element of the range is smaller than the pivot.
template <class Ops>
size_t partition_left(Ops &ops, size_t lo, size_t hi) {
    size_t first = lo;
    size_t last = hi;
    if constexpr (Ops::kTrusted) {
        while (ops.less(lo, --last)) {}
        if (last + 1 == hi) {
            while (first < last && !ops.less(lo, ++first)) {}
        } else {
            while (!ops.less(lo, ++first)) {}
        }
    } else {
        while (--last > lo && ops.less(lo, last)) {}
        while (first < last && !ops.less(lo, ++first)) {}
    }
    while (first < last) {
        ops.swap(first, last);
        if constexpr (Ops::kTrusted) {
            while (ops.less(lo, --last)) {}
            while (!ops.less(lo, ++first)) {}
        } else {
            while (--last > lo && ops.less(lo, last)) {}
            while (++first < hi && !ops.less(lo, first)) {}
        }
    }
    ops.swap(lo, last);
    return last;
}

// Swaps a few elements of each side of an unbalanced partition to break the pattern.
template <class Ops>
void break_patterns(Ops &ops, size_t lo, size_t pivot, size_t hi) {
    const size_t l_size = pivot - lo;
    const size_t r_size = hi - (pivot + 1);
    if (l_size >= kInsertionThreshold) {
        ops.swap(lo, lo + l_size / 4);
        ops.swap(pivot - 1, pivot - l_size / 4);
        if (l_size > kNintherThreshold) {
            ops.swap(lo + 1, lo + (l_size / 4 + 1));
            ops.swap(lo + 2, lo + (l_size / 4 + 2));
            ops.swap(pivot - 2, pivot - (l_size / 4 + 1));
            ops.swap(pivot - 3, pivot - (l_size / 4 + 2));
        }
    }
    if (r_size >= kInsertionThreshold) {
        ops.swap(pivot + 1, pivot + (1 + r_size / 4));
        ops.swap(hi - 1, hi - r_size / 4);
        if (r_size > kNintherThreshold) {
            ops.swap(pivot + 2, pivot + (2 + r_size / 4));
            ops.swap(pivot + 3, pivot + (3 + r_size / 4));
            ops.swap(hi - 2, hi - (1 + r_size / 4));
            ops.swap(hi - 3, hi - (2 + r_size / 4));
        }
    }
}

// Sorts [lo, hi). `leftmost` is false when the element before lo bounds the range from below.
template <class Ops>
void pdq_loop(Ops &ops, size_t lo, size_t hi, int bad_allowed, bool leftmost) {
    for (;;) {
        const size_t size = hi - lo;
        if (size < kInsertionThreshold) {
            if (leftmost)
                insertion_sort(ops, lo, hi);
            else
                insertion_sort_unguarded(ops, lo, hi);
            return;
        }
        const size_t half = size / 2;
        if (size > kNintherThreshold) {
            sort3(ops, lo, lo + half, hi - 1);
            sort3(ops, lo + 1, lo + (half - 1), hi - 2);
            sort3(ops, lo + 2, lo + (half + 1), hi - 3);
            sort3(ops, lo + (half - 1), lo + half, lo + (half + 1));
            ops.swap(lo, lo + half);
        } else {
            sort3(ops, lo + half, lo, hi - 1);
        }

        if (!leftmost && !ops.less(lo - 1, lo)) {
            lo = partition_left(ops, lo, hi) + 1;
            continue;
        }

        Partition part;
        if constexpr (Ops::kBlockPartition)
            part = ops.partition_right_block(lo, hi);
        else
            part = partition_right(ops, lo, hi);
        const size_t pivot = part.pivot;
        const size_t l_size = pivot - lo;
        const size_t r_size = hi - (pivot + 1);
        if (l_size < size / 8 || r_size < size / 8) {
            if (--bad_allowed == 0) {
                heap_sort(ops, lo, hi);
                return;
            }
            break_patterns(ops, lo, pivot, hi);
        } else if (part.already_partitioned && partial_insertion_sort(ops, lo, pivot) &&
                   partial_insertion_sort(ops, pivot + 1, hi)) {
            return;
        }
        pdq_loop(ops, lo, pivot, bad_allowed, leftmost);
        lo = pivot + 1;
        leftmost = false;
    }
}

template <class Ops>
void introsort(Ops &ops, size_t n) {
    if (n < 2) return;
    int bad_allowed = 0;
    for (size_t k = n; k > 1; k >>= 1) ++bad_allowed;
    pdq_loop(ops, 0, n, bad_allowed, true);
}

// Operations on a typed array with a comparison `Less` on values.
template <class T, class Less, bool Trusted>
struct TypedOps {
    static constexpr bool kTrusted = Trusted;
    static constexpr bool kBlockPartition = Trusted;
    T *base;
    Less less_than;

    bool less(size_t a, size_t b) { return less_than(base[a], base[b]); }
    void swap(size_t a, size_t b) { std::swap(base[a], base[b]); }

    size_t insert(size_t lo, size_t i) {
        if (!less_than(base[i], base[i - 1])) return 0;
        T value = std::move(base[i]);
        size_t j = i;
        do {
            base[j] = std::move(base[j - 1]);
            --j;
        } while (j > lo && less_than(value, base[j - 1]));
        base[j] = std::move(value);
        return i - j;
    }

    void insert_unguarded(size_t i) {
        if (!less_than(base[i], base[i - 1])) return;
        T value = std::move(base[i]);
        size_t j = i;
        do {
            base[j] = std::move(base[j - 1]);
            --j;
        } while (less_than(value, base[j - 1]));
        base[j] = std::move(value);
    }

    // Moves the elements at the offsets of two blocks across: the left ones to the right
    // block's places and back. With `use_swaps` (equal counts) pairs are swapped one by one,
    // which keeps descending input linear.
    void swap_offsets(T *left, T *right, const unsigned char *offsets_l,
                      const unsigned char *offsets_r, size_t num, bool use_swaps) {
        if (use_swaps) {
            for (size_t i = 0; i < num; ++i) std::swap(left[offsets_l[i]], *(right - offsets_r[i]));
        } else if (num > 0) {
            T *l = left + offsets_l[0];
            T *r = right - offsets_r[0];
            T held = std::move(*l);
            *l = std::move(*r);
            for (size_t i = 1; i < num; ++i) {
                l = left + offsets_l[i];
                *r = std::move(*l);
                r = right - offsets_r[i];
                *l = std::move(*r);
            }
            *r = std::move(held);
        }
    }

    // partition_right without branches on comparison results (after Edelkamp and Weiss,
    // BlockQuicksort): each side first records, in a block of offsets, which of its next
    // elements belong to the other side, then the recorded elements are exchanged.
    Partition partition_right_block(size_t lo, size_t hi) {
        const T pivot = base[lo];
        T *begin = base + lo;
        T *first = begin;
        T *last = base + hi;
        while (less_than(*++first, pivot)) {}
        if (first - 1 == begin) {
            while (first < last && !less_than(*--last, pivot)) {}
        } else {
            while (!less_than(*--last, pivot)) {}
        }
        const bool already_partitioned = first >= last;
        if (!already_partitioned) {
            std::swap(*first, *last);
            ++first;
            alignas(64) unsigned char offsets_l[kBlockSize];
            alignas(64) unsigned char offsets_r[kBlockSize];
            T *offsets_l_base = first;
            T *offsets_r_base = last;
            size_t num_l = 0, num_r = 0, start_l = 0, start_r = 0;
            while (first < last) {
                const auto unknown = static_cast<size_t>(last - first);
                const size_t left_split = num_l == 0 ? (num_r == 0 ? unknown / 2 : unknown) : 0;
                const size_t right_split = num_r == 0 ? (unknown - left_split) : 0;
                const size_t left_count = left_split < kBlockSize ? left_split : kBlockSize;
                for (size_t i = 0; i < left_count; ++i) {
                    offsets_l[num_l] = static_cast<unsigned char>(i);
                    num_l += !less_than(*first, pivot);
                    ++first;
                }
                const size_t right_count = right_split < kBlockSize ? right_split : kBlockSize;
                for (size_t i = 0; i < right_count;) {
                    offsets_r[num_r] = static_cast<unsigned char>(++i);
                    num_r += less_than(*--last, pivot);
                }
                const size_t num = num_l < num_r ? num_l : num_r;
                swap_offsets(offsets_l_base, offsets_r_base, offsets_l + start_l,
                             offsets_r + start_r, num, num_l == num_r);
                num_l -= num;
                num_r -= num;
                start_l += num;
                start_r += num;
                if (num_l == 0) {
                    start_l = 0;
                    offsets_l_base = first;
                }
                if (num_r == 0) {
                    start_r = 0;
                    offsets_r_base = last;
                }
            }
            if (num_l > 0) {
                const unsigned char *offsets = offsets_l + start_l;
                while (num_l-- > 0) std::swap(offsets_l_base[offsets[num_l]], *--last);
                first = last;
            }
            if (num_r > 0) {
                const unsigned char *offsets = offsets_r + start_r;
                while (num_r-- > 0) {
                    std::swap(*(offsets_r_base - offsets[num_r]), *first);
                    ++first;
                }
            }
        }
        T *pivot_pos = first - 1;
        *begin = std::move(*pivot_pos);
        *pivot_pos = pivot;
        return {static_cast<size_t>(pivot_pos - base), already_partitioned};
    }
};

// An element of a fixed byte size, copied as a unit.
template <size_t Size>
struct Blob {
    unsigned char bytes[Size];
};

// Operations on elements of a byte size known only at run time: swaps in place and insertion
// by adjacent swaps, so the comparison only ever sees addresses inside the vector.
template <class Compare>
struct BytesOps {
    static constexpr bool kTrusted = false;
    static constexpr bool kBlockPartition = false;
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
    size_t insert(size_t lo, size_t i) {
        size_t j = i;
        for (; j > lo && less(j, j - 1); --j) swap(j, j - 1);
        return i - j;
    }
    void insert_unguarded(size_t i) { insert(0, i); }
};

}  // namespace tiv::containers::sorting
