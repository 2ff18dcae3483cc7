#pragma once

#include <VarnelAPI/Forms/transport/Transport.h>

#include <cpprest/http_client.h>

#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace forms_test {

/// Answers calls from a list, without any network, and records what they sent: the way to test a program that uses the
/// library. Give it to `ApiConfiguration::setTransport`. It may be used from several threads.
class ReplayTransport final : public VarnelAPI::Forms::transport::Transport {
public:
    struct Answer {
        web::http::status_code status = web::http::status_codes::OK;
        utility::string_t reason;
        std::vector<std::pair<utility::string_t, utility::string_t>> headers;
        std::string body;
    };
    struct Sent {
        utility::string_t method;
        /// As it would go out.
        web::uri url;
        web::http::http_headers headers;
        std::vector<unsigned char> body;
    };

    /// The answer to the next request that has none yet.
    void answer(Answer answer) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Answers.push_back(std::move(answer));
    }
    /// All requests so far, in their order.
    std::vector<Sent> sent() const {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Sent;
    }

    pplx::task<web::http::http_response> send(const web::uri& base, const web::http::client::http_client_config&,
                                              web::http::http_request request,
                                              const pplx::cancellation_token&) override {
        const auto url = web::uri_builder(base).append(request.relative_uri()).to_uri();
        std::vector<unsigned char> body(static_cast<std::size_t>(request.headers().content_length()));
        if (request.body().is_valid()) {
            request.body().streambuf().getn(body.data(), body.size()).get(); // It is there.
        }
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Sent.push_back({request.method(), url, request.headers(), std::move(body)});
        if (m_Answers.empty()) {
            return pplx::task_from_exception<web::http::http_response>(
                web::http::http_exception(_XPLATSTR("no answer is left to replay")));
        }
        const Answer answer = std::move(m_Answers.front());
        m_Answers.pop_front();
        web::http::http_response response(answer.status);
        response.set_reason_phrase(answer.reason);
        if (!answer.body.empty()) {
            response.set_body(answer.body, "application/json");
        }
        for (const auto& [name, value] : answer.headers) {
            response.headers()[name] = value;
        }
        return pplx::task_from_result(response);
    }

private:
    mutable std::mutex m_Mutex;
    std::deque<Answer> m_Answers;
    std::vector<Sent> m_Sent;
};

} // namespace forms_test
