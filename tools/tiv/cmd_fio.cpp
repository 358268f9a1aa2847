// tiv fio: the 16-byte binary header of a file ("1.1  @zv" and a byte-order tag) as the
// library's file handles see it.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>
#include <system_error>
#include <tivlib/fio.h>

#include "commands.h"
#include "files.h"
#include "json_out.h"

namespace tiv::cli {

namespace {

constexpr std::size_t kFieldSize = FIO_HEADER_SIZE / 2;  // signature and tag, 8 bytes each

// Closes a file handle when it goes out of scope.
struct FileHandle {
  fio_handle* h;
  ~FileHandle() { fio_close(h); }
};

// A header field as text, with bytes that cannot be shown as dots.
std::string field_text(const unsigned char* bytes, std::size_t n) {
  std::string text;
  for (std::size_t i = 0; i < n; ++i) {
    unsigned char c = bytes[i];
    text.push_back(c >= 0x20 && c < 0x7F ? static_cast<char>(c) : '.');
  }
  return text;
}

struct FioArgs {
  std::string file;
  bool json = false;
};

void run_header(Session& s, const FioArgs& a) {
  const std::string& f = a.file;
  std::int32_t data_start = 0;
  {
    // Opening for reading with FIO_HEADER checks the header: behind it the stream stands at
    // the data, without one at the first byte.
    FileHandle checked{fio_open(nullptr, f.c_str(), FIO_READ | FIO_HEADER)};
    if (checked.h == nullptr) fail(kIo, "cannot open", f);
    data_start = fio_tell(checked.h);
  }
  // The library's lengths are 32-bit (-1 beyond 2 GiB): the tool takes the file's own size.
  std::error_code ec;
  const std::uintmax_t length = std::filesystem::file_size(f, ec);
  if (ec) fail(kIo, "cannot look at: " + ec.message(), f);
  unsigned char raw[FIO_HEADER_SIZE] = {};
  std::int32_t got = 0;
  {
    FileHandle plain{fio_open(nullptr, f.c_str(), FIO_READ)};
    if (plain.h == nullptr) fail(kIo, "cannot open", f);
    got = fio_read_to_buf(raw, 1, FIO_HEADER_SIZE, plain.h);
  }
  bool header = data_start == FIO_HEADER_SIZE;
  std::string signature = field_text(raw, std::min<std::size_t>(kFieldSize, static_cast<std::size_t>(got)));
  std::string tag;
  if (got > static_cast<std::int32_t>(kFieldSize))
    tag = field_text(raw + kFieldSize, static_cast<std::size_t>(got) - kFieldSize);
  bool motorola = header && tag == "MOTOROLA";
  const char* order = !header ? "none" : motorola ? "big-endian (MOTOROLA)" : "little-endian (host order)";

  if (a.json) {
    nlohmann::json json = {{"file", f},
                           {"header", header},
                           {"byte_order", !header ? "none" : motorola ? "big-endian" : "little-endian"},
                           {"length", length},
                           {"data_offset", data_start}};
    if (header) {
      json["signature"] = signature;
      json["tag"] = tag;
    }
    s.ctx.out << dump_json(json, 2) << '\n';
  } else {
    s.ctx.out << "file        " << f << '\n' << "header      " << (header ? "yes" : "no") << '\n';
    if (header) {
      s.ctx.out << "signature   \"" << signature << "\"\n" << "tag         \"" << tag << "\"\n";
    }
    s.ctx.out << "byte order  " << order << '\n'
              << "data        from byte " << data_start << '\n'
              << "length      " << length << " bytes\n";
  }
  if (!header) s.ctx.note_code(kNotFound);
}

}  // namespace

void add_fio_commands(CLI::App& app, Session& s) {
  auto args = std::make_shared<FioArgs>();
  CLI::App* fio = app.add_subcommand("fio", "Binary files: the header and byte order");
  CLI::App* header = fio->add_subcommand("header", "Show the binary header and byte order of a file");
  header->add_option("FILE", args->file, "File to look at")->required()->transform(input_file());
  header->add_flag("--json", args->json, kJsonHelp);
  header->footer(
      "A binary file of the library begins with 16 bytes: \"1.1  @zv\" and the tag \"INTEL   \"\n"
      "(little-endian) or \"MOTOROLA\" (big-endian values). A file without a header gives exit\n"
      "code 1.\n"
      "\nExample:\n  tiv fio header results.bin --json");
  header->callback([&s, args] { run_header(s, *args); });
}

}  // namespace tiv::cli
