#include "language/calc_parser.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <string_view>

#include <tivlib/zv.h>

namespace tiv::language {

const char* const kCalcKeywords[kCalcKeywordCount + 1] = {
    "SIN", "COS", "TAN", "COT", "ASN", "ACS", "ATN", "ACT", "ABS", "SQRT",
    "EXP", "LGT", "LOG", "AND", "OR",  "NOT", "PI",  "MIN", "MAX", nullptr};

namespace {

// The keyword order, sorted at compile time the way scan_open sorts a table at run time.
constexpr std::array<std::string_view, kCalcKeywordCount> kKeywordViews = {
    "SIN", "COS", "TAN", "COT", "ASN", "ACS", "ATN", "ACT", "ABS", "SQRT",
    "EXP", "LGT", "LOG", "AND", "OR",  "NOT", "PI",  "MIN", "MAX"};
constexpr std::array<int32_t, kCalcKeywordCount> kSortedOrder = [] {
  std::array<int32_t, kCalcKeywordCount> order{};
  for (int32_t i = 0; i < kCalcKeywordCount; ++i) order[static_cast<size_t>(i)] = i;
  std::sort(order.begin(), order.end(), [](int32_t a, int32_t b) {
    return kKeywordViews[static_cast<size_t>(a)] < kKeywordViews[static_cast<size_t>(b)];
  });
  return order;
}();

constexpr double kPi = 3.141592653589793;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kDegreesPerRadian = 57.29577951308232;

// False is a value whose bits but the sign are all 0; a NaN is true.
constexpr bool truth(double x) noexcept { return !(x == 0.0); }
constexpr double flag_value(bool b) noexcept { return b ? 1.0 : 0.0; }

// An exponent beyond the 32-bit range, or a NaN, is not whole.
bool whole_in_32_bits(double y) noexcept {
  return y >= -2147483648.0 && y <= 2147483647.0 && y == std::trunc(y);
}

// Comparisons are exact. With a NaN on either side every relation is false except "not
// equal", as IEEE arithmetic has it.
bool compare(int32_t relation, double a, double b) noexcept {
  switch (relation) {
    case SCAN_T_GREATER: return a > b;
    case SCAN_T_LESS: return a < b;
    case SCAN_T_EQUAL: return a == b;
    case SCAN_T_NOTEQUAL: return a != b;
    case SCAN_T_LESSEQUAL: return a <= b;
    case SCAN_T_GREATEREQUAL: return a >= b;
    default: return false;
  }
}

constexpr bool is_relation(int32_t kind) noexcept {
  return kind == SCAN_T_GREATER || kind == SCAN_T_LESS || kind == SCAN_T_EQUAL ||
         kind == SCAN_T_NOTEQUAL || kind == SCAN_T_LESSEQUAL || kind == SCAN_T_GREATEREQUAL;
}

// The rules, from the loosest binding to the tightest. Each parses into a target. Every rule
// returns at once when status_ is set after a sub-rule, leaving the current token where the
// error showed; term alone parses one more operand behind a failed division. While active_
// is false (the branch of a conditional not taken) nothing is computed and no arithmetic
// error is raised.
class Parser {
 public:
  explicit Parser(scanner* scan) noexcept : scan_(scan) {}

  CalcOutcome run(double& result) noexcept {
    next();
    expression(result);
    if (status_ == 0 && kind_ != SCAN_T_EOF) raise(kCalcSyntax);
    return {status_, token_.line, token_.column};
  }

 private:
  // Counts one level of nesting for as long as a rule runs; past the bound it raises 1.
  class Level {
   public:
    explicit Level(Parser& p) noexcept : p_(p) {
      if (++p_.depth_ > kCalcMaxDepth) p_.raise(kCalcSyntax);
    }
    ~Level() { --p_.depth_; }
    bool too_deep() const noexcept { return p_.depth_ > kCalcMaxDepth; }

   private:
    Parser& p_;
  };

  void next() noexcept { scan_token(scan_, &kind_, &token_); }
  void raise(int32_t number) noexcept { status_ = number; }
  bool is_keyword(int32_t position) const noexcept {
    return kind_ == SCAN_T_KEYWORD && token_.lvalue == position;
  }

  // logic, then optionally '?' expression ':' expression, nesting to the right. Both
  // branches are parsed; only the chosen one computes.
  void expression(double& target) noexcept {
    Level level(*this);
    if (level.too_deep()) return;
    logic(target);
    if (status_ != 0 || kind_ != SCAN_T_QUESTION) return;
    const bool was_active = active_;
    const bool condition = truth(target);
    double first = 0.0;
    double second = 0.0;
    next();
    active_ = was_active && condition;
    expression(first);
    if (status_ == 0 && kind_ != SCAN_T_COLON) raise(kCalcNoColon);
    if (status_ == 0) {
      next();
      active_ = was_active && !condition;
      expression(second);
      if (status_ == 0 && was_active) target = condition ? first : second;
    }
    active_ = was_active;
  }

  // AND and OR on one level, left to right; both sides are always evaluated.
  void logic(double& target) noexcept {
    relation(target);
    if (status_ != 0) return;
    while (is_keyword(kKeyAnd) || is_keyword(kKeyOr)) {
      const bool both = token_.lvalue == kKeyAnd;
      next();
      double right = 0.0;
      relation(right);
      if (status_ != 0) return;
      if (active_)
        target = flag_value(both ? truth(target) && truth(right) : truth(target) || truth(right));
    }
  }

  // Left to right: a chain compares its first result with the next operand.
  void relation(double& target) noexcept {
    sum(target);
    if (status_ != 0) return;
    while (is_relation(kind_)) {
      const int32_t op = kind_;
      next();
      double right = 0.0;
      sum(right);
      if (status_ != 0) return;
      if (active_) target = flag_value(compare(op, target, right));
    }
  }

  void sum(double& target) noexcept {
    term(target);
    if (status_ != 0) return;
    while (kind_ == SCAN_T_PLUS || kind_ == SCAN_T_MINUS) {
      const bool add = kind_ == SCAN_T_PLUS;
      next();
      double right = 0.0;
      term(right);
      if (status_ != 0) return;
      if (active_) target = add ? target + right : target - right;
    }
  }

  // A divisor that counts as false raises 16 with the value 0.0; the loop then still parses
  // the operand of a following '*' or '/' before it stops (a syntax error there replaces 16).
  void term(double& target) noexcept {
    power(target);
    if (status_ != 0) return;
    while (kind_ == SCAN_T_STAR || kind_ == SCAN_T_SLASH) {
      const bool divide = kind_ == SCAN_T_SLASH;
      next();
      double right = 0.0;
      power(right);
      if (status_ != 0) return;
      if (!active_) continue;
      if (!divide) {
        target *= right;
      } else if (!truth(right)) {
        raise(kCalcDivision);
        target = 0.0;
      } else {
        target /= right;
      }
    }
  }

  // factor, then optionally '^' power, nesting to the right.
  void power(double& target) noexcept {
    Level level(*this);
    if (level.too_deep()) return;
    factor(target);
    if (status_ != 0 || kind_ != SCAN_T_POWER) return;
    next();
    double exponent = 0.0;
    power(exponent);
    if (status_ != 0) return;
    if (active_) target = checked_power(target, exponent);
  }

  // x to the power y. A negative base needs a whole exponent (14); a result at or above the
  // largest double is out of range (15). The lower end of the range: a result that underflowed
  // (a subnormal, or 0 from a base that is not 0) is out of range too, while a true zero
  // (0^2) and negative results ((-2)^3) pass.
  double checked_power(double x, double y) noexcept {
    if (x < 0.0 && !whole_in_32_bits(y)) {
      raise(kCalcPowerBase);
      return 0.0;
    }
    const double value = std::pow(x, y);
    const bool underflow = (value != 0.0 && std::fabs(value) < DBL_MIN) || (value == 0.0 && x != 0.0);
    if (value >= DBL_MAX || underflow) {
      raise(kCalcPowerRange);
      return 0.0;
    }
    return value;
  }

  void factor(double& target) noexcept {
    Level level(*this);
    if (level.too_deep()) return;
    switch (kind_) {
      case SCAN_T_LPAREN:
        next();
        expression(target);
        if (status_ != 0) return;
        if (kind_ != SCAN_T_RPAREN) {
          raise(kCalcNoRParen);
          return;
        }
        next();
        return;
      case SCAN_T_DOUBLE:
        target = token_.dvalue;
        next();
        return;
      case SCAN_T_LONG:
        target = static_cast<double>(token_.lvalue);
        next();
        return;
      case SCAN_T_MINUS:
        next();
        factor(target);
        if (status_ == 0 && active_) target = -target;
        return;
      case SCAN_T_KEYWORD:
        keyword(target);
        return;
      default:
        raise(kCalcSyntax);  // no factor: a word that is no keyword, a string, the end ...
        return;
    }
  }

  void keyword(double& target) noexcept {
    const int32_t position = token_.lvalue;
    if (position == kKeyNot) {
      next();
      double operand = 0.0;
      factor(operand);
      if (status_ == 0 && active_) target = flag_value(!truth(operand));
      return;
    }
    if (position == kKeyPi) {
      target = kPi;
      next();
      return;
    }
    call(position, target);
  }

  // keyword '(' expression {',' expression for MIN and MAX} ')'.
  void call(int32_t function, double& target) noexcept {
    next();
    if (kind_ != SCAN_T_LPAREN) {
      raise(kCalcNoLParen);
      return;
    }
    next();
    double value = 0.0;
    expression(value);
    if (status_ != 0) return;
    if (function == kKeyMin || function == kKeyMax) {
      while (kind_ == SCAN_T_COMMA) {
        next();
        double other = 0.0;
        expression(other);
        if (status_ != 0) return;
        if (function == kKeyMin ? other < value : other > value) value = other;  // ties keep
      }
    }
    if (kind_ != SCAN_T_RPAREN) {
      raise(kCalcNoRParen);
      return;
    }
    next();
    if (status_ == 0 && active_) apply(function, value, target);
  }

  // The value step of a function call. Only SQRT checks its domain; the others give what the
  // floating arithmetic gives (NaN, infinities). ABS is the absolute value. AND and OR used
  // as functions ("AND(1)") are no functions: error 1 at the token behind the ')'.
  void apply(int32_t function, double x, double& target) noexcept {
    switch (function) {
      case kKeySin: target = std::sin(x * kRadiansPerDegree); return;
      case kKeyCos: target = std::cos(x * kRadiansPerDegree); return;
      case kKeyTan: target = std::tan(x * kRadiansPerDegree); return;
      case kKeyCot: target = 1.0 / std::tan(x * kRadiansPerDegree); return;
      case kKeyAsn: target = std::asin(x) * kDegreesPerRadian; return;
      case kKeyAcs: target = std::acos(x) * kDegreesPerRadian; return;
      case kKeyAtn: target = std::atan(x) * kDegreesPerRadian; return;
      case kKeyAct: target = std::atan(1.0 / x) * kDegreesPerRadian; return;
      case kKeyAbs: target = std::fabs(x); return;
      case kKeySqrt:
        if (x < 0.0) {
          raise(kCalcSqrt);
          target = 0.0;
        } else {
          target = std::sqrt(x);
        }
        return;
      case kKeyExp: target = std::exp(x); return;
      case kKeyLgt: target = std::log(x); return;
      case kKeyLog: target = std::log10(x); return;
      case kKeyMin:
      case kKeyMax: target = x; return;
      case kKeyAnd:
      case kKeyOr: raise(kCalcSyntax); return;
      default: zv_switch_error(function, "Calc", __LINE__); return;
    }
  }

  scanner* scan_;
  int32_t kind_ = SCAN_T_EOF;
  scan_record token_{};
  int32_t status_ = 0;
  bool active_ = true;
  int32_t depth_ = 0;
};

}  // namespace

const int32_t kCalcKeywordOrder[kCalcKeywordCount] = {
    kSortedOrder[0],  kSortedOrder[1],  kSortedOrder[2],  kSortedOrder[3],  kSortedOrder[4],
    kSortedOrder[5],  kSortedOrder[6],  kSortedOrder[7],  kSortedOrder[8],  kSortedOrder[9],
    kSortedOrder[10], kSortedOrder[11], kSortedOrder[12], kSortedOrder[13], kSortedOrder[14],
    kSortedOrder[15], kSortedOrder[16], kSortedOrder[17], kSortedOrder[18]};

CalcOutcome evaluate_expression(scanner* scan, double& result) noexcept {
  Parser parser(scan);
  return parser.run(result);
}

}  // namespace tiv::language
