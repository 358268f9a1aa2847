/* Tivlib: ini family (being written). */
#ifndef TIVLIB_INI_H
#define TIVLIB_INI_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_INI_H */
