// The version of the library, from the numbers the build wrote.
#include <tivlib/version.h>

extern "C" const char* tivlib_version(void) noexcept { return TIVLIB_VERSION_TEXT; }
