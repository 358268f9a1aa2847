/* Tivlib: list family (being written). */
#ifndef TIVLIB_LIST_H
#define TIVLIB_LIST_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_LIST_H */
