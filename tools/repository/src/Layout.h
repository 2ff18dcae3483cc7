#pragma once

#include "Database.h"

namespace VarnelAPI::Forms::repository {

/// Makes the tables in an empty database.
/// @throws std::runtime_error when it is a database of something else, or can't be written
void prepareLayout(Database& database);

/// Leaves the tables as they are in a new database. To be called in a transaction.
void clearLayout(Database& database);

} // namespace VarnelAPI::Forms::repository
