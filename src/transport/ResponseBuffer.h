#pragma once

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <vector>

namespace VarnelAPI::Forms::transport::detail {

/// A part of a buffer that must be there before the rest of it.
struct Admission {
    pplx::task_completion_event<void> m_Admission;
    pplx::task<void> m_Admitted{m_Admission};
};

/// Holds what came of a response until it is read; who reads more than there is waits for it, or for the end. It is as
/// the HTTP library's own, which needs memory to be destroyed, and ends the process where there is none.
///
/// It is written to in threads that catch nothing, and it is asked to write almost 2^64 bytes when the service sends a
/// chunk of negative length. Until somebody has looked at the response, and may have discarded its body, little of it
/// is taken: the transfer waits.
class ResponseBuffer final : private Admission, public concurrency::streams::details::streambuf_state_manager<uint8_t> {
public:
    ResponseBuffer() : streambuf_state_manager(std::ios_base::in | std::ios_base::out) {}

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

    // The base's failure has no lock, though a transfer fails in one thread while another one reads.
    std::exception_ptr exception() const override;
    pplx::task<void> close(std::ios_base::openmode mode) override;
    pplx::task<void> close(std::ios_base::openmode mode, std::exception_ptr failure) override;

    bool can_seek() const override { return false; }
    bool has_size() const override { return false; }
    std::size_t buffer_size(std::ios_base::openmode) const override { return 0; }
    void set_buffer_size(std::size_t, std::ios_base::openmode) override {}
    pos_type seekpos(pos_type, std::ios_base::openmode) override { return traits::eof(); }
    pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override { return traits::eof(); }
    pos_type getpos(std::ios_base::openmode mode) const override;
    std::size_t in_avail() const override;
    bool acquire(uint8_t*& bytes, std::size_t& size) override;
    void release(uint8_t* bytes, std::size_t size) override;

private:
    static constexpr std::size_t ahead = 65536, smallestBlock = 512;

    pplx::task<std::size_t> _putn(const uint8_t* bytes, std::size_t size) override;
    pplx::task<int_type> _putc(uint8_t byte) override;
    // The HTTP library on Windows undoes a compression in what these give, and knows no other way: there is always
    // memory, also for what nobody wants any more, and a failure is kept for who reads, since nothing catches it there.
    uint8_t* _alloc(std::size_t size) override;
    void _commit(std::size_t size) override;
    pplx::task<bool> _sync() override;

    pplx::task<std::size_t> _getn(uint8_t* bytes, std::size_t size) override;
    std::size_t _scopy(uint8_t* bytes, std::size_t size) override;
    pplx::task<int_type> _bumpc() override;
    pplx::task<int_type> _getc() override;
    pplx::task<int_type> _nextc() override;
    pplx::task<int_type> _ungetc() override { return pplx::task_from_result<int_type>(traits::eof()); }
    int_type _sbumpc() override;
    int_type _sgetc() override;

    std::size_t take(const uint8_t* bytes, std::size_t size);
    std::size_t write(const uint8_t* bytes, std::size_t size);
    void serveReads();
    template <class Result, class Work>
    pplx::task<Result> whenThere(std::size_t size, Work work);

    // With the lock held:
    bool isThere(std::size_t size) const { return m_Synced != 0 || m_Available >= size || !can_write(); }
    std::size_t peek(uint8_t* target, std::size_t size) const;
    std::size_t read(uint8_t* target, std::size_t size);
    void drop(std::size_t size);
    int_type peekByte() const;
    int_type readByte();

    mutable std::mutex m_Mutex;
    std::exception_ptr m_Failure;
    /// None is empty; of the first, this much was read. They never grow beyond what they reserved: who reads may have a
    /// pointer into them.
    std::list<std::vector<uint8_t>> m_Blocks;
    std::size_t m_Begin = 0;
    std::size_t m_Available = 0;
    /// How much may be read by who asked for more: what was there when the stream was flushed.
    std::size_t m_Synced = 0;
    uint64_t m_Dropped = 0;
    struct Read {
        std::size_t size;
        std::function<void(std::unique_lock<std::mutex>&)> complete;
    };
    std::list<Read> m_Reads;
    /// Of the one who writes, without the lock.
    std::vector<uint8_t> m_Allocated;
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
