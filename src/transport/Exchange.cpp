#include "Exchange.h"

#include "CallControl.h"
#include "ContentLength.h"
#include "Continuation.h"
#include "ResponseBuffer.h"

namespace VarnelAPI::Forms::transport::detail {

using web::http::http_response;

namespace {

bool isFilledBy(const http_response& response, const ResponseBody& body) {
    const auto& filled = response._get_impl()->outstream();
    return filled.is_valid() && ResponseBody(filled.streambuf()).isSameAs(body);
}

/// Reads a stream to its end. The HTTP library would, by continuations that end the process where there is no memory.
class Copying final : public std::enable_shared_from_this<Copying> {
public:
    Copying(const concurrency::streams::istream& from, const ResponseBody& to)
        : m_From(from.streambuf()), m_To(to), m_Block(blockSize) {
        if (!m_From.exception() && !m_From.can_read()) {
            throw std::runtime_error("the body of the response is closed");
        }
    }

    /// How much there was.
    pplx::task<std::size_t> run() {
        auto task = pplx::create_task(m_Done, inPoolOrHere());
        goOn();
        return task;
    }

private:
    static constexpr std::size_t blockSize = 16384;

    void goOn() {
        settling(m_Done, [this] {
            for (;;) {
                const auto moved = piece();
                if (!moved.is_done()) {
                    const auto self = shared_from_this();
                    continued(moved, [self](const pplx::task<std::size_t>& done) {
                        settling(self->m_Done, [&] { self->count(done.get()) ? self->goOn() : void(); });
                    });
                    return;
                }
                if (!count(moved.get())) {
                    return;
                }
            }
        });
    }
    pplx::task<std::size_t> piece() {
        const auto got = m_From.getn(m_Block.data(), m_Block.size());
        if (got.is_done()) {
            return m_To.putn_nocopy(m_Block.data(), got.get());
        }
        return continued(got, [self = shared_from_this()](std::size_t size) {
            return self->m_To.putn_nocopy(self->m_Block.data(), size);
        });
    }
    /// Whether there may be more.
    bool count(std::size_t size) {
        m_Size += size;
        if (size == 0) {
            m_Done.set(m_Size);
        }
        return size != 0;
    }

    concurrency::streams::streambuf<uint8_t> m_From;
    ResponseBody m_To;
    std::vector<uint8_t> m_Block;
    std::size_t m_Size = 0;
    const pplx::task_completion_event<std::size_t> m_Done;
};

/// A transport may bring a body of its own instead of filling the stream of the request: a response like one that it
/// filled. The other is left alone, as its own transfer may go on.
pplx::task<http_response> withOwnBody(const http_response& other, const ResponseBody& body,
                                      const concurrency::streams::istream& content) {
    http_response response(other.status_code());
    response.set_reason_phrase(other.reason_phrase());
    response.headers() = other.headers();
    const auto impl = response._get_impl();
    impl->set_outstream(body.create_ostream(), false);
    impl->set_instream(content);
    auto received = pplx::task_from_result<std::size_t>(0);
    if (other.body().is_valid()) {
        received = std::make_shared<Copying>(other.body(), body)->run();
    }
    return continued(received, [response](std::size_t size) {
        response._get_impl()->_complete(size);
        return response;
    });
}

web::http::progress_handler uploadProgress(const Call& call) {
    std::optional<uint64_t> total;
    if (call.request.headers().has(web::http::header_names::content_length)) {
        total = call.request.headers().content_length();
    }
    return [control = call.control, total](web::http::message_direction::direction direction, uint64_t bytes) {
        // What comes back is counted where it arrives, since redirects and discarded bodies don't count.
        if (direction == web::http::message_direction::upload) {
            try {
                control->report(Progress::Direction::Upload, bytes, total);
            } catch (...) {
                // It has ended the call.
            }
        }
    };
}

} // namespace

std::optional<uint64_t> announcedLength(const http_response& response) {
    constexpr std::size_t digitsOf64Bits = 19;
    utility::string_t header;
    const auto& headers = response.headers();
    if (!headers.match(web::http::header_names::content_length, header) ||
        headers.has(web::http::header_names::content_encoding)) {
        return std::nullopt;
    }
    const utility::string_t length = lengthOf(header);
    return length.empty() || length.size() > digitsOf64Bits ? std::nullopt
                                                            : std::optional<uint64_t>(std::stoull(length));
}

web::uri serviceAddress(const utility::string_t& text) {
    const web::uri given(text);
    web::uri address = given.scheme().empty() ? web::uri_builder(given).set_scheme(_XPLATSTR("http")).to_uri() : given;
    if (address.scheme() != _XPLATSTR("http") && address.scheme() != _XPLATSTR("https")) {
        throw std::invalid_argument("URI scheme must be 'http' or 'https'");
    }
    if (address.host().empty()) {
        throw std::invalid_argument("URI must contain a hostname.");
    }
    if (!address.fragment().empty()) {
        throw std::invalid_argument("the base URL \"" + utility::conversions::to_utf8string(text) +
                                    "\" has a fragment");
    }
    if (!address.user_info().empty()) {
        // They are for no server, and the HTTP library would show them to a proxy.
        address = web::uri_builder(address).set_user_info({}).to_uri();
    }
    return address;
}

pplx::task<http_response> exchange(Call call, OnResponse onResponse) {
    const auto buffer = std::make_shared<ResponseBuffer>();
    const ResponseBody body(buffer);
    call.request.set_response_stream(body.create_ostream());
    // Made before the request is sent: a transfer that fails at once closes the buffer, which then gives no stream.
    const auto content = body.create_istream();
    auto token = pplx::cancellation_token::none();
    if (call.control) {
        token = call.control->token();
        if (call.control->wishes().onProgress && call.request.body().is_valid()) {
            call.request.set_progress_handler(uploadProgress(call));
        }
    }
    return continued(call.transport->send(call.base, call.settings, call.request, token),
                     [buffer, body, content, onResponse = std::move(onResponse)](const http_response& response) {
                         struct AtTheEnd {
                             ResponseBuffer& buffer;
                             ~AtTheEnd() { buffer.admitAll(); }
                         };
                         const AtTheEnd atTheEnd{*buffer};
                         if (isFilledBy(response, body)) {
                             response._get_impl()->set_instream(content);
                             return onResponse(response, buffer);
                         }
                         return continued(
                             withOwnBody(response, body, content),
                             [buffer, onResponse](const http_response& taken) { return onResponse(taken, buffer); });
                     });
}

pplx::task<http_response> whole(const http_response& response) {
    return continued(pplx::create_task(response._get_impl()->_get_data_available(), inPoolOrHere()),
                     [response](utility::size64_t) { return response; });
}

void endBody(const http_response& response) {
    // The library closes only a stream of its own: without an end, who reads the stream would wait for ever. Not by
    // `content_ready`, whose continuation holds the response that holds it, and so leaks if the process ends first.
    const auto impl = response._get_impl();
    continued(pplx::create_task(impl->_get_data_available(), inPoolOrHere()),
              [body = impl->outstream()](const pplx::task<utility::size64_t>& ready) {
                  atTheEnd([&] {
                      try {
                          ready.get();
                          body.close();
                      } catch (...) {
                          body.close(std::current_exception());
                      }
                  });
              });
}

void discardBody(const http_response& response) {
    response.body().close();
}

} // namespace VarnelAPI::Forms::transport::detail
