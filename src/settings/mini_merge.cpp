// The merge of a handle's memory into its settings file.
//
// The source is read line by line. Blank lines go; comments stay where they are; the lines of
// sections never loaded pass through as they stand (stripped). In a loaded section each file
// line is matched against the next entry in memory: a match writes that entry with its
// current value, any other line is dropped, and whatever memory holds behind the last match
// is written at the end of the section. Sections that the file doesn't hold (still dirty at
// the end) follow at the end of the file, each behind one blank line. With MINI_REPLACE the
// source is not read at all.
#include "settings/mini_merge.h"

#include <cstring>

#include <tivlib/str.h>
#include <tivlib/zv.h>

#include "settings/line.h"
#include "settings/output.h"

namespace tiv::settings {

namespace {

class Merge {
 public:
  explicit Merge(std::FILE* out) : out_(out) {}

  bool run(mini_file* handle, fio_handle* in) {
    if ((handle->flags & MINI_REPLACE) != 0) {
      for (auto* s = first(handle); s != nullptr; s = s->next) write_section(s);
      return !out_.failed();
    }
    for (auto* s = first(handle); s != nullptr; s = s->next) s->state &= ~kMerged;
    no_entry_yet_ = true;
    mini_section* head = first(handle);
    current_ = head != nullptr && head->name[0] == '\0' ? head : nullptr;
    used_ = nullptr;

    char text[kLineBuffer];
    for (;;) {
      const int kind = mini_read_line(in, text);
      if (kind == kMiniEnd) break;
      switch (kind) {
        case kMiniComment:
          out_.separate();
          out_.write(text);
          break;
        case kMiniHeader:
          header(handle, text);
          break;
        case kMiniEntry:
          entry_line(text);
          break;
        default:  // blank lines are dropped
          break;
      }
    }
    finish_current();
    for (auto* s = first(handle); s != nullptr; s = s->next) {
      if ((s->state & kDirty) == 0) continue;
      s->state &= ~kDirty;
      out_.separate();
      write_section(s);
    }
    return !out_.failed();
  }

 private:
  static mini_section* first(mini_file* handle) {
    return static_cast<mini_section*>(handle->sections.first);
  }

  void write_entry(const mini_entry* e) {
    out_.separate();
    no_entry_yet_ = false;
    out_.write_pair(e->name, e->value);
  }

  void write_section(const mini_section* s) {
    if (s->name[0] != '\0') {
      out_.separate();
      out_.write_bracketed(s->name);
    }
    for (auto* e = static_cast<const mini_entry*>(s->entries.first); e != nullptr; e = e->next)
      write_entry(e);
  }

  // Writes the entries of the current section behind the last one used.
  void finish_current() {
    if (current_ == nullptr) return;
    auto* e = used_ != nullptr ? used_->next : static_cast<mini_entry*>(current_->entries.first);
    for (; e != nullptr; e = e->next) write_entry(e);
    current_->state &= ~kDirty;
    current_->state |= kMerged;
    current_ = nullptr;
    used_ = nullptr;
  }

  // A header makes the loaded section of its name current, unless that section has been
  // merged already (a repeated header, or an empty name after the unnamed section): then its
  // lines pass through like those of a section never loaded.
  void header(mini_file* handle, const char* name) {
    finish_current();
    if (!no_entry_yet_) out_.write("\n");
    out_.separate();
    out_.write_bracketed(name);
    mini_section* s = find_loaded(handle, name);
    current_ = s != nullptr && (s->state & kMerged) == 0 ? s : nullptr;
    used_ = nullptr;
  }

  void entry_line(char* text) {
    if (current_ == nullptr) {
      out_.separate();
      no_entry_yet_ = false;
      out_.write(text);
      return;
    }
    char* eq = std::strchr(text, '=');
    if (eq == nullptr) {
      zv_error("Incorrect entry's format. '=' is not found;", "entry has been ignored", nullptr,
               "Mini", __LINE__);
      return;
    }
    *eq = '\0';  // the line's name, untrimmed
    auto* next = used_ != nullptr ? used_->next : static_cast<mini_entry*>(current_->entries.first);
    if (next != nullptr && str_eq(next->name, text)) {
      write_entry(next);
      used_ = next;
    }
  }

  Output out_;
  bool no_entry_yet_ = true;
  mini_section* current_ = nullptr;
  mini_entry* used_ = nullptr;
};

}  // namespace

bool merge(mini_file* handle, fio_handle* in, std::FILE* out) {
  Merge m(out);
  return m.run(handle, in);
}

}  // namespace tiv::settings
