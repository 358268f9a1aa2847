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

std::int32_t put_char(std::int32_t c, intptr_t user) {
  reinterpret_cast<std::string*>(user)->push_back(static_cast<char>(c));
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
  std::string text;
  env_write(put_char, reinterpret_cast<intptr_t>(&text), env);
  return text;
}

bool load_env_file(Session& s, EnvTree& tree, const std::string& path, bool missing_ok) {
  std::string error;
  auto text = read_file(path, error);
  if (!text) {
    struct stat st {};
    if (missing_ok && ::stat(path.c_str(), &st) != 0 && errno == ENOENT) return false;
    fail(kIo, "cannot read: " + error, path);
  }
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

void save_env_file(Session& s, EnvTree& tree, const std::string& path) {
  std::string text = write_env_text(tree.get());
  if (path == "-") {
    s.ctx.out << text;
    return;
  }
  std::string error;
  if (!replace_file(path, text, error)) fail(kIo, "cannot write: " + error, path);
}

}  // namespace tiv::cli
