#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

namespace VarnelAPI::Forms::transport::detail {

/// The settings, whose time-out then holds for the wait for a response's header, too. On Windows the system has a limit
/// of its own for that, 90 seconds, which the HTTP library leaves as it is.
#if defined(_WIN32)
web::http::client::http_client_config limitingWaitForHeader(web::http::client::http_client_config settings);
#else
inline const web::http::client::http_client_config&
limitingWaitForHeader(const web::http::client::http_client_config& settings) {
    return settings;
}
#endif

} // namespace VarnelAPI::Forms::transport::detail
