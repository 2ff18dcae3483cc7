#pragma once

#include "Exchange.h"

namespace VarnelAPI::Forms::transport::detail {

/// Sends the request and follows redirects as the call says, as the HTTP library would, but for one thing: to another
/// scheme, host or port it sends none of the request's headers except what describes the message itself, and no
/// credentials of the settings. The library would hand all of them to whomever the service redirects to. `onResponse`
/// gets the response that is no redirect.
pplx::task<web::http::http_response> follow(Call call, OnResponse onResponse);

} // namespace VarnelAPI::Forms::transport::detail
