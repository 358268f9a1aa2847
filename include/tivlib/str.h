/* Tivlib: string routines. Blank means 0x20 alone; str_eq gives 1 for equal. */
#ifndef TIVLIB_STR_H
#define TIVLIB_STR_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

#define STR_RPT_MAX 255 /* characters str_rpt gives at most */

TIV_API char *str_cpy(char *dst, const char *src) TIV_NOEXCEPT;
TIV_API char *str_alloc(const char *src) TIV_NOEXCEPT;
TIV_API char *str_ncpy(char *dst, const char *src, int32_t n) TIV_NOEXCEPT;
TIV_API char *str_pcpy(char *dst, const char *src, int32_t first, int32_t last) TIV_NOEXCEPT;
TIV_API char *str_cat(char *dst, const char *src) TIV_NOEXCEPT;
TIV_API char *str_ncat(char *dst, const char *src, int16_t n) TIV_NOEXCEPT;
TIV_API char *str_pcat(char *dst, const char *src, int32_t first, int32_t last) TIV_NOEXCEPT;
TIV_API int32_t str_eq(const char *a, const char *b) TIV_NOEXCEPT;
TIV_API int32_t str_ieq(const char *a, const char *b) TIV_NOEXCEPT;
TIV_API int32_t str_cmp(const char *a, const char *b) TIV_NOEXCEPT;
TIV_API int32_t str_icmp(const char *a, const char *b) TIV_NOEXCEPT;
TIV_API int32_t str_ncmp(const char *a, const char *b, int32_t n) TIV_NOEXCEPT;
TIV_API int32_t str_len(const char *s) TIV_NOEXCEPT;
TIV_API char *str_chr(const char *s, char c) TIV_NOEXCEPT;
TIV_API char *str_rchr(const char *s, char c) TIV_NOEXCEPT;
TIV_API int32_t str_ichr(const char *s, char c) TIV_NOEXCEPT;
TIV_API int32_t str_irchr(const char *s, char c) TIV_NOEXCEPT;
TIV_API char *str_pos(const char *s, const char *sub) TIV_NOEXCEPT;
TIV_API int32_t str_ipos(const char *s, const char *sub) TIV_NOEXCEPT;
TIV_API char *str_tok(char *s, const char *delim) TIV_NOEXCEPT;
TIV_API char *str_cap(char *s) TIV_NOEXCEPT;
TIV_API char *str_low(char *s) TIV_NOEXCEPT;
TIV_API char *str_trim(char *s) TIV_NOEXCEPT;
TIV_API char *str_ltrim(char *s) TIV_NOEXCEPT;
TIV_API char *str_rtrim(char *s) TIV_NOEXCEPT;
TIV_API char *str_rpt(char c, int32_t n) TIV_NOEXCEPT;

/* Escape encoding (\a \b \t \n \v \f \r \" \' \\). dst may be nil: then src is rewritten. */
TIV_API char *str_stoe(char *dst, char *src) TIV_NOEXCEPT;
TIV_API char *str_etos(char *dst, char *src) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_STR_H */
