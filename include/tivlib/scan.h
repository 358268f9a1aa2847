/* Tivlib: the configurable tokenizer.
 *
 * A scanner pulls characters one at a time from a reader function of the host and hands back
 * tokens. Flag bits given at open decide what is a comment, whether a line end is a token,
 * whether a sign belongs to a number, which two-character relations exist and how case is
 * folded; a keyword table turns identifiers into numbered keywords. */
#ifndef TIVLIB_SCAN_H
#define TIVLIB_SCAN_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

/* Characters of a token's text, without the terminator. */
#define SCAN_TEXT_MAX 255

/* The reader: the next character as a non-negative number, or -1 (or 0) at the end of the
 * input. Values below -1 count as characters of no class. */
typedef int32_t (*scan_reader)(void);

/* The scanner object: opaque, from scan_open until scan_close. */
typedef struct scanner scanner;

/* One token, filled by scan_token. The kind travels in a separate argument. */
typedef struct scan_record {
  char text[256];  /* source form or contents, nul-terminated, at most 255 characters */
  double dvalue;   /* value of a double token, else 0.0 */
  int32_t lvalue;  /* depends on the kind: value, length, keyword position, character */
  int32_t line;    /* line of the token's first character, from 0 */
  int32_t column;  /* column of the token's first character, from 0 */
} scan_record;

/* Token kinds and character classes share one numbering. */
enum {
  SCAN_T_VOID = 0,
  SCAN_T_LETTER = 1,
  SCAN_T_DIGIT = 2,
  SCAN_T_OTHER = 3,
  SCAN_T_BLANK = 4,
  SCAN_T_KEYWORD = 5,
  SCAN_T_IDENTIFIER = 6,
  SCAN_T_LONG = 7,
  SCAN_T_DOUBLE = 8,
  SCAN_T_CHAR = 9,
  SCAN_T_STRING = 10,
  SCAN_T_QUOTED = 11,
  SCAN_T_EQUAL = 12,
  SCAN_T_NOTEQUAL = 13,
  SCAN_T_COMMA = 14,
  SCAN_T_SEMICOLON = 15,
  SCAN_T_DOT = 16,
  SCAN_T_COLON = 17,
  SCAN_T_PLUS = 18,
  SCAN_T_MINUS = 19,
  SCAN_T_STAR = 20,
  SCAN_T_SLASH = 21,
  SCAN_T_POWER = 22,
  SCAN_T_LESS = 23,
  SCAN_T_GREATER = 24,
  SCAN_T_LESSEQUAL = 25,
  SCAN_T_GREATEREQUAL = 26,
  SCAN_T_LPAREN = 27,
  SCAN_T_RPAREN = 28,
  SCAN_T_LBRACE = 29,
  SCAN_T_RBRACE = 30,
  SCAN_T_LBRACKET = 31,
  SCAN_T_RBRACKET = 32,
  SCAN_T_DOLLAR = 33,
  SCAN_T_AT = 34,
  SCAN_T_PERCENT = 35,
  SCAN_T_AMPERSAND = 36,
  SCAN_T_QUESTION = 37,
  SCAN_T_EXCLAMATION = 38,
  SCAN_T_BAR = 39,
  SCAN_T_BACKSLASH = 40,
  SCAN_T_TILDE = 41,
  SCAN_T_DQUOTE = 42,
  SCAN_T_EOL = 43,
  SCAN_T_EOF = 44
};

/* Configuration bits of scan_open; bits not named here are ignored. */
#define SCAN_F_EOL 0x00001
#define SCAN_F_BLOCK_COMMENT 0x00002
#define SCAN_F_LINE_COMMENT 0x00004
#define SCAN_F_BANG_COMMENT 0x00008
#define SCAN_F_SIGNED 0x00010
#define SCAN_F_RELATIONS 0x00020
#define SCAN_F_LOWER 0x00040
#define SCAN_F_UPPER 0x00080
#define SCAN_F_CONTINUE 0x00100
#define SCAN_F_SCRIPT 0x00200
#define SCAN_F_UMLAUTS 0x00400
#define SCAN_F_TRACE 0x08000
#define SCAN_F_POWER 0x10000

/* Status of scan_token. It never stops the scanner. Code 5 is not produced. */
enum {
  SCAN_OK = 0,
  SCAN_E_IDENTIFIER = 1,
  SCAN_E_STRING = 2,
  SCAN_E_CHAR = 3,
  SCAN_E_UNCLOSED = 4,
  SCAN_E_EXPONENT = 6,
  SCAN_E_ESCAPE = 7
};

/* Opens a scanner; the keyword table (nil-terminated) is kept by reference and must outlive
 * the scanner. Gives nil if memory ran out (or the reader is nil). */
TIV_API scanner *scan_open(scan_reader reader, int32_t flags, const char *const *keywords) TIV_NOEXCEPT;
TIV_API void scan_close(scanner *scan) TIV_NOEXCEPT;
TIV_API void scan_reset(scanner *scan) TIV_NOEXCEPT;
TIV_API int32_t scan_token(scanner *scan, int32_t *kind, scan_record *record) TIV_NOEXCEPT;
TIV_API void scan_character(scanner *scan, int32_t *klass, char *character) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_SCAN_H */
