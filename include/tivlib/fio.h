/* Tivlib: file handles with the binary byte-order header, typed binary I/O, file-system
 * services and path composition. */
#ifndef TIVLIB_FIO_H
#define TIVLIB_FIO_H

#include <stdio.h>
#include <tivlib/types.h>

TIV_BEGIN_DECLS

/* Open-mode flags of fio_open, combined by bitwise or. Exactly one of FIO_READ, FIO_WRITE,
 * FIO_APPEND must be set. */
#define FIO_READ 1    /* open for reading ("r") */
#define FIO_WRITE 2   /* create or truncate for writing ("w") */
#define FIO_APPEND 4  /* open for appending ("a") */
#define FIO_UPDATE 8  /* read and write on the same stream ("+") */
#define FIO_TEXT 16   /* text stream ("t"; otherwise "b") */
#define FIO_HEADER 32 /* write or check the 16-byte binary header */

/* Byte order of a handle, from the header check of fio_open. */
#define FIO_ORDER_HOST 0      /* host order (little-endian) */
#define FIO_ORDER_MOTOROLA 1  /* the header carries the tag "MOTOROLA": big-endian values */
#define FIO_ORDER_NONE (-1)   /* a header was asked for on reading and the file has none */

/* Attribute bits of a directory entry. FIO_ATTR_FILE comes with each file attribute. */
#define FIO_ATTR_FILE 0x1
#define FIO_ATTR_DIR 0x2
#define FIO_ATTR_READONLY 0x8
#define FIO_ATTR_HIDDEN 0x40
#define FIO_ATTR_SYSTEM 0x80
#define FIO_ATTR_ARCHIVE 0x200

/* Limits of names and paths. Path buffers hold FIO_PATH_BUFFER characters. */
#define FIO_PATH_MAX 255    /* characters of a composed path */
#define FIO_PATH_BUFFER 256 /* a path and its terminator */
#define FIO_NAME_MAX 79     /* characters of a last component / a directory entry's name */
#define FIO_HOST_MAX 2      /* a host: one letter and a colon */
#define FIO_HEADER_SIZE 16  /* bytes of the binary header */

/* The record of an open file; callers hold it as an opaque pointer. */
typedef struct fio_handle fio_handle;

/* One entry of the list that fio_listdir gives (a plain array, freed with heap_free). */
typedef struct fio_dir_entry {
  char name[80];       /* name without directory, at most 79 characters, nul-terminated */
  uint32_t attributes; /* FIO_ATTR_ bits */
  uint32_t size;       /* size in bytes */
  int32_t time;        /* last write, as a value of clock_makevalue */
  uint32_t reserved;   /* not set */
} fio_dir_entry;

/* File handles. fio_open gives nil on any failure. */
TIV_API fio_handle *fio_open(const char *dir, const char *name, int32_t mode) TIV_NOEXCEPT;
TIV_API int32_t fio_close(fio_handle *handle) TIV_NOEXCEPT;
TIV_API int32_t fio_length(fio_handle *handle) TIV_NOEXCEPT;
TIV_API FILE *fio_fp(fio_handle *handle) TIV_NOEXCEPT;
TIV_API const char *fio_filename(fio_handle *handle) TIV_NOEXCEPT;
TIV_API int32_t fio_seek(fio_handle *handle, int32_t offset, int32_t origin) TIV_NOEXCEPT;
TIV_API int32_t fio_tell(fio_handle *handle) TIV_NOEXCEPT;
TIV_API int32_t fio_flush(fio_handle *handle) TIV_NOEXCEPT;

/* Typed binary I/O: 0 done, -1 failure or nil handle. */
TIV_API int32_t fio_putdouble(fio_handle *handle, double value) TIV_NOEXCEPT;
TIV_API int32_t fio_putfloat(fio_handle *handle, float value) TIV_NOEXCEPT;
TIV_API int32_t fio_putlong(fio_handle *handle, int32_t value) TIV_NOEXCEPT;
TIV_API int32_t fio_putshort(fio_handle *handle, int16_t value) TIV_NOEXCEPT;
TIV_API int32_t fio_putchar(fio_handle *handle, char c) TIV_NOEXCEPT;
TIV_API int32_t fio_putstring(fio_handle *handle, const char *text, int32_t width) TIV_NOEXCEPT;
TIV_API int32_t fio_getdouble(fio_handle *handle, double *out) TIV_NOEXCEPT;
TIV_API int32_t fio_getfloat(fio_handle *handle, float *out) TIV_NOEXCEPT;
TIV_API int32_t fio_getlong(fio_handle *handle, int32_t *out) TIV_NOEXCEPT;
TIV_API int32_t fio_getshort(fio_handle *handle, int16_t *out) TIV_NOEXCEPT;
/* With nil out: the byte read as 0 to 255, or -1 at the end of the file. */
TIV_API int32_t fio_getchar(fio_handle *handle, char *out) TIV_NOEXCEPT;
/* buffer has room for maxlen characters and a terminator. */
TIV_API int32_t fio_getstring(fio_handle *handle, int32_t maxlen, char *buffer) TIV_NOEXCEPT;
TIV_API int32_t fio_getstringdel(fio_handle *handle, int32_t maxlen, const char *delimiters,
                                 char *buffer) TIV_NOEXCEPT;
/* The plain block read; gives the number of whole items read (0 for a nil handle). */
TIV_API int32_t fio_read_to_buf(void *buffer, int32_t size, int32_t count, fio_handle *handle) TIV_NOEXCEPT;

/* File-system services. dir and name go through fio_makepath and may be nil. */
TIV_API char *fio_make_fullpath(char *out, const char *host, const char *dir, const char *name) TIV_NOEXCEPT;
TIV_API char *fio_tmpnam(char *buffer) TIV_NOEXCEPT;
TIV_API int32_t fio_listdir(const char *dir, const char *mask, int32_t filter, fio_dir_entry **list,
                            int32_t *count) TIV_NOEXCEPT;
/* 0 done, 1 the source cannot be opened, 2 the target cannot be opened, 3 a write fell short. */
TIV_API int32_t fio_copy(const char *source_dir, const char *source_name, const char *target_dir,
                         const char *target_name) TIV_NOEXCEPT;
TIV_API int32_t fio_move(const char *source_dir, const char *source_name, const char *target_dir,
                         const char *target_name) TIV_NOEXCEPT;
TIV_API int32_t fio_rename(const char *dir, const char *old_name, const char *new_name) TIV_NOEXCEPT;
TIV_API int32_t fio_purge(const char *dir, const char *name) TIV_NOEXCEPT;
TIV_API int32_t fio_ispath(const char *path) TIV_NOEXCEPT;
TIV_API int32_t fio_exist(const char *dir, const char *name) TIV_NOEXCEPT;
TIV_API int32_t fio_access(const char *dir, const char *name, int32_t mode) TIV_NOEXCEPT;
TIV_API int32_t fio_mkdir(const char *dir) TIV_NOEXCEPT;
TIV_API int32_t fio_rmdir(const char *dir) TIV_NOEXCEPT;
TIV_API int32_t fio_chdir(const char *dir) TIV_NOEXCEPT;
TIV_API char *fio_getcwd(char *buffer, int32_t size) TIV_NOEXCEPT;
TIV_API char *fio_get_host_cwd(const char *host, char *buffer, int32_t size) TIV_NOEXCEPT;
TIV_API int32_t fio_gethostname(char *buffer, int32_t size) TIV_NOEXCEPT;
TIV_API int32_t fio_sethostname(const char *host) TIV_NOEXCEPT;
TIV_API int32_t fio_host_exist(const char *host) TIV_NOEXCEPT;
/* fio_lock: 0, -1 access refused, -4 nil handle or bad descriptor, -5 other failure.
 * fio_unlock: 0, -1 nil handle or bad descriptor, -2 other failure. */
TIV_API int32_t fio_lock(fio_handle *handle) TIV_NOEXCEPT;
TIV_API int32_t fio_unlock(fio_handle *handle) TIV_NOEXCEPT;
TIV_API int32_t fio_islock(fio_handle *handle) TIV_NOEXCEPT;

/* Path composition; touches no file. Results are lower case with back-slashes. */
TIV_API char *fio_makepath(char *out, const char *host, const char *dir, const char *name) TIV_NOEXCEPT;
/* host: 3 characters or nil; dir: 256 or nil; name: 256, not nil. Gives 0. */
TIV_API int32_t fio_divide(const char *path, char *host, char *dir, char *name) TIV_NOEXCEPT;
/* 0 valid, 1 invalid, 2 valid with a wild card. */
TIV_API int32_t fio_test_filename(const char *name) TIV_NOEXCEPT;
TIV_API int32_t fio_get_extention_pos(const char *name) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_FIO_H */
