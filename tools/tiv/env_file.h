// Environment files for the tool: a root environment that closes itself, and the reading and
// writing of its text form through the character callbacks of env_read and env_write.
//
// The tool reads a file with env_read_file, the library's bulk reader, after reading it whole
// itself (to refuse what the reader can't take, and to see that it didn't change meanwhile).
// After a syntax error it reads the text once more through env_read, counting lines on the
// way, so that the error can be told with its line: the line of the last character other than
// a blank or a line end that the reader took before it gave up. CR LF reads as LF both ways. It writes through env_write
// into memory and replaces the file in one step, so a failed write leaves the old file whole.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include <tivlib/env.h>

#include "commands.h"
#include "safe_change.h"

namespace tiv::cli {

// A root environment, closed with its handle.
class EnvTree {
 public:
  EnvTree();
  ~EnvTree();
  EnvTree(const EnvTree&) = delete;
  EnvTree& operator=(const EnvTree&) = delete;
  env_handle* get() const { return handle_; }

 private:
  env_handle* handle_;
};

// Outcome of reading a text into a tree: the result of env_read and, after a syntax error,
// the line (from 1) at which the reader stopped.
struct EnvReadResult {
  std::int32_t code = ENV_OK;
  int line = 0;
};
EnvReadResult read_env_text(env_handle* env, std::string_view text);

// The text form of a root environment.
std::string write_env_text(env_handle* env);

// What a change needs to know of the file it rewrites.
struct EnvFileFacts {
  std::uintmax_t size = 0;
  bool crlf = false;        // its lines end in CR LF; a rewrite keeps that
  bool binary = false;      // it holds nul bytes
  bool loose_text = false;  // text other than comments in front of the first section
  std::uintmax_t rewrite_estimate = 0;  // bytes of its normal form, about
};

// A rewrite may grow the file this many times (and by kRewriteSlack bytes) before it is
// refused as too large: the normal form indents two blanks per level of nesting.
inline constexpr std::uintmax_t kRewriteGrowthMax = 8;
inline constexpr std::uintmax_t kRewriteSlack = 1 << 20;

// Reads `path` into `tree`, and its facts if asked. A missing file leaves the tree empty when
// `missing_ok` and gives false; any other failure throws (I/O: kIo, syntax: kBadFormat with
// the line and the reader's complaint).
bool load_env_file(Session& session, EnvTree& tree, const std::string& path, bool missing_ok,
                   EnvFileFacts* facts = nullptr);

// Throws kBadFormat if rewriting the file would lose or bloat it (see EnvFileFacts), unless
// `force`.
void refuse_lossy_rewrite(const EnvFileFacts& facts, const std::string& path, bool force);

// Writes the text form of the tree to `out` as env_write produces it, each line ending in CR LF
// if `crlf`.
void write_env_stream(env_handle* env, std::FILE* out, bool crlf);

// Writes the tree into the change's temporary file, in the line-end style of the facts, and
// commits the change.
void save_env_change(FileChange& change, EnvTree& tree, const EnvFileFacts& facts);

}  // namespace tiv::cli
