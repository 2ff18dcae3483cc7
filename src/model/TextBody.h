#pragma once

#include <VarnelAPI/Forms/model/IHttpBody.h>

#include <ostream>
#include <string>

namespace VarnelAPI::Forms::model::detail {

/// A body whose bytes are there already, and can be taken instead of written.
class TextBody final : public IHttpBody {
public:
    explicit TextBody(std::string text) : m_Text(std::move(text)) {}

    void writeTo(std::ostream& stream) override {
        stream.write(m_Text.data(), static_cast<std::streamsize>(m_Text.size()));
    }
    std::string take() { return std::move(m_Text); }

private:
    std::string m_Text;
};

} // namespace VarnelAPI::Forms::model::detail
