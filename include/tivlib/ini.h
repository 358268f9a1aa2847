/* Tivlib: settings files read and changed directly on disk.
 *
 * Every call opens the file, does its work and closes it again. A change streams the file
 * through a temporary file and copies the result back over the settings file: everything in
 * front of the point of change comes out in a normal form, everything behind it byte for byte.
 *
 * A nil section means the unnamed section (the entries in front of the first header). In the
 * read operations a nil or empty file selects the default file "zv.ini" in the current
 * directory, then the value of the environment variable "zv" followed directly by "zv.ini".
 */
#ifndef TIVLIB_INI_H
#define TIVLIB_INI_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

/* Result codes of the ini_ and mini_ families. */
enum {
    INI_ERROR = -1,            /* file or handle unusable, temporary file not created */
    INI_OK = 0,                /* done */
    INI_NO_SECTION = 1,        /* section not found */
    INI_NO_ENTRY = 2,          /* entry not found */
    INI_TOO_SMALL = 3,         /* value does not fit; list too long to write; nil argument */
    INI_READ_ONLY = 4,         /* handle is read-only (mini_ only) */
    INI_EMPTY_NAME = 5         /* new name is empty or blank */
};

/* Limits of the format. */
#define INI_LINE_MAX 511       /* characters read as one line */
#define INI_NAME_MAX 79        /* characters of a section argument and of a new name */
#define INI_LIST_MAX 512       /* characters of a number list on writing, one comma per item */
#define INI_NUMBER_MAX 79      /* characters of a single number on writing */
#define INI_BUFFER_MAX 512     /* text buffer of the number reads */

/* Reads. *size: room of buffer without its terminator (unchanged by a read of one entry).
 * With a nil entry, ini_read_string lists the section's entry names, each behind its own
 * terminator, closed by one more terminator; *size becomes the characters written. */
TIV_API int32_t ini_read_string(const char *file, const char *section, const char *entry,
                                char *buffer, int32_t *size) TIV_NOEXCEPT;
TIV_API int32_t ini_read_long(const char *file, const char *section, const char *entry,
                              int32_t *value) TIV_NOEXCEPT;
TIV_API int32_t ini_read_double(const char *file, const char *section, const char *entry,
                                double *value) TIV_NOEXCEPT;
/* *count: room of values going in, items stored coming out. */
TIV_API int32_t ini_read_longs(const char *file, const char *section, const char *entry,
                               int32_t *values, int32_t *count) TIV_NOEXCEPT;
TIV_API int32_t ini_read_doubles(const char *file, const char *section, const char *entry,
                                 double *values, int32_t *count) TIV_NOEXCEPT;

/* Writes. Results: 0, -1, or the code of the copy that replaces the file (1 source, 2 target,
 * 3 write fault; the temporary file with the whole new content then stays). */
TIV_API int32_t ini_write_string(const char *file, const char *section, const char *entry,
                                 const char *value) TIV_NOEXCEPT;
TIV_API int32_t ini_write_long(const char *file, const char *section, const char *entry,
                               int32_t value) TIV_NOEXCEPT;
TIV_API int32_t ini_write_double(const char *file, const char *section, const char *entry,
                                 double value) TIV_NOEXCEPT;
TIV_API int32_t ini_write_longs(const char *file, const char *section, const char *entry,
                                const int32_t *values, int32_t count) TIV_NOEXCEPT;
TIV_API int32_t ini_write_doubles(const char *file, const char *section, const char *entry,
                                  const double *values, int32_t count) TIV_NOEXCEPT;

/* Deletes and renames. */
TIV_API int32_t ini_delete_entry(const char *file, const char *section,
                                 const char *entry) TIV_NOEXCEPT;
TIV_API int32_t ini_delete_section(const char *file, const char *section) TIV_NOEXCEPT;
TIV_API int32_t ini_rename_section(const char *file, const char *section,
                                   const char *new_name) TIV_NOEXCEPT;
TIV_API int32_t ini_rename_entry(const char *file, const char *section, const char *entry,
                                 const char *new_name) TIV_NOEXCEPT;

/* One piece of code for reading and writing: write != 0 writes, otherwise reads. */
TIV_API int32_t ini_rw_string(int32_t write, const char *file, const char *section,
                              const char *entry, char *buffer, int32_t *size) TIV_NOEXCEPT;
TIV_API int32_t ini_rw_long(int32_t write, const char *file, const char *section,
                            const char *entry, int32_t *value) TIV_NOEXCEPT;
TIV_API int32_t ini_rw_double(int32_t write, const char *file, const char *section,
                              const char *entry, double *value) TIV_NOEXCEPT;
TIV_API int32_t ini_rw_longs(int32_t write, const char *file, const char *section,
                             const char *entry, int32_t *values, int32_t *count) TIV_NOEXCEPT;
TIV_API int32_t ini_rw_doubles(int32_t write, const char *file, const char *section,
                               const char *entry, double *values, int32_t *count) TIV_NOEXCEPT;

/* Start-up: loads the [Beep] entries Error, Warning and Tick of the default file into
 * zv_beep_error, zv_beep_warning and zv_beep_tick. */
TIV_API void ini_initialize_clib(void) TIV_NOEXCEPT;

/* Linux extension (not part of the original interface): the Beep settings, two numbers each,
 * held for the host. entry is "Error", "Warning" or "Tick"; the result points to the two
 * numbers (start values 500,700 / 100,700 / 1,0), or is nil for any other entry. Nothing in
 * the library reads them. */
TIV_API const int32_t *ini_beep_values(const char *entry) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_INI_H */
