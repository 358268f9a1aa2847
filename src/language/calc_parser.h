// The calculator's recursive-descent parser: it computes while it parses and builds no tree.
#pragma once

#include <tivlib/scan.h>

#include <cstdint>

namespace tiv::language {

// Positions of the calculator's keyword table, as the parser sees them in lvalue.
enum CalcKeyword : int32_t {
  kKeySin, kKeyCos, kKeyTan, kKeyCot, kKeyAsn, kKeyAcs, kKeyAtn, kKeyAct, kKeyAbs, kKeySqrt,
  kKeyExp, kKeyLgt, kKeyLog, kKeyAnd, kKeyOr, kKeyNot, kKeyPi, kKeyMin, kKeyMax,
  kCalcKeywordCount
};

// The table itself (nil-terminated) and its ascending order, both constant.
extern const char* const kCalcKeywords[kCalcKeywordCount + 1];
extern const int32_t kCalcKeywordOrder[kCalcKeywordCount];

// Scanner flags of an expression: two-character relations, and case folded to capitals.
constexpr int32_t kCalcScanFlags = SCAN_F_RELATIONS | SCAN_F_UPPER;

// Error numbers; no others are produced.
constexpr int32_t kCalcSyntax = 1;
constexpr int32_t kCalcNoLParen = 2;
constexpr int32_t kCalcNoRParen = 3;
constexpr int32_t kCalcNoColon = 7;
constexpr int32_t kCalcPowerBase = 14;
constexpr int32_t kCalcPowerRange = 15;
constexpr int32_t kCalcDivision = 16;
constexpr int32_t kCalcSqrt = 17;

// Nesting bound: every nested expression, power and factor counts one level, so a pair of
// parentheses costs three and a unary minus one. Deeper input stops with error 1 at the token
// where the bound was reached, long before the stack is in danger.
constexpr int32_t kCalcMaxDepth = 600;

// What an evaluation left: the error number and the position of the token where it stopped.
struct CalcOutcome {
  int32_t status;
  int32_t line;
  int32_t column;
};

// Parses the expression that scan delivers and computes its value into result (which keeps
// its value where the expression fails before writing it).
CalcOutcome evaluate_expression(scanner* scan, double& result) noexcept;

}  // namespace tiv::language
