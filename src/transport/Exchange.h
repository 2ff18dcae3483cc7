#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>
#include <VarnelAPI/Forms/transport/Transport.h>

#include <functional>
#include <optional>

namespace VarnelAPI::Forms::transport::detail {

class CallControl;
class ResponseBuffer;

/// What a call does to the service, and so whether it may be repeated.
enum class Effect { Reads, Deletes, Changes };

/// One request that is ready to be sent, and how.
struct Call {
    std::shared_ptr<Transport> transport;
    web::uri base;
    /// They follow no redirects themselves.
    web::http::client::http_client_config settings;
    std::size_t maxRedirects = 0;
    web::http::http_request request;
    Effect effect = Effect::Changes;
    /// Its name; empty where it has none, or where nobody wants to know.
    utility::string_t operation;
    /// An empty pointer where the call has no wishes.
    std::shared_ptr<CallControl> control;
};

/// What becomes of a response, whose body comes into the buffer. It runs in the continuation that gets it, since each
/// further one costs a switch of threads; it must not wait.
using OnResponse = std::function<pplx::task<web::http::http_response>(const web::http::http_response&,
                                                                      const std::shared_ptr<ResponseBuffer>&)>;

/// The address of a service, from the text of its base URL.
/// @throws std::invalid_argument if it has a fragment, no host, or another scheme than http and https.
/// @throws web::uri_exception if it is no URL.
web::uri serviceAddress(const utility::string_t& text);

/// Sends one request. The response is as the HTTP library makes it, but for its body: where storing that fails, the
/// transfer fails with it, while the library alone would end the process; and once whole it is a stream without an
/// end, unless `endBody` is called.
pplx::task<web::http::http_response> exchange(Call call, OnResponse onResponse);

/// How long the body will be, if the header says so and it is not decoded.
std::optional<uint64_t> announcedLength(const web::http::http_response& response);

/// The response once its body is there; fails if it broke off.
pplx::task<web::http::http_response> whole(const web::http::http_response& response);

/// Lets the body of such a response end once it is whole, or fail if it broke off, so that it can be read in all its
/// ways.
void endBody(const web::http::http_response& response);

/// Lets the body of such a response go: what is still to come of it is received, but not kept.
void discardBody(const web::http::http_response& response);

} // namespace VarnelAPI::Forms::transport::detail
