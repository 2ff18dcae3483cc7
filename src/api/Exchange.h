#pragma once

#include <cpprest/http_client.h>

namespace VarnelAPI::Forms::api::detail {

/// Sends one request. The response is as the HTTP library makes it, with a body that can be read in all its ways; but
/// where storing the body fails, the transfer fails with it. The library alone would end the process.
pplx::task<web::http::http_response> exchange(web::http::client::http_client& client, web::http::http_request request);

/// Lets the body of such a response go: what is still to come of it is received, but not kept.
void discardBody(const web::http::http_response& response);

} // namespace VarnelAPI::Forms::api::detail
