#pragma once

#include "Database.h"
#include "Json.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace VarnelAPI::Forms::repository {

/// A class of one location's repository.
struct ClassName {
    std::string location;
    std::string schema;
    std::string name;
};

/// A row of the table of instances.
struct Instance {
    std::int64_t number = 0;
    std::string id;
    std::string schema;
    std::string className;
    std::string eTag;
    Json properties;
};

/// A random (version 4) UUID.
std::string newId();

/// A class is known from its first instance on.
void storeClass(Database& database, const ClassName& type);
/// Inserts the row and what queries look at, and sets its number.
void storeInstance(Database& database, const std::string& location, const std::string& owner, Instance& instance);
/// Replaces the eTag, the properties and what queries look at.
void updateInstance(Database& database, const Instance& instance);
void storeFile(Database& database, std::int64_t instance, std::string_view bytes);

} // namespace VarnelAPI::Forms::repository
