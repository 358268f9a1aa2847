#include "errlog.h"

#include <sys/stat.h>

#include <fstream>
#include <ostream>
#include <sstream>

namespace tiv::cli {

ErrLog::ErrLog(std::filesystem::path path) : path_(std::move(path)), start_(probe(path_)) {}

ErrLog::State ErrLog::probe(const std::filesystem::path& path) {
  struct stat st {};
  State s;
  if (::stat(path.c_str(), &st) != 0) return s;
  s.exists = true;
  s.size = static_cast<std::uintmax_t>(st.st_size);
  s.mtime_ns = static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
  s.inode = static_cast<std::uintmax_t>(st.st_ino);
  return s;
}

bool ErrLog::written() const {
  State now = probe(path_);
  return now.exists && !(now == start_);
}

std::string ErrLog::take_new() {
  if (!written()) return {};
  std::ifstream in(path_, std::ios::binary);
  if (!in) return {};
  std::ostringstream all;
  all << in.rdbuf();
  std::string text = all.str();
  if (consumed_ > text.size()) consumed_ = 0;  // emptied again by someone else
  std::string fresh = text.substr(consumed_);
  consumed_ = text.size();
  return fresh;
}

void ErrLog::finish(Context& ctx, int exit_code) const {
  if (exit_code == kDone || !written()) return;
  std::ifstream in(path_, std::ios::binary);
  std::ostringstream all;
  all << in.rdbuf();
  if (all.str().empty()) return;
  ctx.err << "tiv: the library reported:\n" << all.str();
  ctx.err.flush();
}

std::vector<std::string> log_texts(std::string_view log) {
  std::vector<std::string> texts;
  while (!log.empty()) {
    std::size_t end = log.find('\n');
    std::string_view line = log.substr(0, end);
    log = end == std::string_view::npos ? std::string_view{} : log.substr(end + 1);
    if (line.size() < 4 || line.substr(0, 2) != "  " || line.back() != '!') continue;
    if (line.substr(0, 4) == "  - ") continue;  // a traceback frame
    texts.emplace_back(line.substr(2, line.size() - 3));
  }
  return texts;
}

}  // namespace tiv::cli
