#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <type_traits>

namespace VarnelAPI::Forms::model {

/// Only for a narrow literal or pointer where text is wide, as on Windows. Overloads for it are deleted: it would
/// convert to bool, and go out as true. The name is for the compiler's message: write _XPLATSTR("...") for a literal,
/// and utility::conversions::to_string_t(...) for what is in UTF-8.
template <class Narrow>
struct text_is_wide_write_XPLATSTR_or_to_string_t
    : std::enable_if<!std::is_same_v<utility::char_t, char> && (std::is_same_v<std::decay_t<Narrow>, char*> ||
                                                                std::is_same_v<std::decay_t<Narrow>, const char*>),
                     int> {};

} // namespace VarnelAPI::Forms::model
