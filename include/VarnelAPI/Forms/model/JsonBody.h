#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>

namespace VarnelAPI::Forms::model {

/// A request body that is one JSON document.
class VARNEL_FORMS_API JsonBody : public IHttpBody {
public:
    /// Keeps a copy of `json`.
    explicit JsonBody(const web::json::value& json);
    /// Takes `json` over without copying it.
    explicit JsonBody(web::json::value&& json);

    /// Writes the document as compact UTF-8 text, with nothing before or after it.
    void writeTo(std::ostream& stream) override;

private:
    web::json::value m_Json;
};

} // namespace VarnelAPI::Forms::model
