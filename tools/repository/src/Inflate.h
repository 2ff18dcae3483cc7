#pragma once

#include <cstddef>
#include <string>

namespace VarnelAPI::Forms::repository {

/// Undoes the coding of a body.
/// @param coding a Content-Encoding: gzip, deflate, identity or ""
/// @throws ServiceError 415 for another coding, 413 when it becomes larger than the limit, 400 when it is broken
std::string inflated(std::string body, const std::string& coding, std::size_t maxBytes);

} // namespace VarnelAPI::Forms::repository
