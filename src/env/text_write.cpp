// Writing the text form: env_write over a character sink and env_write_file over a file.
//
// Lines are indented by the column base minus one; the base starts at 1 and grows by 2 with
// each level of nesting. A line breaks (backslash, newline) before every character whose
// index plus the column base is a multiple of 60, so that no physical line grows long.
// External elements have no text form and are skipped at every level.
#include <tivlib/env.h>
#include <tivlib/heap.h>

#include <cstdio>
#include <cstring>
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
};

template <class Sink>
class Writer {
 public:
  explicit Writer(Sink& sink) : sink_(sink) {}

  void write(Block* top) {
    for (Element* s = top->first; s != nullptr; s = s->next) {
      if (s->kind == kExternal) continue;
      begin_line(1);
      piece("[", 1);
      piece(s->name());
      piece("]", 1);
      if (s->kind == kData) {
        if (s->value.text != nullptr) piece(s->value.text);
        end_line();
        continue;
      }
      end_line();
      if (!write_children(s)) return;
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
        begin_line(base);
        piece("}", 1);
        end_line();
        e = done->next;
        continue;
      }
      if (e->kind == kExternal) {
        e = e->next;
        continue;
      }
      begin_line(base);
      piece(e->name());
      if (e->kind == kData) {
        piece(" =", 2);
        if (e->value.text != nullptr) piece(e->value.text);
        end_line();
        e = e->next;
        continue;
      }
      piece(" ={", 3);
      end_line();
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
      begin_line(base);
      piece("}", 1);
      end_line();
      e = e->next;
    }
  }

  void begin_line(int32_t base) {
    base_ = base;
    index_ = 0;
    static constexpr char kSpaces[] = "                                                                ";
    for (int64_t n = base - 1; n > 0;) {
      const int64_t step = n < 64 ? n : 64;
      sink_.put_run(kSpaces, static_cast<std::size_t>(step));
      n -= step;
    }
  }
  void piece(const char* p) { piece(p, std::strlen(p)); }
  void piece(const char* p, std::size_t n) {
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
  void end_line() { sink_.put_char('\n'); }

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
