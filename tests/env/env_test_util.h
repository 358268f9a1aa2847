// Helpers of the environment store tests: the text form to and from strings, and the log.
#pragma once

#include <tivlib/env.h>

#include <regex>
#include <string>

#include "test_dir.h"

namespace tiv::test {

struct StringSource {
  std::string text;
  std::size_t at = 0;
};

inline int32_t next_char(intptr_t user) {
  auto* s = reinterpret_cast<StringSource*>(user);
  if (s->at >= s->text.size()) return -1;
  return static_cast<signed char>(s->text[s->at++]);
}

inline int32_t read_string(env_handle* env, const std::string& text) {
  StringSource s{text};
  return env_read(next_char, reinterpret_cast<intptr_t>(&s), env);
}

inline int32_t append_char(int32_t c, intptr_t user) {
  reinterpret_cast<std::string*>(user)->push_back(static_cast<char>(c));
  return 0;
}

inline std::string write_string(env_handle* env) {
  std::string out;
  env_write(append_char, reinterpret_cast<intptr_t>(&out), env);
  return out;
}

// The log of the current directory with every line number replaced by '#'.
inline std::string log_text() {
  return std::regex_replace(read_file("zv.err"), std::regex(" line [0-9]+:"), " line #:");
}

// One zv_error record with an empty trace, as the log holds it.
inline std::string error_record(const std::string& text, const char* source = "Env_core",
                                const char* text2 = nullptr) {
  std::string r = ">ERROR   in \"" + std::string(source) + "\" line #:\n  " + text + "!\n";
  if (text2 != nullptr) r += "  " + std::string(text2) + "!\n";
  return r + "\n\n\n\n";
}

inline std::string switch_record(int value, const char* source) {
  return "SWITCH ERROR in \"" + std::string(source) + "\" line #:\n  switch value = " +
         std::to_string(value) + "!\n\n\n\n";
}

// A root that closes itself.
class Root {
 public:
  explicit Root(int32_t id = 0, env_handle* parent = nullptr) : env_(env_open(id, parent)) {}
  ~Root() {
    if (env_ != nullptr) env_close(env_, 0);
  }
  Root(const Root&) = delete;
  Root& operator=(const Root&) = delete;
  operator env_handle*() const { return env_; }
  env_handle* get() const { return env_; }

 private:
  env_handle* env_;
};

// A value read back as a string ("<code>" when the read fails).
inline std::string get_text(env_handle* env, const char* section, const char* path,
                            int32_t exact = 1) {
  char buffer[2048];
  const int32_t r = env_get(env, section, path, exact, sizeof buffer, buffer);
  if (r < 0) return "<" + std::to_string(r) + ">";
  return buffer;
}

}  // namespace tiv::test
