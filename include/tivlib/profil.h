/* Tivlib: profil family (being written). */
#ifndef TIVLIB_PROFIL_H
#define TIVLIB_PROFIL_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

TIV_END_DECLS

#endif /* TIVLIB_PROFIL_H */
