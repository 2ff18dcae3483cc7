#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>
#include <VarnelAPI/Forms/transport/Transport.h>

#include <map>

namespace VarnelAPI::Forms::api {

/// What is the same for all calls of one client.
///
/// There is no lock: fill it before calls start. A change between calls applies to every later call; a change while a
/// call is being made is a data race. (A call reads it only until the operation returns its task.)
class VARNEL_FORMS_API ApiConfiguration {
public:
    ApiConfiguration();
    ApiConfiguration(const ApiConfiguration&);
    ApiConfiguration& operator=(const ApiConfiguration&);
    virtual ~ApiConfiguration();

    /// Scheme, host, port and any path prefix, to which the operations append their paths. It is not checked here: a
    /// call with an unusable one throws.
    utility::string_t getBaseUrl() const;
    void setBaseUrl(const utility::string_t value);

    /// The User-Agent header, unless a call sets its own.
    utility::string_t getUserAgent() const;
    void setUserAgent(const utility::string_t value);

    /// Headers that every operation sends, such as credentials; change the map in place. Should the service redirect to
    /// another host, port or scheme, none of them go there but Accept, Content-Type and User-Agent.
    std::map<utility::string_t, utility::string_t>& getDefaultHeaders();
    const std::map<utility::string_t, utility::string_t>& getDefaultHeaders() const;

    /// Time-outs, proxy, credentials, redirects and certificate checks of the HTTP library; change them in place.
    web::http::client::http_client_config& getHttpConfig();
    const web::http::client::http_client_config& getHttpConfig() const;
    void setHttpConfig(web::http::client::http_client_config& value);

    /// What carries the calls: an empty pointer, unless one was set, for `transport::freshConnections()`. Copies of a
    /// configuration share it.
    std::shared_ptr<transport::Transport> getTransport() const;
    void setTransport(std::shared_ptr<transport::Transport> value);

    /// The key stored under exactly this prefix, or an empty text. API keys are kept for the caller's own use: no
    /// request sends them.
    utility::string_t getApiKey(const utility::string_t& prefix) const;
    void setApiKey(const utility::string_t& prefix, const utility::string_t& apiKey);

private:
    utility::string_t m_BaseUrl;
    std::map<utility::string_t, utility::string_t> m_DefaultHeaders;
    std::map<utility::string_t, utility::string_t> m_ApiKeys;
    web::http::client::http_client_config m_HttpConfig;
    utility::string_t m_UserAgent;
    std::shared_ptr<transport::Transport> m_Transport;
};

} // namespace VarnelAPI::Forms::api
