// Element operations: insert before, delete, counts, checks, data length and the walk over
// the children of a block.
#include <tivlib/env.h>
#include <tivlib/str.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "env/locate.h"
#include "env/report.h"
#include "env/walk_path.h"

using namespace tiv::env;

namespace {

bool found(int32_t status) {
  return status == ENV_IS_DATA || status == ENV_IS_BLOCK || status == ENV_IS_EXTERNAL;
}

bool same(const char* a, const char* b) { return std::strcmp(a, b) == 0; }

// Links a new external element named name (word 0) in front of target in target's block.
int32_t insert_in_front(env_handle* env, Element* target, const char* name) {
  Block* b = target->block;
  if (b == nullptr) {
    // A section has no block of its own to be inserted in.
    report("Unexpected nil", __LINE__);
    return ENV_ERROR;
  }
  Element* before = nullptr;
  if (b->first != target) {
    before = predecessor(b, target);
    if (before == nullptr) {
      report("Unexpected nil", __LINE__);
      return ENV_OK;
    }
  }
  Element* e = new_element(*env->store, name);
  if (e == nullptr) {
    report_no_memory(__LINE__);
    return ENV_ERROR;
  }
  e->block = b;
  e->next = target;
  if (before == nullptr) b->first = e;
  else before->next = e;
  ++b->count;
  ++env->store->reshapes;
  return ENV_OK;
}

// Inserts a new section, an empty block, in front of the first section named section.
int32_t insert_section(env_handle* env, const char* section, const char* name) {
  if (section == nullptr) {
    report("bypass Nil section", __LINE__);
    return ENV_ERROR;
  }
  Block* top = top_block(env);
  Element* before = nullptr;
  for (Element* s = top->first; s != nullptr; before = s, s = s->next) {
    if (!same(s->name(), section)) continue;
    Element* e = new_element(*env->store, name);
    if (e == nullptr) {
      report_no_memory(__LINE__);
      return ENV_ERROR;
    }
    make_block(*env->store, e);
    e->next = s;
    if (before == nullptr) top->first = e;
    else before->next = e;
    ++top->count;
    ++env->store->reshapes;
    return ENV_OK;
  }
  return ENV_NOT_FOUND;
}

Block* child_block(const Element* e) { return e->kind == kBlock ? e->value.child : nullptr; }

}  // namespace

extern "C" {

int32_t env_insert_before(env_handle* env, const char* section, const char* path,
                          const char* name) noexcept {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  if (name == nullptr) {
    report("Nil parametr", __LINE__);
    return ENV_ERROR;
  }
  if (path == nullptr) {
    if (env->is_subenv) return insert_in_front(env, anchor_element(env), name);
    return insert_section(env, section, name);
  }
  Op op{env};
  locate(op, section, path, 1, false);
  if (env->status == ENV_NOT_FOUND) return ENV_NOT_FOUND;
  if (!found(env->status)) return ENV_ERROR;
  return insert_in_front(env, env->cursor, name);
}

int32_t env_delete(env_handle* env, const char* section, const char* path) noexcept {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  if (path != nullptr) {
    Op op{env};
    locate(op, section, path, 1, false);
    if (!found(env->status)) return env->status;
    Element* e = env->cursor;
    Block* b = e->block != nullptr ? e->block : top_block(env);
    free_element(*env->store, b, predecessor(b, e), e);
    env->cursor = nullptr;
    return ENV_OK;
  }
  if (env->is_subenv) return ENV_ERROR;
  Block* top = top_block(env);
  if (top->first == nullptr) return ENV_NOT_FOUND;
  if (section == nullptr) {
    report("bypass Nil section", __LINE__);
    return ENV_ERROR;
  }
  Element* before = nullptr;
  for (Element* s = top->first; s != nullptr; before = s, s = s->next) {
    if (same(s->name(), section)) {
      free_element(*env->store, top, before, s);
      env->cursor = nullptr;
      return ENV_OK;
    }
  }
  return ENV_NOT_FOUND;
}

int32_t env_count_path(env_handle* env, const char* section, const char* path,
                       int32_t exact) noexcept {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  if (path == nullptr) {
    // The count needs a last name; a missing path is one that can't be split.
    report("Unexpected nil path", __LINE__);
    report("Can not separate path", __LINE__);
    return ENV_BAD_PATH;
  }
  const char* last = std::strrchr(path, delimiter_first());
  const char* name = last != nullptr ? last + 1 : path;
  Op op{env};
  locate(op, section, path, exact, false);
  if (env->status == ENV_NOT_FOUND) return 0;
  if (!found(env->status)) return env->status;
  const Element* e = env->cursor;
  const Block* b = e->block != nullptr ? e->block : top_block(env);
  int32_t count = 0;
  for (const Element* x = b->first; x != nullptr; x = x->next)
    if (same(x->name(), name)) ++count;
  return count;
}

int32_t env_count_elements(env_handle* env, const char* section, const char* path,
                           int32_t exact) noexcept {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  if (!env->is_subenv && section == nullptr) return top_block(env)->count;
  const Element* e = nullptr;
  if (path != nullptr) {
    Op op{env};
    locate(op, section, path, exact, false);
    if (env->status != ENV_IS_BLOCK) return 0;
    e = env->cursor;
  } else if (env->is_subenv) {
    e = anchor_element(env);
  } else {
    e = find_section(env, section);
    if (e == nullptr) return 0;
  }
  const Block* b = child_block(e);
  return b != nullptr ? b->count : 0;
}

int32_t env_check(env_handle* env, const char* section, const char* path,
                  int32_t exact) noexcept {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  // A root without a section answers for its list of sections; a path is not read then.
  if (!env->is_subenv && section == nullptr)
    return top_block(env)->first != nullptr ? ENV_IS_BLOCK : ENV_NOT_FOUND;
  if (path == nullptr) {
    if (!env->is_subenv) return find_section(env, section) != nullptr ? ENV_IS_BLOCK : ENV_NOT_FOUND;
    const Element* e = anchor_element(env);
    if (e->kind != kBlock) return kind_status(e);
    const Block* b = child_block(e);
    return b != nullptr && b->first != nullptr ? ENV_IS_BLOCK : ENV_NOT_FOUND;
  }
  Op op{env};
  locate(op, section, path, exact, false);
  return found(env->status) ? env->status : ENV_NOT_FOUND;
}

int32_t env_exist(env_handle* env, const char* section, const char* path, int32_t exact) noexcept {
  return found(env_check(env, section, path, exact)) ? 1 : 0;
}

int32_t env_exist_data(env_handle* env, const char* section, const char* path,
                       int32_t exact) noexcept {
  return env_check(env, section, path, exact) == ENV_IS_DATA ? 1 : 0;
}

int32_t env_exist_block(env_handle* env, const char* section, const char* path,
                        int32_t exact) noexcept {
  return env_check(env, section, path, exact) == ENV_IS_BLOCK ? 1 : 0;
}

int32_t env_exist_external(env_handle* env, const char* section, const char* path,
                           int32_t exact) noexcept {
  return env_check(env, section, path, exact) == ENV_IS_EXTERNAL ? 1 : 0;
}

int32_t env_data_length(env_handle* env, const char* section, const char* path,
                        int32_t exact) noexcept {
  const char* text = nullptr;
  if (get_core(env, section, path, exact, 0, nullptr, nullptr, &text, nullptr) != ENV_IS_DATA)
    return 0;
  return static_cast<int32_t>(std::strlen(text));
}

// The position of each element of a walk among its same-named siblings (1 for the first of
// its name), kept as the walk goes: constant time per step while the list in front of the
// walk stays as it was. After a change the position is counted again from the start of the
// list. 0 when memory for the counts runs out.
}  // extern "C"

namespace {

class SiblingPositions {
 public:
  long next(const Block* list, const Element* e) noexcept {
    if (valid_ && e == expected_) {
      try {
        const long position = ++counts_[std::string_view(e->name(), e->name_length())];
        expected_ = e->next;
        return position;
      } catch (...) {
        valid_ = false;
      }
    }
    return recount(list, e);
  }
  void invalidate() noexcept { valid_ = false; }

 private:
  long recount(const Block* list, const Element* e) noexcept {
    long position = 1;
    valid_ = false;
    try {
      counts_.clear();
      for (const Element* x = list->first; x != nullptr && x != e; x = x->next)
        ++counts_[std::string_view(x->name(), x->name_length())];
      position = ++counts_[std::string_view(e->name(), e->name_length())];
      valid_ = true;
      expected_ = e->next;
    } catch (...) {
      counts_.clear();
      position = 0;
    }
    return position;
  }

  std::unordered_map<std::string_view, long> counts_;
  const Element* expected_ = nullptr;
  bool valid_ = false;
};

}  // namespace

extern "C" {

// Each child is visited through a sub-environment opened by its generated path, which
// always spells the position (name@N). A child whose path would exceed 79 characters, or
// whose name holds a delimiter character, can't be reached that way: it is not visited and
// the walk gives -10 once it has visited the others. A visit may delete the element it was
// called for; the walk then goes on with the element that took its place.
int32_t env_traverse(env_handle* env, const char* section, const char* path, int32_t exact,
                     env_visit_fn visit, intptr_t user) noexcept {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  if (visit == nullptr) {
    report("Nil parametr", __LINE__);
    return ENV_ERROR;
  }
  Op op{env};
  locate_pos(op, section, path, 1, exact);
  switch (env->status) {
    case ENV_ERROR:
    case ENV_BAD_PATH:
      return env->status;
    case ENV_NOT_FOUND:
      return ENV_IS_BLOCK;
    case ENV_IS_DATA:
    case ENV_IS_BLOCK:
    case ENV_IS_EXTERNAL:
      break;
    default:
      zv_switch_error(env->status, kEnvCore, __LINE__);
      return ENV_ERROR;
  }
  const bool sections = !env->is_subenv && section == nullptr;
  Block* list = sections ? top_block(env) : env->cursor->block;
  if (list == nullptr) list = top_block(env);
  Store& store = *env->store;
  const uint64_t at_start = store.reshapes;
  int32_t result = ENV_OK;
  char generated[kWalkPathMax + 1];
  SiblingPositions positions;
  std::size_t index = 0;  // of e in the list
  for (Element* e = env->cursor; e != nullptr;) {
    // Positions count the same-named siblings in front; they are kept as the walk goes, and
    // counted afresh only after a visit changed the list in front of e.
    const long position = positions.next(list, e);
    if (position == 0) {
      report_no_memory(__LINE__);
      return ENV_ERROR;
    }
    const uint64_t seen = store.reshapes;
    const char* visit_section = section;
    char* visit_path = nullptr;
    bool reachable = true;
    if (sections) {
      visit_section = e->name();
    } else {
      reachable = join_walk_path(generated, path, e->name(), position);
      visit_path = generated;
    }
    // The generated address names e itself (a section only when it is the first of its name),
    // as long as it is read exactly and nothing changed since the walk began: the
    // sub-environment is then opened on e directly instead of looking the address up again.
    env_handle* sub = nullptr;
    if (reachable) {
      const bool direct = sections ? position == 1 : exact != 0 && store.reshapes == at_start;
      sub = direct ? open_subenv_at(env, e) : env_open_subenv(env, visit_section, visit_path, exact);
    }
    if (sub != nullptr) {
      visit(sub, visit_section, visit_path, user);
      env_close(sub, 0);
    } else {
      result = ENV_ERROR;
    }
    if (store.reshapes == seen) {
      e = e->next;
      ++index;
      continue;
    }
    // The visit changed the lists: go on behind e if it is still there, else with the element
    // that took its place.
    Element* in_place = nullptr;
    bool still_there = false;
    std::size_t i = 0;
    for (Element* x = list->first; x != nullptr; x = x->next, ++i) {
      if (x == e) {
        still_there = true;
        break;
      }
      if (i == index) in_place = x;
    }
    e = still_there ? e->next : in_place;
    if (still_there) index = i + 1;
    positions.invalidate();
  }
  return result;
}

}  // extern "C"
