/* Tivlib: shared scalar types and declaration macros of every public header. */
#ifndef TIVLIB_TYPES_H
#define TIVLIB_TYPES_H

#include <stddef.h>
#include <stdint.h>

/* Marks an operation exported from the shared library; everything else stays hidden. */
#if defined(__GNUC__) || defined(__clang__)
#define TIV_API __attribute__((visibility("default")))
#else
#define TIV_API
#endif

/* Exported functions never throw; C++ callers see that in the declaration. */
#ifdef __cplusplus
#define TIV_NOEXCEPT noexcept
#define TIV_BEGIN_DECLS extern "C" {
#define TIV_END_DECLS }
#else
#define TIV_NOEXCEPT
#define TIV_BEGIN_DECLS
#define TIV_END_DECLS
#endif

#endif /* TIVLIB_TYPES_H */
