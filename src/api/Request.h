#pragma once

#include <VarnelAPI/Forms/api/ApiConfiguration.h>
#include <VarnelAPI/Forms/model/HttpContent.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>

#include "transport/Attempts.h"

#include <map>
#include <memory>

namespace VarnelAPI::Forms::api::detail {

using Parameters = std::map<utility::string_t, utility::string_t>;
using Files = std::map<utility::string_t, std::shared_ptr<model::HttpContent>>;

/// Makes the request of one call, and refuses what `ApiClient::callApi` says that it refuses.
transport::detail::Call makeCall(const std::shared_ptr<ApiConfiguration>& configuration, const utility::string_t& path,
                                 const utility::string_t& method, const Parameters& queryParams,
                                 const std::shared_ptr<model::IHttpBody>& postBody, const Parameters& headerParams,
                                 const Parameters& formParams, const Files& fileParams,
                                 const utility::string_t& contentType);

/// What watches a call with these options, which may be an empty pointer.
std::shared_ptr<transport::detail::CallControl> controlOf(const std::shared_ptr<const transport::CallOptions>& options);

} // namespace VarnelAPI::Forms::api::detail
