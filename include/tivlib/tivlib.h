/* Tivlib: the whole public interface.
 *
 * Conventions, stated once for every family:
 *
 * Handles. A handle (env_handle, fio_handle, mini_file, hash_table, scanner, ...) is an opaque
 * pointer that the family's open function gives and its close function takes back. Nil is
 * never a valid handle: a function given nil reports it where its contract says so and gives
 * its failure result; it never crashes. A handle is used until it is closed, by one caller.
 *
 * Results. Each family has its own result codes, named constants in its header (ENV_*, INI_*,
 * FIO_*, SCAN_*, ...): env_ gives 0 or a negative code (-10 for a nil or unusable handle);
 * ini_ and mini_ give 0 for done, positive codes for "not there" and refusals, -1 for a file or
 * handle that can't be used; fio_ gives 0 or -1; hash_ gives the slot or -1. "exact" (env_):
 * 1 reads a path name by name from where it starts; 0 searches each name breadth first at any
 * depth below.
 *
 * Memory. What the library hands the caller to keep comes from heap_malloc/heap_calloc and
 * goes back with heap_free; texts the library keeps (a value by reference, a file name) are
 * owned by their handle and valid until the contract says otherwise. Allocation failure is a
 * result, never an abort: no exception leaves the library.
 *
 * Texts. Texts are bytes ending in a nul; nothing assumes UTF-8. Files from Windows hold
 * Windows-1252 or DOS 437 bytes and CR LF line ends, which every reader takes. Every fixed
 * limit is a named constant in the family's header (ENV_ADDRESS_MAX, INI_LINE_MAX, ...).
 *
 * Numbers are read and written in the C locale, whatever locale the host has set.
 *
 * Threads. The library has no threads and no start-up code; everything runs inside the
 * caller's call. It keeps process-wide state: the failure log and the call trace (zv_), the
 * iteration of env_get_first/env_get_next and the path delimiter (env_), the calculator's and
 * the scanner's state (calc_, scan_), the timers (clock_) and the settings lookup (zv_getinipath).
 * and the state of a settings rewrite (ini_, mini_). So calls must come from one thread at a
 * time, whatever the handles: separate calculators in separate threads give wrong values. A
 * host with several threads serialises its calls into the library.
 *
 * The failure log. Reports go to "zv.err" in the working directory: the first report of a
 * process empties it, later ones append. zv_set_log_file chooses another file or switches the
 * log off. The log is opened without blocking and only as a regular file; anything else at its
 * place sends the record to standard error.
 */
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
