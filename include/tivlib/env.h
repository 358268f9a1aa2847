/* Tivlib: env family (being written). */
#ifndef TIVLIB_ENV_H
#define TIVLIB_ENV_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_ENV_H */
