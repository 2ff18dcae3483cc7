#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <string_view>
#include <utility>

namespace VarnelAPI::Forms::model {

/// A property's name on the wire, with the class that has the property and the type of its value: what a filter, a
/// selection or an order is written with. Each property of a model has one, beside its accessors:
/// `DynamicSchemaBaseClass::subject.key()` is "_Subject". A custom property is named in the same way:
/// @code
/// constexpr model::PropertyName<model::DynamicSchemaBaseClass, int32_t> floor{_XPLATSTR("Floor")};
/// @endcode
template <class OwnerType, class ValueType>
class PropertyName {
public:
    using Owner = OwnerType; ///< The class that has the property.
    using Value = ValueType; ///< The type of its value.

    /// @param key is not copied: usually a literal.
    constexpr explicit PropertyName(std::basic_string_view<utility::char_t> key) noexcept : m_Key(key) {}

    /// The JSON member's name and a multipart part's.
    constexpr std::basic_string_view<utility::char_t> key() const noexcept { return m_Key; }

private:
    std::basic_string_view<utility::char_t> m_Key;
};

} // namespace VarnelAPI::Forms::model

/// The accessors of one model property, written by one macro line in its class, after the line that names the class:
///
///     VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
///
/// gives `getName`, `setName` (by value, sets the flag), `nameIsSet` and `unsetName` (clears only the flag, the
/// value stays), the constant `name`, a PropertyName that holds the wire key, and the storage `m_Name`. A getter never
/// looks at the flag: an unset property yields its default or its last value.
///
/// The variants differ only where the public interface does:
/// - `_PROPERTY` and `_FLAG` (a bool, read by `isName`) have const getters that return copies;
/// - `_PROPERTY_REF` and `_FLAG_REF` have getters that return a reference for change in place, and a const twin;
/// - `_PROPERTY_NAMED` spells out the names that follow no rule.
namespace VarnelAPI::Forms::model::detail {

/// A value and whether it is set. Writing looks at the flag, except for lists, which are written when not empty.
template <class T>
struct Property {
    T value{};
    bool isSet = false;

    void set(T newValue) {
        value = std::move(newValue);
        isSet = true;
    }
};

/// A property together with its name: `Name::get()` is the constant beside its accessors. So a visitor that is given
/// the storage has the key too, and the two can't differ.
template <class T, class Name>
struct NamedProperty : Property<T> {};

} // namespace VarnelAPI::Forms::model::detail

#define VARNEL_FORMS_DETAIL_COPY_GETTER(Type, Stem, getter)                                                            \
public:                                                                                                                \
    Type getter() const {                                                                                              \
        return m_##Stem.value;                                                                                         \
    }

#define VARNEL_FORMS_DETAIL_REF_GETTER(Type, Stem, getter)                                                             \
public:                                                                                                                \
    Type& getter() {                                                                                                   \
        return m_##Stem.value;                                                                                         \
    }                                                                                                                  \
    const Type& getter() const {                                                                                       \
        return m_##Stem.value;                                                                                         \
    }

#define VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, stem, key, flag, unset)                                                \
    void set##Stem(Type value) {                                                                                       \
        m_##Stem.set(std::move(value));                                                                                \
    }                                                                                                                  \
    bool flag() const {                                                                                                \
        return m_##Stem.isSet;                                                                                         \
    }                                                                                                                  \
    void unset() {                                                                                                     \
        m_##Stem.isSet = false;                                                                                        \
    }                                                                                                                  \
    VARNEL_FORMS_DETAIL_KEPT                                                                                           \
    static constexpr ::VarnelAPI::Forms::model::PropertyName<Self, Type> stem{_XPLATSTR(key)};                         \
                                                                                                                       \
private:                                                                                                               \
    struct NameOf##Stem {                                                                                              \
        static constexpr auto get() { return stem; }                                                                   \
    };                                                                                                                 \
    ::VarnelAPI::Forms::model::detail::NamedProperty<Type, NameOf##Stem> m_##Stem

#define VARNEL_FORMS_PROPERTY(Type, Stem, stem, key)                                                                   \
    VARNEL_FORMS_DETAIL_COPY_GETTER(Type, Stem, get##Stem)                                                             \
    VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, stem, key, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_PROPERTY_REF(Type, Stem, stem, key)                                                               \
    VARNEL_FORMS_DETAIL_REF_GETTER(Type, Stem, get##Stem)                                                              \
    VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, stem, key, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_FLAG(Stem, stem, key)                                                                             \
    VARNEL_FORMS_DETAIL_COPY_GETTER(bool, Stem, is##Stem)                                                              \
    VARNEL_FORMS_DETAIL_STORAGE(bool, Stem, stem, key, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_FLAG_REF(Stem, stem, key)                                                                         \
    VARNEL_FORMS_DETAIL_REF_GETTER(bool, Stem, is##Stem)                                                               \
    VARNEL_FORMS_DETAIL_STORAGE(bool, Stem, stem, key, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_PROPERTY_NAMED(Type, Stem, stem, key, flag, unset)                                                \
    VARNEL_FORMS_DETAIL_REF_GETTER(Type, Stem, get##Stem)                                                              \
    VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, stem, key, flag, unset)
