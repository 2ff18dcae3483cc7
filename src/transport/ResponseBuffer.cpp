#include "ResponseBuffer.h"

#include "Continuation.h"

#include <cpprest/http_msg.h>

#include <limits>

namespace VarnelAPI::Forms::transport::detail {

std::shared_ptr<ResponseBuffer> ResponseBuffer::make() {
    return {new ResponseBuffer, [](ResponseBuffer* buffer) {
                try {
                    pplx::task_from_result(); // what the library's destructor makes, and needs the memory of
                } catch (...) {
                    buffer->emptyOut();
                    return;
                }
                delete buffer;
            }};
}

void ResponseBuffer::emptyOut() {
    uint8_t* block = nullptr;
    std::size_t size = 0;
    while (in_avail() != 0 && acquire(block, size) && size != 0) {
        release(block, size);
    }
}

std::exception_ptr ResponseBuffer::exception() const {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Failure;
}

pplx::task<void> ResponseBuffer::close(std::ios_base::openmode mode, std::exception_ptr failure) {
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

pplx::task<std::size_t> ResponseBuffer::_putn(const uint8_t* data, std::size_t size) {
    try {
        if (size > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
            throw web::http::http_exception(_XPLATSTR("a chunk of the response has a negative length"));
        }
        m_Taken += size;
        if (m_Taken <= ahead || m_Admitted.is_done()) {
            return take(data, size);
        }
        const auto self = std::static_pointer_cast<ResponseBuffer>(this->shared_from_this());
        return continued(m_Admitted, [self, data, size] { return self->take(data, size); });
    } catch (...) {
        return pplx::task_from_exception<std::size_t>(std::current_exception());
    }
}

pplx::task<std::size_t> ResponseBuffer::take(const uint8_t* data, std::size_t size) {
    const std::lock_guard<std::mutex> lock(m_Handing);
    if (m_Sink) {
        m_Sink(data, size);
    }
    if (m_Counter) {
        m_Handed += size;
        m_Counter(m_Handed);
    }
    return m_Sink ? pplx::task_from_result(size) : LibraryBuffer::_putn(data, size);
}

void ResponseBuffer::handTo(Sink sink, Counter counter) {
    const std::lock_guard<std::mutex> lock(m_Handing);
    m_Handed = in_avail();
    uint8_t* block = nullptr;
    std::size_t size = 0;
    while (sink && in_avail() != 0 && acquire(block, size) && size != 0) {
        sink(block, size);
        release(block, size);
    }
    if (counter && m_Handed != 0) {
        counter(m_Handed);
    }
    m_Sink = std::move(sink);
    m_Counter = std::move(counter);
}

void ResponseBuffer::letGo() {
    Sink sink;
    Counter counter; // They go without the lock: with them the call may go.
    const std::lock_guard<std::mutex> lock(m_Handing);
    sink.swap(m_Sink);
    counter.swap(m_Counter);
}

} // namespace VarnelAPI::Forms::transport::detail
