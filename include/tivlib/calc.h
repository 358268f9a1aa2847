/* Tivlib: the expression calculator.
 *
 * calc_expression evaluates one expression text to a double: arithmetic, comparisons, logic,
 * a conditional and a fixed set of functions with angles in degrees. Case doesn't matter.
 * An error is an error number with the line and column of the token where evaluation stopped;
 * calc_error delivers them with a text from the [Calculator] section of the settings file. */
#ifndef TIVLIB_CALC_H
#define TIVLIB_CALC_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

/* Characters of the text that calc_error delivers (the buffer needs one more). */
#define CALC_ERROR_TEXT_MAX 100

/* Error numbers of calc_expression; no others are produced. */
enum {
  CALC_E_SYNTAX = 1,        /* a token stands where it can't */
  CALC_E_LPAREN = 2,        /* a function keyword has no '(' behind it */
  CALC_E_RPAREN = 3,        /* the ')' of a group or a function is missing */
  CALC_E_COLON = 7,         /* the ':' of a conditional is missing */
  CALC_E_POWER_BASE = 14,   /* a negative base has an exponent that is not whole */
  CALC_E_POWER_RANGE = 15,  /* the result of a power is out of range */
  CALC_E_DIVISION = 16,     /* division by zero */
  CALC_E_SQRT = 17          /* square root of a negative number */
};

/* Sets the decimals of the result (0: no rounding). -1 reads "Nachkommastellen" of
 * [Calculator] in the central settings file; without it the value stays. */
TIV_API void calc_init(int32_t decimals) TIV_NOEXCEPT;

/* Evaluates expression; ok is 1 if it was good, 0 if not. */
TIV_API void calc_expression(const char *expression, double *result, int32_t *ok) TIV_NOEXCEPT;

/* Error number, line and column of the last expression, and its text (room for 101). */
TIV_API void calc_error(int32_t *number, int32_t *line, int32_t *column, char *text) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_CALC_H */
