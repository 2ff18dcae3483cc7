#pragma once

#include <utility>

/// The accessors of one model property, written by one macro line in its class:
///
///     VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
///
/// gives `getName`, `setName` (by value, sets the flag), `nameIsSet` and `unsetName` (clears only the flag, the
/// value stays), and the storage `m_Name`. A getter never looks at the flag: an unset property yields its default or
/// its last value.
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

#define VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, flag, unset)                                                           \
    void set##Stem(Type value) {                                                                                       \
        m_##Stem.set(std::move(value));                                                                                \
    }                                                                                                                  \
    bool flag() const {                                                                                                \
        return m_##Stem.isSet;                                                                                         \
    }                                                                                                                  \
    void unset() {                                                                                                     \
        m_##Stem.isSet = false;                                                                                        \
    }                                                                                                                  \
                                                                                                                       \
private:                                                                                                               \
    ::VarnelAPI::Forms::model::detail::Property<Type> m_##Stem

#define VARNEL_FORMS_PROPERTY(Type, Stem, stem)                                                                        \
    VARNEL_FORMS_DETAIL_COPY_GETTER(Type, Stem, get##Stem)                                                             \
    VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_PROPERTY_REF(Type, Stem, stem)                                                                    \
    VARNEL_FORMS_DETAIL_REF_GETTER(Type, Stem, get##Stem)                                                              \
    VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_FLAG(Stem, stem)                                                                                  \
    VARNEL_FORMS_DETAIL_COPY_GETTER(bool, Stem, is##Stem)                                                              \
    VARNEL_FORMS_DETAIL_STORAGE(bool, Stem, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_FLAG_REF(Stem, stem)                                                                              \
    VARNEL_FORMS_DETAIL_REF_GETTER(bool, Stem, is##Stem)                                                               \
    VARNEL_FORMS_DETAIL_STORAGE(bool, Stem, stem##IsSet, unset##Stem)

#define VARNEL_FORMS_PROPERTY_NAMED(Type, Stem, flag, unset)                                                           \
    VARNEL_FORMS_DETAIL_REF_GETTER(Type, Stem, get##Stem)                                                              \
    VARNEL_FORMS_DETAIL_STORAGE(Type, Stem, flag, unset)
