// Fuzzes the vector and list sorts. The input is read as doubles (any bit pattern, NaNs
// included), as 32-bit integers, and as records of a size the first byte picks, sorted with a
// comparison that answers from the input itself (possibly inconsistently). Checks: typed sorts
// give sorted permutations with NaNs last; sort_quick always keeps a permutation and, with a
// consistent comparison, sorts; sort_list sorts and puts later ties first.
#include <tivlib/list.h>
#include <tivlib/sort.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

const uint8_t *g_noise = nullptr;
size_t g_noise_size = 0;
size_t g_noise_at = 0;

int32_t noisy_compare(const void *, const void *) {
    if (g_noise_size == 0) return 0;
    const uint8_t b = g_noise[g_noise_at++ % g_noise_size];
    return static_cast<int32_t>(b % 3) - 1;
}

int32_t compare_bytes_4(const void *a, const void *b) {
    const int c = std::memcmp(a, b, 4);
    return c < 0 ? -1 : c > 0 ? 1 : 0;
}

struct Item {
    void *prev;
    void *next;
    uint8_t key;
    size_t order;
};

int32_t compare_items(void *placed, void *placing) {
    const uint8_t x = static_cast<Item *>(placed)->key, y = static_cast<Item *>(placing)->key;
    return x < y ? 1 : x > y ? 2 : 0;
}

template <class T>
std::vector<T> read_as(const uint8_t *data, size_t size) {
    std::vector<T> v(size / sizeof(T));
    if (!v.empty()) std::memcpy(v.data(), data, v.size() * sizeof(T));
    return v;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1 || size > 1 << 16) return 0;

    auto d = read_as<double>(data, size);
    const auto original = d;
    std::vector<const double *> index(d.size());
    sort_dvector_by_index(original.data(), index.data(), static_cast<int32_t>(d.size()));
    sort_dvector(d.data(), static_cast<int32_t>(d.size()));
    const auto numbers = std::partition_point(d.begin(), d.end(), [](double x) { return !std::isnan(x); });
    if (!std::is_sorted(d.begin(), numbers) || !std::all_of(numbers, d.end(), [](double x) { return std::isnan(x); }))
        std::abort();
    for (size_t k = 0; k < index.size(); ++k) {
        const bool nan = std::isnan(*index[k]);
        if (nan != (k >= static_cast<size_t>(numbers - d.begin()))) std::abort();
        if (!nan && *index[k] != d[k]) std::abort();
    }

    auto l = read_as<int32_t>(data, size);
    auto want = l;
    sort_lvector(l.data(), static_cast<int32_t>(l.size()));
    std::sort(want.begin(), want.end());
    if (l != want) std::abort();

    const uint32_t record = data[0] % 13 + 1;
    const size_t n = (size - 1) / record;
    std::vector<uint8_t> records(data + 1, data + 1 + n * record);
    auto pieces = [&](const std::vector<uint8_t> &v) {
        std::vector<std::string> out;
        for (size_t k = 0; k < n; ++k) out.emplace_back(reinterpret_cast<const char *>(&v[k * record]), record);
        std::sort(out.begin(), out.end());
        return out;
    };
    const auto before = pieces(records);
    g_noise = data;
    g_noise_size = size;
    g_noise_at = 0;
    sort_quick(records.data(), static_cast<uint32_t>(n), record, noisy_compare);
    if (pieces(records) != before) std::abort();
    if (record >= 4) {
        sort_quick(records.data(), static_cast<uint32_t>(n), record, compare_bytes_4);
        for (size_t k = 1; k < n; ++k)
            if (std::memcmp(&records[(k - 1) * record], &records[k * record], 4) > 0) std::abort();
    }

    std::vector<Item> items(std::min<size_t>(size, 300));
    listdescriptor list;
    list_init(&list);
    for (size_t k = 0; k < items.size(); ++k) {
        items[k] = Item{nullptr, nullptr, static_cast<uint8_t>(data[k] % 8), k};
        list_insert_after(&list, nullptr, &items[k]);
    }
    sort_list(&list, data[0] % 3, compare_items);
    const bool ascending = data[0] % 3 == 1;
    size_t count = 0;
    for (void *e = list.first; e != nullptr; e = list_next_elem(e), ++count) {
        void *next = list_next_elem(e);
        if (next == nullptr) continue;
        const Item *x = static_cast<Item *>(e), *y = static_cast<Item *>(next);
        if (x->key == y->key ? x->order < y->order : (x->key < y->key) != ascending) std::abort();
    }
    if (count != items.size() || list.count != static_cast<int32_t>(items.size())) std::abort();
    return 0;
}
