#include "RequestParts.h"

namespace VarnelAPI::Forms::transport::detail {

using web::http::http_headers;
using web::http::http_request;

RequestParts::RequestParts(const http_request& request)
    : method(request.method()), headers(request.headers()), body(request.body()) {}

bool RequestParts::rewind() const {
    return !hasBody() || body.seek(0) == concurrency::streams::istream::pos_type(0);
}

http_request RequestParts::make(const http_headers& with) const {
    http_request request(method);
    request.headers() = with;
    if (hasBody()) {
        request.set_body(body, headers.content_length(), headers.content_type());
    }
    return request;
}

} // namespace VarnelAPI::Forms::transport::detail
