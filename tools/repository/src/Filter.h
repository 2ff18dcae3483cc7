#pragma once

#include "Database.h"

#include <string>
#include <string_view>

namespace VarnelAPI::Forms::repository {

/// The column of the table of instances `i` that holds a part of the identity, or "".
std::string_view identityColumn(std::string_view name);

/// Reads $filter: comparisons, `in` and the text functions, joined by "and", "or" and "not", in parentheses at will.
/// @return a condition on a row `i` of the table of instances. Literals and names are bound, never part of its text.
/// @throws ServiceError 400 saying what was not understood, and where
Sql parseFilter(std::string_view text);

} // namespace VarnelAPI::Forms::repository
