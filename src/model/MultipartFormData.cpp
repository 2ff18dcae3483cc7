#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_generators.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <VarnelAPI/Forms/model/MultipartFormData.h>

#include "Conversion.h"
#include "Streams.h"

#include <algorithm>
#include <istream>
#include <ostream>

namespace VarnelAPI::Forms::model {

using utility::conversions::to_utf8string;

namespace {

utility::string_t randomBoundary() {
    utility::ostringstream_t text;
    text.exceptions(std::ios_base::badbit); // or a boundary would be cut off where memory runs out
    text.imbue(std::locale::classic());
    text << boost::uuids::random_generator()();
    return text.str();
}

/// One text of a part's header lines, as it goes out.
std::string headerText(const HttpContent& part, const utility::string_t& text, const char* what) {
    detail::refuseControlCharacters(text, std::string("the ") + what + " of the part \"" +
                                              to_utf8string(part.getName()) + '"');
    return to_utf8string(text);
}

std::string headerLines(const HttpContent& part) {
    std::string header = "Content-Disposition: " + headerText(part, part.getContentDisposition(), "disposition");
    if (const std::string name = headerText(part, part.getName(), "name"); !name.empty()) {
        header += "; name=\"" + name + '"';
    }
    if (const std::string fileName = headerText(part, part.getFileName(), "file name"); !fileName.empty()) {
        header += "; filename=\"" + fileName + '"';
    }
    header += "\r\n";
    if (const std::string type = headerText(part, part.getContentType(), "content type"); !type.empty()) {
        header += "Content-Type: " + type + "\r\n";
    }
    return header + "\r\n";
}

/// Texts and streams, one after the other.
class PartsBuffer final : public std::streambuf {
public:
    void add(std::string text) { m_Parts.push_back({std::move(text), nullptr, 0}); }
    void add(std::shared_ptr<std::istream> data, std::size_t size) { m_Parts.push_back({{}, std::move(data), size}); }

protected:
    int_type underflow() override {
        while (m_Next < m_Parts.size()) {
            Part& part = m_Parts[m_Next];
            m_Before += static_cast<std::streamoff>(egptr() - eback());
            if (!part.data) {
                setg(part.text.data(), part.text.data(), part.text.data() + part.text.size());
                ++m_Next;
                return traits_type::to_int_type(*gptr());
            }
            if (m_Left == 0) {
                m_Left = part.size;
                m_Buffer = &detail::rewound(*part.data);
            }
            m_Block.resize(std::min(m_Left, blockSize));
            const std::size_t size = m_Block.empty() ? 0 : detail::readSome(*m_Buffer, m_Block.data(), m_Block.size());
            m_Left -= size;
            if (size == 0 && m_Left != 0) {
                m_Next = m_Parts.size();
            } else if (m_Left == 0) {
                ++m_Next;
            }
            setg(m_Block.data(), m_Block.data(), m_Block.data() + size);
            if (size != 0) {
                return traits_type::to_int_type(*gptr());
            }
        }
        return traits_type::eof();
    }
    pos_type seekpos(pos_type position, std::ios_base::openmode) override {
        return position == pos_type(0) ? rewind() : pos_type(off_type(-1));
    }
    /// To its start, and to tell where it stands.
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode) override {
        if (offset == 0 && from == std::ios_base::beg) {
            return rewind();
        }
        return offset == 0 && from == std::ios_base::cur ? pos_type(m_Before + (gptr() - eback()))
                                                         : pos_type(off_type(-1));
    }

private:
    static constexpr std::size_t blockSize = 65536;

    struct Part {
        std::string text;
        std::shared_ptr<std::istream> data;
        std::size_t size;
    };

    pos_type rewind() {
        m_Next = 0;
        m_Left = 0;
        m_Before = 0;
        setg(nullptr, nullptr, nullptr);
        return 0;
    }

    std::vector<Part> m_Parts;
    std::size_t m_Next = 0;
    std::size_t m_Left = 0;
    std::streambuf* m_Buffer = nullptr;
    std::vector<char> m_Block;
    std::streamoff m_Before = 0;
};

class PartsStream final : public std::istream {
public:
    PartsStream() : std::istream(nullptr) { rdbuf(&buffer); }
    PartsBuffer buffer;
};

} // namespace

MultipartFormData::MultipartFormData() : MultipartFormData(randomBoundary()) {}

MultipartFormData::MultipartFormData(const utility::string_t& boundary) : m_Boundary(boundary) {}

MultipartFormData::~MultipartFormData() = default;

void MultipartFormData::add(std::shared_ptr<HttpContent> content) {
    utility::string_t name = detail::required(content, "the content of a multipart body")->getName();
    m_Contents.push_back(content);
    m_ContentLookup[std::move(name)] = std::move(content);
}

utility::string_t MultipartFormData::getBoundary() {
    return m_Boundary;
}

std::shared_ptr<HttpContent> MultipartFormData::getContent(const utility::string_t& name) const {
    const auto found = m_ContentLookup.find(name);
    return found == m_ContentLookup.end() ? nullptr : found->second;
}

bool MultipartFormData::hasContent(const utility::string_t& name) const {
    return m_ContentLookup.count(name) != 0;
}

std::vector<std::string> MultipartFormData::partHeaders() const {
    std::vector<std::string> headers;
    headers.reserve(m_Contents.size());
    const std::string dashLine = "--" + to_utf8string(m_Boundary) + "\r\n";
    for (const auto& content : m_Contents) {
        detail::requiredData(content);
        headers.push_back((headers.empty() ? "" : "\r\n") + dashLine + headerLines(*content));
    }
    return headers;
}

std::size_t MultipartFormData::size() const {
    std::size_t total = closingLine().size();
    for (const auto& header : partHeaders()) {
        total += header.size();
    }
    for (const auto& content : m_Contents) {
        total += detail::sizeOf(*content->getData());
    }
    return total;
}

std::shared_ptr<std::istream> MultipartFormData::asStream() const {
    auto stream = std::make_shared<PartsStream>();
    const auto headers = partHeaders();
    for (std::size_t i = 0; i < m_Contents.size(); ++i) {
        const auto data = m_Contents[i]->getData();
        if (detail::bufferOf(*data).pubseekoff(0, std::ios_base::end, std::ios_base::in) < 0) {
            throw std::invalid_argument("the data of the part \"" + to_utf8string(m_Contents[i]->getName()) +
                                        "\" can't tell its size");
        }
        stream->buffer.add(headers[i]);
        stream->buffer.add(data, detail::sizeOf(*data));
    }
    stream->buffer.add(closingLine());
    return stream;
}

std::string MultipartFormData::closingLine() const {
    return "\r\n--" + to_utf8string(m_Boundary) + "--\r\n";
}

void MultipartFormData::writeTo(std::ostream& stream) {
    const auto headers = partHeaders();
    for (std::size_t i = 0; i < m_Contents.size(); ++i) {
        stream << headers[i];
        detail::copyAll(*m_Contents[i]->getData(), stream);
    }
    stream << closingLine();
}

} // namespace VarnelAPI::Forms::model
