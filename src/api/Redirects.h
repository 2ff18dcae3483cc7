#pragma once

#include <cpprest/http_client.h>

namespace VarnelAPI::Forms::api::detail {

/// Sends `request` and follows redirects as `settings` say, as the HTTP library would, but for one thing: to another
/// scheme, host or port it sends none of the request's headers except what describes the message itself, and no
/// credentials of the settings. The library would hand all of them to whomever the service redirects to.
pplx::task<web::http::http_response> send(const web::uri& baseUri,
                                          const web::http::client::http_client_config& settings,
                                          const web::http::http_request& request);

} // namespace VarnelAPI::Forms::api::detail
