// Vector sorts against std::sort and glibc qsort on the same data.
//
// Rows: sort/<operation>/<input> for this library, sort/std_sort_<type>/<input> and
// sort/qsort_<type>/<input> for the peers. Inputs of 10^6 elements (times TIV_BENCH_SCALE):
// random, sorted, reversed and many duplicates (100 distinct values). Each iteration sorts a
// fresh copy; the copy is outside the timing.
#include <benchmark/benchmark.h>
#include <tivlib/sort.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench_scale.h"

namespace {

size_t scaled(size_t full) { return tiv::bench::scaled(full, size_t{16}); }

enum class Shape { random, sorted, reversed, duplicates };
constexpr Shape kShapes[] = {Shape::random, Shape::sorted, Shape::reversed, Shape::duplicates};

const char *shape_name(Shape s) {
    switch (s) {
        case Shape::random: return "random";
        case Shape::sorted: return "sorted";
        case Shape::reversed: return "reversed";
        case Shape::duplicates: return "duplicates";
    }
    return "?";
}

template <class T>
std::vector<T> make_input(Shape shape, size_t n) {
    std::mt19937_64 rng(20240601);
    std::vector<T> v(n);
    for (size_t i = 0; i < n; ++i) {
        switch (shape) {
            case Shape::random:
                v[i] = static_cast<T>(static_cast<int32_t>(rng())) / static_cast<T>(7); break;
            case Shape::sorted: v[i] = static_cast<T>(i); break;
            case Shape::reversed: v[i] = static_cast<T>(n - i); break;
            case Shape::duplicates: v[i] = static_cast<T>(rng() % 100); break;
        }
    }
    return v;
}

template <class T>
int compare_values(const void *a, const void *b) {
    const T x = *static_cast<const T *>(a), y = *static_cast<const T *>(b);
    return (x > y) - (x < y);
}

template <class T>
int32_t compare_values_32(const void *a, const void *b) {
    return compare_values<T>(a, b);
}

// Runs `sort` on a fresh copy of the input in every iteration.
template <class T, class Sort>
void run(benchmark::State &state, Shape shape, Sort sort) {
    const std::vector<T> input = make_input<T>(shape, scaled(1000000));
    std::vector<T> work(input.size());
    for (auto _ : state) {
        state.PauseTiming();
        work = input;
        state.ResumeTiming();
        sort(work.data(), work.size());
        benchmark::DoNotOptimize(work.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * input.size()));
}

template <class T>
void register_typed(const std::string &type, const std::string &op,
                    void (*library_sort)(T *, int32_t)) {
    for (Shape shape : kShapes) {
        const std::string input = shape_name(shape);
        benchmark::RegisterBenchmark(("sort/" + op + "/" + input).c_str(), [=](benchmark::State &st) {
            run<T>(st, shape, [=](T *v, size_t n) { library_sort(v, static_cast<int32_t>(n)); });
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("sort/std_sort_" + type + "/" + input).c_str(),
                                     [=](benchmark::State &st) {
                                         run<T>(st, shape, [](T *v, size_t n) { std::sort(v, v + n); });
                                     })
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("sort/qsort_" + type + "/" + input).c_str(),
                                     [=](benchmark::State &st) {
                                         run<T>(st, shape, [](T *v, size_t n) {
                                             std::qsort(v, n, sizeof(T), compare_values<T>);
                                         });
                                     })
            ->Unit(benchmark::kMillisecond);
    }
}

const int registered = [] {
    register_typed<double>("double", "dvector", sort_dvector);
    register_typed<int32_t>("long", "lvector", sort_lvector);
    for (Shape shape : kShapes) {
        const std::string input = shape_name(shape);
        benchmark::RegisterBenchmark(("sort/quick/" + input).c_str(), [=](benchmark::State &st) {
            run<double>(st, shape, [](double *v, size_t n) {
                sort_quick(v, static_cast<uint32_t>(n), sizeof(double), compare_values_32<double>);
            });
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("sort/qsort_compare/" + input).c_str(), [=](benchmark::State &st) {
            run<double>(st, shape, [](double *v, size_t n) {
                std::qsort(v, n, sizeof(double), compare_values<double>);
            });
        })->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("sort/dvector_by_index/random", [](benchmark::State &st) {
        const std::vector<double> input = make_input<double>(Shape::random, scaled(1000000));
        std::vector<const double *> index(input.size());
        for (auto _ : st) {
            sort_dvector_by_index(input.data(), index.data(), static_cast<int32_t>(input.size()));
            benchmark::DoNotOptimize(index.data());
        }
    })->Unit(benchmark::kMillisecond);
    return 0;
}();

}  // namespace

BENCHMARK_MAIN();
