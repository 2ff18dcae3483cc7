#include <VarnelAPI/Forms/kit/CustomProperties.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace VarnelAPI::Forms::kit {

namespace {

/// The members of a model's JSON that `isCustom`, by name.
template <class IsCustom>
std::vector<CustomProperty> membersOf(const model::ModelBase& model, IsCustom isCustom) {
    std::vector<CustomProperty> members;
    web::json::value json = model.toJson();
    for (auto& [name, value] : json.as_object()) {
        if (isCustom(name)) {
            members.emplace_back(name, std::move(value));
        }
    }
    std::sort(members.begin(), members.end(),
              [](const CustomProperty& a, const CustomProperty& b) { return a.first < b.first; });
    return members;
}

/// The property if it is of the type that `is` asks for.
std::optional<web::json::value> valueOf(const model::DynamicSchemaBaseClass& issue, const utility::string_t& name,
                                        bool (web::json::value::*is)() const) {
    web::json::value value;
    return issue.getCustomProp(value, name) && (value.*is)() ? std::optional(std::move(value)) : std::nullopt;
}

} // namespace

std::vector<CustomProperty> customProperties(const model::DynamicSchemaBaseClass& issue) {
    web::json::value unused;
    return membersOf(issue, [&](const utility::string_t& name) { return issue.getCustomProp(unused, name); });
}

std::vector<CustomProperty> customProperties(const model::DynamicSchemaClassWithCustomProps& object) {
    return membersOf(object, [](const utility::string_t&) { return true; });
}

namespace detail {

void read(std::optional<utility::string_t>& out, const Issue& issue, const utility::string_t& name) {
    if (const auto value = valueOf(issue, name, &web::json::value::is_string)) {
        out = value->as_string();
    }
}

void read(std::optional<int64_t>& out, const Issue& issue, const utility::string_t& name) {
    const auto value = valueOf(issue, name, &web::json::value::is_number);
    if (!value) {
        return;
    }
    if (value->is_integer()) {
        if (value->as_number().is_int64()) {
            out = value->as_number().to_int64();
        }
        return;
    }
    // 4.0 has no fraction; 2^63 is the first double beyond the range.
    const double number = value->as_double();
    const double beyond = -static_cast<double>(std::numeric_limits<int64_t>::min());
    if (std::trunc(number) == number && number >= -beyond && number < beyond) {
        out = static_cast<int64_t>(number);
    }
}

void read(std::optional<int32_t>& out, const Issue& issue, const utility::string_t& name) {
    const auto value = customProperty<int64_t>(issue, name);
    if (value && *value >= std::numeric_limits<int32_t>::min() && *value <= std::numeric_limits<int32_t>::max()) {
        out = static_cast<int32_t>(*value);
    }
}

void read(std::optional<double>& out, const Issue& issue, const utility::string_t& name) {
    if (const auto value = valueOf(issue, name, &web::json::value::is_number)) {
        out = value->as_double();
    }
}

void read(std::optional<bool>& out, const Issue& issue, const utility::string_t& name) {
    if (const auto value = valueOf(issue, name, &web::json::value::is_boolean)) {
        out = value->as_bool();
    }
}

void read(std::optional<utility::datetime>& out, const Issue& issue, const utility::string_t& name) {
    auto value = valueOf(issue, name, &web::json::value::is_string);
    const auto date = value ? model::ModelBase::dateFromJson(*value) : utility::datetime();
    if (date.is_initialized()) {
        out = date;
    }
}

} // namespace detail

} // namespace VarnelAPI::Forms::kit
