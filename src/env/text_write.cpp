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
#include <initializer_list>
#include <string_view>
#include <new>
#include <vector>

#include "env/file_buffer.h"
#include "env/locate.h"
#include "env/report.h"
#include "env/tree.h"
#include "platform/files.h"

using namespace tiv::env;

namespace {

constexpr int64_t kBreakColumn = 60;

// The caller's character callback; a byte goes out as a signed 8-bit value.
struct CallbackSink {
  env_write_fn put;
  intptr_t user;
  void put_char(int32_t c) { put(c, user); }
  void put_run(const char* p, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) put(static_cast<signed char>(p[i]), user);
  }
  void put_spaces(std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) put(' ', user);
  }
  bool put_line(std::size_t, std::string_view, std::string_view, std::string_view,
                std::string_view) {
    return false;
  }
};

// The file's character sink: bytes collect in the buffer, which goes to the stream when it
// is full or when -1 comes. A byte 0xFF is -1 as a character, so it flushes and is dropped.
struct FileSink {
  std::FILE* stream;
  char* buffer;
  std::size_t size;
  std::size_t position = 0;

  void flush() {
    if (position > 0) std::fwrite(buffer, 1, position, stream);
    position = 0;
  }
  void put_char(int32_t c) {
    if (c != -1 && position < size) {
      buffer[position++] = static_cast<char>(c);
      return;
    }
    flush();
    if (c != -1) buffer[position++] = static_cast<char>(c);
  }
  void put_run(const char* p, std::size_t n) {
    if (n <= kShortRun && size - position >= n) {
      // Short pieces (names, numbers, indentation) go byte by byte, which beats two calls.
      for (const char* end = p + n; p < end; ++p) {
        if (static_cast<unsigned char>(*p) == 0xFF) {
          put_char(-1);
          put_run(p + 1, static_cast<std::size_t>(end - p - 1));
          return;
        }
        buffer[position++] = *p;
      }
      return;
    }
    while (n > 0) {
      const void* ff = std::memchr(p, 0xFF, n);
      std::size_t plain = ff != nullptr ? static_cast<std::size_t>(static_cast<const char*>(ff) - p) : n;
      n -= plain;
      while (plain > 0) {
        if (position == size) flush();
        const std::size_t room = size - position;
        const std::size_t step = plain < room ? plain : room;
        std::memcpy(buffer + position, p, step);
        position += step;
        p += step;
        plain -= step;
      }
      if (ff != nullptr) {
        put_char(-1);
        ++p;
        --n;
      }
    }
  }
  void put_spaces(std::size_t n) {
    while (n > 0) {
      if (position == size) flush();
      const std::size_t room = size - position;
      const std::size_t step = n < room ? n : room;
      std::memset(buffer + position, ' ', step);
      position += step;
      n -= step;
    }
  }

  // Puts a whole line that needs no break (indentation, three pieces, newline) straight into
  // the buffer. Gives false, with nothing put, if the line doesn't fit the buffer or holds a
  // byte 0xFF; the caller then writes it piece by piece.
  bool put_line(std::size_t indent, std::string_view a, std::string_view b, std::string_view c,
                std::string_view d) {
    const std::size_t length = indent + a.size() + b.size() + c.size() + d.size() + 1;
    if (size - position < length) {
      flush();
      if (size < length) return false;
    }
    char* start = buffer + position;
    char* out = start;
    std::memset(out, ' ', indent);
    out += indent;
    for (std::string_view piece : {a, b, c, d}) {
      if (!piece.empty()) std::memcpy(out, piece.data(), piece.size());
      out += piece.size();
    }
    *out = '\n';
    if (has_ff(start + indent, out)) return false;
    position += length;
    return true;
  }

  // True if a byte 0xFF stands in [p, end), eight bytes at a step: a byte of x is 0xFF when
  // that byte of ~x is zero.
  static bool has_ff(const char* p, const char* end) {
    constexpr uint64_t kOnes = 0x0101010101010101ULL;
    constexpr uint64_t kHighs = 0x8080808080808080ULL;
    for (; end - p >= 8; p += 8) {
      uint64_t x;
      std::memcpy(&x, p, 8);
      x = ~x;
      if (((x - kOnes) & ~x & kHighs) != 0) return true;
    }
    for (; p < end; ++p)
      if (static_cast<unsigned char>(*p) == 0xFF) return true;
    return false;
  }

  static constexpr std::size_t kShortRun = 32;
};

template <class Sink>
class Writer {
 public:
  explicit Writer(Sink& sink) : sink_(sink) {}

  void write(Block* top) {
    for (Element* s = top->first; s != nullptr; s = s->next) {
      if (s->kind == kExternal) continue;
      line(1, "[", s->name(), "]", text_of(s));
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
        line(base, e->name(), " =", text_of(e));
        e = e->next;
        continue;
      }
      line(base, e->name(), " ={");
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

  // A data text; its length is known from the size held for it.
  static std::string_view text_of(const Element* e) {
    if (e->kind != kData || e->value.text == nullptr || e->text_size <= 1) return {};
    return {e->value.text, e->text_size - 1};
  }

  // Writes one line of up to four pieces at column base: whole when it needs no break,
  // else piece by piece with the breaks.
  void line(int32_t base, std::string_view a, std::string_view b = {}, std::string_view c = {},
            std::string_view d = {}) {
    const std::size_t length = a.size() + b.size() + c.size() + d.size();
    if (static_cast<std::size_t>(base) + length <= static_cast<std::size_t>(kBreakColumn) &&
        sink_.put_line(static_cast<std::size_t>(base - 1), a, b, c, d))
      return;
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

// The file is opened (and so emptied) before the handle is examined, as env_read_file does.
void env_write_file(const char* filename, env_handle* env) noexcept {
  std::FILE* stream = tiv::platform::open_file(filename, "wt");
  if (stream == nullptr) {
    report("cann't open to write:", __LINE__, kEnvUti2, filename);
    return;
  }
  widen_stream_buffer(stream);
  std::size_t size = 0;
  char* buffer = file_buffer(size);
  if (buffer == nullptr) {
    std::fclose(stream);
    report_no_memory(__LINE__);
    return;
  }
  FileSink sink{stream, buffer, size};
  write_from(sink, env);
  sink.put_char(-1);
  heap_free(buffer);
  std::fclose(stream);
}

}  // extern "C"
