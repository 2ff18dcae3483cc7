#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace VarnelAPI::Forms::repository {

/// Keeps members in the order in which they were given.
using Json = nlohmann::ordered_json;

/// The text of a value; text that is not UTF-8 is mended, so that this never throws.
inline std::string toText(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace VarnelAPI::Forms::repository
