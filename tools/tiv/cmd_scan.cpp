// tiv scan: the token stream of a file under the scanner's flags, one token a line.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <array>
#include <iostream>
#include <sstream>
#include <tivlib/scan.h>

#include "commands.h"
#include "json_out.h"
#include "text.h"

namespace tiv::cli {

namespace {

// Names of the token kinds, by their code.
constexpr std::array<const char*, SCAN_T_EOF + 1> kKindNames = {
    "void",      "letter",      "digit",        "other",     "blank",     "keyword",
    "identifier", "long",       "double",       "char",      "string",    "quoted",
    "equal",     "notequal",    "comma",        "semicolon", "dot",       "colon",
    "plus",      "minus",       "star",         "slash",     "power",     "less",
    "greater",   "lessequal",   "greaterequal", "lparen",    "rparen",    "lbrace",
    "rbrace",    "lbracket",    "rbracket",     "dollar",    "at",        "percent",
    "ampersand", "question",    "exclamation",  "bar",       "backslash", "tilde",
    "dquote",    "eol",         "eof"};

struct FlagName {
  const char* name;
  std::int32_t bit;
  const char* meaning;
};
constexpr FlagName kFlags[] = {
    {"eol", SCAN_F_EOL, "a line end is a token"},
    {"block-comment", SCAN_F_BLOCK_COMMENT, "/* ... */ comments"},
    {"line-comment", SCAN_F_LINE_COMMENT, "// comments"},
    {"bang-comment", SCAN_F_BANG_COMMENT, "! comments"},
    {"signed", SCAN_F_SIGNED, "a sign in front of a digit belongs to the number"},
    {"relations", SCAN_F_RELATIONS, "two-character relations <= >= <> == << >>"},
    {"lower", SCAN_F_LOWER, "fold everything to lower case"},
    {"upper", SCAN_F_UPPER, "fold everything to upper case"},
    {"continue", SCAN_F_CONTINUE, "a backslash at the line end continues the line"},
    {"script", SCAN_F_SCRIPT, "# comments and `quoted' strings"},
    {"umlauts", SCAN_F_UMLAUTS, "the German letters of code page 437 are letters"},
    {"power", SCAN_F_POWER, "** is the power symbol"},
    {"trace", SCAN_F_TRACE, "write a trace of every token to the file trc"},
};

const char* status_text(std::int32_t status) {
  switch (status) {
    case SCAN_E_IDENTIFIER: return "word longer than 255 characters; the rest was dropped";
    case SCAN_E_STRING: return "string longer than 255 characters; the rest was dropped";
    case SCAN_E_CHAR: return "character constant without its closing apostrophe";
    case SCAN_E_UNCLOSED: return "string not closed before the line end";
    case SCAN_E_EXPONENT: return "exponent without a digit";
    case SCAN_E_ESCAPE: return "unknown escape in a character constant";
    default: return "scanner status";
  }
}

std::int32_t parse_flags(const std::vector<std::string>& names) {
  std::int32_t flags = 0;
  for (const std::string& raw : names) {
    std::string name(trim(raw));
    if (name.empty()) continue;
    bool known = false;
    for (const FlagName& f : kFlags) {
      if (name == f.name) {
        flags |= f.bit;
        known = true;
      }
    }
    if (known) continue;
    try {
      std::size_t used = 0;
      unsigned long bits = std::stoul(name, &used, 0);
      if (used == name.size()) {
        flags |= static_cast<std::int32_t>(bits);
        continue;
      }
    } catch (const std::exception&) {
    }
    fail(kUsage, "unknown scanner flag '" + name + "' (see tiv scan --help)");
  }
  return flags;
}

// The scanner's reader takes no argument, so the input it reads lives here for one scan.
struct ScanInput {
  const std::string* text = nullptr;
  std::size_t pos = 0;
};
ScanInput g_input;

std::int32_t read_input() {
  if (g_input.text == nullptr || g_input.pos >= g_input.text->size()) return -1;
  return static_cast<unsigned char>((*g_input.text)[g_input.pos++]);
}

struct ScanArgs {
  std::string file;
  std::vector<std::string> flags, keywords;
  bool json = false;
};

void run_scan(Session& s, const ScanArgs& a) {
  std::int32_t flags = parse_flags(a.flags);
  std::string text;
  if (a.file == "-") {
    std::ostringstream all;
    all << std::cin.rdbuf();
    text = all.str();
  } else {
    std::string error;
    auto content = read_file(a.file, error);
    if (!content) fail(kIo, "cannot read: " + error, a.file);
    text = std::move(*content);
  }
  std::vector<const char*> keywords;
  for (const auto& k : a.keywords) keywords.push_back(k.c_str());
  keywords.push_back(nullptr);

  g_input = ScanInput{&text, 0};
  scanner* scan = scan_open(read_input, flags, keywords.data());
  if (scan == nullptr) throw std::bad_alloc();
  std::string name = a.file == "-" ? "<stdin>" : a.file;
  nlohmann::json json = nlohmann::json::array();
  for (;;) {
    std::int32_t kind = SCAN_T_VOID;
    scan_record rec{};
    std::int32_t status = scan_token(scan, &kind, &rec);
    const char* kind_name = kind >= 0 && kind <= SCAN_T_EOF ? kKindNames[static_cast<std::size_t>(kind)] : "?";
    bool blank_text = kind == SCAN_T_EOL || kind == SCAN_T_EOF;
    std::string token_text = blank_text ? "" : rec.text;
    if (a.json) {
      nlohmann::json t = {{"line", rec.line + 1}, {"column", rec.column + 1}, {"kind", kind_name},
                          {"code", kind},         {"text", token_text}};
      if (kind == SCAN_T_DOUBLE) t["value"] = rec.dvalue;
      if (kind == SCAN_T_LONG || kind == SCAN_T_CHAR || kind == SCAN_T_KEYWORD) t["value"] = rec.lvalue;
      if (status != SCAN_OK) t["status"] = status;
      json.push_back(t);
    } else {
      s.ctx.out << rec.line + 1 << ':' << rec.column + 1 << ' ' << kind_name;
      if (!token_text.empty()) s.ctx.out << ' ' << token_text;
      s.ctx.out << '\n';
    }
    if (status != SCAN_OK) {
      s.ctx.report_and_go_on(Failure{kBadFormat, "column " + std::to_string(rec.column + 1) + ": " +
                                                     status_text(status),
                                     name, rec.line + 1});
    }
    if (kind == SCAN_T_EOF) break;
  }
  scan_close(scan);
  g_input = ScanInput{};
  if (a.json) s.ctx.out << dump_json(json, 2) << '\n';
}

std::string flags_help() {
  std::string text = "Flags (comma-separated names, or numbers such as 0x20):\n";
  for (const FlagName& f : kFlags) {
    std::string name = f.name;
    name.resize(15, ' ');
    text += "  " + name + f.meaning + "\n";
  }
  return text;
}

}  // namespace

void add_scan_command(CLI::App& app, Session& s) {
  auto args = std::make_shared<ScanArgs>();
  CLI::App* scan = app.add_subcommand("scan", "Print the token stream of a file, one token a line");
  scan->add_option("FILE", args->file, "File to scan (- for standard input)")->required();
  scan->add_option("--flags", args->flags, "Scanner flags, see below")->delimiter(',')->option_text("LIST");
  scan->add_option("--keywords", args->keywords, "Words that are keywords (as the folded text reads them)")
      ->delimiter(',')
      ->option_text("LIST");
  scan->add_flag("--json", args->json, kJsonHelp);
  scan->footer(flags_help() +
               "\nEach line reads \"LINE:COLUMN KIND TEXT\", counted from 1. A token with a problem\n"
               "is reported on standard error, and the exit code is then 3.\n"
               "\nExample:\n  tiv scan model.txt --flags line-comment,relations,signed --keywords IF,THEN");
  scan->callback([&s, args] { run_scan(s, *args); });
}

}  // namespace tiv::cli
