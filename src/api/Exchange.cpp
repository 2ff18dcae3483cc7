#include "Exchange.h"

#include <cpprest/producerconsumerstream.h>

#include <limits>
#include <memory>
#include <mutex>

namespace VarnelAPI::Forms::api::detail {

using web::http::http_exception;
using web::http::http_request;
using web::http::http_response;

namespace {

using LibraryBuffer = concurrency::streams::details::basic_producer_consumer_buffer<uint8_t>;

/// The buffer that the HTTP library itself would use. It is written to in threads that catch nothing, and it is asked
/// to write almost 2^64 bytes when the service sends a chunk of negative length. Until somebody has looked at the
/// response, and may have discarded its body, little of it is taken: the transfer waits.
class ResponseBuffer final : public LibraryBuffer {
public:
    ResponseBuffer() : LibraryBuffer(512) {}

    void admitAll() { m_Admission.set(); }

    // The library's own failure has no lock, though a transfer fails in one thread while another one reads.
    std::exception_ptr exception() const override {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Failure;
    }
    using LibraryBuffer::close;
    pplx::task<void> close(std::ios_base::openmode mode, std::exception_ptr failure) override {
        {
            const std::lock_guard<std::mutex> lock(m_Mutex);
            m_Failure = m_Failure ? m_Failure : failure;
        }
#if defined(__clang_analyzer__)
        static_cast<void>(mode); // It takes the task library's counting of references for a use after free.
        return {};
#else
        return close(mode);
#endif
    }

private:
    static constexpr std::size_t ahead = 65536;

    pplx::task<std::size_t> _putn(const uint8_t* data, std::size_t size) override {
        try {
            if (size > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
                throw http_exception(_XPLATSTR("a chunk of the response has a negative length"));
            }
            m_Taken += size;
            if (m_Taken <= ahead || m_Admitted.is_done()) {
                return LibraryBuffer::_putn(data, size);
            }
            const auto self = std::static_pointer_cast<ResponseBuffer>(this->shared_from_this());
            return m_Admitted.then([self, data, size] { return self->LibraryBuffer::_putn(data, size); });
        } catch (...) {
            return pplx::task_from_exception<std::size_t>(std::current_exception());
        }
    }

    mutable std::mutex m_Mutex;
    std::exception_ptr m_Failure;
    uint64_t m_Taken = 0;
    pplx::task_completion_event<void> m_Admission;
    pplx::task<void> m_Admitted{m_Admission};
};

class ResponseBody final : public concurrency::streams::streambuf<uint8_t> {
public:
    explicit ResponseBody(const std::shared_ptr<ResponseBuffer>& buffer) : streambuf(buffer) {}
};

} // namespace

pplx::task<http_response> exchange(web::http::client::http_client& client, http_request request,
                                   OnResponse onResponse) {
    const auto buffer = std::make_shared<ResponseBuffer>();
    const ResponseBody body(buffer);
    request.set_response_stream(body.create_ostream());
    // Made before the request is sent: a transfer that fails at once closes the buffer, which then gives no stream.
    const auto content = body.create_istream();
    return client.request(request, pplx::cancellation_token::none())
        .then([buffer, content, onResponse = std::move(onResponse)](const http_response& response) {
            struct AtTheEnd {
                ResponseBuffer& buffer;
                ~AtTheEnd() { buffer.admitAll(); }
            };
            const AtTheEnd atTheEnd{*buffer};
            response._get_impl()->set_instream(content);
            return onResponse(response);
        });
}

void endBody(const http_response& response) {
    // The library closes only a stream of its own: without an end, who reads the stream would wait for ever. Not by
    // `content_ready`, whose continuation holds the response that holds it, and so leaks if the process ends first.
    const auto impl = response._get_impl();
    pplx::create_task(impl->_get_data_available())
        .then([body = impl->outstream()](const pplx::task<utility::size64_t>& ready) {
            try {
                ready.get();
                body.close();
            } catch (...) {
                body.close(std::current_exception());
            }
        });
}

void discardBody(const http_response& response) {
    response.body().close();
}

} // namespace VarnelAPI::Forms::api::detail
