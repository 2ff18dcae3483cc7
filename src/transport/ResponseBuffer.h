#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

#include <functional>
#include <mutex>

namespace VarnelAPI::Forms::transport::detail {

using LibraryBuffer = concurrency::streams::details::basic_producer_consumer_buffer<uint8_t>;

/// A part of a buffer that must be there before the rest of it.
struct Admission {
    pplx::task_completion_event<void> m_Admission;
    pplx::task<void> m_Admitted{m_Admission};
};

/// The buffer that the HTTP library itself would use. It is written to in threads that catch nothing, and it is asked
/// to write almost 2^64 bytes when the service sends a chunk of negative length. Until somebody has looked at the
/// response, and may have discarded its body, little of it is taken: the transfer waits.
class ResponseBuffer final : private Admission, public LibraryBuffer {
public:
    /// The way to make one: its destructor, which is the HTTP library's, needs memory. If there is none when the last
    /// pointer goes, the buffer is emptied and never freed.
    static std::shared_ptr<ResponseBuffer> make();

    using Sink = std::function<void(const uint8_t*, std::size_t)>;
    using Counter = std::function<void(uint64_t)>;

    void admitAll() { m_Admission.set(); }

    /// Tells `counter` how many bytes came so far, whenever some did; and gives them to `sink`, if that is any, instead
    /// of keeping them. Those that were there before come first. What the two throw goes to who calls, or who writes.
    void handTo(Sink sink, Counter counter);

    /// Forgets both, when no more comes: they hold the call, whose outcome is the response that holds this buffer.
    void letGo();

    /// How many bytes came so far.
    uint64_t taken() const { return m_Taken; }

    // The library's own failure has no lock, though a transfer fails in one thread while another one reads.
    std::exception_ptr exception() const override;
    using LibraryBuffer::close;
    pplx::task<void> close(std::ios_base::openmode mode, std::exception_ptr failure) override;

private:
    static constexpr std::size_t ahead = 65536;

    ResponseBuffer() : LibraryBuffer(512) {}
    void emptyOut();

    pplx::task<std::size_t> _putn(const uint8_t* data, std::size_t size) override;
    pplx::task<std::size_t> take(const uint8_t* data, std::size_t size);

    mutable std::mutex m_Mutex;
    std::exception_ptr m_Failure;
    std::atomic<uint64_t> m_Taken{0};
    /// Held while a piece is handed over, so that no piece overtakes another one. Both functions may end the call, and
    /// so close this buffer.
    std::mutex m_Handing;
    Sink m_Sink;
    Counter m_Counter;
    uint64_t m_Handed = 0;
};

class ResponseBody final : public concurrency::streams::streambuf<uint8_t> {
public:
    explicit ResponseBody(const std::shared_ptr<ResponseBuffer>& buffer) : streambuf(buffer) {}
    explicit ResponseBody(const concurrency::streams::streambuf<uint8_t>& buffer) : streambuf(buffer) {}

    bool isSameAs(const ResponseBody& other) const { return get_base() == other.get_base(); }
};

} // namespace VarnelAPI::Forms::transport::detail
