#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

namespace VarnelAPI::Forms::transport::detail {

/// What a request is made of, to make another one: sending changes its headers and takes its body away.
struct RequestParts {
    /// The request is not sent yet.
    explicit RequestParts(const web::http::http_request& request);

    bool hasBody() const { return body.is_valid(); }
    /// Lets the body be read from its start; whether it can.
    bool rewind() const;
    /// A request of these parts, with these headers, whose body is read from where it stands.
    web::http::http_request make(const web::http::http_headers& with) const;

    utility::string_t method;
    web::http::http_headers headers;
    concurrency::streams::istream body;
};

} // namespace VarnelAPI::Forms::transport::detail
