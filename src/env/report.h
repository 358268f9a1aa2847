// Source names of the family's reports, and a short way to make them.
#pragma once

#include <tivlib/zv.h>

namespace tiv::env {

inline constexpr const char* kEnvCore = "Env_core";  // tree, paths, text form, elements
inline constexpr const char* kEnvPg = "Env_pg";      // reads and the value parser
inline constexpr const char* kEnvUtil = "Env_util";  // typed writes, path joining
inline constexpr const char* kEnvUti2 = "Env_uti2";  // leaf walks, merge copying, files

inline void report(const char* text, int line, const char* source = kEnvCore,
                   const char* text2 = nullptr) noexcept {
  zv_error(text, text2, nullptr, source, line);
}

}  // namespace tiv::env
