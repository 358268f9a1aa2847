#include "json_out.h"

#include "encoding.h"

namespace tiv::cli {

namespace {

template <class Json>
Json as_utf8(const Json& value) {
  if (value.is_string()) return to_utf8(value.template get_ref<const std::string&>());
  if (value.is_array()) {
    Json out = Json::array();
    for (const auto& item : value) out.push_back(as_utf8(item));
    return out;
  }
  if (value.is_object()) {
    Json out = Json::object();
    for (const auto& [key, item] : value.items()) out[to_utf8(key)] = as_utf8(item);
    return out;
  }
  return value;
}

template <class Json>
std::string dump_utf8(const Json& value, int indent) {
  // The conversion leaves nothing to replace; the handler is the last guard.
  return as_utf8(value).dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string dump_json(const nlohmann::json& value, int indent) { return dump_utf8(value, indent); }

std::string dump_json(const nlohmann::ordered_json& value, int indent) {
  return dump_utf8(value, indent);
}

}  // namespace tiv::cli
