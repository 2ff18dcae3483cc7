#pragma once

#include <VarnelAPI/Forms/api/ApiConfiguration.h>

#include "Exchange.h"

namespace VarnelAPI::Forms::api::detail {

/// One request that is ready to be sent, and the client to send it with.
struct Call {
    web::http::client::http_client client;
    web::http::http_request request;
};

/// A new client for one call. It follows no redirects: `send` does.
web::http::client::http_client makeClient(const ApiConfiguration& configuration);

/// Sends the request and follows redirects as the configuration's client settings say, as the HTTP library would, but
/// for one thing: to another scheme, host or port it sends none of the request's headers except what describes the
/// message itself, and no credentials of the settings. The library would hand all of them to whomever the service
/// redirects to. `onResponse` gets the response that is no redirect.
pplx::task<web::http::http_response> send(const ApiConfiguration& configuration, Call call, OnResponse onResponse);

} // namespace VarnelAPI::Forms::api::detail
