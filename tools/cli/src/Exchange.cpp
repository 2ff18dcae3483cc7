#include "Exchange.h"

#include "Failures.h"
#include "Json.h"
#include "Terminal.h"

#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

#include <algorithm>
#include <chrono>

namespace VarnelAPI::Forms::cli {
namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

/// By their names, whoever set them.
bool isSecret(const std::string& name) {
    constexpr const char* words[] = {"authorization", "cookie", "token", "secret", "password", "key", "signature"};
    const std::string small = lowerCase(name);
    return small == "sig" || std::any_of(std::begin(words), std::end(words),
                                         [&](const char* word) { return small.find(word) != std::string::npos; });
}

/// The URL, with the query as people write it, and without values that are secrets.
std::string shown(const web::uri& uri) {
    std::string text = uri.scheme() + "://" + uri.authority().host() +
                       (uri.port() > 0 ? ":" + std::to_string(uri.port()) : std::string()) + uri.path();
    const std::string query = uri.query();
    for (std::size_t begin = 0, end = 0; begin < query.size(); begin = end + 1) {
        end = std::min(query.find('&', begin), query.size());
        const std::size_t equals = std::min(query.find('=', begin), end);
        const std::string name = web::uri::decode(query.substr(begin, equals - begin));
        const bool isHidden = equals < end && isSecret(name);
        text += (begin == 0 ? "?" : "&") + name +
                (isHidden ? "=REDACTED" : web::uri::decode(query.substr(equals, end - equals)));
    }
    return harmless(text);
}

} // namespace

bool isJson(const std::string& contentType) {
    return lowerCase(contentType).find("json") != std::string::npos;
}

Exchange::Exchange(Tell tell, std::set<std::string> secretHeaders, bool isDry)
    : m_Tell(std::move(tell)), m_SecretHeaders(std::move(secretHeaders)), m_IsDry(isDry) {}

pplx::task<web::http::http_response> Exchange::send(const web::uri& base,
                                                    const web::http::client::http_client_config& settings,
                                                    web::http::http_request request,
                                                    const pplx::cancellation_token& token) {
    const char* mark = m_IsDry ? "" : "> ";
    std::string text =
        mark + request.method() + " " + shown(web::uri_builder(base).append(request.relative_uri()).to_uri()) + "\n";
    for (const auto& [name, value] : request.headers()) {
        const bool isHidden = m_SecretHeaders.count(lowerCase(name)) != 0 || isSecret(name);
        text += mark + harmless(name) + ": " + (isHidden ? "REDACTED" : harmless(value)) + "\n";
    }
    if (m_IsDry) {
        if (isJson(request.headers().content_type())) {
            text += "\n" + toText(parse(request.extract_utf8string(true).get(), "the body"), true) + "\n";
        }
        m_Tell(text);
        throw NothingSent();
    }
    m_Tell(text);
    const auto begin = std::chrono::steady_clock::now();
    return m_Next->send(base, settings, request, token)
        .then([tell = m_Tell, begin](const pplx::task<web::http::http_response>& answered) {
            const auto took =
                std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
            const std::string time = " (" + std::to_string(took.count()) + " ms)\n";
            try {
                const auto response = answered.get();
                tell("< " + std::to_string(response.status_code()) + " " + harmless(response.reason_phrase()) + time);
                return response;
            } catch (const std::exception& error) {
                tell("< " + harmless(error.what()) + time);
                throw;
            }
        });
}

} // namespace VarnelAPI::Forms::cli
