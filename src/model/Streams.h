#pragma once

#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>

namespace VarnelAPI::Forms::model::detail {

/// A readable, seekable stream over bytes that it was given to own. A string stream would copy them.
std::shared_ptr<std::istream> streamOf(std::string bytes);

/// @throws std::invalid_argument if the stream has no buffer.
std::streambuf& bufferOf(std::istream& stream);

/// All bytes of a stream, from its start, whatever its state. A stream that can't seek is read from where it stands.
std::string readAll(std::istream& stream);

/// The buffer of a stream, at its start, whatever the stream's state.
/// @throws std::invalid_argument if the stream has no buffer.
std::streambuf& rewound(std::istream& stream);

/// Reads up to `size` bytes, and at least one: 0 at the end, or where no more can be read.
std::size_t readSome(std::streambuf& buffer, char* bytes, std::size_t size);

/// Copies all bytes of a stream, from its start to its end or to where it can't be read, into `target`.
void copyAll(std::istream& source, std::ostream& target);

/// The number of bytes in a stream, or 0 if it can't tell or can't be read.
std::size_t sizeOf(std::istream& stream);

/// Writes to an empty string what is written to it, like the buffer of a string stream: who seeks back writes over what
/// is there, and the text keeps its length.
class StringSink final : public std::streambuf {
public:
    explicit StringSink(std::string& target) : m_Target(target) {}

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* data, std::streamsize size) override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

private:
    std::string& m_Target;
    std::size_t m_Position = 0;
};

} // namespace VarnelAPI::Forms::model::detail
