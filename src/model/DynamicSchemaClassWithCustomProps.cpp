#include <VarnelAPI/Forms/model/DynamicSchemaClassWithCustomProps.h>

#include "Conversion.h"

namespace VarnelAPI::Forms::model {

namespace {

template <class Table, class Value>
bool getFrom(const Table& table, Value& out, const utility::string_t& name) {
    const auto found = table.find(name);
    if (found == table.end()) {
        return false;
    }
    out = found->second;
    return true;
}

} // namespace

DynamicSchemaClassWithCustomProps::DynamicSchemaClassWithCustomProps() = default;

DynamicSchemaClassWithCustomProps::DynamicSchemaClassWithCustomProps(web::json::value& val) {
    DynamicSchemaClassWithCustomProps::fromJson(val);
}

void DynamicSchemaClassWithCustomProps::validate() {}

web::json::value DynamicSchemaClassWithCustomProps::toJson() const {
    std::vector<std::pair<utility::string_t, web::json::value>> fields;
    std::unordered_map<utility::string_t, std::size_t> places;
    const auto write = [&](const auto& table) {
        for (const auto& [name, value] : table) {
            const auto [place, isNew] = places.emplace(name, fields.size());
            if (isNew) {
                fields.emplace_back(name, toJson(value));
            } else {
                fields[place->second].second = toJson(value);
            }
        }
    };
    write(m_Strings);
    write(m_Integers);
    write(m_Doubles);
    write(m_Booleans);
    return web::json::value::object(std::move(fields), true);
}

void DynamicSchemaClassWithCustomProps::fromJson(web::json::value& val) {
    if (!val.is_object()) {
        return;
    }
    for (auto& [name, value] : val.as_object()) {
        if (value.is_string()) {
            m_Strings.insert_or_assign(name, value.as_string());
        } else if (value.is_integer()) {
            m_Integers.insert_or_assign(name, int32_tFromJson(value));
        } else if (value.is_double()) {
            m_Doubles.insert_or_assign(name, doubleFromJson(value));
        } else if (value.is_boolean()) {
            m_Booleans.insert_or_assign(name, value.as_bool());
        }
    }
}

void DynamicSchemaClassWithCustomProps::toMultipart(std::shared_ptr<MultipartFormData> multipart,
                                                    const utility::string_t& namePrefix) const {
    const utility::string_t prefix = detail::partPrefix(namePrefix);
    detail::required(multipart, "the multipart body");
    const auto write = [&](const auto& table) {
        for (const auto& [name, value] : table) {
            multipart->add(toHttpContent(prefix + name, value));
        }
    };
    write(m_Integers);
    write(m_Strings);
    write(m_Doubles);
    write(m_Booleans);
}

void DynamicSchemaClassWithCustomProps::fromMultiPart(std::shared_ptr<MultipartFormData> multipart,
                                                      const utility::string_t&) {
    for (const auto& part : detail::required(multipart, "the multipart body")->getContents()) {
        m_Strings.insert_or_assign(part->getName(), stringFromHttpContent(part));
    }
}

bool DynamicSchemaClassWithCustomProps::getCustomProp(int& out, const utility::string_t& name) const {
    return getFrom(m_Integers, out, name);
}

bool DynamicSchemaClassWithCustomProps::getCustomProp(double& out, const utility::string_t& name) const {
    return getFrom(m_Doubles, out, name);
}

bool DynamicSchemaClassWithCustomProps::getCustomProp(utility::string_t& out, const utility::string_t& name) const {
    return getFrom(m_Strings, out, name);
}

bool DynamicSchemaClassWithCustomProps::getCustomProp(bool& out, const utility::string_t& name) const {
    return getFrom(m_Booleans, out, name);
}

void DynamicSchemaClassWithCustomProps::setCustomProp(const utility::string_t& name, const utility::string_t& value) {
    m_Strings[name] = value;
}

void DynamicSchemaClassWithCustomProps::setCustomProp(const utility::string_t& name, const utility::char_t* value) {
    setCustomProp(name, detail::textOf(value));
}

void DynamicSchemaClassWithCustomProps::setCustomProp(const utility::string_t& name, int value) {
    m_Integers[name] = value;
}

void DynamicSchemaClassWithCustomProps::setCustomProp(const utility::string_t& name, double value) {
    m_Doubles[name] = value;
}

void DynamicSchemaClassWithCustomProps::setCustomProp(const utility::string_t& name, bool value) {
    m_Booleans[name] = value;
}

void DynamicSchemaClassWithCustomProps::unsetCustomProp(const utility::string_t& name) {
    m_Strings.erase(name);
    m_Integers.erase(name);
    m_Doubles.erase(name);
    m_Booleans.erase(name);
}

} // namespace VarnelAPI::Forms::model
