// JSON output of the tool. Every JSON document goes out through dump_json, which makes every
// string and key valid UTF-8 first (see encoding.h), so the output always parses.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace tiv::cli {

// The document as text (indent -1: one line), with every string read as the file's text. Keys
// keep their order in an ordered_json.
std::string dump_json(const nlohmann::json& value, int indent = -1);
std::string dump_json(const nlohmann::ordered_json& value, int indent = -1);

}  // namespace tiv::cli
