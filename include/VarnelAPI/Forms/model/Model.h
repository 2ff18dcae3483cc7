#pragma once

#include <VarnelAPI/Forms/model/PropertyVisitor.h>

#include <unordered_map>

namespace VarnelAPI::Forms::model::detail {

class KeyIndex;
class ModelAccess;

/// Properties that the class does not know in advance, by name.
using CustomProperties = std::unordered_map<utility::string_t, web::json::value>;

} // namespace VarnelAPI::Forms::model::detail

namespace VarnelAPI::Forms::model {

/// A model whose properties are listed once, in `describe`: the conversions follow from that list.
class VARNEL_FORMS_API Model : public ModelBase {
public:
    using ModelBase::toJson;

    void validate() override;
    web::json::value toJson() const override;
    void fromJson(web::json::value& val) override;
    /// Like `fromJson` of an lvalue, but moves texts and custom values out of the tree instead of copying them. What
    /// is left of `val` is unspecified.
    void fromJson(web::json::value&& val);
    void toMultipart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) const override;
    void fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) override;

protected:
    /// Calls `visit` for each property, in the order of the wire.
    virtual void describe(detail::PropertyVisitor& visit) = 0;
    /// The keys of `describe`, made once per class.
    virtual const detail::KeyIndex& keyIndex() const = 0;
    /// The table that takes the members `describe` does not list; null, and they are ignored, in most classes.
    virtual detail::CustomProperties* customProperties();

    /// Whether `key` is one of those of `describe`.
    bool isKey(const utility::string_t& key) const;

    /// Makes the index that `keyIndex` returns, from any object of the class.
    static const detail::KeyIndex& makeKeyIndex(Model&& model);

private:
    friend class detail::ModelAccess;
};

} // namespace VarnelAPI::Forms::model

/// The first line of a model class whose properties are listed in a source file, by VARNEL_FORMS_DESCRIBE.
#define VARNEL_FORMS_MODEL(Class)                                                                                      \
    using Self = Class;                                                                                                \
                                                                                                                       \
protected:                                                                                                             \
    void describe(::VarnelAPI::Forms::model::detail::PropertyVisitor& visit) override;                                 \
    const ::VarnelAPI::Forms::model::detail::KeyIndex& keyIndex() const override

/// In a source file, before the braces that list the properties of `Class`:
///
///     VARNEL_FORMS_DESCRIBE(ErrorSchema) {
///         visit(m_ErrorId);
///         ...
///     }
#define VARNEL_FORMS_DESCRIBE(Class)                                                                                   \
    const ::VarnelAPI::Forms::model::detail::KeyIndex& Class::keyIndex() const {                                       \
        static const auto& index = makeKeyIndex(Class());                                                              \
        return index;                                                                                                  \
    }                                                                                                                  \
    void Class::describe([[maybe_unused]] ::VarnelAPI::Forms::model::detail::PropertyVisitor& visit)
