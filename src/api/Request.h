#pragma once

#include <VarnelAPI/Forms/api/ApiConfiguration.h>
#include <VarnelAPI/Forms/model/HttpContent.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>

#include "Redirects.h"

#include <map>
#include <memory>

namespace VarnelAPI::Forms::api::detail {

using Parameters = std::map<utility::string_t, utility::string_t>;
using Files = std::map<utility::string_t, std::shared_ptr<model::HttpContent>>;

/// Makes the client and the request of one call, and refuses what `ApiClient::callApi` says that it refuses.
Call makeCall(const std::shared_ptr<ApiConfiguration>& configuration, const utility::string_t& path,
              const utility::string_t& method, const Parameters& queryParams,
              const std::shared_ptr<model::IHttpBody>& postBody, const Parameters& headerParams,
              const Parameters& formParams, const Files& fileParams, const utility::string_t& contentType);

} // namespace VarnelAPI::Forms::api::detail
