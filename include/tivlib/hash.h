/* Tivlib: hash family (being written). */
#ifndef TIVLIB_HASH_H
#define TIVLIB_HASH_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_HASH_H */
