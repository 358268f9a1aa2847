/* Tivlib: calc family (being written). */
#ifndef TIVLIB_CALC_H
#define TIVLIB_CALC_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_CALC_H */
