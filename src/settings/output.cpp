// The writer of a rewritten settings file.
#include "settings/output.h"

namespace tiv::settings {

void Output::write(std::string_view text) {
  if (stream_ == nullptr || text.empty()) return;
  const std::size_t written = std::fwrite(text.data(), 1, text.size(), stream_);
  position_ += static_cast<long>(written);
  if (written != text.size()) failed_ = true;
}

}  // namespace tiv::settings
