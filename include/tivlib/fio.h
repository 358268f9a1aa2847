/* Tivlib: fio family (being written). */
#ifndef TIVLIB_FIO_H
#define TIVLIB_FIO_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_FIO_H */
