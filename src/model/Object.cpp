#include <VarnelAPI/Forms/model/Object.h>

#include "Conversion.h"
#include "MediaTypes.h"

namespace VarnelAPI::Forms::model {

namespace {
utility::string_t partName(const utility::string_t& namePrefix) {
    return detail::partPrefix(namePrefix) + _XPLATSTR("object");
}
} // namespace

Object::Object() : m_object(web::json::value::object()) {}

void Object::validate() {}

web::json::value Object::toJson() const {
    detail::requireFinite(m_object);
    return m_object;
}

void Object::fromJson(web::json::value& json) {
    if (json.is_object()) {
        m_object = json;
    }
}

void Object::toMultipart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) const {
    detail::required(multipart, "the multipart body")
        ->add(toHttpContent(partName(namePrefix), toJson(), detail::jsonType));
}

void Object::fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) {
    const utility::string_t name = partName(namePrefix);
    const auto part = detail::required(multipart, "the multipart body")->getContent(name);
    if (!part) {
        throw std::invalid_argument("the multipart body has no part \"" + utility::conversions::to_utf8string(name) +
                                    '"');
    }
    m_object = valueFromHttpContent(part);
}

web::json::value Object::getValue(const utility::string_t& key) const {
    return m_object.at(key);
}

void Object::setValue(const utility::string_t& key, const web::json::value& value) {
    m_object[key] = value;
}

} // namespace VarnelAPI::Forms::model
