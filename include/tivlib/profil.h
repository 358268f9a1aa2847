/* Tivlib: the profile catalogue, tables of structural sections in text files (*.PRO).
 *
 * A catalogue file has a header line of column names and one section per line behind it: the
 * kind (column 0), the size (column 1) and one number or "nil" per further column. Files are
 * read in place: a handle is a cursor on the open file and needs memory only for its header.
 * Lookups go by a name query ("IPE 200", "(100x50)", "HEB", ...), by conditions on property
 * values, or step from row to row in both directions. Results: 0 or -1; profil_open gives nil
 * on failure; profil_findfiles 1 or 0. Nothing of this family writes to the log. */
#ifndef TIVLIB_PROFIL_H
#define TIVLIB_PROFIL_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

/* Limits. */
#define PROFIL_QUERY_MAX 79      /* characters of a name query; longer queries are cut */
#define PROFIL_FIELD_MAX 79      /* characters of one field of a file; longer ones are cut */
#define PROFIL_RESULT_SIZE 160   /* buffer of a result text: kind, one blank, size */
#define PROFIL_PART_SIZE 81      /* kind and size buffers of profil_convert_result */
#define PROFIL_LIST_ROW 80       /* characters of one row of the profil_findfiles list */
#define PROFIL_DIRECTORY_MAX 255 /* characters of the catalogue directory */
#define PROFIL_PAGE_LINES 16     /* lines whose start positions a handle remembers */

/* Operator codes of a search condition (from the texts ">", "<", ">=", "<=", "=" or "==",
 * "!=" or "<>"; any other text has no effect). */
#define PROFIL_OP_NONE (-1)
#define PROFIL_OP_GT 0
#define PROFIL_OP_LT 1
#define PROFIL_OP_GE 2
#define PROFIL_OP_LE 3
#define PROFIL_OP_EQ 4
#define PROFIL_OP_NE 5

/* The cursor on an open catalogue file; callers hold it as an opaque pointer. */
typedef struct profil_handle profil_handle;

/* One search condition of the caller: property, operator, operand. The blanks and tabs of op
 * are deleted in place, so op must be writable. value is in the unit that the handle delivers
 * for that column (the file's unit for a column without factor). */
typedef struct profil_term {
    const char *name;
    char *op;
    double value;
} profil_term;

/* Filter of profil_search_f: gets the values array of the row at hand; non-zero accepts it. */
typedef int32_t (*profil_filter)(double *values);

/* Catalogue directory. A text sets it; nil or blank reads [System] Profile of the central
 * settings file (zv2.ini, found by zv_suche_datei). */
TIV_API void profil_path(const char *directory) TIV_NOEXCEPT;

/* Names (cut at the first dot) of the catalogue files that hold a row matching query: a zeroed
 * heap block of *count rows of PROFIL_LIST_ROW characters, freed with heap_free; nil when
 * *count is 0. Gives 1, or 0 if the directory has no catalogue file or memory runs out. */
TIV_API int32_t profil_findfiles(const char *query, int32_t *count, char **list) TIV_NOEXCEPT;

/* Opens a catalogue file. name is trimmed in place; without directory it is looked for in the
 * catalogue directory, without extension ".pro" is added. items: the wanted column names,
 * ended by a nil pointer; their positions are the indices of every values array. factors:
 * one multiplier per item, or nil. Gives nil on failure. */
TIV_API profil_handle *profil_open(char *name, const char *const *items,
                                   const double *factors) TIV_NOEXCEPT;
TIV_API int32_t profil_close(profil_handle *handle) TIV_NOEXCEPT;
/* Removes the conditions, applies a new item list if items is given, rewinds. Gives 0. */
TIV_API int32_t profil_reset(profil_handle *handle, const char *const *items,
                             const double *factors) TIV_NOEXCEPT;

/* The first row matching query, from the start. values: one double per item, -1.0 where the
 * row has none; result: PROFIL_RESULT_SIZE characters, receives "kind size". */
TIV_API int32_t profil_get(profil_handle *handle, const char *query, double *values,
                           char *result) TIV_NOEXCEPT;
/* The column names of the header, each ended by a zero byte, the last by two. Owned by the
 * handle. */
TIV_API const char *profil_get_all_items(profil_handle *handle) TIV_NOEXCEPT;
/* Splits a result text at its first blank into kind and size (PROFIL_PART_SIZE characters
 * each). Gives kind. */
TIV_API char *profil_convert_result(const char *result, char *kind, char *size) TIV_NOEXCEPT;
/* The built-in unit factor of each name (1.0 for names it does not know). */
TIV_API void profil_get_factors(const char *const *names, double *factors) TIV_NOEXCEPT;

/* Searches and steps. profil_search starts at the first row and replaces the conditions;
 * profil_search_next goes on where the reader stands and replaces them only if terms is not
 * nil; profil_search_f goes on with a filter instead of conditions. profil_next gives the next
 * row, profil_prev the row before the one last read. 0 with a row, -1 otherwise. */
TIV_API int32_t profil_search(profil_handle *handle, profil_term *terms, int32_t count,
                              const char *query, double *values, char *result) TIV_NOEXCEPT;
TIV_API int32_t profil_search_next(profil_handle *handle, profil_term *terms, int32_t count,
                                   const char *query, double *values, char *result) TIV_NOEXCEPT;
TIV_API int32_t profil_search_f(profil_handle *handle, profil_filter filter, const char *query,
                                double *values, char *result) TIV_NOEXCEPT;
TIV_API int32_t profil_next(profil_handle *handle, double *values, char *result) TIV_NOEXCEPT;
TIV_API int32_t profil_prev(profil_handle *handle, double *values, char *result) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_PROFIL_H */
