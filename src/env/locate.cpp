// Path resolution: the exact and the searching step, positions, and creation of what a put
// finds missing.
#include "env/locate.h"

#include <cstring>
#include <new>
#include <vector>

#include "env/name_index.h"
#include "env/report.h"

namespace tiv::env {

namespace {

// Most filler elements one put may create at one place (wall@N with N far beyond the
// existing walls); a larger position is refused so that a typo cannot exhaust memory.
constexpr int32_t kFillMax = 1000000;

// Handed out for a data element without a text. Writable, since the value parser terminates
// tokens in place (and mends them).
char g_no_text[1] = "";

bool same(const char* a, const char* b) { return std::strcmp(a, b) == 0; }

Block* child_of(const Element* e) {
  return e != nullptr && e->kind == kBlock ? e->value.child : nullptr;
}

// Exact step: the position-th child named name, counting the position down as the walk
// passes elements of that name. A position below 1 takes the first child of any name.
Element* exact_step(Store& store, SplitPath& path, Element* from) {
  Block* b = child_of(from);
  if (b == nullptr) return nullptr;
  if (path.position < 1) return b->first;
  Element* found = nullptr;
  int32_t count = 0;
  if (indexed_child(store, b, path.name, path.position, &found, &count)) {
    path.position = found != nullptr ? 0 : path.position - count;
    return found;
  }
  for (Element* e = b->first; e != nullptr; e = e->next) {
    if (same(e->name(), path.name) && --path.position == 0) return e;
  }
  return nullptr;
}

// Searching step: breadth first over the blocks below from, the position counted anew in
// each block. Elements of the wanted name are not searched below.
Element* search_step(const SplitPath& path, Element* from) {
  Block* start = child_of(from);
  if (start == nullptr) return nullptr;
  try {
    std::vector<Block*> queue{start};
    for (std::size_t head = 0; head < queue.size(); ++head) {
      Block* b = queue[head];
      if (path.position < 1) {
        if (b->first != nullptr) return b->first;
        continue;
      }
      int32_t count = path.position;
      for (Element* e = b->first; e != nullptr; e = e->next) {
        if (same(e->name(), path.name)) {
          if (--count == 0) return e;
        } else if (Block* c = child_of(e); c != nullptr) {
          queue.push_back(c);
        }
      }
    }
  } catch (const std::bad_alloc&) {
    report_no_memory(__LINE__);
  }
  return nullptr;
}

// Walks a split path from the cursor.
void walk(Op& op, const char* path, int32_t exact) {
  env_handle* env = op.env;
  if (!op.path.split(path, __LINE__)) {
    env->status = ENV_BAD_PATH;
    return;
  }
  while (op.path.name != nullptr) {
    Element* found = exact ? exact_step(*env->store, op.path, env->cursor) : search_step(op.path, env->cursor);
    if (found == nullptr) {
      env->status = ENV_NOT_FOUND;
      return;
    }
    op.path.step();
    env->cursor = found;
  }
  env->status = kind_status(env->cursor);
}

// Moves the cursor to the pos-th child (from 1, any name) of the block at the cursor.
void position_walk(env_handle* env, int32_t pos) {
  Element* e = nth_child(*env->store, child_of(env->cursor), pos);
  env->cursor = e;
  env->status = e != nullptr ? kind_status(e) : ENV_NOT_FOUND;
}

// True if neither the current name nor a name behind it asks for more than kFillMax new
// elements. The tokens are paired as SplitPath::step pairs them.
bool fill_within_limit(const SplitPath& path) {
  if (path.position > kFillMax) return false;
  for (int i = path.next_token; i < path.count;) {
    ++i;  // a name
    if (i < path.count && all_digits(path.tokens[i])) {
      int64_t value = 0;
      for (const char* d = path.tokens[i]; *d && value <= kFillMax; ++d) value = value * 10 + (*d - '0');
      if (value > kFillMax) return false;
      ++i;
    }
  }
  return true;
}

// Appends position elements named name to e (at least one); all but the last are data with
// an empty text, the last is what the caller asked for. Gives the last, or none.
Element* add_child(Store& store, Element* e, const char* name, int32_t position, int32_t kind,
                   const char* value, intptr_t word) {
  make_block(store, e);
  if (!ensure_child_block(store, e)) return nullptr;
  const std::string_view n{name};
  if (position < 1) position = 1;  // name@0 where nothing stands creates one element
  for (int32_t i = 1; i < position; ++i) {
    Element* filler = new_element(store, n);
    if (filler == nullptr) return nullptr;
    if (!set_text(store, filler, {})) {
      destroy(store, filler);
      return nullptr;
    }
    append(e->value.child, filler);
  }
  Element* last = new_element(store, n);
  if (last == nullptr) return nullptr;
  if (kind == kBlock) {
    make_block(store, last);
  } else if (value != nullptr) {
    if (!set_text(store, last, value)) {
      destroy(store, last);
      return nullptr;
    }
  } else {
    last->value.word = word;
  }
  append(e->value.child, last);
  return last;
}

}  // namespace

void report_no_memory(int line) noexcept { report("out of memory", line); }

bool enter(env_handle* env, int line) noexcept {
  if (env == nullptr) {
    report("Nil parametr", line);
    return false;
  }
  env->status = ENV_OK;
  return true;
}

Element* find_section(env_handle* env, const char* section) noexcept {
  Block* top = top_block(env);
  env->cursor = top->first;
  if (section == nullptr) {
    report("bypass Nil section", __LINE__);
    env->status = ENV_ERROR;
    return nullptr;
  }
  for (Element* e = top->first; e != nullptr; e = e->next) {
    env->cursor = e;
    if (same(e->name(), section)) return e;
  }
  env->cursor = nullptr;
  return nullptr;
}

void locate(Op& op, const char* section, const char* path, int32_t exact, bool create) noexcept {
  env_handle* env = op.env;
  if (env->is_subenv) {
    env->cursor = anchor_element(env);
  } else if (find_section(env, section) == nullptr) {
    if (!create) {
      env->status = ENV_NOT_FOUND;
      return;
    }
    if (section == nullptr) {
      env->status = ENV_ERROR;
      return;
    }
    Element* s = new_element(*env->store, section);
    if (s == nullptr) {
      report_no_memory(__LINE__);
      env->status = ENV_ERROR;
      return;
    }
    make_block(*env->store, s);
    append(top_block(env), s);
    env->cursor = s;
    env->status = ENV_NOT_FOUND;
    if (path != nullptr && !op.path.split(path, __LINE__)) env->status = ENV_BAD_PATH;
    return;
  }
  if (path == nullptr) {
    env->status = ENV_IS_BLOCK;
    return;
  }
  walk(op, path, exact);
}

void locate_pos(Op& op, const char* section, const char* path, int32_t pos,
                int32_t exact) noexcept {
  env_handle* env = op.env;
  auto failed = [](int32_t s) {
    return s == ENV_NOT_FOUND || s == ENV_BAD_PATH || s == ENV_ERROR;
  };
  if (env->is_subenv) {
    if (path != nullptr) {
      locate(op, nullptr, path, exact, false);
    } else {
      env->cursor = anchor_element(env);
      env->status = kind_status(env->cursor);
    }
    if (pos > 0 && !failed(env->status)) position_walk(env, pos);
    return;
  }
  if (section == nullptr) {
    if (pos > 0) {
      Element* e = nth_child(*env->store, top_block(env), pos);
      env->cursor = e;
      env->status = e != nullptr ? kind_status(e) : ENV_NOT_FOUND;
    } else {
      report("section == NIL and pos == 0", __LINE__);
    }
    return;
  }
  if (path == nullptr) {
    Element* s = find_section(env, section);
    if (s == nullptr) env->status = ENV_NOT_FOUND;
    else if (pos > 0) position_walk(env, pos);
    else env->status = kind_status(s);
    return;
  }
  locate(op, section, path, exact, false);
  if (pos > 0) {
    if (env->status == ENV_IS_BLOCK) position_walk(env, pos);
    else env->status = ENV_NOT_FOUND;
  }
}

int32_t create_rest(Op& op, const char* value, intptr_t word) noexcept {
  env_handle* env = op.env;
  Store& store = *env->store;
  if (!fill_within_limit(op.path)) {
    report("position too large", __LINE__);
    return ENV_ERROR;
  }
  Element* at = env->cursor;
  make_block(store, at);
  while (op.path.more()) {
    at = add_child(store, at, op.path.name, op.path.position, kBlock, nullptr, 0);
    if (at == nullptr) {
      report_no_memory(__LINE__);
      return ENV_ERROR;
    }
    op.path.step();
  }
  Element* last = add_child(store, at, op.path.name, op.path.position,
                            value != nullptr ? kData : kExternal, value, word);
  if (last == nullptr) {
    report_no_memory(__LINE__);
    return ENV_ERROR;
  }
  env->cursor = last;
  return ENV_OK;
}

int32_t replace_value(Store& store, Element* e, const char* value, intptr_t word) noexcept {
  if (value != nullptr) {
    if (!set_text(store, e, value)) {
      report_no_memory(__LINE__);
      return ENV_ERROR;
    }
    return ENV_OK;
  }
  clear_value(store, e);
  e->value.word = word;
  return ENV_OK;
}

int32_t get_core(env_handle* env, const char* section, const char* path, int32_t exact,
                 int32_t pos, int32_t* id_out, const char** name_out, const char** data_out,
                 intptr_t* word_out) noexcept {
  for (env_handle* h = env;;) {
    if (!enter(h, __LINE__)) return ENV_ERROR;
    Op op{h};
    if (!h->is_subenv && section == nullptr && pos == 0) h->status = ENV_ERROR;
    else locate_pos(op, section, path, pos, exact);
    if (h->cursor == nullptr) h->status = ENV_NOT_FOUND;

    const int32_t s = h->status;
    if (s == ENV_IS_DATA || s == ENV_IS_BLOCK || s == ENV_IS_EXTERNAL) {
      Element* e = h->cursor;
      if (name_out != nullptr) *name_out = e->name();
      switch (e->kind) {
        case kData:
          if (data_out != nullptr) *data_out = e->value.text != nullptr ? e->value.text : g_no_text;
          h->status = ENV_IS_DATA;
          break;
        case kExternal:
          if (word_out != nullptr) *word_out = e->value.word;
          h->status = ENV_IS_EXTERNAL;
          break;
        case kBlock:
          h->status = ENV_IS_BLOCK;
          break;
        default:
          report("unknown element type", __LINE__);
      }
      if (id_out != nullptr) *id_out = h->id;
      return h->status;
    }
    switch (s) {
      case ENV_ERROR:
      case ENV_BAD_PATH:
        return s;
      case ENV_NOT_FOUND:
        if (h->parent != nullptr && section != nullptr && path != nullptr && pos == 0) {
          h = h->parent;
          continue;
        }
        return ENV_NOT_FOUND;
      default:
        zv_switch_error(s, kEnvCore, __LINE__);
        return s;
    }
  }
}

}  // namespace tiv::env
