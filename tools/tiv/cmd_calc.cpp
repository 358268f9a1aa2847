// tiv calc: evaluates expressions with the library's calculator, one per argument or one per
// line of standard input.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <iostream>
#include <tivlib/calc.h>

#include "commands.h"
#include "json_out.h"
#include "text.h"

namespace tiv::cli {

namespace {

// Setting -1 asks the library for [Calculator] Nachkommastellen of its settings file.
constexpr int kDecimalsFromSettings = -1;
constexpr int kDecimalsMax = 15;

struct CalcArgs {
  std::vector<std::string> expressions;
  int decimals = kDecimalsFromSettings;
  bool json = false;
};

// The line under an expression that puts a caret below `column` (from 0). Tabs of the
// expression are kept, so the caret lines up on any terminal.
std::string caret_line(const std::string& expression, int column) {
  std::string line;
  for (int i = 0; i < column; ++i) {
    char c = static_cast<std::size_t>(i) < expression.size() ? expression[static_cast<std::size_t>(i)] : ' ';
    line.push_back(c == '\t' ? '\t' : ' ');
  }
  return line + '^';
}

// Evaluates one expression; prints the value, or the error with a caret. `where` is the file
// and line of an expression read from standard input. Gives false on an error.
bool evaluate(Session& s, const std::string& expression, int decimals, const std::string& where_file,
              int where_line, nlohmann::json* json) {
  double value = 0;
  std::int32_t ok = 0;
  calc_expression(expression.c_str(), &value, &ok);
  if (ok) {
    std::string text = decimals > 0 ? format_fixed(value, decimals) : format_number(value);
    if (json) {
      json->push_back({{"expression", expression}, {"value", value}});
    } else {
      s.ctx.out << text << '\n';
    }
    return true;
  }
  std::int32_t number = 0, line = 0, column = 0;
  char text[CALC_ERROR_TEXT_MAX + 1] = {};
  calc_error(&number, &line, &column, text);
  std::string message = "error " + std::to_string(number) + " at column " + std::to_string(column + 1) +
                        ": " + text;
  s.ctx.report(Failure{kBadFormat, message, where_file, where_line});
  s.ctx.err << "  " << expression << "\n  " << caret_line(expression, column) << '\n';
  s.ctx.note_code(kBadFormat);
  if (json) {
    json->push_back({{"expression", expression},
                     {"error", number},
                     {"column", column + 1},
                     {"message", text}});
  }
  return false;
}

void run_calc(Session& s, const CalcArgs& a) {
  if (a.decimals != kDecimalsFromSettings && (a.decimals < 0 || a.decimals > kDecimalsMax))
    fail(kUsage, "--decimals must lie between 0 and " + std::to_string(kDecimalsMax));
  calc_init(a.decimals);
  // Rounding is the library's: it rounds with the decimals that calc_init has set. Without
  // --decimals that is the settings file's value, which the tool cannot see, so it prints
  // the value as it comes back.
  int shown = a.decimals == kDecimalsFromSettings ? 0 : a.decimals;
  nlohmann::json json = nlohmann::json::array();
  nlohmann::json* sink = a.json ? &json : nullptr;
  if (!a.expressions.empty()) {
    for (const auto& e : a.expressions) evaluate(s, e, shown, {}, 0, sink);
  } else {
    std::string line;
    int number = 0;
    while (std::getline(std::cin, line)) {
      ++number;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (trim(line).empty()) continue;
      evaluate(s, line, shown, "<stdin>", number, sink);
    }
  }
  if (a.json) s.ctx.out << dump_json(json, 2) << '\n';
}

}  // namespace

void add_calc_command(CLI::App& app, Session& s) {
  auto args = std::make_shared<CalcArgs>();
  CLI::App* calc = app.add_subcommand("calc", "Evaluate expressions (each argument, or each line of standard input)");
  calc->add_option("EXPR", args->expressions, "Expressions; without any, lines are read from standard input");
  calc->add_option("--decimals", args->decimals,
                   "Round each result to N decimals (0: no rounding); without it the\n"
                   "[Calculator] Nachkommastellen setting applies")
      ->option_text("N");
  calc->add_flag("--json", args->json, kJsonHelp);
  calc->footer(
      "The language: + - * / ^, comparisons (< <= = <> >= >), AND OR NOT, cond ? a : b,\n"
      "PI and SIN COS TAN COT ASN ACS ATN ACT SQRT EXP LGT (natural) LOG (base 10) MIN MAX,\n"
      "with angles in degrees; case does not matter. An error prints its number, the column\n"
      "and a caret under the expression, and the exit code is 3. Put -- in front of an\n"
      "expression that begins with a minus sign and a letter or parenthesis.\n"
      "\n"
      "Example:\n"
      "  tiv calc \"2*(3+4)\" \"sin(30)\" --decimals 3\n"
      "  echo \"MAX(1, 7, 3) ^ 2\" | tiv calc");
  calc->callback([&s, args] { run_calc(s, *args); });
}

}  // namespace tiv::cli
