/* Tivlib: number/text conversions (always in the C locale), rounding, signs, degrees. */
#ifndef TIVLIB_CONVERT_H
#define TIVLIB_CONVERT_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

#define CONVERT_FORMAT_MAX 15 /* characters of the format built by convert_dtos/convert_ltos */
#define CONVERT_WIDTH_MAX 255     /* widths beyond +-255 are held at +-255 */
#define CONVERT_PRECISION_MAX 255 /* precisions beyond 255 are held at 255 */
#define CONVERT_OUTPUT_MAX 600    /* characters convert_dtos/convert_ltos write at most, before the nul */

TIV_API int32_t convert_dtos(double value, int32_t width, int32_t precision, char *out) TIV_NOEXCEPT;
TIV_API int32_t convert_ltos(int32_t value, int32_t width, char *out) TIV_NOEXCEPT;
TIV_API double convert_stod(const char *text) TIV_NOEXCEPT;
TIV_API int32_t convert_stol(const char *text) TIV_NOEXCEPT;

TIV_API char *dos_to_win(char *text, int32_t keep) TIV_NOEXCEPT;
TIV_API double pround(double value, int32_t power) TIV_NOEXCEPT;
TIV_API int32_t lsgn(int32_t value) TIV_NOEXCEPT;
TIV_API double fsgn(double value) TIV_NOEXCEPT;

TIV_API double sin_deg(double angle) TIV_NOEXCEPT;
TIV_API double cos_deg(double angle) TIV_NOEXCEPT;
TIV_API double tan_deg(double angle) TIV_NOEXCEPT;
TIV_API double asin_deg(double value) TIV_NOEXCEPT;
TIV_API double acos_deg(double value) TIV_NOEXCEPT;
TIV_API double atan_deg(double value) TIV_NOEXCEPT;
TIV_API double atan2_deg(double y, double x) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_CONVERT_H */
