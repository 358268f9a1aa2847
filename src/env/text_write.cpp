// Writing the text form: env_write over a character sink and env_write_file over a file.
//
// Lines are indented by the column base minus one; the base starts at 1 and grows by 2 with
// each level of nesting. A line breaks (backslash, newline) before every character whose
// index plus the column base is a multiple of 60, so that no physical line grows long.
// External elements have no text form and are skipped at every level.
#include <tivlib/env.h>
#include <tivlib/heap.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <new>
#include <vector>

#include "env/file_buffer.h"
#include "env/locate.h"
#include "platform/replace.h"
#include "env/report.h"
#include "env/tree.h"
#include "platform/files.h"

using namespace tiv::env;

namespace {
// The outcome of the last env_write_file: 0, or -10 (see env_last_write_result).
int32_t g_last_write = ENV_OK;
}  // namespace

namespace {

constexpr int64_t kBreakColumn = 60;

// The caller's character callback; a byte goes out as a signed 8-bit value, so 0xFF is -1.
struct CallbackSink {
  static constexpr bool kDirect = false;  // no buffer to build whole lines in
  env_write_fn put;
  intptr_t user;
  void put_char(char c) { put(static_cast<signed char>(c), user); }
  void put_run(const char* p, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) put(static_cast<signed char>(p[i]), user);
  }
  void put_spaces(std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) put(' ', user);
  }
  char* reserve(std::size_t) { return nullptr; }
  void commit(char*) {}
};

// The file's character sink: bytes collect in the buffer, which goes to the stream when it
// is full and at the end. A byte 0xFF is -1 as a character, which flushes and is dropped;
// since a flush changes nothing in the file, flush() simply leaves out every 0xFF, and the
// lines are built straight in the buffer without looking at their bytes.
struct FileSink {
  static constexpr bool kDirect = true;
  // Lines built in place may store up to this many bytes past their end (wide stores).
  static constexpr std::size_t kSlack = 32;

  std::FILE* stream;
  char* buffer;
  std::size_t size;
  std::size_t position = 0;

  void flush() {
    const char* p = buffer;
    const char* const end = buffer + position;
    while (p < end) {
      const auto* ff = static_cast<const char*>(std::memchr(p, 0xFF, static_cast<std::size_t>(end - p)));
      const char* stop = ff != nullptr ? ff : end;
      if (stop > p) std::fwrite(p, 1, static_cast<std::size_t>(stop - p), stream);
      p = ff != nullptr ? ff + 1 : end;
    }
    position = 0;
  }
  void put_char(char c) {
    if (position == size) flush();
    buffer[position++] = c;
  }
  void put_run(const char* p, std::size_t n) {
    while (n > 0) {
      if (position == size) flush();
      const std::size_t step = n < size - position ? n : size - position;
      std::memcpy(buffer + position, p, step);
      position += step;
      p += step;
      n -= step;
    }
  }
  void put_spaces(std::size_t n) {
    while (n > 0) {
      if (position == size) flush();
      const std::size_t step = n < size - position ? n : size - position;
      std::memset(buffer + position, ' ', step);
      position += step;
      n -= step;
    }
  }

  // Where a line of n bytes can be built (with kSlack more bytes free behind it), flushing
  // first if need be; none if the buffer is too small for that, as when memory was short.
  char* reserve(std::size_t n) {
    if (size - position < n + kSlack) {
      flush();
      if (size < n + kSlack) return nullptr;
    }
    return buffer + position;
  }
  // Takes the bytes up to end, built from reserve(), into the buffer.
  void commit(char* end) { position = static_cast<std::size_t>(end - buffer); }
};

// Copies n bytes (at most 64) to out, in a few wide moves that may overlap; gives the end.
[[gnu::always_inline]] inline char* copy_short(char* out, const char* p, std::size_t n) {
  if (n >= 16) {
    for (std::size_t i = 0; i + 16 < n; i += 16) std::memcpy(out + i, p + i, 16);
    std::memcpy(out + n - 16, p + n - 16, 16);
  } else if (n >= 8) {
    std::memcpy(out, p, 8);
    std::memcpy(out + n - 8, p + n - 8, 8);
  } else if (n >= 4) {
    std::memcpy(out, p, 4);
    std::memcpy(out + n - 4, p + n - 4, 4);
  } else if (n > 0) {
    out[0] = p[0];
    out[n / 2] = p[n / 2];
    out[n - 1] = p[n - 1];
  }
  return out + n;
}

// Stores n spaces (below 64) at out, 16 at a time, up to 16 bytes past the end; gives the end.
// Indentation is mostly below 16, which takes one store.
[[gnu::always_inline]] inline char* fill_spaces(char* out, std::size_t n) {
  static constexpr char kSpaces[16] = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ',
                                       ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
  std::memcpy(out, kSpaces, 16);
  for (std::size_t i = 16; i < n; i += 16) std::memcpy(out + i, kSpaces, 16);
  return out + n;
}

template <class Sink>
class Writer {
 public:
  explicit Writer(Sink& sink) : sink_(sink) {}

  void write(Block* top) {
    for (Element* s = top->first; s != nullptr; s = s->next) {
      if (s->kind == kExternal) continue;
      line(1, "[", name_of(s), "]", text_of(s));
      if (s->kind == kBlock && !write_children(s)) return;
    }
  }

 private:
  // Writes the children of block element b and everything below, at column base 3, with
  // an explicit stack of the blocks whose "}" is still to come.
  bool write_children(Element* b) {
    if (b->value.child == nullptr) return true;
    open_.clear();
    int32_t base = 3;
    Element* e = b->value.child->first;
    for (;;) {
      if (e == nullptr) {
        if (open_.empty()) return true;
        Element* done = open_.back();
        open_.pop_back();
        base -= 2;
        line(base, "}");
        e = done->next;
        continue;
      }
      if (e->kind == kExternal) {
        e = e->next;
        continue;
      }
      if (e->kind == kData) {
        line(base, name_of(e), " =", text_of(e));
        e = e->next;
        continue;
      }
      line(base, name_of(e), " ={");
      if (e->value.child != nullptr && e->value.child->first != nullptr) {
        try {
          open_.push_back(e);
        } catch (const std::bad_alloc&) {
          report_no_memory(__LINE__);
          return false;
        }
        base += 2;
        e = e->value.child->first;
        continue;
      }
      line(base, "}");
      e = e->next;
    }
  }

  static std::string_view name_of(const Element* e) { return {e->name(), e->name_length()}; }

  // A data text; its length is known from the size held for it.
  static std::string_view text_of(const Element* e) {
    if (e->kind != kData || e->value.text == nullptr || e->text_size <= 1) return {};
    return {e->value.text, e->text_size - 1};
  }

  // Writes one line of up to four pieces at column base. A line that needs no break is built
  // whole in the sink's buffer where it has one; other lines go piece by piece with the breaks.
  [[gnu::always_inline]] void line(int32_t base, std::string_view a, std::string_view b = {},
                                   std::string_view c = {}, std::string_view d = {}) {
    if constexpr (Sink::kDirect) {
      const std::size_t length = a.size() + b.size() + c.size() + d.size();
      if (static_cast<std::size_t>(base) + length <= static_cast<std::size_t>(kBreakColumn)) {
        // base - 1 spaces, the pieces and the newline: base + length bytes.
        if (char* out = sink_.reserve(static_cast<std::size_t>(base) + length)) {
          out = fill_spaces(out, static_cast<std::size_t>(base - 1));
          out = copy_short(out, a.data(), a.size());
          out = copy_short(out, b.data(), b.size());
          out = copy_short(out, c.data(), c.size());
          out = copy_short(out, d.data(), d.size());
          *out++ = '\n';
          sink_.commit(out);
          return;
        }
      }
    }
    broken_line(base, a, b, c, d);
  }

  [[gnu::noinline]] void broken_line(int32_t base, std::string_view a, std::string_view b,
                                     std::string_view c, std::string_view d) {
    base_ = base;
    index_ = 0;
    if (base > 1) sink_.put_spaces(static_cast<std::size_t>(base - 1));
    piece(a);
    piece(b);
    piece(c);
    piece(d);
    sink_.put_char('\n');
  }

  void piece(std::string_view s) {
    const char* p = s.data();
    std::size_t n = s.size();
    while (n > 0) {
      const int64_t r = (base_ + index_) % kBreakColumn;
      if (r == 0) {
        sink_.put_char('\\');
        sink_.put_char('\n');
      }
      const auto room = static_cast<std::size_t>(kBreakColumn - r);
      const std::size_t step = n < room ? n : room;
      sink_.put_run(p, step);
      p += step;
      n -= step;
      index_ += static_cast<int64_t>(step);
    }
  }

  Sink& sink_;
  int64_t base_ = 1;
  int64_t index_ = 0;
  std::vector<Element*> open_;
};

template <class Sink>
void write_from(Sink& sink, env_handle* env) {
  if (!enter(env, __LINE__)) return;
  if (env->is_subenv) {
    report("can not write subenv", __LINE__);
    return;
  }
  Writer<Sink> writer(sink);
  writer.write(top_block(env));
}

}  // namespace

extern "C" {

void env_write(env_write_fn put, intptr_t user, env_handle* env) noexcept {
  if (put == nullptr && env != nullptr) {
    report("Nil parametr", __LINE__);
    return;
  }
  CallbackSink sink{put, user};
  write_from(sink, env);
}

// The file is opened (and so emptied, once the new content is in place) before the handle is
// examined, as env_read_file does. The new content replaces the file whole or not at all (see
// platform/replace.h); env_last_write_result tells how it went.
void env_write_file(const char* filename, env_handle* env) noexcept {
  g_last_write = ENV_ERROR;
  tiv::platform::Replacement replacement;
  std::FILE* stream = replacement.open(filename);
  if (stream == nullptr) {
    report("cann't open to write:", __LINE__, kEnvUti2, filename);
    return;
  }
  std::size_t size = 0;
  char* buffer = file_buffer(size);
  if (buffer == nullptr) {
    report_no_memory(__LINE__);
    return;
  }
  char* stream_buffer = widen_stream_buffer(stream);
  FileSink sink{stream, buffer, size};
  const bool usable = env != nullptr && env->store != nullptr && !env->is_subenv;
  write_from(sink, env);
  sink.flush();
  heap_free(buffer);
  const bool written = replacement.commit();
  heap_free(stream_buffer);
  if (!written) {
    report("cann't write:", __LINE__, kEnvUti2, filename);
    return;
  }
  g_last_write = usable ? ENV_OK : ENV_ERROR;
}

int32_t env_last_write_result(void) noexcept { return g_last_write; }

}  // extern "C"
