// Fuzzes the list operations against a model. The input is a program: each byte pair is an
// operation and an operand on 16 nodes. After every step the links, the descriptor and the
// model must agree. Insertions with a position outside the list must be refused unchanged.
#include <tivlib/list.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace {

struct Node {
    void *prev;
    void *next;
    int id;
};

constexpr int kNodes = 16;

int32_t match_id(void *e, intptr_t key) { return static_cast<Node *>(e)->id == key ? 1 : 0; }

void check(const listdescriptor &l, const std::vector<int> &model, Node *nodes) {
    if (l.count != static_cast<int32_t>(model.size())) std::abort();
    void *prev = nullptr;
    void *e = l.first;
    for (int id : model) {
        if (e != &nodes[id] || static_cast<Node *>(e)->prev != prev) std::abort();
        prev = e;
        e = static_cast<Node *>(e)->next;
    }
    if (e != nullptr || l.last != prev) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    // Refused insertions write zv.err: keep it out of the working directory.
    auto dir = std::filesystem::temp_directory_path() / "tivlib-fuzz-list";
    std::filesystem::create_directories(dir);
    std::filesystem::current_path(dir);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size > 2048) return 0;
    Node nodes[kNodes];
    for (int i = 0; i < kNodes; ++i) nodes[i] = Node{nullptr, nullptr, i};
    listdescriptor list;
    list_init(&list);
    std::vector<int> model;
    auto in_list = [&](int id) { return std::find(model.begin(), model.end(), id) != model.end(); };
    for (size_t i = 0; i + 1 < size; i += 2) {
        const int op = data[i] % 8;
        const int a = data[i + 1] % kNodes;
        const int b = (data[i + 1] / kNodes) % kNodes;
        switch (op) {
            case 0:
            case 1: {  // insert a before / after b (or at an end when b is not in the list)
                if (in_list(a)) break;
                const bool use_b = in_list(b);
                Node *pos = use_b ? &nodes[b] : nullptr;
                auto at = use_b ? std::find(model.begin(), model.end(), b) : model.end();
                if (op == 0) {
                    list_insert_before(&list, pos, &nodes[a]);
                    model.insert(use_b ? at : model.begin(), a);
                } else {
                    list_insert_after(&list, pos, &nodes[a]);
                    model.insert(use_b ? at + 1 : model.end(), a);
                }
                break;
            }
            case 2:  // a position outside the list is refused
                if (in_list(a) || in_list(b) || a == b || model.empty()) break;
                nodes[b].prev = nodes[b].next = nullptr;
                list_insert_before(&list, &nodes[b], &nodes[a]);
                list_insert_after(&list, &nodes[b], &nodes[a]);
                break;
            case 3:
                if (!in_list(a)) break;
                list_delete(&list, &nodes[a]);
                model.erase(std::find(model.begin(), model.end(), a));
                break;
            case 4: {
                void *found = list_search(&list, match_id, a);
                if (found != (in_list(a) ? &nodes[a] : nullptr)) std::abort();
                if (list_search_backward(&list, match_id, a) != found) std::abort();
                if (list_isinlist(&list, &nodes[a]) != (in_list(a) ? 1 : 0)) std::abort();
                break;
            }
            case 5: {
                const int32_t number = static_cast<int32_t>(data[i + 1] % 20) - 2;
                void *e = list_get_element_by_number(&list, number);
                const size_t k = number <= 1 ? 0 : static_cast<size_t>(number - 1);
                if (e != (k < model.size() ? &nodes[model[k]] : nullptr)) std::abort();
                break;
            }
            case 6: {  // search from a to b
                if (!in_list(a)) break;
                void *found = list_search_from_to(&list, &nodes[a], &nodes[b], match_id, b);
                auto from = std::find(model.begin(), model.end(), a);
                const bool reachable = std::find(from, model.end(), b) != model.end();
                if (found != (reachable ? &nodes[b] : nullptr)) std::abort();
                break;
            }
            default:
                list_free_all(&list, nullptr);
                model.clear();
                break;
        }
        check(list, model, nodes);
    }
    return 0;
}
