#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <string>

namespace VarnelAPI::Forms::api::detail {

/// The text of a JSON body. It is UTF-8 unless the media type names another charset that the HTTP library converts;
/// a charset that nobody knows is read as UTF-8 too.
/// @throws std::range_error if the bytes are no text in that charset.
utility::string_t decodeText(std::string bytes, const utility::string_t& contentType);

/// Whether the type says that the bytes are UTF-8, or says nothing. (Others may be read as UTF-8, too.)
bool isUtf8(const utility::string_t& contentType);

} // namespace VarnelAPI::Forms::api::detail
