#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

namespace VarnelAPI::Forms::model::detail {

inline constexpr utility::char_t jsonType[] = _XPLATSTR("application/json");
inline constexpr utility::char_t multipartType[] = _XPLATSTR("multipart/form-data");
inline constexpr utility::char_t binaryType[] = _XPLATSTR("application/octet-stream");

} // namespace VarnelAPI::Forms::model::detail
