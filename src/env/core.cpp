// Handles and the two primitives: env_open, env_open_subenv, env_close, env_set_delimiter,
// env_put_core, env_get_core.
#include <tivlib/env.h>
#include <tivlib/heap.h>

#include <new>

#include "env/iteration.h"
#include "env/locate.h"
#include "env/report.h"

using namespace tiv::env;

extern "C" {

env_handle* env_open(int32_t id, env_handle* parent) noexcept {
  auto* env = static_cast<env_handle*>(heap_calloc(1, sizeof(env_handle)));
  if (env == nullptr) {
    report_no_memory(__LINE__);
    return nullptr;
  }
  void* room = heap_malloc(sizeof(Store));
  if (room == nullptr) {
    heap_free(env);
    report_no_memory(__LINE__);
    return nullptr;
  }
  env->store = new (room) Store();
  env->is_subenv = 0;
  env->body = &env->store->top;
  env->id = id;
  env->parent = parent;
  if (parent != nullptr) ++parent->open_count;
  return env;
}

env_handle* env_open_subenv(env_handle* env, const char* section, const char* path,
                            int32_t exact) noexcept {
  if (!enter(env, __LINE__)) return nullptr;
  Op op{env};
  locate(op, section, path, exact, false);
  if (env->status != ENV_IS_DATA && env->status != ENV_IS_BLOCK &&
      env->status != ENV_IS_EXTERNAL)
    return nullptr;
  return tiv::env::open_subenv_at(env, env->cursor);
}

}  // extern "C"

namespace tiv::env {

env_handle* open_subenv_at(env_handle* env, Element* e) noexcept {
  env->cursor = e;
  env->status = kind_status(e);
  auto* sub = static_cast<env_handle*>(heap_calloc(1, sizeof(env_handle)));
  if (sub == nullptr) {
    report_no_memory(__LINE__);
    return nullptr;
  }
  sub->is_subenv = 1;
  sub->anchor.element = env->cursor;
  sub->anchor.owner = env;
  sub->body = &sub->anchor;
  sub->id = env->id;
  sub->parent = env->parent;
  sub->store = env->store;
  ++env->open_count;
  return sub;
}

}  // namespace tiv::env

extern "C" {

int32_t env_close(env_handle* env, int32_t chain) noexcept {
  while (true) {
    if (!enter(env, __LINE__)) return ENV_ERROR;
    if (env->open_count != 0) return ENV_IN_USE;
    forget_iteration(env);
    if (env->is_subenv) {
      --env->anchor.owner->open_count;
      heap_free(env);
      return ENV_OK;
    }
    env_handle* parent = env->parent;
    env->store->~Store();
    heap_free(env->store);
    heap_free(env);
    if (parent == nullptr) return ENV_OK;
    --parent->open_count;
    if (chain == 0) return ENV_OK;
    env = parent;
  }
}

char* env_set_delimiter(const char* delimiter) noexcept { return set_delimiter(delimiter); }

int32_t env_put_core(env_handle* env, const char* section, const char* path, const char* value,
                     intptr_t word) noexcept {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  Op op{env};
  locate(op, section, path, 1, true);
  switch (env->status) {
    case ENV_ERROR:
      return ENV_ERROR;
    case ENV_BAD_PATH:
      return ENV_OK;
    case ENV_NOT_FOUND:
      return path != nullptr ? create_rest(op, value, word) : ENV_OK;
    case ENV_IS_DATA:
    case ENV_IS_BLOCK:
    case ENV_IS_EXTERNAL:
      if (path != nullptr || env->is_subenv)
        return replace_value(*env->store, env->cursor, value, word);
      return ENV_OK;
    default:
      zv_switch_error(env->status, kEnvCore, __LINE__);
      return ENV_ERROR;
  }
}

int32_t env_get_core(env_handle* env, const char* section, const char* path, int32_t exact,
                     int32_t pos, int32_t* id_out, const char** name_out,
                     const char** data_out, intptr_t* word_out) noexcept {
  return get_core(env, section, path, exact, pos, id_out, name_out, data_out, word_out);
}

}  // extern "C"
