#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

namespace VarnelAPI::Forms::transport::detail {

/// The length that a Content-Length header says, in digits without leading zeros: its number, or its numbers if they
/// are all the same, as of a header that came twice. An empty text if it says none, or several.
utility::string_t lengthOf(const utility::string_t& contentLength);

/// Whether a Content-Length header says that something is `size` bytes long.
bool isLength(const utility::string_t& contentLength, std::size_t size);

} // namespace VarnelAPI::Forms::transport::detail
