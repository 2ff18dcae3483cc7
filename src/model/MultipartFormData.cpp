#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_generators.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <VarnelAPI/Forms/model/MultipartFormData.h>

#include "Conversion.h"
#include "Streams.h"

#include <cpprest/asyncrt_utils.h>

#include <ostream>

namespace VarnelAPI::Forms::model {

using utility::conversions::to_utf8string;

namespace {

utility::string_t randomBoundary() {
    utility::ostringstream_t text;
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
    std::size_t total = to_utf8string(m_Boundary).size() + 8;
    for (const auto& header : partHeaders()) {
        total += header.size();
    }
    for (const auto& content : m_Contents) {
        total += detail::sizeOf(*content->getData());
    }
    return total;
}

void MultipartFormData::writeTo(std::ostream& stream) {
    const auto headers = partHeaders();
    for (std::size_t i = 0; i < m_Contents.size(); ++i) {
        stream << headers[i];
        detail::copyAll(*m_Contents[i]->getData(), stream);
    }
    stream << "\r\n--" << to_utf8string(m_Boundary) << "--\r\n";
}

} // namespace VarnelAPI::Forms::model
