#include "BodySource.h"

#include "model/Streams.h"

#include <algorithm>

namespace VarnelAPI::Forms::transport::detail {

namespace {

using Manager = concurrency::streams::details::streambuf_state_manager<uint8_t>;

/// The HTTP library has such a buffer, but that one doesn't keep the stream, and lets what it throws through to threads
/// that catch nothing.
class BodySource final : public Manager {
public:
    explicit BodySource(std::shared_ptr<std::istream> stream)
        : Manager(std::ios_base::in), m_Stream(std::move(stream)), m_Buffer(model::detail::rewound(*m_Stream)) {}

    bool can_seek() const override { return is_open(); }
    bool has_size() const override { return false; }
    std::size_t in_avail() const override {
        return static_cast<std::size_t>(std::max<std::streamsize>(0, m_Buffer.in_avail()));
    }
    std::size_t buffer_size(std::ios_base::openmode) const override { return 0; }
    void set_buffer_size(std::size_t, std::ios_base::openmode) override {}
    bool acquire(uint8_t*&, std::size_t&) override { return false; }
    void release(uint8_t*, std::size_t) override {}
    pos_type getpos(std::ios_base::openmode) const override {
        return m_Buffer.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
    }
    pos_type seekpos(pos_type position, std::ios_base::openmode) override {
        return m_Buffer.pubseekpos(position, std::ios_base::in);
    }
    pos_type seekoff(off_type offset, std::ios_base::seekdir way, std::ios_base::openmode) override {
        return m_Buffer.pubseekoff(offset, way, std::ios_base::in);
    }

protected:
    pplx::task<std::size_t> _getn(uint8_t* bytes, std::size_t size) override {
        return guarded<std::size_t>([&] { return _sgetn(bytes, size); });
    }
    std::size_t _sgetn(uint8_t* bytes, std::size_t size) {
        return static_cast<std::size_t>(
            m_Buffer.sgetn(reinterpret_cast<char*>(bytes), static_cast<std::streamsize>(size)));
    }
    std::size_t _scopy(uint8_t* bytes, std::size_t size) override {
        const pos_type place = getpos(std::ios_base::in);
        if (place == pos_type(off_type(-1))) {
            return static_cast<std::size_t>(-1);
        }
        const std::size_t copied = _sgetn(bytes, size);
        seekpos(place, std::ios_base::in);
        return copied;
    }
    pplx::task<int_type> _bumpc() override {
        return guarded<int_type>([this] { return m_Buffer.sbumpc(); });
    }
    pplx::task<int_type> _getc() override {
        return guarded<int_type>([this] { return m_Buffer.sgetc(); });
    }
    pplx::task<int_type> _nextc() override {
        return guarded<int_type>([this] { return m_Buffer.snextc(); });
    }
    pplx::task<int_type> _ungetc() override {
        return guarded<int_type>([this] { return m_Buffer.sungetc(); });
    }
    int_type _sbumpc() override { return m_Buffer.sbumpc(); }
    int_type _sgetc() override { return m_Buffer.sgetc(); }
    pplx::task<int_type> _putc(uint8_t) override { return pplx::task_from_result(traits::eof()); }
    pplx::task<std::size_t> _putn(const uint8_t*, std::size_t) override {
        return pplx::task_from_result(std::size_t{0});
    }
    uint8_t* _alloc(std::size_t) override { return nullptr; }
    void _commit(std::size_t) override {}
    pplx::task<bool> _sync() override { return pplx::task_from_result(true); }

private:
    template <class Result, class Work>
    static pplx::task<Result> guarded(Work work) {
        try {
            return pplx::task_from_result<Result>(work());
        } catch (...) {
            return pplx::task_from_exception<Result>(std::current_exception());
        }
    }

    std::shared_ptr<std::istream> m_Stream;
    std::streambuf& m_Buffer;
};

} // namespace

concurrency::streams::istream bodyOf(std::shared_ptr<std::istream> stream) {
    class Buffer final : public concurrency::streams::streambuf<uint8_t> {
    public:
        explicit Buffer(const std::shared_ptr<BodySource>& source) : streambuf(source) {}
    };
    return Buffer(std::make_shared<BodySource>(std::move(stream))).create_istream();
}

} // namespace VarnelAPI::Forms::transport::detail
