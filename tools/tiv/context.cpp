#include "context.h"

#include <ostream>

namespace tiv::cli {

void fail(int code, std::string message, std::string file, int line) {
  throw Failure{code, std::move(message), std::move(file), line};
}

void Context::report(const Failure& failure) {
  err << "tiv: ";
  if (!failure.file.empty()) {
    err << failure.file;
    if (failure.line > 0) err << ':' << failure.line;
    err << ": ";
  }
  err << failure.message << '\n';
  err.flush();
}

}  // namespace tiv::cli
