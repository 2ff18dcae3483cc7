#pragma once

#include <VarnelAPI/Forms/model/ModelBase.h>
#include <VarnelAPI/Forms/model/Property.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <variant>
#include <vector>

namespace VarnelAPI::Forms::model {
class Model;
}

namespace VarnelAPI::Forms::model::detail {

/// A property's key on the wire: a JSON member's name and a multipart part's.
using Key = std::basic_string_view<utility::char_t>;

/// An element of a JSON array that is being read.
class JsonElement;

/// The value of a scalar property, by kind. A type that is not listed here can't be a property: it fails to compile.
using Scalar = std::variant<utility::string_t*, int32_t*, int64_t*, double*, bool*, utility::datetime*>;

/// A property that is a nested model, with the model's class erased.
class NestedProperty {
public:
    virtual bool isSet() const = 0;
    /// The nested model, or null.
    virtual const Model* get() const = 0;
    /// A new model of the property's class, not stored.
    virtual std::shared_ptr<Model> create() const = 0;
    /// Stores what `create` made and sets the flag.
    virtual void store(std::shared_ptr<Model> model) = 0;
    /// Appends the nested model's JSON, or null, to a text in UTF-8.
    virtual void write(std::string& text) const = 0;

protected:
    ~NestedProperty() = default;
};

/// A property that is a list, with the type of its elements erased.
class ListProperty {
public:
    virtual std::size_t size() const = 0;
    virtual web::json::value elementToJson(std::size_t index) const = 0;
    /// Appends the element's JSON to a text in UTF-8.
    virtual void writeElement(std::size_t index, std::string& text) const = 0;
    virtual void clear() = 0;
    virtual void reserve(std::size_t size) = 0;
    virtual void append(const JsonElement& element) = 0;

protected:
    ~ListProperty() = default;
};

VARNEL_FORMS_API web::json::value toJsonArray(const std::vector<double>& numbers);
VARNEL_FORMS_API bool isNull(const JsonElement& element);
VARNEL_FORMS_API void fromJsonElement(const JsonElement& element, utility::string_t& value);
VARNEL_FORMS_API void fromJsonElement(const JsonElement& element, double& value);
VARNEL_FORMS_API void fromJsonElement(const JsonElement& element, std::vector<double>& row);
VARNEL_FORMS_API void fromJsonElement(const JsonElement& element, Model& model);
VARNEL_FORMS_API void appendJson(std::string& text, const utility::string_t& value);
VARNEL_FORMS_API void appendJson(std::string& text, double value);
VARNEL_FORMS_API void appendJson(std::string& text, const std::vector<double>& row);
VARNEL_FORMS_API void appendJson(std::string& text, const Model& model);
VARNEL_FORMS_API void appendJson(std::string& text, const web::json::value& json);

/// Whether the class has `toJson` from Model, which writes what is described.
template <class M, class = void>
constexpr bool isWrittenByModel = false;
template <class M>
constexpr bool isWrittenByModel<
    M, std::void_t<decltype(std::declval<void (&)(web::json::value (Model::*)() const)>()(&M::toJson))>> = true;

/// The model, if its JSON is what its class describes; null for one of a class of the caller's own, which may write
/// itself in another way, and for an empty pointer.
template <class M>
const Model* asDescribed(const std::shared_ptr<M>& model) {
    if constexpr (isWrittenByModel<M>) {
        const M* object = model.get();
        return object != nullptr && typeid(*object) == typeid(M) ? object : nullptr;
    } else {
        return nullptr;
    }
}

template <class M>
void appendJson(std::string& text, const std::shared_ptr<M>& model) {
    if (const Model* described = asDescribed(model)) {
        appendJson(text, *described);
    } else {
        appendJson(text, ModelBase::toJson(model));
    }
}

/// The same, of a model class `M`.
template <class M>
class NestedPropertyOf final : public NestedProperty {
public:
    explicit NestedPropertyOf(Property<std::shared_ptr<M>>& property) : m_Property(property) {}
    bool isSet() const override { return m_Property.isSet; }
    const Model* get() const override { return m_Property.value.get(); }
    std::shared_ptr<Model> create() const override { return std::make_shared<M>(); }
    void store(std::shared_ptr<Model> model) override { m_Property.set(std::static_pointer_cast<M>(std::move(model))); }
    void write(std::string& text) const override { appendJson(text, m_Property.value); }

private:
    Property<std::shared_ptr<M>>& m_Property;
};

/// The same, of elements of type `T`.
template <class T>
class ListPropertyOf final : public ListProperty {
public:
    explicit ListPropertyOf(std::vector<T>& list) : m_List(list) {}
    std::size_t size() const override { return m_List.size(); }
    web::json::value elementToJson(std::size_t index) const override {
        if constexpr (std::is_same_v<T, std::vector<double>>) {
            return toJsonArray(m_List[index]);
        } else {
            return ModelBase::toJson(m_List[index]);
        }
    }
    void writeElement(std::size_t index, std::string& text) const override { appendJson(text, m_List[index]); }
    void clear() override { m_List.clear(); }
    void reserve(std::size_t size) override { m_List.reserve(size); }
    void append(const JsonElement& element) override {
        if constexpr (std::is_convertible_v<T, std::shared_ptr<ModelBase>>) {
            T model;
            if (!isNull(element)) {
                model = std::make_shared<typename T::element_type>();
                fromJsonElement(element, *model);
            }
            m_List.push_back(std::move(model));
        } else {
            T value{};
            fromJsonElement(element, value);
            m_List.push_back(std::move(value));
        }
    }

private:
    std::vector<T>& m_List;
};

/// What goes over a model's properties, in their declaration order: each model class calls it once per property in
/// its `describe`, and each of the conversions is one visitor. Three kinds of property, and two words for the rules
/// that hold for single properties only.
class VARNEL_FORMS_API PropertyVisitor {
public:
    template <class T, class Name>
    void operator()(NamedProperty<T, Name>& property) {
        scalar(Name::get().key(), Scalar(&property.value), property.isSet);
    }
    template <class M, class Name>
    void operator()(NamedProperty<std::shared_ptr<M>, Name>& property) {
        NestedPropertyOf<M> erased(property);
        nested(Name::get().key(), erased);
    }
    template <class T, class Name>
    void operator()(NamedProperty<std::vector<T>, Name>& property) {
        ListPropertyOf<T> erased(property.value);
        list(Name::get().key(), erased);
    }

    /// A date that goes out as JSON null, instead of not at all, when it is set to the date never set.
    template <class Name>
    void nullable(NamedProperty<utility::datetime, Name>& property) {
        nullableDate(Name::get().key(), property);
    }

    /// A nested model that is carried as a text that holds its JSON.
    template <class M, class Name>
    void asText(NamedProperty<std::shared_ptr<M>, Name>& property) {
        NestedPropertyOf<M> erased(property);
        nestedAsText(Name::get().key(), erased);
    }

protected:
    PropertyVisitor() = default;
    PropertyVisitor(const PropertyVisitor&) = default;
    PropertyVisitor& operator=(const PropertyVisitor&) = default;
    virtual ~PropertyVisitor();

private:
    virtual void scalar(Key key, Scalar value, bool& isSet) = 0;
    virtual void nested(Key key, NestedProperty& property) = 0;
    virtual void list(Key key, ListProperty& property) = 0;
    virtual void nullableDate(Key key, Property<utility::datetime>& property);
    virtual void nestedAsText(Key key, NestedProperty& property) = 0;
};

} // namespace VarnelAPI::Forms::model::detail
