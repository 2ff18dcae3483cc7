#pragma once

#include "Database.h"

#include <string>

namespace VarnelAPI::Forms::repository {

/// All that is stored, as the text of a seed.
std::string dump(Database& database);

/// Adds what a seed holds. To be called in a transaction.
/// @throws ServiceError 400 saying what is wrong, and where
void seed(Database& database, const std::string& text);

} // namespace VarnelAPI::Forms::repository
