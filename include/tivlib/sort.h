/* Tivlib: sort family (being written). */
#ifndef TIVLIB_SORT_H
#define TIVLIB_SORT_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_SORT_H */
