// Utilities built on the public operations: the depth-first walk over all leaves, the
// merge copy of leaves from one environment into another, the copy of one block, and the
// creation of sub-environments.
//
// The go-on flag is shared by the walk and the sink: a visit that fails clears it, and from
// then on the sibling lists still in progress are walked with every visit doing nothing.
#include <tivlib/env.h>

#include <cstdio>
#include <cstring>

#include "env/locate.h"
#include "env/path.h"
#include "env/report.h"
#include "env/walk_path.h"

using namespace tiv::env;

namespace {

bool g_go_on = false;

// One env_traverse_leafs call.
struct LeafWalk {
  const char* prefix;  // the path down to the block being walked, or none
  env_visit_fn leaf_visit;
  intptr_t user;
};

// Called by env_traverse for each child. Leaves go to the caller's visitor with their full
// path; blocks with children are walked in turn, with the path down to them as prefix. A
// full path longer than 79 characters can't be handed on: the walk stops there with -10. A
// section that is data or external has no path, and a walk from a root passes it over.
int32_t leaf_step(env_handle* leaf, const char* section, char* path, intptr_t user) {
  auto* walk = reinterpret_cast<LeafWalk*>(user);
  if (!g_go_on) return 0;
  const int32_t kind = env_check(leaf, nullptr, nullptr, 1);
  char full[kWalkPathMax + 1];
  switch (kind) {
    case ENV_NOT_FOUND:
      return 0;
    case ENV_IS_DATA:
    case ENV_IS_EXTERNAL:
      if (path == nullptr) return 0;
      if (!join_full_path(full, walk->prefix, path)) {
        report("Path too long", __LINE__, kEnvUti2, path);
        g_go_on = false;
        return 0;
      }
      walk->leaf_visit(leaf, section, full, walk->user);
      return 0;
    case ENV_IS_BLOCK: {
      int32_t r;
      if (path != nullptr) {
        if (!join_full_path(full, walk->prefix, path)) {
          report("Path too long", __LINE__, kEnvUti2, path);
          g_go_on = false;
          return 0;
        }
        const char* outer = walk->prefix;
        walk->prefix = full;
        r = env_traverse(leaf, section, nullptr, 1, leaf_step, user);
        walk->prefix = outer;
      } else {
        r = env_traverse(leaf, section, nullptr, 1, leaf_step, user);
      }
      if (r != ENV_OK) g_go_on = false;
      return 0;
    }
    default:
      zv_switch_error(kind, kEnvUti2, __LINE__);
      g_go_on = false;
      return 0;
  }
}

// One env_sink call.
struct Sink {
  env_handle* target;
  int32_t mode;
};

// Copies a data leaf to section and path of the target through a 256-byte buffer; external
// leaves stay behind. A text of 255 characters or more stops the sink.
void copy_leaf(env_handle* leaf, const Sink& sink, const char* section, const char* path) {
  const int32_t kind = env_check(leaf, nullptr, nullptr, 1);
  if (kind == ENV_IS_EXTERNAL) return;
  if (kind != ENV_IS_DATA) {
    g_go_on = false;
    zv_switch_error(kind, kEnvUti2, __LINE__);
    return;
  }
  char text[256];
  if (env_get(leaf, nullptr, nullptr, 1, sizeof text - 1, text) < 0) {
    g_go_on = false;
    return;
  }
  if (env_put(sink.target, section, path, text) != ENV_OK) g_go_on = false;
}

int32_t sink_step(env_handle* leaf, const char* section, char* path, intptr_t user) {
  const auto& sink = *reinterpret_cast<const Sink*>(user);
  switch (sink.mode) {
    case ENV_SINK_ADD:
      if (env_exist(sink.target, section, path, 1) != 1) copy_leaf(leaf, sink, section, path);
      return 0;
    case ENV_SINK_APPEND: {
      // Only the leaf's own position is renumbered, behind the last of its name.
      char cut[kWalkPathMax + 1];
      std::snprintf(cut, sizeof cut, "%s", path);
      if (char* last = std::strrchr(cut, delimiter_first())) *last = '\0';
      const int32_t n = env_count_path(sink.target, section, cut, 1);
      if (n < 0) {  // the count failed: nothing sensible to number
        g_go_on = false;
        return 0;
      }
      char renumbered[kWalkPathMax + kDelimiterMax + 16];
      std::snprintf(renumbered, sizeof renumbered, "%s%s%ld", cut, delimiter(),
                    static_cast<long>(n) + 1);
      copy_leaf(leaf, sink, section, renumbered);
      return 0;
    }
    case ENV_SINK_REPLACE:
      copy_leaf(leaf, sink, section, path);
      return 0;
    case ENV_SINK_UPDATE:
      if (env_exist(sink.target, section, path, 1) == 1) copy_leaf(leaf, sink, section, path);
      return 0;
    default:
      zv_switch_error(sink.mode, kEnvUti2, __LINE__);
      g_go_on = false;
      return 0;
  }
}

}  // namespace

extern "C" {

int32_t env_traverse_leafs(env_handle* env, env_visit_fn leaf_visit, intptr_t user) noexcept {
  if (leaf_visit == nullptr) {
    report("Nil parametr", __LINE__, kEnvUti2);
    return ENV_ERROR;
  }
  g_go_on = true;
  LeafWalk walk{nullptr, leaf_visit, user};
  const int32_t r = env_traverse(env, nullptr, nullptr, 1, leaf_step,
                                 reinterpret_cast<intptr_t>(&walk));
  return r == ENV_OK && g_go_on ? ENV_OK : ENV_ERROR;
}

int32_t env_sink(env_handle* target, env_handle* source, int32_t mode) noexcept {
  if (target == nullptr) {
    report("Nil parametr", __LINE__, kEnvUti2);
    return ENV_ERROR;
  }
  g_go_on = true;
  Sink sink{target, mode};
  const int32_t r = env_traverse_leafs(source, sink_step, reinterpret_cast<intptr_t>(&sink));
  return r == ENV_OK && g_go_on ? ENV_OK : ENV_ERROR;
}

int32_t env_copy_block(env_handle* target, env_handle* source, const char* section,
                       const char* path, int32_t mode) noexcept {
  env_handle* from = env_open_subenv(source, section, path, 1);
  if (from == nullptr) return ENV_ERROR;
  env_handle* to = env_create_subenv(target, section, path);
  if (to == nullptr) {
    env_close(from, 0);
    return ENV_ERROR;
  }
  const int32_t r = env_sink(to, from, mode);
  env_close(from, 0);
  env_close(to, 0);
  return r;
}

// A nil handle is told twice, by the open and by the put, before none is given.
env_handle* env_create_subenv(env_handle* env, const char* section, const char* path) noexcept {
  if (env_handle* h = env_open_subenv(env, section, path, 1)) return h;
  if (env_put_core(env, section, path, nullptr, 0) != ENV_OK) return nullptr;
  return env_open_subenv(env, section, path, 1);
}

}  // extern "C"
