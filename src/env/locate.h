// Resolving a section, a path and a position against a handle.
//
// Every public operation starts with enter(), which refuses a nil handle with the report
// "Nil parametr" and sets the handle's status to 0. The lookups leave their answer in the
// handle: cursor is where the walk stopped, status says what it found (-1 data, -2 block,
// -3 external) or why it failed (-4 not found, -6 bad path, -10 error).
#pragma once

#include <tivlib/env.h>

#include "env/path.h"
#include "env/tree.h"

namespace tiv::env {

// One operation on one handle: the handle and the split path of its lookup. After a failed
// exact walk, path holds the name that was not found, the count of elements of that name
// still missing, and the tokens behind it, so that a put can create the rest.
struct Op {
  explicit Op(env_handle* h) noexcept : env(h) {}
  env_handle* env;
  SplitPath path;
};

// Opening step of every operation. False (after the report) if env is nil.
bool enter(env_handle* env, int line) noexcept;

// Finds the first top-level element named section; cursor follows the walk.
Element* find_section(env_handle* env, const char* section) noexcept;

// Resolves section and path (exact or searching); with create, a missing section is made.
void locate(Op& op, const char* section, const char* path, int32_t exact, bool create) noexcept;

// The same with a position over all children of the addressed block (pos above 0).
void locate_pos(Op& op, const char* section, const char* path, int32_t pos,
                int32_t exact) noexcept;

// Creates the rest of a failed exact walk below the cursor; the last name becomes data with
// a copy of value, or external with word. Gives 0 or -10.
int32_t create_rest(Op& op, const char* value, intptr_t word) noexcept;

// Replaces the value of e in place by a copy of value, or by the external word. 0 or -10.
int32_t replace_value(Store& store, Element* e, const char* value, intptr_t word) noexcept;

// The read primitive behind env_get_core, with the parent fall-through.
int32_t get_core(env_handle* env, const char* section, const char* path, int32_t exact,
                 int32_t pos, int32_t* id_out, const char** name_out, const char** data_out,
                 intptr_t* word_out) noexcept;

// Reports that memory ran out.
void report_no_memory(int line) noexcept;

// A sub-environment standing on e, an element of env's tree, as env_open_subenv opens it
// after finding e (env's cursor and status then tell of e). None when memory is out.
env_handle* open_subenv_at(env_handle* env, Element* e) noexcept;

}  // namespace tiv::env
