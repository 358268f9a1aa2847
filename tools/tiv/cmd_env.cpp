// tiv env: environment files, the library's hierarchical text form ([Section], name =value,
// blocks in braces). Addresses are a section and a path such as wall@2@height.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <exception>

#include <map>
#include <optional>
#include <ostream>
#include <tivlib/env.h>

#include "commands.h"
#include "encoding.h"
#include "env_file.h"
#include "files.h"
#include "json_out.h"
#include "text.h"

namespace tiv::cli {

namespace {

constexpr std::size_t kPathMax = ENV_PATH_MAX;
constexpr std::int32_t kNamesRoomStart = 1 << 12;
constexpr std::int32_t kNamesRoomMax = 1 << 26;

const std::map<std::string, std::int32_t> kMergeModes = {
    {"add", ENV_SINK_ADD},
    {"append", ENV_SINK_APPEND},
    {"replace", ENV_SINK_REPLACE},
    {"update", ENV_SINK_UPDATE},
};

std::string address(const std::string& section, const std::string& path) {
  return "[" + section + "]" + (path.empty() ? "" : " " + path);
}

// A path must hold a name and fit the splitter; the library would only log and ignore it.
void check_path(const std::string& path) {
  if (path.size() > kPathMax) fail(kUsage, "the path is longer than 511 characters");
  if (path.find_first_not_of('@') == std::string::npos) fail(kUsage, "bad path '" + path + "'");
}

const char* path_or_nil(const std::string& path) { return path.empty() ? nullptr : path.c_str(); }

// Turns a negative result of a read into a failure, telling what stands at the address.
[[noreturn]] void read_failed(std::int32_t code, env_handle* env, const std::string& file,
                              const std::string& section, const std::string& path, int exact,
                              const std::string& want) {
  std::string where = address(section, path);
  switch (code) {
    case ENV_NOT_FOUND:
      fail(kNotFound, "no element " + where, file);
    case ENV_BAD_PATH:
      fail(kUsage, "bad path '" + path + "'");
    case ENV_BAD_FORMAT: {
      const char* text = nullptr;
      env_get_reference(env, section.c_str(), path_or_nil(path), exact, &text);
      fail(kBadFormat, where + " is not " + want + ": '" + (text ? text : "") + "'", file);
    }
    case ENV_IS_DATA:
    case ENV_IS_EXTERNAL: {
      std::int32_t kind = env_check(env, section.c_str(), path_or_nil(path), exact);
      fail(kBadFormat,
           where + (kind == ENV_IS_BLOCK ? " is a block, not a value (--names lists its elements)"
                                         : " holds no text"),
           file);
    }
    default:
      fail(kIo, "unexpected result " + std::to_string(code), file);
  }
}

struct EnvArgs {
  std::vector<std::string> files;
  std::string file, section, path, value, target, source, mode, output;
  bool as_double = false, as_long = false, as_list = false, names = false, search = false;
  bool json = false, check = false, to_stdout = false, force = false;
};

void run_get(Session& s, const EnvArgs& a) {
  EnvTree tree;
  load_env_file(s, tree, a.file, false);
  env_handle* env = tree.get();
  const char* sec = a.section.c_str();
  const char* path = path_or_nil(a.path);
  int exact = a.search ? 0 : 1;
  if (path) check_path(a.path);
  std::ostream& out = s.ctx.out;

  if (a.names) {
    for (std::int32_t room = kNamesRoomStart;; room *= 2) {
      std::string buffer(static_cast<std::size_t>(room), '\0');
      std::int32_t code = env_list_elem_names(env, sec, path, exact, '\n', room, buffer.data());
      if (code == ENV_TOO_SMALL && room < kNamesRoomMax) continue;
      if (code == ENV_IS_BLOCK) {
        std::int32_t kind = env_check(env, sec, path, exact);
        if (kind == ENV_NOT_FOUND) fail(kNotFound, "no element " + address(a.section, a.path), a.file);
        fail(kBadFormat, address(a.section, a.path) + " is a value, not a block", a.file);
      }
      if (code != ENV_OK) read_failed(code, env, a.file, a.section, a.path, exact, "a block");
      std::vector<std::string> names = split(buffer.c_str(), '\n');
      names.pop_back();  // every name is followed by the separator
      if (a.json) {
        out << dump_json(nlohmann::json(names), 2) << '\n';
      } else {
        for (const auto& n : names) out << n << '\n';
      }
      return;
    }
  }

  if (a.as_list) {
    std::int32_t length = env_data_length(env, sec, path, exact);
    std::int32_t room = length / 2 + 2;  // items need at least one character and a comma
    std::int32_t count = room;
    nlohmann::json items = nlohmann::json::array();
    std::vector<std::string> lines;
    std::int32_t code;
    if (a.as_long) {
      std::vector<std::int32_t> values(static_cast<std::size_t>(room));
      code = env_get_longs(env, sec, path, exact, &count, values.data());
      if (code < 0) read_failed(code, env, a.file, a.section, a.path, exact, "a list of whole numbers");
      for (std::int32_t i = 0; i < count; ++i) {
        items.push_back(values[static_cast<std::size_t>(i)]);
        lines.push_back(std::to_string(values[static_cast<std::size_t>(i)]));
      }
    } else if (a.as_double) {
      std::vector<double> values(static_cast<std::size_t>(room));
      code = env_get_doubles(env, sec, path, exact, &count, values.data());
      if (code < 0) read_failed(code, env, a.file, a.section, a.path, exact, "a list of numbers");
      for (std::int32_t i = 0; i < count; ++i) {
        items.push_back(values[static_cast<std::size_t>(i)]);
        lines.push_back(format_number(values[static_cast<std::size_t>(i)]));
      }
    } else {
      std::int32_t size = length + 1;
      std::vector<std::string> buffers(static_cast<std::size_t>(room), std::string(static_cast<std::size_t>(size), '\0'));
      std::vector<char*> slots;
      for (auto& b : buffers) slots.push_back(b.data());
      code = env_get_strings(env, sec, path, exact, &count, size, slots.data());
      if (code < 0) read_failed(code, env, a.file, a.section, a.path, exact, "a list of words");
      for (std::int32_t i = 0; i < count; ++i) {
        std::string word = buffers[static_cast<std::size_t>(i)].c_str();
        items.push_back(word);
        lines.push_back(word);
      }
    }
    if (a.json) {
      out << dump_json(items, 2) << '\n';
    } else {
      for (const auto& l : lines) out << l << '\n';
    }
    return;
  }

  if (a.as_double) {
    double value = 0;
    std::int32_t code = env_get_double(env, sec, path, exact, &value);
    if (code < 0) read_failed(code, env, a.file, a.section, a.path, exact, "a number");
    out << (a.json ? dump_json(nlohmann::json(value)) : format_number(value)) << '\n';
  } else if (a.as_long) {
    std::int32_t value = 0;
    std::int32_t code = env_get_long(env, sec, path, exact, &value);
    if (code < 0) read_failed(code, env, a.file, a.section, a.path, exact, "a whole number");
    out << (a.json ? dump_json(nlohmann::json(value)) : std::to_string(value)) << '\n';
  } else {
    const char* text = nullptr;
    std::int32_t code = env_get_reference(env, sec, path, exact, &text);
    if (code < 0) read_failed(code, env, a.file, a.section, a.path, exact, "a value");
    out << (a.json ? dump_json(nlohmann::json(text)) : std::string(text)) << '\n';
  }
}

void run_set(Session& s, const EnvArgs& a) {
  check_path(a.path);
  FileChange change(a.file);
  EnvTree tree;
  EnvFileFacts facts;
  load_env_file(s, tree, change.target(), true, &facts);
  refuse_lossy_rewrite(facts, a.file, a.force);
  env_handle* env = tree.get();
  const char* sec = a.section.c_str();
  std::int32_t code;
  if (a.as_double) {
    auto v = parse_double(a.value);
    if (!v) fail(kUsage, "not a number: '" + a.value + "'");
    // The shortest digits that read back as the same double.
    code = env_put(env, sec, a.path.c_str(), shortest_number(*v).c_str());
  } else if (a.as_long) {
    auto v = parse_long(a.value);
    if (!v) fail(kUsage, "not a whole number: '" + a.value + "'");
    code = env_put_long(env, sec, a.path.c_str(), *v);
  } else {
    code = env_put(env, sec, a.path.c_str(), file_text(a.value).c_str());
  }
  if (code != ENV_OK) fail(kIo, "the value could not be stored (" + std::to_string(code) + ")", a.file);
  save_env_change(change, tree, facts);
}

void run_delete(Session& s, const EnvArgs& a) {
  if (!a.path.empty()) check_path(a.path);
  FileChange change(a.file);
  EnvTree tree;
  EnvFileFacts facts;
  load_env_file(s, tree, change.target(), false, &facts);
  refuse_lossy_rewrite(facts, a.file, a.force);
  std::int32_t code = env_delete(tree.get(), a.section.c_str(), path_or_nil(a.path));
  if (code == ENV_NOT_FOUND) fail(kNotFound, "no element " + address(a.section, a.path), a.file);
  if (code != ENV_OK) fail(kIo, "the element could not be deleted (" + std::to_string(code) + ")", a.file);
  save_env_change(change, tree, facts);
}

// Prints the data leaves as the walk reaches them, with their full position paths. The
// visitor is called from inside the library: nothing may leave it, so a failure is kept and
// every later visit does nothing.
struct DumpWalk {
  std::ostream& out;
  bool json;
  std::size_t printed = 0;
  std::exception_ptr failure;
};

std::int32_t print_leaf(env_handle* leaf, const char* section, char* path, intptr_t user) {
  auto* walk = reinterpret_cast<DumpWalk*>(user);
  if (walk->failure) return 0;
  try {
    const char* text = nullptr;
    if (env_get_reference(leaf, nullptr, nullptr, 1, &text) < 0 || text == nullptr) return 0;
    const char* sec = section != nullptr ? section : "";
    const char* at = path != nullptr ? path : "";
    if (walk->json) {
      walk->out << (walk->printed == 0 ? "[\n  " : ",\n  ")
                << dump_json(nlohmann::json{{"section", sec}, {"path", at}, {"value", text}});
    } else {
      walk->out << '[' << sec << "] " << at << " = " << text << '\n';
    }
    ++walk->printed;
  } catch (...) {
    walk->failure = std::current_exception();
  }
  return 0;
}

void run_dump(Session& s, const EnvArgs& a) {
  EnvTree tree;
  load_env_file(s, tree, a.file, false);
  DumpWalk walk{s.ctx.out, a.json};
  // An empty tree has nothing to walk; that is an empty dump, not a failure.
  const bool empty = env_count_elements(tree.get(), nullptr, nullptr, 1) <= 0;
  const std::int32_t code =
      empty ? ENV_OK : env_traverse_leafs(tree.get(), print_leaf, reinterpret_cast<intptr_t>(&walk));
  if (walk.failure) std::rethrow_exception(walk.failure);
  if (a.json) s.ctx.out << (walk.printed == 0 ? "[]\n" : "\n]\n");
  if (code != ENV_OK)
    fail(kBadFormat, "the dump is incomplete: the walk stopped at an element whose path is longer than 79 characters, or for lack of memory", a.file);
}

void run_check(Session& s, const EnvArgs& a) {
  nlohmann::json json = nlohmann::json::array();
  for (const std::string& file : a.files) {
    try {
      EnvTree tree;
      load_env_file(s, tree, file, false);
      if (a.json) {
        json.push_back({{"file", file}, {"ok", true}});
      } else {
        s.ctx.out << file << ": ok\n";
      }
    } catch (const Failure& f) {
      s.ctx.report_and_go_on(f);
      if (a.json) {
        nlohmann::json entry = {{"file", file}, {"ok", false}, {"message", f.message}};
        if (f.line > 0) entry["line"] = f.line;
        json.push_back(entry);
      }
    }
  }
  if (a.json) s.ctx.out << dump_json(json, 2) << '\n';
}

void run_merge(Session& s, const EnvArgs& a) {
  auto mode = kMergeModes.find(a.mode);
  if (mode == kMergeModes.end()) fail(kUsage, "unknown merge mode '" + a.mode + "'");
  const std::string output = a.output.empty() ? a.target : a.output;
  std::optional<FileChange> change;
  if (output != "-") change.emplace(output);
  EnvTree target;
  EnvTree source;
  EnvFileFacts facts;
  load_env_file(s, target, output == a.target && change ? change->target() : a.target, true, &facts);
  refuse_lossy_rewrite(facts, a.target, a.force);
  load_env_file(s, source, a.source, false);
  // A source without sections has nothing to give; the sink would call that a failure.
  if (env_count_elements(source.get(), nullptr, nullptr, 1) > 0 &&
      env_sink(target.get(), source.get(), mode->second) != ENV_OK) {
    fail(kBadFormat,
         "the merge stopped: a value of 255 characters or more, or a path of more than 79, "
         "cannot be copied; nothing was written",
         a.source);
  }
  if (change) {
    save_env_change(*change, target, facts);
  } else {
    s.ctx.out.flush();
    write_env_stream(target.get(), stdout, facts.crlf);
    std::fflush(stdout);
  }
}

void run_fmt(Session& s, const EnvArgs& a) {
  for (const std::string& file : a.files) {
    try {
      std::optional<FileChange> change;
      if (!a.to_stdout && !a.check) change.emplace(file);
      std::string error;
      const std::string& path = change ? change->target() : file;
      auto before = read_file(path, error);
      if (!before) fail(kIo, "cannot read: " + error, file);
      EnvTree tree;
      EnvFileFacts facts;
      load_env_file(s, tree, path, false, &facts);
      refuse_lossy_rewrite(facts, file, a.force);
      if (a.to_stdout) {
        s.ctx.out.flush();
        write_env_stream(tree.get(), stdout, facts.crlf);
        std::fflush(stdout);
        continue;
      }
      std::string after = write_env_text(tree.get());
      if (facts.crlf) after = with_crlf(after);
      if (a.check) {
        if (after != *before) s.ctx.report_and_go_on(Failure{kBadFormat, "not in normal form", file});
      } else if (after != *before) {
        std::FILE* out = change->temp();
        if (std::fwrite(after.data(), 1, after.size(), out) != after.size())
          fail(kIo, "cannot write the temporary file; the file is unchanged", file);
        change->commit();
      }
    } catch (const Failure& f) {
      s.ctx.report_and_go_on(f);
    }
  }
}

constexpr const char* kForceHelp =
    "Rewrite even a file that looks like no environment file (text in front of the first\n"
    "section, nul bytes) or whose rewrite would be many times its size";

constexpr const char* kFormatNote =
    "The file is written back in normal form: two blanks of indentation per level,\n"
    "\"name =value\", and no comments or blank lines.";

}  // namespace

void add_env_commands(CLI::App& app, Session& s) {
  auto args = std::make_shared<EnvArgs>();
  EnvArgs& a = *args;
  CLI::App* env = app.add_subcommand("env", "Environment files: get, set, delete, dump, check, merge, fmt");
  env->footer(
      "An environment file holds [Section] headers, \"name =value\" entries and blocks\n"
      "\"name ={ ... }\". An element is addressed by its section and a path of names joined\n"
      "by \"@\"; a number behind a name picks one of several of that name: layer@2@name.");

  CLI::App* get = env->add_subcommand("get", "Print the value at SECTION and PATH");
  get->add_option("FILE", a.file, "Environment file")->required()->transform(input_file());
  get->add_option("SECTION", a.section, "Section name")->required();
  get->add_option("PATH", a.path, "Path below the section, such as layer@2@name");
  auto* d = get->add_flag("--double", a.as_double, "Read the value as a floating number");
  auto* l = get->add_flag("--long", a.as_long, "Read the value as a whole number");
  d->excludes(l);
  get->add_flag("--list", a.as_list, "Read a comma-separated list (of words, or numbers with --double or --long)");
  get->add_flag("--names", a.names, "List the names of the elements of the block instead")->excludes(d, l);
  get->add_flag("--search", a.search, "Find each name of PATH at any depth (breadth first) instead of directly below");
  get->add_flag("--json", a.json, kJsonHelp);
  get->footer(
      "Example:\n  tiv env get wall.env Wall height --double\n  tiv env get wall.env Wall layer@2@name\n"
      "  tiv env get wall.env Wall --names");
  get->callback([&s, args] { run_get(s, *args); });

  CLI::App* set = env->add_subcommand("set", "Store VALUE at SECTION and PATH, creating what is missing");
  set->add_option("FILE", a.file, "Environment file (created if missing)")->required()->check(changed_file());
  set->add_option("SECTION", a.section, "Section name")->required();
  set->add_option("PATH", a.path, "Path below the section")->required();
  set->add_option("VALUE", a.value, "Text to store")->required();
  auto* sd = set->add_flag("--double", a.as_double, "Store VALUE as a number (the shortest digits that read back the same)");
  set->add_flag("--long", a.as_long, "Store VALUE as a whole number")->excludes(sd);
  set->footer(std::string("Example:\n  tiv env set wall.env Wall layer@2@thickness 0.12\n\n") + kFormatNote);
  set->add_flag("--force", a.force, kForceHelp);
  set->callback([&s, args] { run_set(s, *args); });

  CLI::App* del = env->add_subcommand("delete", "Delete the element at SECTION and PATH, or a whole section");
  del->add_option("FILE", a.file, "Environment file")->required()->check(changed_file());
  del->add_option("SECTION", a.section, "Section name")->required();
  del->add_option("PATH", a.path, "Path below the section; without it the section goes");
  del->footer(std::string("Example:\n  tiv env delete wall.env Wall layer@2\n\n") + kFormatNote);
  del->add_flag("--force", a.force, kForceHelp);
  del->callback([&s, args] { run_delete(s, *args); });

  CLI::App* dump = env->add_subcommand("dump", "Print every value with its full position path");
  dump->add_option("FILE", a.file, "Environment file")->required()->transform(input_file());
  dump->add_flag("--json", a.json, kJsonHelp);
  dump->footer("Each line reads \"[Section] path = value\"; every name of the path carries its\nposition.\n\nExample:\n  tiv env dump wall.env");
  dump->callback([&s, args] { run_dump(s, *args); });

  CLI::App* check = env->add_subcommand("check", "Check the syntax of environment files");
  check->add_option("FILE", a.files, "Environment files")->required()->transform(input_file());
  check->add_flag("--json", a.json, kJsonHelp);
  check->footer("Prints \"FILE: ok\" for each good file; for a bad one the line of the first error\ngoes to standard error and the exit code is 3.\n\nExample:\n  tiv env check *.env");
  check->callback([&s, args] { run_check(s, *args); });

  CLI::App* merge = env->add_subcommand("merge", "Copy the values of SOURCE into TARGET");
  merge->add_option("TARGET", a.target, "Environment file that receives the values (created if missing)")->required()->check(changed_file());
  merge->add_option("SOURCE", a.source, "Environment file whose values are copied")->required()->transform(input_file());
  merge->add_option("--mode", a.mode, "add: only where TARGET has nothing; append: as new last elements;\n"
                                      "replace: always; update: only where TARGET has a value")
      ->required()
      ->check(CLI::IsMember({"add", "append", "replace", "update"}));
  merge->add_option("-o,--output", a.output, "Write the result to this file instead of TARGET (- for standard output)")
      ->option_text("FILE");
  merge->footer(std::string("Example:\n  tiv env merge project.env defaults.env --mode add\n\n") + kFormatNote);
  merge->add_flag("--force", a.force, kForceHelp);
  merge->callback([&s, args] { run_merge(s, *args); });

  CLI::App* fmt = env->add_subcommand("fmt", "Rewrite environment files in normal form");
  fmt->add_option("FILE", a.files, "Environment files")->required()->check(changed_file());
  auto* c = fmt->add_flag("--check", a.check, "Change nothing; exit 3 if a file is not in normal form");
  fmt->add_flag("--stdout", a.to_stdout, "Print the normal form instead of writing it")->excludes(c);
  fmt->footer(std::string("Example:\n  tiv env fmt wall.env\n\n") + kFormatNote);
  fmt->add_flag("--force", a.force, kForceHelp);
  fmt->callback([&s, args] { run_fmt(s, *args); });
}

}  // namespace tiv::cli
