/* Tivlib: settings files cached in memory.
 *
 * A handle holds the file's location and the sections read so far. Sections come into memory
 * at open (MINI_LOAD_ALL) or at their first use; reads and writes work on memory; an update
 * (mini_update_file, mini_close) merges memory into the file, keeping comments and every
 * section never loaded. Deletes and renames of sections not in memory change the file at once
 * through the ini_ family. Result codes are those of ini.h (INI_OK ... INI_EMPTY_NAME); -1
 * also stands for a nil handle and 4 (INI_READ_ONLY) for a read-only handle.
 */
#ifndef TIVLIB_MINI_H
#define TIVLIB_MINI_H

#include <tivlib/types.h>
#include <tivlib/ini.h>

TIV_BEGIN_DECLS

typedef struct mini_file mini_file;

/* Flags of mini_open. */
enum {
    MINI_REPLACE = 1,   /* an update writes memory alone; sections never loaded are lost */
    MINI_LOAD_ALL = 2,  /* load all sections at open */
    MINI_READ_ONLY = 4  /* nothing is ever written; the open fails if the file is missing */
};

#define MINI_LINE_MAX 512   /* characters read as one line */
#define MINI_ENTRY_MAX 255  /* characters of the entry argument of a write */

/* Opening and closing. mini_open gives nil when memory is out, or with MINI_READ_ONLY when
 * the file doesn't exist. mini_close updates the file (unless read-only), frees the handle,
 * sets *ref to nil and gives 1; 0 if ref or *ref is nil. */
TIV_API mini_file *mini_open(const char *directory, const char *name, int32_t flags) TIV_NOEXCEPT;
TIV_API int32_t mini_close(mini_file **ref) TIV_NOEXCEPT;
/* 1 if the file was replaced, otherwise 0. */
TIV_API int32_t mini_update_file(mini_file *handle) TIV_NOEXCEPT;
TIV_API int32_t mini_unload_all_sections(mini_file *handle) TIV_NOEXCEPT;
TIV_API int32_t mini_unload_one_section(mini_file *handle, const char *section) TIV_NOEXCEPT;

/* Reads. A successful read of one entry sets *size to the value's length; a nil entry lists
 * the section's entry names as ini_read_string does. */
TIV_API int32_t mini_read_string(mini_file *handle, const char *section, const char *entry,
                                 char *buffer, int32_t *size) TIV_NOEXCEPT;
TIV_API int32_t mini_read_long(mini_file *handle, const char *section, const char *entry,
                               int32_t *value) TIV_NOEXCEPT;
TIV_API int32_t mini_read_double(mini_file *handle, const char *section, const char *entry,
                                 double *value) TIV_NOEXCEPT;
TIV_API int32_t mini_read_longs(mini_file *handle, const char *section, const char *entry,
                                int32_t *values, int32_t *count) TIV_NOEXCEPT;
TIV_API int32_t mini_read_doubles(mini_file *handle, const char *section, const char *entry,
                                  double *values, int32_t *count) TIV_NOEXCEPT;

/* Writes change memory only; the file follows at the next update. */
TIV_API int32_t mini_write_string(mini_file *handle, const char *section, const char *entry,
                                  const char *value) TIV_NOEXCEPT;
TIV_API int32_t mini_write_long(mini_file *handle, const char *section, const char *entry,
                                int32_t value) TIV_NOEXCEPT;
TIV_API int32_t mini_write_double(mini_file *handle, const char *section, const char *entry,
                                  double value) TIV_NOEXCEPT;
TIV_API int32_t mini_write_longs(mini_file *handle, const char *section, const char *entry,
                                 const int32_t *values, int32_t count) TIV_NOEXCEPT;
TIV_API int32_t mini_write_doubles(mini_file *handle, const char *section, const char *entry,
                                   const double *values, int32_t count) TIV_NOEXCEPT;

/* Never nil. With a buffer: mini_read_string, an empty buffer on failure, gives buffer. With a
 * nil buffer: the stored value itself (valid until the entry is written, deleted or unloaded;
 * not to be freed), or a static empty string. */
TIV_API const char *mini_get_string(mini_file *handle, const char *section, const char *entry,
                                    char *buffer, int32_t *size) TIV_NOEXCEPT;

/* Deletes and renames. */
TIV_API int32_t mini_delete_entry(mini_file *handle, const char *section,
                                  const char *entry) TIV_NOEXCEPT;
TIV_API int32_t mini_delete_section(mini_file *handle, const char *section) TIV_NOEXCEPT;
TIV_API int32_t mini_rename_entry(mini_file *handle, const char *section, const char *entry,
                                  const char *new_name) TIV_NOEXCEPT;
TIV_API int32_t mini_rename_section(mini_file *handle, const char *section,
                                    const char *new_name) TIV_NOEXCEPT;

/* One piece of code for reading and writing: write != 0 writes, otherwise reads. */
TIV_API int32_t mini_rw_string(int32_t write, mini_file *handle, const char *section,
                               const char *entry, char *buffer, int32_t *size) TIV_NOEXCEPT;
TIV_API int32_t mini_rw_long(int32_t write, mini_file *handle, const char *section,
                             const char *entry, int32_t *value) TIV_NOEXCEPT;
TIV_API int32_t mini_rw_double(int32_t write, mini_file *handle, const char *section,
                               const char *entry, double *value) TIV_NOEXCEPT;
TIV_API int32_t mini_rw_longs(int32_t write, mini_file *handle, const char *section,
                              const char *entry, int32_t *values, int32_t *count) TIV_NOEXCEPT;
TIV_API int32_t mini_rw_doubles(int32_t write, mini_file *handle, const char *section,
                                const char *entry, double *values, int32_t *count) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_MINI_H */
