/* Tivlib: mini family (being written). */
#ifndef TIVLIB_MINI_H
#define TIVLIB_MINI_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_MINI_H */
