// The iteration of env_get_first / env_get_next, kept for the whole library.
#pragma once

#include <tivlib/env.h>

namespace tiv::env {

// Ends the iteration if it runs on env (called when env is closed).
void forget_iteration(env_handle* env) noexcept;

}  // namespace tiv::env
