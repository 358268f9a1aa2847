// The machinery shared by the direct settings operations.
#include "settings/rewrite.h"

#include <cstring>
#include <new>
#include <string>

#include <tivlib/fio.h>
#include <tivlib/str.h>
#include <tivlib/zv.h>

#include "platform/files.h"

namespace tiv::settings {

int32_t ini_first_header = 1;

namespace {
constexpr const char* kDefaultFile = "zv.ini";
constexpr std::size_t kCopyBlock = 4096;
}  // namespace

std::FILE* open_for_reading(const char* file, bool use_default) {
  if (file != nullptr && file[0] != '\0') return platform::open_file(file, "r");
  if (!use_default) return nullptr;
  if (std::FILE* in = platform::open_file(kDefaultFile, "r")) return in;
  // The variable must end in a separator: "zv.ini" is appended with nothing in between.
  try {
    std::string name = zv_getenv("zv", ".");
    name += kDefaultFile;
    return platform::open_file(name.c_str(), "r");
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

int read_line(std::FILE* in, Output* echo, char* text) {
  if (in == nullptr) return kEnd;
  for (;;) {
    if (std::fgets(text, kLineMax + 1, in) == nullptr) {
      text[0] = '\0';
      return kEnd;
    }
    strip_line(text);
    if (text[0] == '\0') continue;
    if (text[0] == ';') {
      if (echo != nullptr) {
        echo->separate();
        echo->write(text);
      }
      continue;
    }
    if (text[0] == '[') {
      header_name_in_place(text);
      return kHeader;
    }
    return kEntry;
  }
}

int find_section(std::FILE* in, Output* echo, char* text) {
  for (;;) {
    const int kind = read_line(in, echo, text);
    if (kind != kEntry) return kind;
    if (echo != nullptr) {
      echo->separate();
      echo->write(text);
    }
    ini_first_header = 0;
  }
}

namespace {

// What goes in front of a header in front of the point of change: the separation, and a blank
// line unless it is the first thing but comments.
void open_header(Output& out) {
  out.separate();
  if (ini_first_header == 0)
    out.write("\n");
  else
    ini_first_header = 0;
}

}  // namespace

void write_header(Output& out, const char* name) {
  open_header(out);
  out.write_bracketed(name);
}

bool seek_header(std::FILE* in, Output& out, const char* name, char* text, bool write_found) {
  while (find_section(in, &out, text) == kHeader) {
    open_header(out);
    const bool found = str_eq(text, name) != 0;
    if (!found || write_found) out.write_bracketed(text);
    if (found) return true;
  }
  return false;
}

int next_entry(std::FILE* in, Output* echo, char* text, EntryLine* entry) {
  for (;;) {
    const int kind = read_line(in, echo, text);
    if (kind != kEntry) return kind;
    *entry = split_entry(text);
    if (entry->found) return kEntry;
    report_malformed(__LINE__);  // a rewrite drops the line from the file
  }
}

int pass_entries(std::FILE* in, Output& out, const char* entry, char* text, EntryLine* match) {
  int kind;
  while ((kind = next_entry(in, &out, text, match)) == kEntry) {
    if (match->name == entry) return kEntry;
    out.separate();
    out.write_pair(match->name, match->value);
  }
  return kind;
}

void copy_rest(Output& out, std::FILE* in) {
  out.separate();
  if (in == nullptr) return;
  char block[kCopyBlock];
  for (;;) {
    const std::size_t n = std::fread(block, 1, sizeof block, in);
    if (n > 0) out.write(std::string_view(block, n));
    if (n < sizeof block) break;
  }
}

void report_malformed(int32_t line) { zv_error(kMalformedEntry, nullptr, nullptr, "Ini", line); }

Rewrite::~Rewrite() {
  close_files();
  if (have_tmp_) fio_purge("", tmpname_);
}

void Rewrite::close_files() {
  if (in_ != nullptr) std::fclose(in_);
  in_ = nullptr;
  if (tmp_ != nullptr && std::fclose(tmp_) != 0) out_.note_failure();
  tmp_ = nullptr;
  out_.attach(nullptr);
}

int32_t Rewrite::begin(const char* file, bool source_required) {
  file_ = file;
  if (file == nullptr) return -1;
  in_ = open_for_reading(file, false);
  if (in_ == nullptr && source_required) return -1;
  // The temporary file is named and placed by fio_tmpnam alone. It is created exclusively and
  // private (mode 0600, a planted link is not followed): it holds the settings while it lives.
  if (fio_tmpnam(tmpname_) == nullptr) return -1;
  tmp_ = platform::create_private_file(tmpname_);
  if (tmp_ == nullptr) return -1;
  have_tmp_ = true;
  out_.attach(tmp_);
  return 0;
}

int32_t Rewrite::begin(const char* file, bool source_required, const char* section) {
  ini_first_header = 1;
  trimmed_copy(section_, section, kNameMax);
  return begin(file, source_required);
}

namespace {
// fio_copy's result for a write that fell short; a copy that can't be flushed is one too.
constexpr int32_t kCopyWriteFault = 3;
}  // namespace

int32_t Rewrite::commit() {
  // The new content is on the disk before the copy begins, and the copy before the temporary
  // file goes: a crash between leaves one whole copy.
  if (tmp_ != nullptr && !platform::flush_to_disk(tmp_)) out_.note_failure();
  close_files();
  if (!have_tmp_) return -1;
  if (out_.failed()) return -1;  // the destructor removes the incomplete temporary file
  int32_t code = fio_copy("", tmpname_, "", file_);
  if (code == 0 && !platform::sync_file(file_)) code = kCopyWriteFault;
  if (code == 0) fio_purge("", tmpname_);
  have_tmp_ = false;  // a temporary file left by a failed copy holds the whole new content
  return code;
}

}  // namespace tiv::settings
