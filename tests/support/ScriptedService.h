#pragma once

#include <VarnelAPI/Forms.h>

#include <cpprest/http_client.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace forms_test {

inline std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

struct Own : std::exception {
    const char* what() const noexcept override { return "own"; }
};

struct Derived : web::http::http_exception {
    using http_exception::http_exception;
};

struct Fault {
    const char* word;
    std::errc code;
};
constexpr Fault faults[] = {{"refused", std::errc::connection_refused},
                            {"unreachable", std::errc::host_unreachable},
                            {"reset", std::errc::connection_reset},
                            {"aborted", std::errc::connection_aborted},
                            {"pipe", std::errc::broken_pipe},
                            {"late", std::errc::timed_out},
                            {"canceled", std::errc::operation_canceled},
                            {"noroute", std::errc::network_unreachable},
                            {"netdown", std::errc::network_down},
                            {"netreset", std::errc::network_reset},
                            {"unconnected", std::errc::not_connected}};

/// All that the failures of calls said.
inline std::string& said() {
    static std::string text;
    return text;
}

/// How a call ends: "ok", or the word or status of its failure with what its text says of attempts.
template <class Call>
std::string endOf(Call call) {
    const auto attemptsIn = [](const std::string& text) {
        said() += text + "\n";
        const auto at = text.find(" (after");
        return at == std::string::npos ? "" : text.substr(at);
    };
    try {
        const auto task = call();
        const auto mutex = std::make_shared<std::pair<std::mutex, std::condition_variable>>();
        const auto isDone = std::make_shared<bool>(false);
        task.then([mutex, isDone](const std::decay_t<decltype(task)>& done) {
            try {
                done.get();
            } catch (...) {
                // It is looked at below.
            }
            const std::lock_guard<std::mutex> lock(mutex->first);
            *isDone = true;
            mutex->second.notify_all();
        });
        std::unique_lock<std::mutex> lock(mutex->first);
        if (!mutex->second.wait_for(lock, std::chrono::seconds(20), [&] { return *isDone; })) {
            return "never";
        }
        if constexpr (std::is_same_v<std::decay_t<decltype(task)>, pplx::task<std::string>>) {
            return task.get();
        } else {
            task.get();
            return "ok";
        }
    } catch (const VarnelAPI::Forms::api::ApiException& error) {
        return std::to_string(error.error_code().value()) + attemptsIn(error.what());
    } catch (const web::http::http_exception& error) {
        for (const Fault& fault : faults) {
            if (error.error_code() == fault.code) {
                return fault.word + attemptsIn(error.what());
            }
        }
        attemptsIn(error.what());
        return error.what();
    } catch (const std::exception& error) {
        attemptsIn(error.what());
        return error.what();
    }
}

/// A clock whose pauses are over at once, unless it is stuck.
class FakeClock final : public VarnelAPI::Forms::transport::Clock {
public:
    std::chrono::steady_clock::time_point now() override {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return std::chrono::steady_clock::time_point() + m_Past;
    }
    std::chrono::system_clock::time_point date() override {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return std::chrono::system_clock::from_time_t(1800000000) + m_Past;
    }
    double chance() override { return luck; }
    std::function<void()> after(std::chrono::milliseconds pause, std::function<void()> then) override {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Pauses.push_back(pause);
        m_Changed.notify_all();
        if (isStuck) {
            m_Stuck.push_back(std::move(then));
        } else {
            m_Past += pause;
            pplx::create_task(then);
        }
        return [this] {
            const std::lock_guard<std::mutex> ending(m_Mutex);
            ++m_Ended;
            m_Changed.notify_all();
        };
    }

    /// All so far, in milliseconds.
    std::string pauses() const {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        std::string text;
        for (const auto& pause : m_Pauses) {
            text += (text.empty() ? "" : " ") + std::to_string(pause.count() / scale);
        }
        return text;
    }
    bool waitForPauses(std::size_t count) {
        std::unique_lock<std::mutex> lock(m_Mutex);
        return m_Changed.wait_for(lock, std::chrono::seconds(20), [&] { return m_Pauses.size() >= count; });
    }
    bool waitForEnds(int count) {
        std::unique_lock<std::mutex> lock(m_Mutex);
        return m_Changed.wait_for(lock, std::chrono::seconds(20), [&] { return m_Ended >= count; });
    }
    void pass(std::chrono::milliseconds time) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Past += time;
    }
    /// Ends the pauses that are stuck.
    void release() {
        for (const auto& then : std::exchange(m_Stuck, {})) {
            then();
        }
    }
    void forget() {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Pauses.clear();
        m_Past = {};
        luck = 0;
        scale = 1;
    }

    double luck = 0;
    int scale = 1;
    std::atomic<bool> isStuck{false};

private:
    mutable std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::chrono::milliseconds m_Past{0};
    std::vector<std::chrono::milliseconds> m_Pauses;
    std::vector<std::function<void()>> m_Stuck;
    int m_Ended = 0;
};

/// A service that does with each request what the next word of a script says: a status, "@" and its Retry-After; the
/// word of a fault; "own" for an exception that is none of the library's; "broken" for a body that breaks off. What
/// changes something is done where the status says so, and where "!" says that it was, though the answer is lost. A
/// request that "hangs" is answered when it is canceled. A status with "~" is there before the request's body was read.
class ScriptedService final : public VarnelAPI::Forms::transport::Transport {
public:
    void script(const std::string& words, FakeClock& clock) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        const auto parsed = wordsOf(words);
        m_Words.assign(parsed.begin(), parsed.end());
        m_Clock = &clock;
        m_Requests.clear();
        m_Effects = 0;
    }
    void always(const std::string& word) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Always = word;
        m_Requests.clear();
    }
    int effects() const { return m_Effects; }
    std::size_t unplayed() const {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Words.size();
    }
    bool waitForRequests(std::size_t count) const {
        std::unique_lock<std::mutex> lock(m_Mutex);
        return m_Changed.wait_for(lock, std::chrono::seconds(20), [&] { return m_Requests.size() >= count; });
    }
    /// Method, target, headers and body of the requests.
    std::vector<std::string> requests() const {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Requests;
    }
    bool areAlike() const {
        const auto all = requests();
        return std::all_of(all.begin(), all.end(), [&](const auto& one) {
            return one == all[0] || one.find(" http://service.test/base/next") != std::string::npos;
        });
    }

    pplx::task<web::http::http_response> send(const web::uri& base, const web::http::client::http_client_config&,
                                              web::http::http_request request,
                                              const pplx::cancellation_token& token) override {
        std::string body;
        if (request.body().is_valid()) {
            body.resize(static_cast<std::size_t>(request.headers().content_length()));
            body.resize(request.body().streambuf().getn(reinterpret_cast<uint8_t*>(body.data()), body.size()).get());
        }
        std::string text = request.method() + " " + web::uri_builder(base).append(request.relative_uri()).to_string();
        for (const auto& [name, value] : request.headers()) {
            text += "\n" + name + ": " + value;
        }
        const std::lock_guard<std::mutex> lock(m_Mutex);
        text += *m_Sending != 0 ? "\nwhile another body is read" : "";
        m_Requests.push_back(text + "\n\n" + body);
        m_Changed.notify_all();
        std::string word = m_Always;
        if (word.empty() && !m_Words.empty()) {
            word = m_Words.front();
            m_Words.pop_front();
        }
        const auto at = word.find('@');
        const std::string after = at == std::string::npos ? "" : word.substr(at + 1);
        word = word.substr(0, at);
        const bool takesEffect = word.back() == '!' || word == "200";
        const bool isEarly = word.back() == '~';
        word = word.substr(0, word.find_first_of("!~"));
        const auto method = request.method();
        const bool reads = method == "GET" || method == "HEAD" || method == "OPTIONS";
        m_Effects += takesEffect && !reads ? 1 : 0;
        const auto fail = [](auto exception) {
            return pplx::task_from_exception<web::http::http_response>(std::move(exception));
        };
        for (const Fault& fault : faults) {
            if (word == fault.word) {
                return fail(web::http::http_exception(std::make_error_code(fault.code), word));
            }
        }
        if (word == "hangs") {
            const pplx::task_completion_event<web::http::http_response> never;
            token.register_callback([never] { never.set_exception(web::http::http_exception("ended")); });
            return pplx::create_task(never);
        } else if (word == "own") {
            return fail(Own());
        } else if (word == "derived") {
            return fail(Derived(word));
        } else if (word.rfind("unresolved", 0) == 0) {
            return fail(web::http::http_exception(word.back() == '2' ? 2 : 1, word));
        } else if (word == "malformed" || word.empty()) {
            return fail(web::http::http_exception(word.empty() ? "nothing is left to play" : word));
        }
        web::http::http_response response(static_cast<unsigned short>(word == "broken" ? 200 : std::stoi(word)));
        response.headers().add("X-Request-Id", "id" + std::to_string(m_Requests.size()));
        response.headers().add("Set-Cookie", "secret");
        if (word == "302") {
            response.headers().add("Location", after.empty()
                                                   ? "http://service.test/base/next" + std::to_string(m_Requests.size())
                                                   : after);
        }
        if (after.rfind("date", 0) == 0) {
            const auto date = std::chrono::system_clock::to_time_t(m_Clock->date()) + std::stol(after.substr(4));
            response.headers().add("Retry-After", utility::datetime::from_interval(
                                                      (static_cast<uint64_t>(date) + 11644473600U) * 10000000U)
                                                      .to_string(utility::datetime::RFC_1123));
        } else if (!after.empty()) {
            response.headers().add("Retry-After", after == "nothing" ? "" : after);
        }
        if (word == "broken" || isEarly) {
            // As a transfer does it, whose header is there.
            const auto impl = response._get_impl();
            impl->set_outstream(request._get_impl()->_response_stream(), false);
            impl->_prepare_to_receive_data();
            if (isEarly) {
                ++*m_Sending;
                pplx::create_task([sending = m_Sending, impl] {
                    std::this_thread::sleep_for(std::chrono::milliseconds(30));
                    --*sending;
                    impl->_complete(0);
                });
            } else {
                impl->_complete(0, std::make_exception_ptr(web::http::http_exception(
                                       std::make_error_code(std::errc::connection_reset), word)));
            }
        } else if (request.headers()["Accept"] == "application/octet-stream") {
            response.set_body("{}", "application/octet-stream");
        } else {
            response.set_body("{}", "application/json");
        }
        return pplx::task_from_result(response);
    }

private:
    mutable std::mutex m_Mutex;
    mutable std::condition_variable m_Changed;
    std::deque<std::string> m_Words;
    std::string m_Always;
    std::vector<std::string> m_Requests;
    FakeClock* m_Clock = nullptr;
    std::atomic<int> m_Effects{0};
    std::shared_ptr<std::atomic<int>> m_Sending = std::make_shared<std::atomic<int>>(0);
};

} // namespace forms_test
