#include "ResponseBuffer.h"

#include "Continuation.h"

#include <cpprest/http_msg.h>

#include <algorithm>
#include <limits>

namespace VarnelAPI::Forms::transport::detail {

std::exception_ptr ResponseBuffer::exception() const {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Failure;
}

pplx::task<void> ResponseBuffer::close(std::ios_base::openmode mode) {
    if ((mode & std::ios_base::in) != 0) {
        m_stream_can_read = false;
    }
    if ((mode & std::ios_base::out) != 0) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_stream_can_write = false;
    }
    serveReads();
    return pplx::task_from_result();
}

pplx::task<void> ResponseBuffer::close(std::ios_base::openmode mode, std::exception_ptr failure) {
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Failure = m_Failure ? m_Failure : failure;
    }
    return close(mode);
}

ResponseBuffer::pos_type ResponseBuffer::getpos(std::ios_base::openmode mode) const {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (mode == std::ios_base::in && can_read()) {
        return static_cast<off_type>(m_Dropped);
    }
    if (mode == std::ios_base::out && can_write()) {
        return static_cast<off_type>(m_Dropped + m_Available);
    }
    return traits::eof();
}

std::size_t ResponseBuffer::in_avail() const {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Available;
}

bool ResponseBuffer::acquire(uint8_t*& bytes, std::size_t& size) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    bytes = nullptr;
    size = 0;
    if (!can_read() || m_Blocks.empty()) {
        return can_read() && !can_write();
    }
    bytes = m_Blocks.front().data() + m_Begin;
    size = m_Blocks.front().size() - m_Begin;
    return true;
}

void ResponseBuffer::release(uint8_t* bytes, std::size_t size) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (bytes != nullptr) {
        drop(size);
    }
}

std::size_t ResponseBuffer::peek(uint8_t* target, std::size_t size) const {
    std::size_t copied = 0;
    std::size_t begin = m_Begin;
    for (const auto& block : m_Blocks) {
        const std::size_t count = std::min(size - copied, block.size() - begin);
        std::copy_n(block.data() + begin, count, target + copied);
        copied += count;
        if (copied == size) {
            break;
        }
        begin = 0;
    }
    return copied;
}

std::size_t ResponseBuffer::read(uint8_t* target, std::size_t size) {
    const std::size_t copied = peek(target, size);
    drop(copied);
    return copied;
}

void ResponseBuffer::drop(std::size_t size) {
    m_Available -= size;
    m_Dropped += size;
    m_Synced -= std::min(m_Synced, size);
    m_Begin += size;
    while (!m_Blocks.empty() && m_Begin >= m_Blocks.front().size()) {
        m_Begin -= m_Blocks.front().size();
        m_Blocks.pop_front();
    }
}

ResponseBuffer::int_type ResponseBuffer::peekByte() const {
    uint8_t byte = 0;
    return peek(&byte, 1) == 1 ? static_cast<int_type>(byte) : traits::eof();
}

ResponseBuffer::int_type ResponseBuffer::readByte() {
    const int_type byte = peekByte();
    drop(std::min<std::size_t>(m_Available, 1));
    return byte;
}

/// What `work` gives as soon as so much is there, or no more comes.
template <class Result, class Work>
pplx::task<Result> ResponseBuffer::whenThere(std::size_t size, Work work) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (isThere(size)) {
        return pplx::task_from_result<Result>(work());
    }
    const pplx::task_completion_event<Result> event;
    auto task = pplx::create_task(event, inPoolOrHere());
    m_Reads.push_back({size, [work, event](std::unique_lock<std::mutex>& held) {
                           const Result result = work();
                           held.unlock(); // The event may run what waits for it.
                           event.set(result);
                           held.lock();
                       }});
    return task;
}

void ResponseBuffer::serveReads() {
    std::unique_lock<std::mutex> lock(m_Mutex);
    while (!m_Reads.empty() && isThere(m_Reads.front().size)) {
        const Read next = std::move(m_Reads.front());
        m_Reads.pop_front();
        next.complete(lock);
    }
}

pplx::task<std::size_t> ResponseBuffer::_getn(uint8_t* bytes, std::size_t size) {
    return whenThere<std::size_t>(size, [this, bytes, size] { return read(bytes, size); });
}

pplx::task<ResponseBuffer::int_type> ResponseBuffer::_bumpc() {
    return whenThere<int_type>(1, [this] { return readByte(); });
}

pplx::task<ResponseBuffer::int_type> ResponseBuffer::_getc() {
    return whenThere<int_type>(1, [this] { return peekByte(); });
}

pplx::task<ResponseBuffer::int_type> ResponseBuffer::_nextc() {
    return whenThere<int_type>(2, [this] {
        readByte();
        return peekByte();
    });
}

std::size_t ResponseBuffer::_scopy(uint8_t* bytes, std::size_t size) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return isThere(size) ? peek(bytes, size) : static_cast<std::size_t>(traits::requires_async());
}

ResponseBuffer::int_type ResponseBuffer::_sbumpc() {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return isThere(1) ? readByte() : traits::requires_async();
}

ResponseBuffer::int_type ResponseBuffer::_sgetc() {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return isThere(1) ? peekByte() : traits::requires_async();
}

pplx::task<bool> ResponseBuffer::_sync() {
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Synced = m_Available;
    }
    serveReads();
    return pplx::task_from_result(true);
}

pplx::task<std::size_t> ResponseBuffer::_putn(const uint8_t* bytes, std::size_t size) {
    try {
        if (size > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
            throw web::http::http_exception(_XPLATSTR("a chunk of the response has a negative length"));
        }
        m_Taken += size;
        if (m_Taken <= ahead || m_Admitted.is_done()) {
            return pplx::task_from_result(take(bytes, size));
        }
        const auto self = std::static_pointer_cast<ResponseBuffer>(this->shared_from_this());
        return continued(m_Admitted, [self, bytes, size] { return self->take(bytes, size); });
    } catch (...) {
        return pplx::task_from_exception<std::size_t>(std::current_exception());
    }
}

uint8_t* ResponseBuffer::_alloc(std::size_t size) {
    m_Allocated.resize(size);
    return m_Allocated.data();
}

void ResponseBuffer::_commit(std::size_t size) {
    try {
        m_Taken += size;
        take(m_Allocated.data(), size);
    } catch (...) {
        close(std::ios_base::out, std::current_exception());
    }
    m_Allocated.clear();
}

pplx::task<ResponseBuffer::int_type> ResponseBuffer::_putc(uint8_t byte) {
    ++m_Taken;
    return pplx::task_from_result(take(&byte, 1) == 1 ? static_cast<int_type>(byte) : traits::eof());
}

std::size_t ResponseBuffer::take(const uint8_t* bytes, std::size_t size) {
    std::size_t taken = size;
    {
        const std::lock_guard<std::mutex> lock(m_Handing);
        if (m_Sink) {
            m_Sink(bytes, size);
        }
        if (m_Counter) {
            m_Handed += size;
            m_Counter(m_Handed);
        }
        if (!m_Sink) {
            taken = write(bytes, size);
        }
    }
    serveReads();
    return taken;
}

std::size_t ResponseBuffer::write(const uint8_t* bytes, std::size_t size) {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (!can_write() || size == 0) {
        return 0;
    }
    if (!can_read()) {
        return size; // Nobody will ask for it.
    }
    if (m_Blocks.empty() || m_Blocks.back().capacity() - m_Blocks.back().size() < size) {
        std::vector<uint8_t> block;
        block.reserve(std::max(size, smallestBlock));
        m_Blocks.push_back(std::move(block));
    }
    m_Blocks.back().insert(m_Blocks.back().end(), bytes, bytes + size);
    m_Available += size;
    return size;
}

void ResponseBuffer::handTo(Sink sink, Counter counter) {
    const std::lock_guard<std::mutex> lock(m_Handing);
    m_Handed = in_avail();
    uint8_t* block = nullptr;
    std::size_t size = 0;
    while (sink && acquire(block, size) && size != 0) {
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
