/* Tivlib: the version of the headers and of the library. */
#ifndef TIVLIB_VERSION_H
#define TIVLIB_VERSION_H

#include <tivlib/types.h>
#include <tivlib/version_numbers.h>

TIV_BEGIN_DECLS

/* The version of the library that is loaded, as "MAJOR.MINOR.PATCH" (a static text, never
 * nil, not to be freed). It may differ from TIVLIB_VERSION_TEXT, the version of the headers a
 * host was compiled with: a host can compare the two at start. */
TIV_API const char *tivlib_version(void) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_VERSION_H */
