/* Tivlib: failure log zv.err, call trace, process environment and settings-file lookup. */
#ifndef TIVLIB_ZV_H
#define TIVLIB_ZV_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

/* Limits of the call trace and of the message box text. */
#define ZV_TRACE_DEPTH_MAX 20   /* frames on the trace stack */
#define ZV_TRACE_NAME_MAX 79    /* characters of one routine name */
#define ZV_BOX_TEXT_MAX 255     /* characters of the text of zv_exit's box */
#define ZV_PATH_MAX 255         /* characters of a path given by the settings lookup */

/* Call trace: the host pushes and pops frames; direct recursion shares one frame. */
TIV_API void zv_begin(const char *name) TIV_NOEXCEPT;
TIV_API void zv_end(void) TIV_NOEXCEPT;

/* Reports. Each appends one record to zv.err in the current directory; the first report of a
 * process empties the log. Texts may be nil. None of them stops the caller. */
TIV_API void zv_message(const char *text1, const char *text2, const char *text3,
                        const char *source, int32_t line) TIV_NOEXCEPT;
TIV_API void zv_error(const char *text1, const char *text2, const char *text3,
                      const char *source, int32_t line) TIV_NOEXCEPT;
TIV_API void zv_exit(const char *text1, const char *text2, const char *text3,
                     const char *source, int32_t line) TIV_NOEXCEPT;
TIV_API void zv_switch_error(int32_t value, const char *source, int32_t line) TIV_NOEXCEPT;

/* Sound and delay. */
TIV_API void zv_tone(void) TIV_NOEXCEPT;
TIV_API void zv_beep(void) TIV_NOEXCEPT;
TIV_API void zv_wait(void) TIV_NOEXCEPT;
TIV_API void zv_pause(void) TIV_NOEXCEPT;

/* Process environment. zv_getenv gives the value (not a copy) or fallback. */
TIV_API const char *zv_getenv(const char *name, const char *fallback) TIV_NOEXCEPT;
TIV_API int32_t zv_putenv(const char *text) TIV_NOEXCEPT;

/* Settings-file lookup. */
TIV_API const char *zv_getinipath(const char *name) TIV_NOEXCEPT;
TIV_API int32_t zv_suche_datei(const char *section, const char *entry, const char *filename,
                               char *out) TIV_NOEXCEPT;
TIV_API int32_t zv_suche_pfad(const char *section, const char *entry, char *out) TIV_NOEXCEPT;

/* Linux extensions (not part of the original interface).
 *
 * There is no window system: by default a message box writes its caption and text, trimmed
 * and with line ends turned into blanks, as one line to standard error and returns at once.
 * A host may install its own handler, which gets caption and text as they are (nil restores
 * the default). The quit request of zv_exit sets a flag that the host reads with
 * zv_quit_requested and clears with zv_clear_quit_request. A beep does nothing unless the
 * host installs a handler. */
typedef void (*zv_message_box_fn)(const char *caption, const char *text, intptr_t user);
typedef void (*zv_beep_fn)(intptr_t user);
TIV_API void zv_set_message_box_handler(zv_message_box_fn handler, intptr_t user) TIV_NOEXCEPT;
TIV_API void zv_set_beep_handler(zv_beep_fn handler, intptr_t user) TIV_NOEXCEPT;
TIV_API int32_t zv_quit_requested(void) TIV_NOEXCEPT;
TIV_API void zv_clear_quit_request(void) TIV_NOEXCEPT;

/* Where the failure log goes. Without a call, records go to zv.err in the working directory.
 * path: nil switches the log off (records are dropped); "" restores zv.err in the working
 * directory; any other text names the file that takes the records from now on (the first
 * record written to a new name empties it, later ones append; naming again the file chosen
 * before, after switching the log off for a while, appends to it). Gives 0, or -1 for a name
 * longer than ZV_LOG_PATH_MAX characters, the place unchanged. Reports nothing. */
#define ZV_LOG_PATH_MAX 4095
TIV_API int32_t zv_set_log_file(const char *path) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_ZV_H */
