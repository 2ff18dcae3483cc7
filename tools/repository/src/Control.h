#pragma once

#include "Http.h"
#include "Service.h"

namespace VarnelAPI::Forms::repository {

/// Answers a request for "/_control".
/// @param path what follows that
/// @throws ServiceError
Reply control(Service& service, const HttpRequest& request, std::string_view path);

} // namespace VarnelAPI::Forms::repository
