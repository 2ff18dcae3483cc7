#include "Streams.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace VarnelAPI::Forms::model::detail {

namespace {

/// Where a seek in `size` bytes leads to from `position`; -1 if that is not in them, or not at their end.
std::streamoff sought(std::streamoff position, std::streamoff size, std::streamoff offset,
                      std::ios_base::seekdir from) {
    const std::streamoff base = from == std::ios_base::beg ? 0 : from == std::ios_base::cur ? position : size;
    // Compared so that nothing overflows, however far the seek goes.
    return offset < -base || offset > size - base ? -1 : base + offset;
}

/// The buffer of a stream that only reads, and seeks within what it owns.
class OwnedBytes final : public std::streambuf {
public:
    explicit OwnedBytes(std::string bytes) : m_Bytes(std::move(bytes)) {
        setg(m_Bytes.data(), m_Bytes.data(), m_Bytes.data() + m_Bytes.size());
    }

protected:
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override {
        const off_type target = sought(gptr() - eback(), egptr() - eback(), offset, from);
        if ((which & std::ios_base::in) == 0 || target < 0) {
            return pos_type(off_type(-1));
        }
        setg(eback(), eback() + target, egptr());
        return pos_type(target);
    }
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override {
        return seekoff(off_type(position), std::ios_base::beg, which);
    }

private:
    std::string m_Bytes;
};

class OwnedBytesStream final : public std::istream {
public:
    explicit OwnedBytesStream(std::string bytes) : std::istream(nullptr), m_Buffer(std::move(bytes)) {
        rdbuf(&m_Buffer);
    }

private:
    OwnedBytes m_Buffer;
};

} // namespace

std::streambuf& bufferOf(std::istream& stream) {
    if (stream.rdbuf() == nullptr) {
        throw std::invalid_argument("the stream has no buffer");
    }
    return *stream.rdbuf();
}

std::shared_ptr<std::istream> streamOf(std::string bytes) {
    return std::make_shared<OwnedBytesStream>(std::move(bytes));
}

std::streambuf& rewound(std::istream& stream) {
    // By the buffer itself: the stream may stand at its end, or be set to throw.
    std::streambuf& buffer = bufferOf(stream);
    buffer.pubseekoff(0, std::ios_base::beg, std::ios_base::in);
    return buffer;
}

std::size_t readSome(std::streambuf& buffer, char* bytes, std::size_t size) {
    try {
        // No more at once than what is there: a read that fails would take with it what came before.
        const bool isAtEnd = buffer.sgetc() == std::char_traits<char>::eof();
        const auto there = std::clamp<std::streamsize>(buffer.in_avail(), 1, static_cast<std::streamsize>(size));
        return isAtEnd ? 0 : static_cast<std::size_t>(buffer.sgetn(bytes, there));
    } catch (...) {
        return 0; // An error ends the data.
    }
}

std::size_t sizeOf(std::istream& stream) {
    const std::streamoff end = bufferOf(stream).pubseekoff(0, std::ios_base::end, std::ios_base::in);
    // A directory opens like a file, and claims to be as large as can be.
    char first = 0;
    return end > 0 && readSome(rewound(stream), &first, 1) != 0 ? static_cast<std::size_t>(end) : 0;
}

std::string readAll(std::istream& stream) {
    std::string bytes;
    bytes.reserve(sizeOf(stream));
    StringSink sink(bytes);
    std::ostream target(&sink);
    target.exceptions(std::ios_base::badbit);
    copyAll(stream, target);
    return bytes;
}

void copyAll(std::istream& source, std::ostream& target) {
    std::streambuf& buffer = rewound(source);
    std::array<char, 16384> block; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    std::size_t size = 0;
    while ((size = readSome(buffer, block.data(), block.size())) != 0) {
        target.write(block.data(), static_cast<std::streamsize>(size));
    }
}

StringSink::int_type StringSink::overflow(int_type character) {
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        const char written = traits_type::to_char_type(character);
        xsputn(&written, 1);
    }
    return traits_type::not_eof(character);
}

std::streamsize StringSink::xsputn(const char* data, std::streamsize size) {
    // At the end this appends.
    m_Target.replace(m_Position, static_cast<std::size_t>(size), data, static_cast<std::size_t>(size));
    m_Position += static_cast<std::size_t>(size);
    return size;
}

StringSink::pos_type StringSink::seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) {
    const off_type target =
        sought(static_cast<off_type>(m_Position), static_cast<off_type>(m_Target.size()), offset, from);
    if ((which & std::ios_base::out) == 0 || target < 0) {
        return pos_type(off_type(-1));
    }
    m_Position = static_cast<std::size_t>(target);
    return pos_type(target);
}

StringSink::pos_type StringSink::seekpos(pos_type position, std::ios_base::openmode which) {
    return seekoff(off_type(position), std::ios_base::beg, which);
}

} // namespace VarnelAPI::Forms::model::detail
