// tiv profil: the catalogue of structural sections, one *.PRO table per family, read in place
// by the profil_ family.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <tivlib/heap.h>
#include <tivlib/ini.h>
#include <tivlib/profil.h>
#include <tivlib/zv.h>

#include "commands.h"
#include "json_out.h"
#include "text.h"

namespace tiv::cli {

namespace {

using ordered_json = nlohmann::ordered_json;

constexpr int kDefaultPage = 10;  // rows of next and prev without --limit
constexpr std::size_t kFirstValueColumn = 2;  // columns 0 and 1 are kind and size

struct ProfilArgs {
  std::string dir, family, query;
  std::vector<std::string> items, where;
  int limit = -1;
  bool si = false, json = false;
};

// Sets the catalogue directory: --dir, or else the Profile entry of [System] in the central
// settings file zv2.ini (looked for in the working directory, then in the directory $ZV).
std::string use_directory(const std::string& dir) {
  if (!dir.empty()) {
    profil_path(dir.c_str());
    return dir;
  }
  char central[ZV_PATH_MAX + 1] = {};
  if (zv_suche_datei(nullptr, nullptr, nullptr, central) != 0)
    fail(kNotFound, "no catalogue directory: give --dir DIR, or set Profile in [System] of zv2.ini");
  char value[PROFIL_DIRECTORY_MAX + 1] = {};
  std::int32_t size = PROFIL_DIRECTORY_MAX;
  if (ini_read_string(central, "System", "Profile", value, &size) != INI_OK || trim(value).empty())
    fail(kNotFound, "no catalogue directory: [System] has no Profile entry", central);
  profil_path(value);
  return value;
}

// One condition of --where: property, operator, operand.
struct Condition {
  std::string name, op;
  double value = 0;
};

Condition parse_condition(const std::string& text) {
  static constexpr std::string_view kOps[] = {">=", "<=", "!=", "<>", "==", "=", ">", "<"};
  std::size_t at = text.find_first_of("<>=!");
  if (at == std::string::npos) fail(kUsage, "--where \"" + text + "\": no operator (use > < >= <= = != <>)");
  Condition c;
  c.name = std::string(trim(std::string_view(text).substr(0, at)));
  std::string_view rest = std::string_view(text).substr(at);
  for (std::string_view op : kOps) {
    if (rest.substr(0, op.size()) == op) {
      c.op = std::string(op);
      rest.remove_prefix(op.size());
      break;
    }
  }
  auto value = parse_double(rest);
  if (c.name.empty() || c.op.empty() || !value)
    fail(kUsage, "--where \"" + text + "\": expected PROPERTY OPERATOR NUMBER, such as \"A>10\"");
  c.value = *value;
  return c;
}

// A value as the table shows it (15 significant digits), so that a unit factor leaves no
// binary noise in the JSON output: 0.05 * 0.001 is 5e-05, not 5.0000000000000002e-05.
double to_significant_digits(double value) { return parse_double(format_number(value)).value_or(value); }

// An open catalogue file with the items the tool asks for.
class Family {
 public:
  Family(const std::string& name, const std::vector<std::string>& wanted, bool si) : name_(name) {
    std::string path = name;  // profil_open trims its argument in place
    const char* none[] = {nullptr};
    handle_ = profil_open(path.data(), none, nullptr);
    if (handle_ == nullptr) fail(kNotFound, "cannot open the catalogue file", name);
    for (const char* p = profil_get_all_items(handle_); p && *p; p += std::strlen(p) + 1) columns_.emplace_back(p);
    if (wanted.empty()) {
      for (std::size_t i = kFirstValueColumn; i < columns_.size(); ++i) items_.push_back(columns_[i]);
    } else {
      items_ = wanted;
    }
    for (const auto& item : items_) item_ptrs_.push_back(item.c_str());
    item_ptrs_.push_back(nullptr);
    factors_.assign(items_.size(), 1.0);
    if (si) profil_get_factors(item_ptrs_.data(), factors_.data());
    profil_reset(handle_, item_ptrs_.data(), si ? factors_.data() : nullptr);
    values_.assign(items_.size(), 0.0);
  }
  ~Family() { profil_close(handle_); }
  Family(const Family&) = delete;
  Family& operator=(const Family&) = delete;

  profil_handle* handle() const { return handle_; }
  double* values() { return values_.data(); }
  char* result() { return result_; }
  bool has_column(const std::string& name) const {
    return std::find(columns_.begin(), columns_.end(), name) != columns_.end();
  }
  std::string heading(std::size_t i) const { return i < columns_.size() ? columns_[i] : ""; }

  // The row just delivered: kind, size and the wanted values ("nil" where the row has none).
  std::vector<std::string> row_cells() const {
    char kind[PROFIL_PART_SIZE] = {};
    char size[PROFIL_PART_SIZE] = {};
    profil_convert_result(result_, kind, size);
    std::vector<std::string> cells{kind, size};
    for (std::size_t i = 0; i < items_.size(); ++i) cells.push_back(is_nil(i) ? "nil" : format_number(values_[i]));
    return cells;
  }
  ordered_json row_json() const {
    char kind[PROFIL_PART_SIZE] = {};
    char size[PROFIL_PART_SIZE] = {};
    profil_convert_result(result_, kind, size);
    ordered_json values = ordered_json::object();
    for (std::size_t i = 0; i < items_.size(); ++i)
      values[items_[i]] = is_nil(i) ? ordered_json() : ordered_json(to_significant_digits(values_[i]));
    return ordered_json{{"family", name_}, {"kind", kind}, {"size", size}, {"values", values}};
  }
  std::vector<std::string> header_cells() const {
    std::vector<std::string> cells{heading(0), heading(1)};
    cells.insert(cells.end(), items_.begin(), items_.end());
    return cells;
  }

 private:
  // A missing value reads as -1 times the column's factor.
  bool is_nil(std::size_t i) const { return values_[i] == -1.0 * factors_[i]; }

  std::string name_;
  profil_handle* handle_ = nullptr;
  std::vector<std::string> columns_, items_;
  std::vector<const char*> item_ptrs_;
  std::vector<double> factors_, values_;
  char result_[PROFIL_RESULT_SIZE] = {};
};

// Rows printed as a table with aligned columns, or gathered as JSON.
class RowPrinter {
 public:
  RowPrinter(Session& s, bool json) : s_(s), json_(json) {}
  void add(const Family& f) {
    if (json_) {
      rows_json_.push_back(f.row_json());
      return;
    }
    if (table_.empty()) table_.push_back(f.header_cells());
    table_.push_back(f.row_cells());
  }
  // Ends the table of one family (families differ in their columns).
  void end_family() {
    if (json_ || table_.empty()) return;
    if (printed_tables_++ > 0) s_.ctx.out << '\n';
    std::vector<std::size_t> width;
    for (const auto& row : table_)
      for (std::size_t i = 0; i < row.size(); ++i) {
        if (width.size() <= i) width.push_back(0);
        width[i] = std::max(width[i], row[i].size());
      }
    for (const auto& row : table_) {
      std::string line;
      for (std::size_t i = 0; i < row.size(); ++i) {
        line += row[i];
        if (i + 1 < row.size()) line += std::string(width[i] - row[i].size() + 2, ' ');
      }
      s_.ctx.out << line << '\n';
    }
    table_.clear();
  }
  void finish() {
    end_family();
    if (json_) s_.ctx.out << dump_json(rows_json_, 2) << '\n';
  }
  std::size_t rows() const { return json_ ? rows_json_.size() : counted_; }
  void count() { ++counted_; }

 private:
  Session& s_;
  bool json_;
  std::vector<std::vector<std::string>> table_;
  ordered_json rows_json_ = ordered_json::array();
  int printed_tables_ = 0;
  std::size_t counted_ = 0;
};

// Families of the catalogue that hold a row matching the query, or the one of --family.
std::vector<std::string> families_for(const ProfilArgs& a, const std::string& dir) {
  if (!a.family.empty()) return {a.family};
  std::int32_t count = 0;
  char* list = nullptr;
  if (profil_findfiles(a.query.c_str(), &count, &list) == 0)
    fail(kNotFound, "no catalogue files (*.PRO) in the directory", dir);
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < count; ++i) names.emplace_back(list + static_cast<std::size_t>(i) * PROFIL_LIST_ROW);
  heap_free(list);
  std::sort(names.begin(), names.end());  // the directory's own order is no order
  return names;
}

void run_list(Session& s, const ProfilArgs& a) {
  std::string dir = use_directory(a.dir);
  std::vector<std::string> names = families_for(ProfilArgs{.query = a.query}, dir);
  if (a.json) {
    s.ctx.out << dump_json(nlohmann::json(names), 2) << '\n';
  } else {
    for (const auto& n : names) s.ctx.out << n << '\n';
  }
  if (names.empty()) s.ctx.note_code(kNotFound);
}

void run_get(Session& s, const ProfilArgs& a) {
  std::string dir = use_directory(a.dir);
  RowPrinter printer(s, a.json);
  std::size_t found = 0;
  for (const std::string& name : families_for(a, dir)) {
    Family f(name, a.items, a.si);
    if (profil_get(f.handle(), a.query.c_str(), f.values(), f.result()) == 0) {
      printer.add(f);
      ++found;
    }
    printer.end_family();
  }
  printer.finish();
  if (found == 0) fail(kNotFound, "no section matches '" + a.query + "'");
}

void run_search(Session& s, const ProfilArgs& a) {
  std::vector<Condition> conditions;
  for (const auto& w : a.where) conditions.push_back(parse_condition(w));
  std::string dir = use_directory(a.dir);
  RowPrinter printer(s, a.json);
  std::size_t found = 0;
  for (const std::string& name : families_for(a, dir)) {
    if (a.limit >= 0 && found >= static_cast<std::size_t>(a.limit)) break;
    Family f(name, a.items, a.si);
    // A condition on a property that a family lacks would be ignored by the library; such a
    // family cannot satisfy it, so it is passed over.
    bool applies = std::all_of(conditions.begin(), conditions.end(),
                               [&](const Condition& c) { return f.has_column(c.name); });
    if (!applies) {
      if (!a.family.empty()) fail(kNotFound, "the family has no property named in --where", a.family);
      continue;
    }
    std::vector<std::string> ops;
    for (const auto& c : conditions) ops.push_back(c.op);
    std::vector<profil_term> terms;
    for (std::size_t i = 0; i < conditions.size(); ++i)
      terms.push_back(profil_term{conditions[i].name.c_str(), ops[i].data(), conditions[i].value});
    std::int32_t code = profil_search(f.handle(), terms.data(), static_cast<std::int32_t>(terms.size()),
                                      a.query.c_str(), f.values(), f.result());
    while (code == 0 && (a.limit < 0 || found < static_cast<std::size_t>(a.limit))) {
      printer.add(f);
      ++found;
      code = profil_search_next(f.handle(), nullptr, 0, a.query.c_str(), f.values(), f.result());
    }
    printer.end_family();
  }
  printer.finish();
  if (found == 0) s.ctx.note_code(kNotFound);
}

// Pages through one family: forward with profil_next, backward with profil_prev, starting at
// the row that the query finds, or at the first (forward) or last (backward) row.
void run_page(Session& s, const ProfilArgs& a, bool forward) {
  std::string dir = use_directory(a.dir);
  Family f(a.family, a.items, a.si);
  RowPrinter printer(s, a.json);
  int limit = a.limit < 0 ? kDefaultPage : a.limit;
  int shown = 0;
  std::int32_t code;
  if (!a.query.empty()) {
    code = profil_get(f.handle(), a.query.c_str(), f.values(), f.result());
    if (code != 0) fail(kNotFound, "no section matches '" + a.query + "'", a.family);
  } else if (forward) {
    code = profil_next(f.handle(), f.values(), f.result());
  } else {
    // The last row: read to the end and step back once, to the row before the last (or to
    // the start, in a file of one row); the next row read is then the last.
    while (profil_next(f.handle(), f.values(), f.result()) == 0) {
    }
    profil_prev(f.handle(), f.values(), f.result());
    code = profil_next(f.handle(), f.values(), f.result());
  }
  while (code == 0 && (limit == 0 || shown < limit)) {
    printer.add(f);
    ++shown;
    code = forward ? profil_next(f.handle(), f.values(), f.result())
                   : profil_prev(f.handle(), f.values(), f.result());
  }
  printer.finish();
  if (shown == 0) s.ctx.note_code(kNotFound);
}

void add_common(CLI::App* cmd, ProfilArgs& a) {
  cmd->add_option("--dir", a.dir, "Catalogue directory (default: Profile in [System] of zv2.ini)")->option_text("DIR");
}

void add_row_options(CLI::App* cmd, ProfilArgs& a) {
  cmd->add_option("--items", a.items, "Properties to show (default: all columns)")->delimiter(',')->option_text("LIST");
  cmd->add_flag("--si", a.si, "Convert values to metres (mm -> m, cm2 -> m2, cm4 -> m4, ...)");
  cmd->add_flag("--json", a.json, kJsonHelp);
}

}  // namespace

void add_profil_commands(CLI::App& app, Session& s) {
  auto args = std::make_shared<ProfilArgs>();
  ProfilArgs& a = *args;
  CLI::App* profil = app.add_subcommand("profil", "Section catalogue: list, get, search, next, prev");
  profil->footer(
      "A query names a section by kind and size: \"IPE 200\" is the first IPE of size 200 or\n"
      "more, \"IPE (200)\" exactly 200, \"RHS 100x50\" matches 100x50x4, \"200\" any kind.\n"
      "Values are in the units of the files (mm, cm2, cm4, ...) unless --si is given.");

  CLI::App* list = profil->add_subcommand("list", "List the families that hold a section matching QUERY");
  list->add_option("QUERY", a.query, "Name query (default: every family)");
  add_common(list, a);
  list->add_flag("--json", a.json, kJsonHelp);
  list->footer("Example:\n  tiv profil list --dir examples/catalog\n  tiv profil list \"100x50\"");
  list->callback([&s, args] { run_list(s, *args); });

  CLI::App* get = profil->add_subcommand("get", "Show the first section matching QUERY in each family");
  get->add_option("QUERY", a.query, "Name query, such as \"IPE 200\"")->required();
  get->add_option("--family", a.family, "Look only in this family (a name in the catalogue, or a file)")
      ->option_text("NAME");
  add_common(get, a);
  add_row_options(get, a);
  get->footer("Example:\n  tiv profil get \"HEB 200\" --items h,b,A,Iy\n  tiv profil get 100 --dir examples/catalog");
  get->callback([&s, args] { run_get(s, *args); });

  CLI::App* search = profil->add_subcommand("search", "Show the sections matching QUERY whose values pass --where");
  search->add_option("QUERY", a.query, "Name query (\"\" for every section)")->required();
  search->add_option("--where", a.where, "Condition PROPERTY OP NUMBER with OP one of > < >= <= = != <>;\n"
                                         "repeat for more (all must hold)")
      ->option_text("COND");
  search->add_option("--family", a.family, "Search only this family")->option_text("NAME");
  search->add_option("--limit", a.limit, "Show at most N sections")->option_text("N");
  add_common(search, a);
  add_row_options(search, a);
  search->footer(
      "The operand is in the unit of the values shown (with --si: metres). Families without\n"
      "a property named in --where are passed over.\n"
      "\nExample:\n  tiv profil search IPE --where \"Iy>=1000\" --where \"h<=250\" --items h,Iy");
  search->callback([&s, args] { run_search(s, *args); });

  for (bool forward : {true, false}) {
    CLI::App* page = profil->add_subcommand(forward ? "next" : "prev",
                                            forward ? "Page forward through a family, row by row"
                                                    : "Page backward through a family, row by row");
    page->add_option("FAMILY", a.family, "Family (a name in the catalogue, or a file)")->required();
    page->add_option("QUERY", a.query, forward ? "Start at the section the query finds (default: the first)"
                                               : "Start at the section the query finds (default: the last)");
    page->add_option("--limit", a.limit, "Show N rows (default 10; 0: all)")->option_text("N");
    add_common(page, a);
    add_row_options(page, a);
    page->footer(forward ? "Example:\n  tiv profil next IPE \"IPE 200\" --limit 3 --items h,b"
                         : "Example:\n  tiv profil prev IPE --limit 3 --items h,b");
    page->callback([&s, args, forward] { run_page(s, *args, forward); });
  }
}

}  // namespace tiv::cli
