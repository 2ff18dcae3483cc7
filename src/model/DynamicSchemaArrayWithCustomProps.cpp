#include <VarnelAPI/Forms/model/DynamicSchemaArrayWithCustomProps.h>

#include "Conversion.h"

#include <cassert>

namespace VarnelAPI::Forms::model {

namespace {

// What an element of each list is in JSON, and in a part of a multipart body. Bools are kept, and sent in parts, as
// the numbers 1 and 0.
web::json::value elementToJson(uint8_t boolean) {
    return ModelBase::toJson(boolean != 0);
}
template <class Element>
web::json::value elementToJson(const Element& element) {
    return ModelBase::toJson(element);
}
web::json::value elementToJson(const DynamicSchemaClassWithCustomProps& object) {
    return object.toJson();
}

template <class Element>
void addPart(const std::shared_ptr<MultipartFormData>& multipart, const utility::string_t& name,
             const Element& element) {
    multipart->add(ModelBase::toHttpContent(name, element));
}
void addPart(const std::shared_ptr<MultipartFormData>& multipart, const utility::string_t& name, uint8_t boolean) {
    addPart(multipart, name, int32_t{boolean});
}
void addPart(const std::shared_ptr<MultipartFormData>& multipart, const utility::string_t& name,
             const DynamicSchemaClassWithCustomProps& object) {
    object.toMultipart(multipart, name);
}

template <class Element>
Element& elementAt(std::vector<Element>& elements, int i) {
    assert(i >= 0 && static_cast<std::size_t>(i) < elements.size());
    return elements[static_cast<std::size_t>(i)];
}

} // namespace

template <class Self, class Use>
void DynamicSchemaArrayWithCustomProps::withElements(Self& self, Use use) {
    switch (self.m_Type) {
    case Type::None:
        break;
    case Type::Integer:
        use(_XPLATSTR("int"), self.m_Integers);
        break;
    case Type::Double:
        use(_XPLATSTR("double"), self.m_Doubles);
        break;
    case Type::Boolean:
        use(_XPLATSTR("bool"), self.m_Booleans);
        break;
    case Type::String:
        use(_XPLATSTR("str"), self.m_Strings);
        break;
    case Type::Object:
        use(_XPLATSTR("obj"), self.m_Objects);
        break;
    }
}

DynamicSchemaArrayWithCustomProps::DynamicSchemaArrayWithCustomProps() = default;

DynamicSchemaArrayWithCustomProps::DynamicSchemaArrayWithCustomProps(web::json::value& val) {
    DynamicSchemaArrayWithCustomProps::fromJson(val);
}

void DynamicSchemaArrayWithCustomProps::validate() {}

web::json::value DynamicSchemaArrayWithCustomProps::toJson() const {
    std::vector<web::json::value> json;
    withElements(*this, [&json](const auto*, const auto& elements) {
        json.reserve(elements.size());
        for (const auto& element : elements) {
            json.push_back(elementToJson(element));
        }
    });
    return web::json::value::array(std::move(json));
}

void DynamicSchemaArrayWithCustomProps::fromJson(web::json::value& val) {
    setTypeForArray(val);
    if (!val.is_array()) {
        return;
    }
    for (auto& element : val.as_array()) {
        if (m_Type == Type::Integer && element.is_integer()) {
            m_Integers.push_back(int32_tFromJson(element));
        } else if (m_Type == Type::Double && element.is_double()) {
            m_Doubles.push_back(doubleFromJson(element));
        } else if (m_Type == Type::Boolean && element.is_boolean()) {
            m_Booleans.push_back(element.as_bool() ? 1 : 0);
        } else if (m_Type == Type::String && element.is_string()) {
            m_Strings.push_back(element.as_string());
        } else if (m_Type == Type::Object && element.is_object()) {
            m_Objects.emplace_back(element);
        }
    }
}

void DynamicSchemaArrayWithCustomProps::toMultipart(std::shared_ptr<MultipartFormData> multipart,
                                                    const utility::string_t& namePrefix) const {
    const utility::string_t prefix = detail::partPrefix(namePrefix);
    detail::required(multipart, "the multipart body");
    withElements(*this, [&](const auto* label, const auto& elements) {
        for (std::size_t i = 0; i < elements.size(); ++i) {
            utility::string_t name = prefix + label + _XPLATSTR("[");
            name.append(utility::conversions::to_string_t(std::to_string(i))).append(_XPLATSTR("]"));
            addPart(multipart, name, elements[i]);
        }
    });
}

void DynamicSchemaArrayWithCustomProps::fromMultiPart(std::shared_ptr<MultipartFormData> multipart,
                                                      const utility::string_t&) {
    detail::required(multipart, "the multipart body");
}

void DynamicSchemaArrayWithCustomProps::setTypeForArray(const web::json::value& arr) {
    setTypeForVal(arr.is_array() && arr.size() != 0 ? arr.as_array().at(0) : web::json::value::null());
}

void DynamicSchemaArrayWithCustomProps::setTypeForVal(const web::json::value& v) {
    m_Type = v.is_integer()   ? Type::Integer
             : v.is_double()  ? Type::Double
             : v.is_boolean() ? Type::Boolean
             : v.is_string()  ? Type::String
             : v.is_object()  ? Type::Object
                              : Type::None;
}

int DynamicSchemaArrayWithCustomProps::size() const {
    int size = 0;
    withElements(*this, [&size](const auto*, const auto& elements) { size = static_cast<int>(elements.size()); });
    return size;
}

void DynamicSchemaArrayWithCustomProps::remove(int i) {
    withElements(*this, [i](const auto*, auto& elements) {
        if (i >= 0 && static_cast<std::size_t>(i) < elements.size()) {
            elements.erase(elements.begin() + i);
        }
    });
}

int& DynamicSchemaArrayWithCustomProps::getInt(int i) {
    return elementAt(m_Integers, i);
}

double& DynamicSchemaArrayWithCustomProps::getDouble(int i) {
    return elementAt(m_Doubles, i);
}

uint8_t& DynamicSchemaArrayWithCustomProps::getBool(int i) {
    return elementAt(m_Booleans, i);
}

utility::string_t& DynamicSchemaArrayWithCustomProps::getStr(int i) {
    return elementAt(m_Strings, i);
}

DynamicSchemaClassWithCustomProps& DynamicSchemaArrayWithCustomProps::getObj(int i) {
    return elementAt(m_Objects, i);
}

void DynamicSchemaArrayWithCustomProps::setInt(int i, int value) {
    getInt(i) = value;
}

void DynamicSchemaArrayWithCustomProps::setDouble(int i, double value) {
    getDouble(i) = value;
}

void DynamicSchemaArrayWithCustomProps::setBool(int i, bool value) {
    getBool(i) = value ? 1 : 0;
}

void DynamicSchemaArrayWithCustomProps::setStr(int i, const utility::string_t& value) {
    getStr(i) = value;
}

void DynamicSchemaArrayWithCustomProps::setObj(int i, const DynamicSchemaClassWithCustomProps& value) {
    getObj(i) = value;
}

} // namespace VarnelAPI::Forms::model
