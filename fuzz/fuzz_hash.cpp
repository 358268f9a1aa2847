// Fuzzes hash tables with chained scopes. The input opens a parent and a child of small sizes
// and then runs operations with names taken from the input. Checks: every index that an
// operation gives lies in its table and, read back with hash_get_index, holds the name and
// value that were stored or found; closing the chain inside out frees everything.
#include <tivlib/hash.h>
#include <tivlib/heap.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

int32_t by_first_bytes(const char *key) {
    uint32_t h = 0;
    for (int i = 0; i < 2 && key[i] != '\0'; ++i) h = h * 31 + static_cast<unsigned char>(key[i]);
    return static_cast<int32_t>(h & 0x7fffffff);
}

void expect_slot(hash_table *t, int32_t index, const std::string &name, intptr_t value) {
    char *stored = nullptr;
    intptr_t v = 0;
    if (hash_get_index(t, index, &stored, &v) != index || stored == nullptr) std::abort();
    if (name != stored || v != value) std::abort();
    heap_free(stored);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 3 || size > 4096) return 0;
    hash_table *parent = hash_open(1, data[0] % 32, nullptr, nullptr);
    hash_table *child = hash_open(2, data[1] % 32, data[2] % 2 ? by_first_bytes : nullptr, parent);
    if (parent == nullptr || child == nullptr) std::abort();
    size_t i = 3;
    while (i + 2 < size) {
        const int op = data[i] % 6;
        hash_table *t = data[i] & 0x80 ? parent : child;
        i += 2;
        const size_t length = std::min<size_t>(data[i - 1] % 6, size - i);
        std::string name(reinterpret_cast<const char *>(data + i), length);
        name = name.c_str();  // names end at a nul
        i += length;
        const intptr_t value = static_cast<intptr_t>(i);
        switch (op) {
            case 0:
            case 1: {
                const int32_t at = hash_put(t, name.c_str(), value);
                if (at >= 0) expect_slot(t, at, name, value);
                break;
            }
            case 2: {
                intptr_t v = -1, id = -1;
                const int32_t at = hash_get(child, name.c_str(), &v, &id);
                if (at >= 0) {
                    if (id != 1 && id != 2) std::abort();
                    expect_slot(id == 1 ? parent : child, at, name, v);
                } else if (v != -1 || id != -1) {
                    std::abort();
                }
                break;
            }
            case 3:
                hash_remove_name(t, name.c_str());
                break;
            case 4:
                hash_remove_index(t, static_cast<int32_t>(value % 40) - 2);
                break;
            default:
                if (data[i - 1] == 0xff) hash_reset(t);
                break;
        }
    }
    hash_close(parent);  // refused while the child is open
    hash_close(child);
    hash_close(parent);
    return 0;
}
