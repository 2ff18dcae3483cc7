#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/model/Property.h>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

/// The texts of `$filter`, `$select` and `$orderby`, written with the names of properties:
///
///     using Issue = model::DynamicSchemaBaseClass;
///     constexpr model::PropertyName<Issue, int32_t> floor{_XPLATSTR("Floor")}; // a custom property
///
///     kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project)
///         .filter((Issue::status == _XPLATSTR("Open") || floor >= 3) && Issue::dueDate < today)
///         .select(kit::names(Issue::subject, Issue::dueDate))
///         .orderby(kit::order(kit::descending(Issue::dueDate), Issue::subject));
///
/// The comparisons are those of C++, with a value of the property's type: texts with texts, numbers with numbers, bools
/// with bools, dates with utility::datetime; anything else does not compile. `== nullptr` holds where the service has
/// no value. `&&`, `||` and `!` join them. What values hold is escaped here, and percent-encoded by the operations.
namespace VarnelAPI::Forms::kit {

namespace detail {

using Key = std::basic_string_view<utility::char_t>;

/// How tightly the parts of a filter hold together.
enum class Bond { Any, All, Whole };

/// @name The text of one value
/// @{
VARNEL_FORMS_API utility::string_t literal(const utility::string_t& value);
VARNEL_FORMS_API utility::string_t literal(bool value);
VARNEL_FORMS_API utility::string_t literal(int64_t value);
VARNEL_FORMS_API utility::string_t literal(uint64_t value);
/// @throws std::invalid_argument if `value` is infinite or not a number.
VARNEL_FORMS_API utility::string_t literal(double value);
/// The date never set is null. @throws std::out_of_range for a date after the year 9999.
VARNEL_FORMS_API utility::string_t literal(const utility::datetime& value);
/// @}

/// The name of a property. @throws std::invalid_argument if it can't be one: it would change the expression.
VARNEL_FORMS_API utility::string_t name(Key key);
/// "name op value". @throws std::invalid_argument if a null is to be less or greater than something.
VARNEL_FORMS_API utility::string_t comparison(Key key, const utility::char_t* op, const utility::string_t& value);
/// "function(name,value)"
VARNEL_FORMS_API utility::string_t call(const utility::char_t* function, Key key, const utility::string_t& text);
/// The two, in parentheses where the bond asks for them.
VARNEL_FORMS_API utility::string_t joined(Bond bond, const utility::string_t& left, Bond leftBond,
                                          const utility::string_t& right, Bond rightBond);
VARNEL_FORMS_API utility::string_t negated(const utility::string_t& condition);

/// The entity that a property belongs to: the id and the class of an instance count as its entity's.
template <class Owner, class = void>
struct Subject {
    using Type = Owner;
};
template <class Owner>
struct Subject<Owner, std::void_t<decltype(std::declval<Owner&>().getProperties())>> {
    using Type = typename std::decay_t<decltype(std::declval<Owner&>().getProperties())>::element_type;
};

template <class Value>
constexpr bool isText = std::is_convertible_v<const Value&, utility::string_t>;
template <class Value>
constexpr bool isBool = std::is_same_v<Value, bool>;
template <class Value>
constexpr bool isNumber =
    std::is_arithmetic_v<Value> && !isBool<Value> && !std::is_same_v<Value, char> && !std::is_same_v<Value, wchar_t>;
template <class Value>
constexpr bool isDate = std::is_same_v<Value, utility::datetime>;

/// Whether a property of this type can be compared with such a value. Whole numbers take no fractions.
template <class Property, class Value>
constexpr bool isComparable = (isText<Property> && isText<Value>) || (isBool<Property> && isBool<Value>) ||
                              (isDate<Property> && isDate<Value>) ||
                              (isNumber<Property> && isNumber<Value> &&
                               (std::is_floating_point_v<Property> || std::is_integral_v<Value>));

template <class Value>
utility::string_t literalOf(const Value& value) {
    if constexpr (isText<Value>) {
        return literal(utility::string_t(value));
    } else if constexpr (isBool<Value> || isDate<Value>) {
        return literal(value);
    } else if constexpr (std::is_floating_point_v<Value>) {
        return literal(static_cast<double>(value));
    } else if constexpr (std::is_signed_v<Value>) {
        return literal(static_cast<int64_t>(value));
    } else {
        return literal(static_cast<uint64_t>(value));
    }
}

} // namespace detail

/// A condition on the instances of an entity: the value of `$filter`. Operations and `Pages` take it as it is.
template <class Entity>
class Filter {
public:
    /// A condition in the service's own words, as it stands.
    explicit Filter(utility::string_t text) : Filter(std::move(text), detail::Bond::Any) {}
    /// For the kit itself.
    Filter(utility::string_t text, detail::Bond bond) : m_Text(std::move(text)), m_Bond(bond) {}

    /// The value of `$filter`.
    const utility::string_t& text() const { return m_Text; }
    operator utility::string_t() const { return m_Text; }
    operator api::TextOption() const { return m_Text; }

    /// Both hold; either does.
    friend Filter operator&&(const Filter& left, const Filter& right) { return join(detail::Bond::All, left, right); }
    friend Filter operator||(const Filter& left, const Filter& right) { return join(detail::Bond::Any, left, right); }
    /// It does not hold.
    friend Filter operator!(const Filter& condition) {
        return Filter(detail::negated(condition.m_Text), detail::Bond::Whole);
    }

private:
    static Filter join(detail::Bond bond, const Filter& left, const Filter& right) {
        return Filter(detail::joined(bond, left.m_Text, left.m_Bond, right.m_Text, right.m_Bond), bond);
    }

    utility::string_t m_Text;
    detail::Bond m_Bond;
};

namespace detail {

template <class Owner, class Property, class Value>
auto compare(const model::PropertyName<Owner, Property>& property, const utility::char_t* op, const Value& value) {
    static_assert(isComparable<Property, std::decay_t<Value>>, "a property is compared with a value of its own type");
    return Filter<typename Subject<Owner>::Type>(comparison(property.key(), op, literalOf(value)), Bond::Whole);
}
template <class Owner, class Property>
auto compare(const model::PropertyName<Owner, Property>& property, const utility::char_t* op, std::nullptr_t) {
    return Filter<typename Subject<Owner>::Type>(comparison(property.key(), op, _XPLATSTR("null")), Bond::Whole);
}
template <class Owner, class Property>
auto test(const utility::char_t* function, const model::PropertyName<Owner, Property>& property,
          const utility::string_t& text) {
    static_assert(isText<Property>, "only texts can be searched");
    return Filter<typename Subject<Owner>::Type>(call(function, property.key(), literal(text)), Bond::Whole);
}

/// An entry of `$orderby`.
template <class Entity>
struct Order {
    utility::string_t text;
};
template <class Owner, class Property>
Order<Owner> orderOf(const model::PropertyName<Owner, Property>& property) {
    return {name(property.key())};
}
template <class Owner>
Order<Owner> orderOf(const Order<Owner>& order) {
    return order;
}

template <class Owner, class... Owners>
utility::string_t list(const Order<Owner>& first, const Order<Owners>&... more) {
    static_assert((std::is_same_v<typename Subject<Owner>::Type, typename Subject<Owners>::Type> && ...),
                  "all names are those of one entity's properties");
    utility::string_t text = first.text;
    ((text += _XPLATSTR(',') + more.text), ...);
    return text;
}

} // namespace detail

/// @name Whether a text contains, begins or ends with another one
/// @{
/// `contains(name,'text')`
template <class Owner, class Property>
auto contains(const model::PropertyName<Owner, Property>& property, const utility::string_t& text) {
    return detail::test(_XPLATSTR("contains"), property, text);
}
/// `startswith(name,'text')`
template <class Owner, class Property>
auto startsWith(const model::PropertyName<Owner, Property>& property, const utility::string_t& text) {
    return detail::test(_XPLATSTR("startswith"), property, text);
}
/// `endswith(name,'text')`
template <class Owner, class Property>
auto endsWith(const model::PropertyName<Owner, Property>& property, const utility::string_t& text) {
    return detail::test(_XPLATSTR("endswith"), property, text);
}
/// @}

/// The value of `$select`: these properties.
template <class... Owners, class... Properties>
utility::string_t names(const model::PropertyName<Owners, Properties>&... properties) {
    return detail::list(detail::orderOf(properties)...);
}

/// An entry of `order`; a property's name alone is ascending.
template <class Owner, class Property>
detail::Order<Owner> descending(const model::PropertyName<Owner, Property>& property) {
    return {detail::name(property.key()) + _XPLATSTR(" desc")};
}

/// The value of `$orderby`: by the first, and where that is equal, by the next.
template <class... Entries>
utility::string_t order(const Entries&... entries) {
    return detail::list(detail::orderOf(entries)...);
}

} // namespace VarnelAPI::Forms::kit

/// Here the names find them.
namespace VarnelAPI::Forms::model {

#define VARNEL_FORMS_KIT_COMPARISON(sign, word)                                                                        \
    template <class Owner, class Property, class Value>                                                                \
    auto operator sign(const PropertyName<Owner, Property>& property, const Value& value) {                            \
        return kit::detail::compare(property, _XPLATSTR(word), value);                                                 \
    }
VARNEL_FORMS_KIT_COMPARISON(==, "eq")
VARNEL_FORMS_KIT_COMPARISON(!=, "ne")
VARNEL_FORMS_KIT_COMPARISON(<, "lt")
VARNEL_FORMS_KIT_COMPARISON(<=, "le")
VARNEL_FORMS_KIT_COMPARISON(>, "gt")
VARNEL_FORMS_KIT_COMPARISON(>=, "ge")
#undef VARNEL_FORMS_KIT_COMPARISON

} // namespace VarnelAPI::Forms::model
