// tiv ini: settings files ([section] / entry=value), read and changed directly on disk by the
// ini_ family. An empty SECTION ("") names the entries in front of the first header.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>
#include <tivlib/ini.h>

#include "commands.h"
#include "encoding.h"
#include "files.h"
#include "json_out.h"
#include "safe_change.h"
#include "text.h"

namespace tiv::cli {

namespace {

constexpr std::int32_t kValueRoom = INI_LINE_MAX;  // a value never outgrows its line
constexpr std::int32_t kListRoom = INI_LIST_MAX;   // items of a number list, at most
constexpr std::int32_t kNamesRoomStart = 1 << 16;  // first room for a list of entry names
constexpr std::int32_t kNamesRoomMax = 1 << 26;

std::string section_label(const std::string& section) {
  return section.empty() ? "the unnamed section" : "section [" + section + "]";
}

// Turns a result code of a read into a failure; 0 passes.
void check_read(std::int32_t code, const std::string& file, const std::string& section,
                const std::string& entry) {
  switch (code) {
    case INI_OK:
      return;
    case INI_ERROR:
      fail(kIo, "cannot open the settings file", file);
    case INI_NO_SECTION:
      fail(kNotFound, "no " + section_label(section), file);
    case INI_NO_ENTRY:
      fail(kNotFound, "no entry '" + entry + "' in " + section_label(section), file);
    case INI_TOO_SMALL:
      fail(kBadFormat, "the value of '" + entry + "' is too long", file);
    default:
      fail(kIo, "unexpected result " + std::to_string(code), file);
  }
}

// Turns a result code of a change into a failure. The codes 1 to 3 of a write are those of
// the copy that replaces the file; `not_found` says that 1 and 2 mean section and entry.
void check_change(std::int32_t code, const std::string& file, const std::string& section,
                  const std::string& entry, bool not_found) {
  if (code == INI_OK) return;
  if (not_found && code == INI_NO_SECTION) fail(kNotFound, "no " + section_label(section), file);
  if (not_found && code == INI_NO_ENTRY)
    fail(kNotFound, "no entry '" + entry + "' in " + section_label(section), file);
  switch (code) {
    case INI_ERROR:
      fail(kIo, "cannot open the settings file or create its temporary file", file);
    case INI_EMPTY_NAME:
      fail(kUsage, "the new name is empty");
    case INI_TOO_SMALL:
      fail(kBadFormat, "the list is too long to write (more than 512 characters)", file);
    default:
      fail(kIo, "the file could not be replaced (copy result " + std::to_string(code) +
                    "); its new content stays in the temporary file",
           file);
  }
}

// Names of the entries of a section, in file order.
std::vector<std::string> entry_names(const std::string& file, const std::string& section) {
  for (std::int32_t room = kNamesRoomStart;; room *= 2) {
    std::string buffer(static_cast<std::size_t>(room) + 1, '\0');
    std::int32_t size = room;
    std::int32_t code = ini_read_string(file.c_str(), section.c_str(), nullptr, buffer.data(), &size);
    if (code == INI_TOO_SMALL && room < kNamesRoomMax) continue;
    check_read(code, file, section, {});
    std::vector<std::string> names;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size) && buffer[at] != '\0';) {
      std::string name(buffer.c_str() + at);
      at += name.size() + 1;
      names.push_back(std::move(name));
    }
    return names;
  }
}

std::string read_value(const std::string& file, const std::string& section,
                       const std::string& entry) {
  std::string buffer(static_cast<std::size_t>(kValueRoom) + 1, '\0');
  std::int32_t size = kValueRoom;
  check_read(ini_read_string(file.c_str(), section.c_str(), entry.c_str(), buffer.data(), &size),
             file, section, entry);
  return buffer.c_str();
}

// Section headers of a settings file in file order, each name once. Lines are read as the
// ini_ family reads them: stripped of bytes up to 0x20 at both ends, a header is a line that
// begins with "[", and its name runs to the first "]", without blanks around it.
std::vector<std::string> section_names(const std::string& file) {
  std::string error;
  auto text = read_file(file, error);
  if (!text) fail(kIo, "cannot read: " + error, file);
  std::vector<std::string> names;
  for (const std::string& raw : split(*text, '\n')) {
    std::string_view line = raw;
    while (!line.empty() && static_cast<unsigned char>(line.front()) <= 0x20) line.remove_prefix(1);
    while (!line.empty() && static_cast<unsigned char>(line.back()) <= 0x20) line.remove_suffix(1);
    if (line.empty() || line.front() != '[') continue;
    line.remove_prefix(1);
    line = line.substr(0, line.find(']'));
    while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
    while (!line.empty() && line.back() == ' ') line.remove_suffix(1);
    std::string name(line);
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

struct IniArgs {
  std::string file, section, entry, value, new_name;
  std::vector<std::string> rest;
  bool as_long = false, as_double = false, as_list = false, values = false, json = false;
  bool force = false;
};

void add_type_flags(CLI::App* cmd, IniArgs& a, const char* what) {
  auto* l = cmd->add_flag("--long", a.as_long, std::string(what) + " a whole number");
  auto* d = cmd->add_flag("--double", a.as_double, std::string(what) + " a floating number");
  l->excludes(d);
  cmd->add_flag("--list", a.as_list,
                std::string(what) + " a comma-separated list of numbers (doubles unless --long)");
}

void run_get(Session& s, const IniArgs& a) {
  const std::string& f = a.file;
  nlohmann::json json;
  if (a.as_list) {
    std::vector<std::string> items;
    std::int32_t count = kListRoom;
    if (a.as_long) {
      std::vector<std::int32_t> values(kListRoom);
      check_read(ini_read_longs(f.c_str(), a.section.c_str(), a.entry.c_str(), values.data(), &count),
                 f, a.section, a.entry);
      for (std::int32_t i = 0; i < count; ++i) {
        items.push_back(std::to_string(values[static_cast<std::size_t>(i)]));
        json.push_back(values[static_cast<std::size_t>(i)]);
      }
    } else {
      std::vector<double> values(kListRoom);
      check_read(ini_read_doubles(f.c_str(), a.section.c_str(), a.entry.c_str(), values.data(), &count),
                 f, a.section, a.entry);
      for (std::int32_t i = 0; i < count; ++i) {
        items.push_back(format_number(values[static_cast<std::size_t>(i)]));
        json.push_back(values[static_cast<std::size_t>(i)]);
      }
    }
    if (a.json) {
      s.ctx.out << dump_json(json.is_null() ? nlohmann::json::array() : json, 2) << '\n';
    } else {
      for (const auto& item : items) s.ctx.out << item << '\n';
    }
    return;
  }
  // The library reads the leading number of any text (0 for none): the tool wants a number.
  auto require_number = [&](bool whole) {
    const std::string text = read_value(f, a.section, a.entry);
    if (whole ? !parse_long(text).has_value() : !parse_double(text).has_value())
      fail(kBadFormat, std::string(whole ? "not a whole number" : "not a number") + ": '" + text + "'", f);
  };
  if (a.as_long) {
    require_number(true);
    std::int32_t value = 0;
    check_read(ini_read_long(f.c_str(), a.section.c_str(), a.entry.c_str(), &value), f, a.section,
               a.entry);
    s.ctx.out << (a.json ? dump_json(nlohmann::json(value)) : std::to_string(value)) << '\n';
  } else if (a.as_double) {
    require_number(false);
    double value = 0;
    check_read(ini_read_double(f.c_str(), a.section.c_str(), a.entry.c_str(), &value), f, a.section,
               a.entry);
    s.ctx.out << (a.json ? dump_json(nlohmann::json(value)) : format_number(value)) << '\n';
  } else {
    std::string value = read_value(f, a.section, a.entry);
    s.ctx.out << (a.json ? dump_json(nlohmann::json(value)) : value) << '\n';
  }
}

// One change of a settings file by the library, made on a private copy beside it that then
// takes the file's place (see FileChange). What a change would cut or garble is refused
// first, unless forced; CR LF line ends stay CR LF.
class SettingsChange {
 public:
  SettingsChange(const std::string& file, bool force) : file_(file), change_(file) {
    if (change_.target_exists()) {
      std::string error;
      auto text = read_file(change_.target(), error);
      if (!text) fail(kIo, "cannot read: " + error, file);
      if (!force) refuse_lossy(*text);
      const auto lf = std::count(text->begin(), text->end(), '\n');
      std::size_t crlf = 0;
      for (std::size_t at = text->find("\r\n"); at != std::string::npos; at = text->find("\r\n", at + 2)) ++crlf;
      crlf_ = lf > 0 && static_cast<long>(crlf) * 2 > lf;
    }
    change_.copy_target_to_temp();
  }

  // The name of the copy for the library's operation.
  const char* copy() { return change_.temp_path().c_str(); }

  void commit() {
    if (crlf_) {
      std::string error;
      auto text = read_file(change_.temp_path(), error);
      if (!text) fail(kIo, "cannot read the temporary file: " + error, file_);
      change_.rewrite_temp(with_crlf(*text));
    }
    change_.commit();
  }

 private:
  void refuse_lossy(const std::string& text) const {
    if (text.find('\0') != std::string::npos)
      fail(kBadFormat, "not changed: it holds nul bytes, perhaps no settings file at all (--force to go on)", file_);
    int line = 1;
    for (std::size_t at = 0; at < text.size(); ++line) {
      std::size_t end = text.find('\n', at);
      if (end == std::string::npos) end = text.size();
      std::size_t length = end - at;
      if (length > 0 && text[end - 1] == '\r') --length;
      if (length > INI_LINE_MAX)
        fail(kBadFormat, "not changed: the line is longer than " + std::to_string(INI_LINE_MAX) +
                             " characters, which a change would cut (--force to go on)", file_, line);
      at = end + 1;
    }
  }

  std::string file_;
  FileChange change_;
  bool crlf_ = false;
};

void run_set(const IniArgs& a) {
  const std::string& f = a.file;
  const std::string section = file_text(a.section);
  const std::string entry = file_text(a.entry);
  const std::string text = file_text(a.value);
  // What the file's lines can't hold is refused before anything is written.
  if (section.size() > INI_NAME_MAX)
    fail(kBadFormat, "the section name is longer than " + std::to_string(INI_NAME_MAX) + " characters", f);
  if (entry.size() + 1 + text.size() > INI_LINE_MAX)
    fail(kBadFormat, "the line 'entry=value' would be longer than the line limit of " +
                         std::to_string(INI_LINE_MAX) + " characters", f);
  SettingsChange change(f, a.force);
  const char* copy = change.copy();
  const char* sec = section.c_str();
  const char* ent = entry.c_str();
  std::int32_t code = INI_OK;
  if (a.as_list) {
    std::vector<std::string> items = split(a.value, ',');
    if (trim(a.value).empty()) items.clear();
    if (a.as_long) {
      std::vector<std::int32_t> values;
      for (const auto& item : items) {
        auto v = parse_long(item);
        if (!v) fail(kUsage, "not a whole number: '" + item + "'");
        values.push_back(*v);
      }
      code = ini_write_longs(copy, sec, ent, values.data(), static_cast<std::int32_t>(values.size()));
    } else {
      std::vector<double> values;
      for (const auto& item : items) {
        auto v = parse_double(item);
        if (!v) fail(kUsage, "not a number: '" + item + "'");
        values.push_back(*v);
      }
      code = ini_write_doubles(copy, sec, ent, values.data(), static_cast<std::int32_t>(values.size()));
    }
  } else if (a.as_long) {
    auto v = parse_long(a.value);
    if (!v) fail(kUsage, "not a whole number: '" + a.value + "'");
    code = ini_write_long(copy, sec, ent, *v);
  } else if (a.as_double) {
    auto v = parse_double(a.value);
    if (!v) fail(kUsage, "not a number: '" + a.value + "'");
    code = ini_write_double(copy, sec, ent, *v);
  } else {
    code = ini_write_string(copy, sec, ent, text.c_str());
  }
  check_change(code, f, a.section, a.entry, false);
  change.commit();
}

void run_list(Session& s, const IniArgs& a, bool section_given) {
  if (!section_given) {
    std::vector<std::string> names = section_names(a.file);
    if (a.json) {
      s.ctx.out << dump_json(nlohmann::json(names), 2) << '\n';
    } else {
      for (const auto& n : names) s.ctx.out << n << '\n';
    }
    return;
  }
  std::vector<std::string> names = entry_names(a.file, a.section);
  nlohmann::json json = nlohmann::json::array();
  for (const auto& name : names) {
    if (a.values) {
      std::string value = read_value(a.file, a.section, name);
      if (a.json) {
        json.push_back({{"name", name}, {"value", value}});
      } else {
        s.ctx.out << name << '=' << value << '\n';
      }
    } else if (a.json) {
      json.push_back(name);
    } else {
      s.ctx.out << name << '\n';
    }
  }
  if (a.json) s.ctx.out << dump_json(json, 2) << '\n';
}

void require_file(const std::string& file) {
  if (file.empty()) fail(kUsage, "FILE must not be empty");
}

}  // namespace

void add_ini_commands(CLI::App& app, Session& s) {
  auto args = std::make_shared<IniArgs>();
  IniArgs& a = *args;
  CLI::App* ini = app.add_subcommand("ini", "Settings files: get, set, delete, rename, list");
  ini->footer(
      "Settings files hold [section] headers and entry=value lines. An empty SECTION (\"\")\n"
      "names the entries in front of the first header. Every change rewrites the part of the\n"
      "file in front of the change in normal form and keeps the rest byte for byte.");

  CLI::App* get = ini->add_subcommand("get", "Print the value of an entry");
  get->add_option("FILE", a.file, "Settings file")->required()->transform(input_file());
  get->add_option("SECTION", a.section, "Section name")->required();
  get->add_option("ENTRY", a.entry, "Entry name")->required();
  add_type_flags(get, a, "Read the value as");
  get->add_flag("--json", a.json, kJsonHelp);
  get->footer("Example:\n  tiv ini get project.ini Units length\n  tiv ini get project.ini Grid spacing --list --double");
  get->callback([&s, args] {
    require_file(args->file);
    run_get(s, *args);
  });

  CLI::App* set = ini->add_subcommand("set", "Set the value of an entry, creating what is missing");
  set->add_option("FILE", a.file, "Settings file")->required()->check(changed_file());
  set->add_option("SECTION", a.section, "Section name")->required();
  set->add_option("ENTRY", a.entry, "Entry name")->required();
  set->add_option("VALUE", a.value, "New value")->required();
  add_type_flags(set, a, "Write the value as");
  set->add_flag("--force", a.force, "Change even a file with a line longer than 511 characters or nul bytes");
  set->footer("Example:\n  tiv ini set project.ini Units length mm\n  tiv ini set project.ini Grid spacing 1.5,2,2.5 --list");
  set->callback([args] {
    require_file(args->file);
    run_set(*args);
  });

  CLI::App* del = ini->add_subcommand("delete", "Delete an entry, or a whole section");
  del->add_option("FILE", a.file, "Settings file")->required()->check(changed_file());
  del->add_option("SECTION", a.section, "Section name")->required();
  del->add_option("ENTRY", a.entry, "Entry name; without it the whole section goes");
  del->add_flag("--force", a.force, "Change even a file with a line longer than 511 characters or nul bytes");
  del->footer("Example:\n  tiv ini delete project.ini Units length\n  tiv ini delete project.ini Obsolete");
  del->callback([args, del] {
    const IniArgs& x = *args;
    require_file(x.file);
    SettingsChange change(x.file, x.force);
    if (del->count("ENTRY") > 0) {
      check_change(ini_delete_entry(change.copy(), x.section.c_str(), x.entry.c_str()), x.file,
                   x.section, x.entry, true);
    } else {
      check_change(ini_delete_section(change.copy(), x.section.c_str()), x.file, x.section, {}, true);
    }
    change.commit();
  });

  CLI::App* ren = ini->add_subcommand("rename", "Rename a section, or an entry of a section");
  ren->add_option("FILE", a.file, "Settings file")->required()->check(changed_file());
  ren->add_option("NAMES", a.rest, "SECTION NEW, or SECTION ENTRY NEW")->required()->expected(2, 3);
  ren->add_flag("--force", a.force, "Change even a file with a line longer than 511 characters or nul bytes");
  ren->footer("Example:\n  tiv ini rename project.ini Units Measures\n  tiv ini rename project.ini Units length size");
  ren->callback([args] {
    const IniArgs& x = *args;
    require_file(x.file);
    const auto& n = x.rest;
    SettingsChange change(x.file, x.force);
    if (n.size() == 2) {
      check_change(ini_rename_section(change.copy(), n[0].c_str(), n[1].c_str()), x.file, n[0], {}, true);
    } else {
      check_change(ini_rename_entry(change.copy(), n[0].c_str(), n[1].c_str(), n[2].c_str()), x.file,
                   n[0], n[1], true);
    }
    change.commit();
  });

  CLI::App* list = ini->add_subcommand("list", "List the sections, or the entries of a section");
  list->add_option("FILE", a.file, "Settings file")->required()->transform(input_file());
  list->add_option("SECTION", a.section, "Section whose entries to list");
  list->add_flag("--values", a.values, "Show each entry as name=value");
  list->add_flag("--json", a.json, kJsonHelp);
  list->footer("Example:\n  tiv ini list project.ini\n  tiv ini list project.ini Units --values");
  list->callback([&s, args, list] {
    require_file(args->file);
    run_list(s, *args, list->count("SECTION") > 0);
  });
}

}  // namespace tiv::cli
