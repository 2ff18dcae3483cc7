#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <string>
#include <string_view>
#include <vector>

namespace VarnelAPI::Forms::cli {

using Json = web::json::value;

/// The value as text: on one line, or one member a line, indented. Numbers are as short as they can be, and no control
/// character stands in it.
std::string toText(const Json& value, bool isIndented = false);

/// @throws Usage naming `what` if the text is not JSON.
Json parse(const std::string& text, const std::string& what);

/// The member of an object; an empty pointer if there is none, or `value` is no object.
const Json* member(const Json& value, const std::string& name);

/// An object of members in this order.
Json object(std::vector<std::pair<std::string, Json>> members);

/// What a column of an instance holds: "id", "class", "schema", "eTag", a property, or by points what is within it;
/// null if there is no such thing.
Json column(const Json& instance, const std::string& name);

/// A value as it stands in a cell: texts as they are, nothing for null, JSON for all else.
std::string cell(const Json& value);

/// Where `read`, what a model made of `given`, lacks something of it: the path; empty if all of it came through.
/// Dates may be written differently, and so may JSON that is carried as a text.
std::string lost(const Json& given, const Json& read, const std::string& path = {});

} // namespace VarnelAPI::Forms::cli
