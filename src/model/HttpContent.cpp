#include <VarnelAPI/Forms/model/HttpContent.h>

#include "Conversion.h"
#include "Streams.h"

namespace VarnelAPI::Forms::model {

HttpContent::HttpContent() = default;
HttpContent::HttpContent(const HttpContent&) = default;
HttpContent::HttpContent(HttpContent&&) noexcept = default;
HttpContent& HttpContent::operator=(const HttpContent&) = default;
HttpContent& HttpContent::operator=(HttpContent&&) noexcept = default;
HttpContent::~HttpContent() = default;

utility::string_t HttpContent::getContentDisposition() const {
    return m_ContentDisposition;
}
void HttpContent::setContentDisposition(const utility::string_t& value) {
    m_ContentDisposition = value;
}

utility::string_t HttpContent::getName() const {
    return m_Name;
}
void HttpContent::setName(const utility::string_t& value) {
    m_Name = value;
}

utility::string_t HttpContent::getFileName() const {
    return m_FileName;
}
void HttpContent::setFileName(const utility::string_t& value) {
    m_FileName = value;
}

utility::string_t HttpContent::getContentType() const {
    return m_ContentType;
}
void HttpContent::setContentType(const utility::string_t& value) {
    m_ContentType = value;
}

std::shared_ptr<std::istream> HttpContent::getData() const {
    return m_Data;
}
void HttpContent::setData(std::shared_ptr<std::istream> value) {
    m_Data = std::move(value);
}

void HttpContent::writeTo(std::ostream& stream) {
    // By the getter, which a class of the caller's own may have overridden.
    const auto data = getData();
    detail::copyAll(*detail::required(data, "the content's data"), stream);
}

} // namespace VarnelAPI::Forms::model
