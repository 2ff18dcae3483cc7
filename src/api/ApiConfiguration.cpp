#include <VarnelAPI/Forms/api/ApiConfiguration.h>

namespace VarnelAPI::Forms::api {

ApiConfiguration::ApiConfiguration() = default;
ApiConfiguration::ApiConfiguration(const ApiConfiguration&) = default;
ApiConfiguration& ApiConfiguration::operator=(const ApiConfiguration&) = default;
ApiConfiguration::~ApiConfiguration() = default;

utility::string_t ApiConfiguration::getBaseUrl() const {
    return m_BaseUrl;
}
// The parameters of the two setters are const, and the interface is fixed, which rules a move out.
void ApiConfiguration::setBaseUrl(const utility::string_t value) {
    m_BaseUrl = value;
}

utility::string_t ApiConfiguration::getUserAgent() const {
    return m_UserAgent;
}
void ApiConfiguration::setUserAgent(const utility::string_t value) {
    m_UserAgent = value;
}

std::map<utility::string_t, utility::string_t>& ApiConfiguration::getDefaultHeaders() {
    return m_DefaultHeaders;
}
const std::map<utility::string_t, utility::string_t>& ApiConfiguration::getDefaultHeaders() const {
    return m_DefaultHeaders;
}

web::http::client::http_client_config& ApiConfiguration::getHttpConfig() {
    return m_HttpConfig;
}
const web::http::client::http_client_config& ApiConfiguration::getHttpConfig() const {
    return m_HttpConfig;
}
void ApiConfiguration::setHttpConfig(web::http::client::http_client_config& value) {
    m_HttpConfig = value;
}

std::shared_ptr<transport::Transport> ApiConfiguration::getTransport() const {
    return m_Transport;
}
void ApiConfiguration::setTransport(std::shared_ptr<transport::Transport> value) {
    m_Transport = std::move(value);
}

utility::string_t ApiConfiguration::getApiKey(const utility::string_t& prefix) const {
    const auto found = m_ApiKeys.find(prefix);
    return found == m_ApiKeys.end() ? utility::string_t() : found->second;
}

void ApiConfiguration::setApiKey(const utility::string_t& prefix, const utility::string_t& apiKey) {
    m_ApiKeys[prefix] = apiKey;
}

} // namespace VarnelAPI::Forms::api
