/* Tivlib: scan family (being written). */
#ifndef TIVLIB_SCAN_H
#define TIVLIB_SCAN_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_SCAN_H */
