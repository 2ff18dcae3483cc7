#pragma once

#include <VarnelAPI/Forms/model/DynamicSchemaBaseClass.h>
#include <VarnelAPI/Forms/model/DynamicSchemaClassWithCustomProps.h>

#include <optional>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::kit {

/// A custom property's name and value.
using CustomProperty = std::pair<utility::string_t, web::json::value>;

/// All custom properties, by name, in the order of their names. Copies.
/// @throws what `toJson` of the model does, for a number or a date that has no text.
/// @{
VARNEL_FORMS_API std::vector<CustomProperty> customProperties(const model::DynamicSchemaBaseClass& issue);
VARNEL_FORMS_API std::vector<CustomProperty> customProperties(const model::DynamicSchemaClassWithCustomProps& object);
/// @}

namespace detail {

/// @name One for each type that a custom property can be read as
/// @{
using Issue = model::DynamicSchemaBaseClass;
VARNEL_FORMS_API void read(std::optional<utility::string_t>& out, const Issue& issue, const utility::string_t& name);
VARNEL_FORMS_API void read(std::optional<int32_t>& out, const Issue& issue, const utility::string_t& name);
VARNEL_FORMS_API void read(std::optional<int64_t>& out, const Issue& issue, const utility::string_t& name);
VARNEL_FORMS_API void read(std::optional<double>& out, const Issue& issue, const utility::string_t& name);
VARNEL_FORMS_API void read(std::optional<bool>& out, const Issue& issue, const utility::string_t& name);
VARNEL_FORMS_API void read(std::optional<utility::datetime>& out, const Issue& issue, const utility::string_t& name);
/// @}

} // namespace detail

/// The custom property `name` of an issue as a `Value`: utility::string_t, int32_t, int64_t, double, bool or
/// utility::datetime. Nothing if there is none, or if it is of another type: null, a text for a number, a number with a
/// fraction or beyond the range for an integer, a text that is no ISO 8601 date. A double takes any number.
///
///     if (const auto atRisk = kit::customProperty<int64_t>(issue, _XPLATSTR("PeopleAtRisk"))) ...
///
template <class Value>
std::optional<Value> customProperty(const model::DynamicSchemaBaseClass& issue, const utility::string_t& name) {
    std::optional<Value> value;
    detail::read(value, issue, name);
    return value;
}

} // namespace VarnelAPI::Forms::kit
