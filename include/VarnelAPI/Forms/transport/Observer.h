#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <system_error>

namespace VarnelAPI::Forms::transport {

namespace detail {
class Attempts;
class Recorder;
struct Wishes;
} // namespace detail

/// Something that happened to a call. It holds no body, no credentials, and of headers and queries no values but those
/// that are named.
struct CallEvent {
    /// What happened: the call began, an attempt has come to its answer or its failure, or the call has ended.
    enum class Kind { Started, Attempted, Ended };
    Kind kind = Kind::Started;
    /// The same for all events of a call, and for no other call of the process.
    uint64_t call = 0;
    /// The name of the operation; empty for `ApiClient::callApi`.
    utility::string_t operation;
    utility::string_t method;
    /// Of the URL, with the path of the base URL; it may hold ids.
    utility::string_t path;
    /// Names and values, as they are in the URL; "REDACTED" for the values that were not named.
    std::map<utility::string_t, utility::string_t> query;
    /// Which attempt it is, from 1 on; at the end how many there were.
    int attempt = 0;
    /// Of the answer; 0 if there is none.
    unsigned short status = 0;
    /// Why there is no answer, or why it broke off; at the end also why the call ended early: `std::errc::timed_out`,
    /// `std::errc::operation_canceled`. That of another exception than `web::http::http_exception` is
    /// `std::errc::io_error`.
    std::error_code error;
    /// Of the answer, by their names in lower case; "REDACTED" for the values that were not named.
    std::map<utility::string_t, utility::string_t> headers;
    /// Of the answer's header X-Request-Id; empty if there is none.
    utility::string_t requestId;
    /// Of the request's body, and, at the end, what has come of the answer's.
    uint64_t bytesSent = 0;
    uint64_t bytesReceived = 0;
    /// When the call started.
    std::chrono::system_clock::time_point started;
    /// How long the call, or the attempt until the header of its answer was there, took so far.
    std::chrono::microseconds took{0};
};

/// Gets the events of those calls whose options have it, which any number of clients may share.
///
/// The function is called in threads of the task library's pool, never twice at the same time, and with the events of
/// a call in their order. The calls don't wait for it: it may be slow, and what it throws is dropped. Events that it
/// has not had yet are held in memory, and lost if the process ends. One without a function costs the calls nothing:
/// with it, calls of a client that has an observer go unobserved.
class VARNEL_FORMS_API Observer {
public:
    using Function = std::function<void(const CallEvent&)>; ///< What gets the events.

    /// @param namedHeaders those headers of answers, and ...
    /// @param namedQuery ... those query options, whose values are shown.
    explicit Observer(Function function, const std::set<utility::string_t>& namedHeaders = {},
                      const std::set<utility::string_t>& namedQuery = {});
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer();

private:
    friend class detail::Attempts;
    friend struct detail::Wishes;

    std::shared_ptr<detail::Recorder> m_Recorder;
};

} // namespace VarnelAPI::Forms::transport
