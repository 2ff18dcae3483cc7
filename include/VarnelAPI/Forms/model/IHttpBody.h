#pragma once

#include <VarnelAPI/Forms/detail/Export.h>

#include <iosfwd>

namespace VarnelAPI::Forms::model {

/// A request body: something that can write its bytes. `ApiClient::callApi` writes it once, before it returns.
class VARNEL_FORMS_API IHttpBody {
public:
    virtual ~IHttpBody();

    /// Writes the whole body, as it goes over the wire, into `stream`.
    virtual void writeTo(std::ostream& stream) = 0;
};

} // namespace VarnelAPI::Forms::model
