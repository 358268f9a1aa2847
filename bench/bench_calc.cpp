// The calculator against muParser: both parse and evaluate every expression of one set on each
// call (calc_expression has no separate compile step, so muParser is timed as SetExpr + Eval).
// Heap allocations are counted by a malloc replacement in this program.
#include <tivlib/calc.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#ifdef TIV_HAVE_MUPARSER
#include <muParser.h>
#endif

// Counting allocator: every malloc, calloc and realloc of the process (operator new included)
// passes here on its way to the C library.
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void __libc_free(void*);
}
namespace {
uint64_t allocation_count = 0;
}
extern "C" void* malloc(size_t size) {
  ++allocation_count;
  return __libc_malloc(size);
}
extern "C" void* calloc(size_t n, size_t size) {
  ++allocation_count;
  return __libc_calloc(n, size);
}
extern "C" void* realloc(void* p, size_t size) {
  ++allocation_count;
  return __libc_realloc(p, size);
}
extern "C" void free(void* p) { __libc_free(p); }

namespace {

// The same computation in both languages. The calculator's angles are degrees; muParser's are
// radians, so its trigonometry carries the conversion.
struct Expression {
  const char* calc;
  const char* muparser;
};
constexpr Expression kExpressions[] = {
    {"1+2*3", "1+2*3"},
    {"2^3^2", "2^3^2"},
    {"(1.5+2.25)*(3-0.75)/4", "(1.5+2.25)*(3-0.75)/4"},
    {"((((1+2)*3)-4)/5)^2", "((((1+2)*3)-4)/5)^2"},
    {"(((((((1+1)))))))*((((2))))", "(((((((1+1)))))))*((((2))))"},
    {"12.5*4-3/7+2^10-1e3", "12.5*4-3/7+2^10-1e3"},
    {"SIN(30)+COS(60)", "sin(30*_pi/180)+cos(60*_pi/180)"},
    {"TAN(45)*COT(30)", "tan(45*_pi/180)/tan(30*_pi/180)"},
    {"ASN(0.5)+ACS(0.5)", "asin(0.5)*180/_pi+acos(0.5)*180/_pi"},
    {"ATN(1)+ACT(2)", "atan(1)*180/_pi+atan(1/2)*180/_pi"},
    {"ABS(-3.5)+SQRT(16)", "abs(-3.5)+sqrt(16)"},
    {"EXP(2)+LGT(10)+LOG(1000)", "exp(2)+ln(10)+log10(1000)"},
    {"PI*2.5^2", "_pi*2.5^2"},
    {"3>2", "3>2"},
    {"(1<2) + (2<=2) + (3>=4) + (5=5) + (5<>6)", "(1<2)+(2<=2)+(3>=4)+(5==5)+(5!=6)"},
    {"1<2 AND 3>2 OR 0", "1<2 && 3>2 || 0"},
    {"NOT 0 AND NOT 1", "(0==0) && (1==0)"},
    {"2>1 ? 5 : 7", "2>1 ? 5 : 7"},
    {"1>2 ? 5 : 3>2 ? 8 : 9", "1>2 ? 5 : (3>2 ? 8 : 9)"},
    {"MIN(3,1,2)", "min(3,1,2)"},
    {"MAX(1,7,3,9,4,8,2,6,5,0)", "max(1,7,3,9,4,8,2,6,5,0)"},
    {"MIN(MAX(1,2,3),MAX(4,5),6)*2", "min(max(1,2,3),max(4,5),6)*2"},
    {"SQRT(3^2+4^2) > 4.99 ? SIN(90) : 0", "sqrt(3^2+4^2) > 4.99 ? sin(90*_pi/180) : 0"},
    {"-(2+3)*-4/(1+1)", "-(2+3)*-4/(1+1)"},
};
constexpr int64_t kCount = sizeof kExpressions / sizeof kExpressions[0];

void CalcExpressions(benchmark::State& state) {
  double sum = 0.0;
  const uint64_t before = allocation_count;
  for (auto _ : state) {
    for (const Expression& e : kExpressions) {
      double value = 0.0;
      int32_t ok = 0;
      calc_expression(e.calc, &value, &ok);
      if (ok == 0) state.SkipWithError(e.calc);
      sum += value;
    }
  }
  benchmark::DoNotOptimize(sum);
  const double evaluated = static_cast<double>(state.iterations() * kCount);
  state.counters["allocs_per_expr"] =
      static_cast<double>(allocation_count - before) / (evaluated > 0 ? evaluated : 1);
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(CalcExpressions)->Name("calc/expression/set24");

// Only the shortest expression: the fixed cost of one call (scanner open and close).
void CalcShortest(benchmark::State& state) {
  double value = 0.0;
  int32_t ok = 0;
  for (auto _ : state) {
    calc_expression("1+2*3", &value, &ok);
    benchmark::DoNotOptimize(value);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(CalcShortest)->Name("calc/expression/shortest");

#ifdef TIV_HAVE_MUPARSER
void MuparserExpressions(benchmark::State& state) {
  mu::Parser parser;
  double sum = 0.0;
  const uint64_t before = allocation_count;
  for (auto _ : state) {
    for (const Expression& e : kExpressions) {
      try {
        parser.SetExpr(e.muparser);
        sum += parser.Eval();
      } catch (const mu::Parser::exception_type& x) {
        state.SkipWithError(e.muparser);
      }
    }
  }
  benchmark::DoNotOptimize(sum);
  const double evaluated = static_cast<double>(state.iterations() * kCount);
  state.counters["allocs_per_expr"] =
      static_cast<double>(allocation_count - before) / (evaluated > 0 ? evaluated : 1);
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(MuparserExpressions)->Name("calc/expression/peer_muparser_setexpr_eval");

void MuparserShortest(benchmark::State& state) {
  mu::Parser parser;
  double value = 0.0;
  for (auto _ : state) {
    parser.SetExpr("1+2*3");
    value = parser.Eval();
    benchmark::DoNotOptimize(value);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(MuparserShortest)->Name("calc/expression/peer_muparser_shortest");
#endif

}  // namespace

BENCHMARK_MAIN();
