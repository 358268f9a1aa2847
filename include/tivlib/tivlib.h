/* Tivlib: the whole public interface. */
#ifndef TIVLIB_TIVLIB_H
#define TIVLIB_TIVLIB_H

#include <tivlib/types.h>
#include <tivlib/version.h>
#include <tivlib/zv.h>
#include <tivlib/heap.h>
#include <tivlib/queue.h>
#include <tivlib/stack.h>
#include <tivlib/str.h>
#include <tivlib/convert.h>
#include <tivlib/list.h>
#include <tivlib/hash.h>
#include <tivlib/sort.h>
#include <tivlib/clock.h>
#include <tivlib/fio.h>
#include <tivlib/ini.h>
#include <tivlib/mini.h>
#include <tivlib/scan.h>
#include <tivlib/calc.h>
#include <tivlib/env.h>
#include <tivlib/profil.h>

#endif /* TIVLIB_TIVLIB_H */
