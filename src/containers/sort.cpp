// Vector sorts: every one of them is the introspective quicksort of introsort.h.
//
// The typed sorts compare values exactly (32-bit integers by signed order, never by a
// subtraction). A NaN has no order among numbers; here it orders after every number and ties
// with other NaNs: the NaNs are first moved behind the numbers in one linear pass, and only
// the numbers go through the comparison sort, which therefore always sees a strict weak order.
#include <tivlib/sort.h>

#include <cmath>
#include <cstdint>

#include "containers/introsort.h"

namespace {

using tiv::containers::sorting::Blob;
using tiv::containers::sorting::BytesOps;
using tiv::containers::sorting::introsort;
using tiv::containers::sorting::TypedOps;

struct ValueLess {
    template <class T>
    bool operator()(T a, T b) const noexcept {
        return a < b;
    }
};

struct PointeeLess {
    template <class T>
    bool operator()(const T *a, const T *b) const noexcept {
        return *a < *b;
    }
};

template <class T, class Less>
void sort_trusted(T *vector, size_t n, Less less) noexcept {
    TypedOps<T, Less, true> ops{vector, less};
    introsort(ops, n);
}

// Moves every element for which is_nan holds behind the others and gives how many are left in
// front. The vector is scanned once; with no NaN nothing moves.
template <class T, class IsNan>
size_t move_nans_behind(T *vector, size_t n, IsNan is_nan) noexcept {
    size_t kept = 0;
    while (kept < n && !is_nan(vector[kept])) ++kept;
    for (size_t i = kept + 1; i < n; ++i) {
        if (!is_nan(vector[i])) {
            T held = vector[kept];
            vector[kept] = vector[i];
            vector[i] = held;
            ++kept;
        }
    }
    return kept;
}

template <class T>
void fill_index(const T *vector, const T **index, size_t n) noexcept {
    for (size_t i = 0; i < n; ++i) index[i] = vector + i;
}

// Element sizes that are copied as one unit; others are swapped byte-wise in place.
template <size_t Size>
constexpr size_t blob_alignment() {
    size_t a = 1;
    while (a < 16 && Size % (2 * a) == 0) a *= 2;
    return a;
}

template <size_t Size>
struct alignas(blob_alignment<Size>()) AlignedBlob : Blob<Size> {};

// Sorts units of Size bytes when the vector is aligned for them; the comparison may then be
// handed the address of a copy of an element (aligned like the elements), as in insertion.
template <size_t Size>
bool sort_as_blobs(void *vector, size_t n, sort_compare_fn compare) noexcept {
    using Unit = AlignedBlob<Size>;
    static_assert(sizeof(Unit) == Size);
    if (reinterpret_cast<uintptr_t>(vector) % alignof(Unit) != 0) return false;
    auto less = [compare](const Unit &a, const Unit &b) { return compare(&a, &b) < 0; };
    TypedOps<Unit, decltype(less), false> ops{static_cast<Unit *>(vector), less};
    introsort(ops, n);
    return true;
}

}  // namespace

extern "C" {

void sort_dvector(double *vector, int32_t n) noexcept {
    if (vector == nullptr || n <= 0) return;
    const size_t numbers =
        move_nans_behind(vector, static_cast<size_t>(n), [](double v) { return std::isnan(v); });
    sort_trusted(vector, numbers, ValueLess{});
}

void sort_dvector_by_index(const double *vector, const double **index, int32_t n) noexcept {
    if (vector == nullptr || index == nullptr || n <= 0) return;
    fill_index(vector, index, static_cast<size_t>(n));
    const size_t numbers = move_nans_behind(index, static_cast<size_t>(n),
                                            [](const double *p) { return std::isnan(*p); });
    sort_trusted(index, numbers, PointeeLess{});
}

void sort_lvector(int32_t *vector, int32_t n) noexcept {
    if (vector == nullptr || n <= 0) return;
    sort_trusted(vector, static_cast<size_t>(n), ValueLess{});
}

void sort_lvector_by_index(const int32_t *vector, const int32_t **index, int32_t n) noexcept {
    if (vector == nullptr || index == nullptr || n <= 0) return;
    fill_index(vector, index, static_cast<size_t>(n));
    sort_trusted(index, static_cast<size_t>(n), PointeeLess{});
}

// The caller's comparison is not trusted to be consistent: whatever it answers, the sort stays
// inside the vector and ends (the order is then unspecified).
void sort_quick(void *vector, uint32_t n, uint32_t size, sort_compare_fn compare) noexcept {
    if (vector == nullptr || compare == nullptr || n < 2 || size == 0) return;
    switch (size) {
        case 1: if (sort_as_blobs<1>(vector, n, compare)) return; break;
        case 2: if (sort_as_blobs<2>(vector, n, compare)) return; break;
        case 4: if (sort_as_blobs<4>(vector, n, compare)) return; break;
        case 8: if (sort_as_blobs<8>(vector, n, compare)) return; break;
        case 12: if (sort_as_blobs<12>(vector, n, compare)) return; break;
        case 16: if (sort_as_blobs<16>(vector, n, compare)) return; break;
        case 24: if (sort_as_blobs<24>(vector, n, compare)) return; break;
        case 32: if (sort_as_blobs<32>(vector, n, compare)) return; break;
        default: break;
    }
    auto compare_bytes = [compare](const unsigned char *a, const unsigned char *b) {
        return compare(a, b);
    };
    BytesOps<decltype(compare_bytes)> ops{static_cast<unsigned char *>(vector), size,
                                          compare_bytes};
    introsort(ops, n);
}

}  // extern "C"
