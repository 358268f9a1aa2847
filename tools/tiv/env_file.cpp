#include "env_file.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <ostream>
#include <sys/stat.h>

#include <tivlib/zv.h>

#include "errlog.h"
#include "text.h"

namespace tiv::cli {

namespace {

// The character source of env_read over a text in memory, counting lines as it goes.
struct TextSource {
  std::string_view text;
  std::size_t pos = 0;
  int line = 1;       // line of the next character
  int last_line = 1;  // line of the last character that is no blank and no line end
};

std::int32_t next_char(intptr_t user) {
  auto* src = reinterpret_cast<TextSource*>(user);
  if (src->pos >= src->text.size()) return -1;
  char c = src->text[src->pos++];
  // CR LF arrives as LF, as from the file reader.
  if (c == '\r' && src->pos < src->text.size() && src->text[src->pos] == '\n') c = src->text[src->pos++];
  if (c == '\n') {
    ++src->line;
  } else if (c != ' ' && c != '\t' && c != '\r') {
    src->last_line = src->line;
  }
  // A byte is handed over as a signed 8-bit value; 0xFF thus reads as the end of input.
  return static_cast<std::int32_t>(static_cast<signed char>(c));
}

// The sink of write_env_text. It is called from inside the library, so nothing may leave it:
// a failed append is kept and thrown again once env_write has returned.
struct TextSink {
  std::string text;
  bool failed = false;
};

std::int32_t put_char(std::int32_t c, intptr_t user) {
  auto* sink = reinterpret_cast<TextSink*>(user);
  if (sink->failed) return 0;
  try {
    sink->text.push_back(static_cast<char>(c));
  } catch (...) {
    sink->failed = true;
  }
  return 0;
}

// The reader's complaints, as the log gives them, in words for the user.
struct Complaint {
  std::string_view log_text;
  std::string_view message;
};
constexpr Complaint kComplaints[] = {
    {"Section waited", "a section header \"[name]\" was expected"},
    {"Equal sign waited", "\"=\" was expected behind a name"},
    {"Cbracesymbol waited", "\"}\" was expected to close a block"},
};

std::string syntax_message(const std::string& log) {
  for (const std::string& text : log_texts(log)) {
    for (const Complaint& c : kComplaints) {
      if (text == c.log_text) return "syntax error: " + std::string(c.message);
    }
  }
  return "syntax error";
}

// The size of a file now; -1 if it can't be looked at.
std::uintmax_t file_size(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0 ? static_cast<std::uintmax_t>(st.st_size) : UINTMAX_MAX;
}

}  // namespace

EnvTree::EnvTree() : handle_(env_open(0, nullptr)) {
  if (handle_ == nullptr) throw std::bad_alloc();
}

EnvTree::~EnvTree() { env_close(handle_, 0); }

EnvReadResult read_env_text(env_handle* env, std::string_view text) {
  TextSource src{text};
  EnvReadResult result;
  result.code = env_read(next_char, reinterpret_cast<intptr_t>(&src), env);
  if (result.code != ENV_OK) result.line = src.last_line;
  return result;
}

std::string write_env_text(env_handle* env) {
  TextSink sink;
  env_write(put_char, reinterpret_cast<intptr_t>(&sink), env);
  if (sink.failed) throw std::bad_alloc();
  return std::move(sink.text);
}

namespace {

// What a change needs to know of the text it rewrites: its line ends, and whether the
// reader's tree can carry it whole.
EnvFileFacts facts_of(std::string_view text) {
  EnvFileFacts f;
  f.size = text.size();
  const auto lf = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  std::size_t crlf = 0;
  for (std::size_t at = text.find("\r\n"); at != std::string_view::npos; at = text.find("\r\n", at + 2)) ++crlf;
  f.crlf = lf > 0 && crlf * 2 > lf;
  f.binary = text.find('\0') != std::string_view::npos;
  // The reader passes over everything in front of the first "[": comments and blank lines
  // there are expected, other text means the file is perhaps no environment file at all.
  const std::string_view front = text.substr(0, std::min(text.find('['), text.size()));
  for (std::size_t at = 0; at < front.size() && !f.loose_text;) {
    std::size_t end = front.find('\n', at);
    if (end == std::string_view::npos) end = front.size();
    const std::string_view line = front.substr(at, end - at);
    const bool blank = line.find_first_not_of(" \t\r") == std::string_view::npos;
    f.loose_text = !blank && line.front() != ';';
    at = end + 1;
  }
  // The normal form indents two blanks per level: nesting makes it grow with the depth.
  std::size_t depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = text.find('\n', at);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(at, end - at);
    at = end + 1;
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) continue;
    if (line[first] == '}' && depth > 0) --depth;
    f.rewrite_estimate += 2 * (depth + 1) + line.size();
    const std::size_t last = line.find_last_not_of(" \t\r");
    if (line[last] == '{') ++depth;
  }
  return f;
}

}  // namespace

bool load_env_file(Session& s, EnvTree& tree, const std::string& path, bool missing_ok,
                   EnvFileFacts* facts) {
  std::string error;
  auto text = read_file(path, error);
  if (!text) {
    struct stat st {};
    if (missing_ok && ::stat(path.c_str(), &st) != 0 && errno == ENOENT) return false;
    fail(kIo, "cannot read: " + error, path);
  }
  if (facts != nullptr) *facts = facts_of(*text);
  // The reader takes byte 0xFF (-1 as a signed character) for the end of the text: a file
  // holding one can't be read whole.
  if (const std::size_t at = text->find('\xff'); at != std::string::npos) {
    const int line = 1 + static_cast<int>(std::count(text->begin(), text->begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    fail(kBadFormat, "byte 0xFF can't be read (the reader takes it for the end of the file)", path, line);
  }
  s.log.take_new();  // what earlier commands left in the log is not about this file
  // The bulk reader does the work; after a syntax error the text is read again through the
  // counting source, which tells the line.
  std::int32_t code = env_read_file(path.c_str(), tree.get());
  if (code == ENV_OK && file_size(path) != text->size())
    fail(kIo, "the file changed while it was read", path);
  if (code == ENV_BAD_FORMAT) {
    const std::string complaint = syntax_message(s.log.take_new());
    zv_set_log_file(nullptr);  // the second reading would report the same again
    EnvTree again;
    EnvReadResult r = read_env_text(again.get(), *text);
    zv_set_log_file(s.log.path().c_str());
    fail(kBadFormat, complaint, path, r.line);
  }
  if (code != ENV_OK) fail(kIo, "the environment could not be read (" + std::to_string(code) + ")", path);
  return true;
}

void refuse_lossy_rewrite(const EnvFileFacts& facts, const std::string& path, bool force) {
  if (facts.size == 0 || force) return;
  const char* why = nullptr;
  if (facts.binary) why = "it holds nul bytes: perhaps no environment file at all";
  else if (facts.loose_text) why = "it has text in front of its first section, which a rewrite drops: perhaps no environment file at all";
  else if (facts.rewrite_estimate > kRewriteGrowthMax * facts.size + kRewriteSlack)
    why = "its rewrite would be many times its size (blocks nested deep)";
  if (why != nullptr) fail(kBadFormat, std::string("not changed: ") + why + " (--force to go on)", path);
}

namespace {

struct StreamSink {
  std::FILE* out;
  bool crlf;
};

std::int32_t put_to_stream(std::int32_t c, intptr_t user) {
  auto* sink = reinterpret_cast<StreamSink*>(user);
  if (c == '\n' && sink->crlf) std::putc('\r', sink->out);
  std::putc(c, sink->out);
  return 0;
}

}  // namespace

void write_env_stream(env_handle* env, std::FILE* out, bool crlf) {
  StreamSink sink{out, crlf};
  env_write(put_to_stream, reinterpret_cast<intptr_t>(&sink), env);
}

void save_env_change(FileChange& change, EnvTree& tree, const EnvFileFacts& facts) {
  std::FILE* out = change.temp();
  write_env_stream(tree.get(), out, facts.crlf);
  change.commit();
}

}  // namespace tiv::cli
