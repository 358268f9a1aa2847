/* Tivlib: clock family (being written). */
#ifndef TIVLIB_CLOCK_H
#define TIVLIB_CLOCK_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_CLOCK_H */
