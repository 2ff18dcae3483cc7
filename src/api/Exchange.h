#pragma once

#include <cpprest/http_client.h>

#include <functional>

namespace VarnelAPI::Forms::api::detail {

/// What becomes of a response. It runs in the continuation that gets it, since each further one costs a switch of
/// threads; it must not wait.
using OnResponse = std::function<pplx::task<web::http::http_response>(const web::http::http_response&)>;

/// Sends one request. The response is as the HTTP library makes it, but for its body: where storing that fails, the
/// transfer fails with it, while the library alone would end the process; and once whole it is a stream without an
/// end, unless `endBody` is called.
pplx::task<web::http::http_response> exchange(web::http::client::http_client& client, web::http::http_request request,
                                              OnResponse onResponse);

/// Lets the body of such a response end once it is whole, or fail if it broke off, so that it can be read in all its
/// ways.
void endBody(const web::http::http_response& response);

/// Lets the body of such a response go: what is still to come of it is received, but not kept.
void discardBody(const web::http::http_response& response);

} // namespace VarnelAPI::Forms::api::detail
