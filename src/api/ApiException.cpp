#include <VarnelAPI/Forms/api/ApiException.h>

#include <istream>

namespace VarnelAPI::Forms::api {

ApiException::ApiException(int errorCode, const utility::string_t& message, std::shared_ptr<std::istream> content)
    : http_exception(errorCode, message), m_Content(std::move(content)) {}

ApiException::ApiException(int errorCode, const utility::string_t& message,
                           std::map<utility::string_t, utility::string_t>& headers,
                           std::shared_ptr<std::istream> content)
    : http_exception(errorCode, message), m_Content(std::move(content)), m_Headers(headers) {}

ApiException::ApiException(const ApiException&) = default;
ApiException& ApiException::operator=(const ApiException&) = default;
ApiException::~ApiException() = default;

std::shared_ptr<std::istream> ApiException::getContent() const {
    return m_Content;
}

std::map<utility::string_t, utility::string_t>& ApiException::getHeaders() {
    return m_Headers;
}

} // namespace VarnelAPI::Forms::api
