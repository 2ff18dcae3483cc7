#pragma once

#include "Http.h"
#include "Service.h"

namespace VarnelAPI::Forms::repository {

/// What the base URL shows in a browser: what is stored, and the requests as they come in. Read only.
/// @throws ServiceError
Reply page(Service& service, const HttpRequest& request);

} // namespace VarnelAPI::Forms::repository
