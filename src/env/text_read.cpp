// Reading the text form: env_read over a character source and env_read_file over a file.
//
// The reader is written once as a template over its character source, so that the file
// path reads straight out of its buffer with no call per character, and copies runs of
// plain bytes in one step. Both sources give exactly the characters that the file's
// character source gives: bytes as signed 8-bit values, so a byte 0xFF reads as -1, the end
// of input.
//
// Levels, from the bottom: the source; the comment filter (a ';' in the first column drops
// its physical line); the continuation filter (a backslash, any spaces and a newline
// vanish), with one pushed-back character and the pending characters of a backslash that
// began no continuation; texts up to a stop character; symbols; sections and entries.
#include <tivlib/env.h>
#include <tivlib/heap.h>

#include <array>
#include <cstdio>
#include <new>
#include <vector>

#include "env/locate.h"
#include "env/report.h"
#include "env/file_buffer.h"
#include "env/text_buffer.h"
#include "env/tree.h"
#include "platform/files.h"

using namespace tiv::env;

namespace {

constexpr int32_t kEnd = -1;
constexpr std::size_t kChunk = 99;  // trailing blanks are cut within the last 99-character chunk
constexpr uint32_t kFileBuffer = ENV_FILE_BUFFER;

// Bytes that end a run of plain characters when reading a text up to stop.
struct SpecialBytes {
  std::array<bool, 256> is{};
  constexpr explicit SpecialBytes(char stop) {
    is[static_cast<unsigned char>(stop)] = true;
    is[static_cast<unsigned char>('\\')] = true;
    is[static_cast<unsigned char>('\n')] = true;
    is[0] = true;
    is[0xFF] = true;
  }
};
constexpr SpecialBytes kStopAtEqual{'='};
constexpr SpecialBytes kStopAtBracket{']'};
constexpr SpecialBytes kStopAtNewline{'\n'};

const SpecialBytes& special_for(int32_t stop) {
  return stop == '=' ? kStopAtEqual : stop == ']' ? kStopAtBracket : kStopAtNewline;
}

// The caller's character callback.
struct CallbackSource {
  env_read_fn get;
  intptr_t user;
  int32_t next() { return get(user); }
  std::size_t run(const SpecialBytes&, TextBuffer&) { return 0; }
};

// The file's character source over a buffer filled by one read at a time.
struct FileSource {
  std::FILE* stream;
  char* buffer;
  std::size_t size;
  std::size_t filled = 0;
  std::size_t position = 0;

  int32_t next() {
    if (position >= filled) {
      position = 0;
      filled = tiv::platform::read_text(stream, buffer, size);
      if (filled == 0) return kEnd;
    }
    return static_cast<signed char>(buffer[position++]);
  }
  // Appends the plain bytes that stand next in the buffer; gives how many.
  std::size_t run(const SpecialBytes& special, TextBuffer& out) {
    const char* p = buffer + position;
    const char* end = buffer + filled;
    const char* q = p;
    while (q < end && !special.is[static_cast<unsigned char>(*q)]) ++q;
    const auto n = static_cast<std::size_t>(q - p);
    out.append(p, n);
    position += n;
    return n;
  }
};

enum class Symbol { word, equal, section, close, end };

template <class Source>
class Reader {
 public:
  Reader(Source& source, Store& store) : src_(source), store_(store) {}

  // Reads sections into top until the end of input or an error; gives the status.
  int32_t run(Block* top) {
    int32_t c;
    do c = level2(); while (c != '[' && c != kEnd);
    pushed_ = c;
    next_symbol();
    while (status_ == ENV_OK && symbol_ != Symbol::end) {
      if (symbol_ != Symbol::section) {
        report("Section waited", __LINE__);
        status_ = ENV_BAD_FORMAT;
        break;
      }
      read_text(']', skip_blanks(), word_);
      if (out_of_memory()) break;
      Element* section = new_element(store_, word_.view());
      if (section == nullptr) {
        no_memory(__LINE__);
        break;
      }
      next_symbol();
      make_block(store_, section);
      if (!ensure_child_block(store_, section)) {
        report("Was really error", __LINE__);
        destroy(store_, section);
        break;
      }
      read_entries(section);
      if (status_ != ENV_OK) {
        destroy(store_, section);
        break;
      }
      append(top, section);
    }
    return status_;
  }

 private:
  // Comment filter.
  int32_t level1() {
    int32_t c = src_.next();
    if (c == kEnd) return kEnd;
    if (at_line_start_ && c == ';') {
      for (;;) {
        c = src_.next();
        if (c == '\n') return '\n';  // the flag stays set
        if (c == kEnd) {
          at_line_start_ = false;
          return kEnd;
        }
      }
    }
    at_line_start_ = c == '\n';
    return c;
  }

  // Continuation filter. Pending characters are a backslash, a number of spaces and the
  // character that ended them; they are delivered as they stand and not looked at again.
  int32_t level2() {
    for (;;) {
      if (pushed_ != 0) {
        const int32_t c = pushed_;
        pushed_ = 0;
        return c;
      }
      if (pending_backslash_) {
        pending_backslash_ = false;
        return '\\';
      }
      if (pending_spaces_ > 0) {
        --pending_spaces_;
        return ' ';
      }
      if (pending_has_last_) {
        pending_has_last_ = false;
        return pending_last_;
      }
      int32_t c = level1();
      if (c != '\\') return c;
      pending_backslash_ = true;
      pending_spaces_ = 0;
      while ((c = level1()) == ' ') ++pending_spaces_;
      if (c == '\n') {
        pending_backslash_ = false;
        pending_spaces_ = 0;
        continue;
      }
      pending_last_ = c;
      pending_has_last_ = true;
    }
  }

  bool nothing_held() const {
    return pushed_ == 0 && !pending_backslash_ && pending_spaces_ == 0 && !pending_has_last_;
  }

  int32_t skip_blanks() {
    int32_t c;
    do c = level2(); while (c == ' ' || c == '\t');
    return c;
  }

  // Reads a text up to stop into out, first being the character already read. Trailing
  // spaces and tabs are cut within the last chunk only. Gives the character that ended it.
  int32_t read_text(int32_t stop, int32_t first, TextBuffer& out) {
    out.clear();
    if (first == stop) return stop;
    if (first != 0 && first != kEnd) out.push(static_cast<char>(first));
    const std::size_t base = out.size();
    const SpecialBytes& special = special_for(stop);
    int32_t c;
    for (;;) {
      if (!at_line_start_ && nothing_held()) src_.run(special, out);
      c = level2();
      if (c == stop || c == kEnd) break;
      if (c != 0) out.push(static_cast<char>(c));  // a nul byte has no place in a text
    }
    const std::size_t last_chunk = base + (out.size() - base) / kChunk * kChunk;
    std::size_t n = out.size();
    while (n > last_chunk && (out.view()[n - 1] == ' ' || out.view()[n - 1] == '\t')) --n;
    out.shrink_to(n);
    return c;
  }

  void next_symbol() {
    int32_t c;
    do c = level2(); while (c == ' ' || c == '\t' || c == '\n');
    switch (c) {
      case '=': symbol_ = Symbol::equal; return;
      case '[': symbol_ = Symbol::section; return;
      case '}': symbol_ = Symbol::close; return;
      case kEnd: symbol_ = Symbol::end; return;
      default:
        pushed_ = read_text('=', c, word_);
        symbol_ = Symbol::word;
    }
  }

  // Reads entries into owner and, for each "{", into the new block, without recursion:
  // open holds the blocks whose "}" is still to come.
  void read_entries(Element* owner) {
    open_.clear();
    Element* into = owner;
    for (;;) {
      if (symbol_ != Symbol::word) {
        if (open_.empty()) return;
        if (symbol_ != Symbol::close) {
          report("Cbracesymbol waited", __LINE__);
          status_ = ENV_BAD_FORMAT;
          return;
        }
        next_symbol();
        into = open_.back();
        open_.pop_back();
        continue;
      }
      if (out_of_memory()) return;
      Element* e = new_element(store_, word_.view());
      if (e == nullptr) return no_memory(__LINE__);
      next_symbol();
      if (symbol_ != Symbol::equal) {
        report("Equal sign waited", __LINE__);
        status_ = ENV_BAD_FORMAT;
        destroy(store_, e);
        return;
      }
      const int32_t c = skip_blanks();
      if (c != '{') {
        read_text('\n', c, text_);
        if (out_of_memory() || !set_text(store_, e, text_.view())) {
          destroy(store_, e);
          return no_memory(__LINE__);
        }
        append(into->value.child, e);
        next_symbol();
        continue;
      }
      next_symbol();
      make_block(store_, e);
      append(into->value.child, e);
      if (!ensure_child_block(store_, e)) return no_memory(__LINE__);
      try {
        open_.push_back(into);
      } catch (const std::bad_alloc&) {
        return no_memory(__LINE__);
      }
      into = e;
    }
  }

  bool out_of_memory() {
    if (!word_.failed() && !text_.failed()) return false;
    no_memory(__LINE__);
    return true;
  }
  void no_memory(int line) {
    report_no_memory(line);
    status_ = ENV_ERROR;
  }

  Source& src_;
  Store& store_;
  bool at_line_start_ = true;
  int32_t pushed_ = 0;
  bool pending_backslash_ = false;
  std::size_t pending_spaces_ = 0;
  bool pending_has_last_ = false;
  int32_t pending_last_ = 0;
  Symbol symbol_ = Symbol::end;
  TextBuffer word_;
  TextBuffer text_;
  std::vector<Element*> open_;
  int32_t status_ = ENV_OK;
};

// Opening steps shared by both entries: the handle must be a root. Its old content goes.
template <class Source>
int32_t read_into(Source& source, env_handle* env) {
  if (!enter(env, __LINE__)) return ENV_ERROR;
  if (env->is_subenv) {
    report("can not read subenv", __LINE__);
    return ENV_ERROR;
  }
  Store& store = *env->store;
  store.pool.reset();
  store.top = Block{};
  env->cursor = nullptr;
  int32_t status;
  {
    Reader<Source> reader(source, store);
    status = reader.run(&store.top);
  }
  switch (status) {
    case ENV_OK:
    case ENV_BAD_FORMAT:
    case ENV_ERROR:
      return status;
    default:
      zv_switch_error(status, kEnvCore, __LINE__);
      return ENV_ERROR;
  }
}

}  // namespace

namespace tiv::env {

char* file_buffer(std::size_t& size) noexcept {
  uint32_t n = kFileBuffer;
  for (;;) {
    if (void* b = heap_calloc(1, n)) {
      size = n;
      return static_cast<char*>(b);
    }
    if (n <= 2) return nullptr;
    n = n / 2 + 1;
  }
}

char* widen_stream_buffer(std::FILE* stream) noexcept {
  // stdio ignores the size asked for unless it is given the memory as well.
  auto* memory = static_cast<char*>(heap_malloc(static_cast<uint32_t>(kStreamBuffer)));
  if (memory != nullptr && std::setvbuf(stream, memory, _IOFBF, kStreamBuffer) != 0) {
    heap_free(memory);
    return nullptr;
  }
  return memory;
}

}  // namespace tiv::env

extern "C" {

int32_t env_read(env_read_fn get, intptr_t user, env_handle* env) noexcept {
  if (get == nullptr && env != nullptr) {
    report("Nil parametr", __LINE__);
    return ENV_ERROR;
  }
  CallbackSource source{get, user};
  return read_into(source, env);
}

int32_t env_read_file(const char* filename, env_handle* env) noexcept {
  std::FILE* stream = tiv::platform::open_file(filename, "rt");
  if (stream == nullptr) {
    report("cann't open to read:", __LINE__, kEnvUti2, filename);
    return ENV_ERROR;
  }
  std::size_t size = 0;
  char* buffer = file_buffer(size);
  if (buffer == nullptr) {
    std::fclose(stream);
    report_no_memory(__LINE__);
    return ENV_ERROR;
  }
  char* stream_buffer = widen_stream_buffer(stream);
  FileSource source{stream, buffer, size};
  const int32_t result = read_into(source, env);
  heap_free(buffer);
  std::fclose(stream);
  heap_free(stream_buffer);
  return result;
}

}  // extern "C"
