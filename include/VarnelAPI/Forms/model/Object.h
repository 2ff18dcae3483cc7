#pragma once

#include <VarnelAPI/Forms/model/ModelBase.h>

namespace VarnelAPI::Forms::model {

/// A free-form JSON object as a model.
class VARNEL_FORMS_API Object : public ModelBase {
public:
    /// An empty object.
    Object();

    using ModelBase::toJson;

    void validate() override;
    /// A copy of the object.
    /// @throws std::invalid_argument if it holds a number that is infinite or not a number.
    web::json::value toJson() const override;
    /// Takes a copy of `val` if that is a JSON object; ignores any other value.
    void fromJson(web::json::value& val) override;
    /// Adds one part, named `namePrefix` and "object", that holds the object's JSON text.
    /// @throws std::invalid_argument as `toJson` does.
    void toMultipart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) const override;
    /// Reads the part that `toMultipart` writes under the same prefix.
    /// @throws std::invalid_argument if there is no such part.
    void fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) override;

    /// A copy of the member `key`.
    /// @throws web::json::json_exception if there is none.
    web::json::value getValue(const utility::string_t& key) const;
    /// Sets or replaces the member `key`.
    void setValue(const utility::string_t& key, const web::json::value& value);

private:
    web::json::value m_object;
};

} // namespace VarnelAPI::Forms::model
