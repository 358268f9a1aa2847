// The machinery shared by the direct settings operations: opening a settings file (with the
// default-file rule of the reads), the line reader, the section search, the header output,
// the rest copy, and the rewrite session that streams a file through a temporary file and
// commits it back with fio_copy.
#pragma once

#include <cstdint>
#include <cstdio>

#include <tivlib/fio.h>

#include "settings/line.h"
#include "settings/output.h"

namespace tiv::settings {

// Set at the start of each rewriting operation: 1 while no header and no entry has been put
// out in front of the point of change, so the first header gets no blank line in front of it.
extern int32_t ini_first_header;

// Results of the line reader.
inline constexpr int kEnd = 0;
inline constexpr int kHeader = 1;
inline constexpr int kEntry = 2;

// Opens file for reading; a nil or empty file with use_default selects "zv.ini" in the current
// directory, then the value of the variable "zv" (default ".") followed directly by "zv.ini".
std::FILE* open_for_reading(const char* file, bool use_default);

// Reads the next header or entry line into text (kLineBuffer characters), stripped; comments
// are written to echo (if any) behind a separation, blank lines skipped. A header gives its
// trimmed name. Gives kEnd, kHeader or kEntry; a nil input gives kEnd.
int read_line(std::FILE* in, Output* echo, char* text);

// Reads on until a header or the end. Entry lines met on the way go to echo (if any) behind a
// separation, as they stand, and clear ini_first_header.
int find_section(std::FILE* in, Output* echo, char* text);

// A header of the source written in front of the point of change: a blank line in front of it
// unless it is the first thing but comments.
void write_header(Output& out, const char* name);

// Streams the input up to the header named name (compared exactly), putting out every other
// header (as write_header does) and what stands in front of them. The wanted header gets its
// separation and blank line; its bracketed name is written only if write_found. Gives false
// if the input ended first.
bool seek_header(std::FILE* in, Output& out, const char* name, char* text, bool write_found);

// Reads on to the next well-formed entry line of the current section (as read_line does,
// comments echoed) and splits it into *entry. Entry lines without "=" are reported and passed
// over. Gives kEntry, or the kind that ended the section: kHeader (name in text) or kEnd.
int next_entry(std::FILE* in, Output* echo, char* text, EntryLine* entry);

// Streams the entries of the current section to out, each behind a separation, until the
// entry named entry. Malformed entry lines are reported and dropped. Gives kEntry with the
// wanted entry in *match (nothing written for it, not even the separation), or the kind that
// ended the section: kHeader (name in text) or kEnd.
int pass_entries(std::FILE* in, Output& out, const char* entry, char* text, EntryLine* match);

// Separates, then copies what remains of the input byte for byte (nothing for a nil input).
void copy_rest(Output& out, std::FILE* in);

// The report of an entry line without "=", with the caller's line number.
void report_malformed(int32_t line);

// One rewrite of a settings file: the source (maybe missing), the temporary file, the commit.
// Whatever is still open when the session ends is closed; an uncommitted temporary file is
// removed.
class Rewrite {
 public:
  Rewrite() = default;
  Rewrite(const Rewrite&) = delete;
  Rewrite& operator=(const Rewrite&) = delete;
  ~Rewrite();

  // Opens the source and creates the temporary file. Gives -1 if the temporary file can't be
  // created, or if source_required and the source can't be opened; otherwise 0.
  int32_t begin(const char* file, bool source_required);

  // begin(), then the state every rewrite of a section starts from: ini_first_header set to 1
  // and the section name trimmed (cut to kNameMax characters) into section().
  int32_t begin(const char* file, bool source_required, const char* section);

  std::FILE* source() const { return in_; }
  const char* section() const { return section_; }
  char* line() { return line_; }  // the line buffer of the operation (kLineBuffer characters)
  Output& out() { return out_; }

  // Closes both files and copies the temporary file over the settings file. Gives the code of
  // fio_copy (the temporary file is deleted after a good copy and stays otherwise), or -1 when
  // the temporary file could not be written completely: then the settings file is not
  // touched and the incomplete temporary file is removed.
  int32_t commit();

 private:
  void close_files();

  const char* file_ = nullptr;
  std::FILE* in_ = nullptr;
  std::FILE* tmp_ = nullptr;
  Output out_;
  char tmpname_[FIO_PATH_BUFFER] = {};
  char section_[kNameMax + 1] = {};
  char line_[kLineBuffer] = {};
  bool have_tmp_ = false;
};

}  // namespace tiv::settings
