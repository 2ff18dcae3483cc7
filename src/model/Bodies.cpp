#include <VarnelAPI/Forms/model/BinaryBody.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>
#include <VarnelAPI/Forms/model/JsonBody.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace VarnelAPI::Forms::model {

IHttpBody::~IHttpBody() = default;

JsonBody::JsonBody(const web::json::value& json) : m_Json(json) {}

JsonBody::JsonBody(web::json::value&& json) : m_Json(std::move(json)) {}

void JsonBody::writeTo(std::ostream& stream) {
    // Serialising into a text and writing that at once takes half the time of serialising into the stream.
    const std::string text = utility::conversions::to_utf8string(m_Json.serialize());
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

BinaryBody::BinaryBody(const char* data, int64_t size) : m_Size(size) {
    if (size < 0 || (data == nullptr && size != 0)) {
        throw std::invalid_argument("a binary body needs its bytes and a size of 0 or more");
    }
    m_Data.reset(new char[static_cast<std::size_t>(size)]);
    std::copy_n(data, size, m_Data.get());
}

BinaryBody::~BinaryBody() = default;

void BinaryBody::writeTo(std::ostream& stream) {
    stream.write(m_Data.get(), static_cast<std::streamsize>(m_Size));
}

} // namespace VarnelAPI::Forms::model
