#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/transport/Credentials.h>
#include <VarnelAPI/Forms/transport/Observer.h>
#include <VarnelAPI/Forms/transport/RetryPolicy.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace web::http {
class http_headers;
} // namespace web::http

namespace VarnelAPI::Forms::transport {

class CallOptions;

namespace detail {
struct Wishes;
const Wishes& wishesOf(const CallOptions& options);
} // namespace detail

/// How far a body is on its way.
struct Progress {
    /// Whether it is the request's body, or the answer's.
    enum class Direction { Upload, Download };
    Direction direction = Direction::Upload;
    /// So far. A redirect begins anew.
    uint64_t bytes = 0;
    /// If it is known.
    std::optional<uint64_t> total;
};

/// What single calls want beyond what their client's configuration says: a value, filled in one expression and given to
/// `ApiClient::with`, whose client makes such calls. Of a wish that is said twice the later one holds; headers add up.
/// @code
/// api::FormApi forms(client->with(transport::CallOptions().cancelOn(token).deadline(std::chrono::seconds(30))));
/// @endcode
///
/// **Functions** given here are called in threads of the transport, never two of one call at the same time. They must
/// not wait; while one runs, the transfer does. What one throws ends the call, with that exception. One that runs just
/// when the call is canceled may end after it.
///
/// **A call that ends early** (canceled, late, or by such an exception) ends its task at once, whatever the service has
/// sent by then. Its connection is closed.
class VARNEL_FORMS_API CallOptions {
public:
    /// No wishes.
    CallOptions();
    CallOptions(const CallOptions&);
    CallOptions& operator=(const CallOptions&);
    ~CallOptions();

    /// Ends the calls when the token is canceled, with `web::http::http_exception` whose code is
    /// `std::errc::operation_canceled`; that of `callApi` too after its response is there: then the body fails. A call
    /// made with a canceled token sends nothing.
    CallOptions& cancelOn(const pplx::cancellation_token& token);

    /// Limits the time of each call as a whole, redirects and body included: then it ends with
    /// `web::http::http_exception` whose code is `std::errc::timed_out`. The time-out of the settings stays.
    /// @throws std::invalid_argument unless it is longer than 0.
    CallOptions& deadline(std::chrono::milliseconds limit);

    /// Tells how far the bodies are, the request's and the answer's, whenever some bytes of them went over.
    CallOptions& onProgress(std::function<void(const Progress&)> observer);

    /// Tells the status and the headers of the answer, success or failure, before its body is there. Redirects that are
    /// followed are no answers.
    CallOptions& onResponse(std::function<void(unsigned short status, const web::http::http_headers&)> observer);

    /// Sends this header instead of one of the same name, in any spelling, that the configuration or the parameters of
    /// `callApi` have. What an operation itself sets, such as Accept, stays.
    CallOptions& header(const utility::string_t& name, const utility::string_t& value);

    /// Lets the body of a download whose status is below 400 go to a file, without holding it in memory: to a temporary
    /// one beside it, which takes its name, in place of what has it, when it is whole. Of a call that failed nothing is
    /// left. The content that the operation yields reads the file; the response of `callApi`, whose task then waits for
    /// the whole, has an empty body.
    ///
    /// Operations that don't download throw std::invalid_argument; and all throw std::system_error, in the call, if the
    /// temporary file can't be made, and in the task, if it can't be written.
    CallOptions& saveTo(const utility::string_t& path);

    /// Lets the body go to a function instead, piece by piece. It hears of no end: the task does.
    CallOptions& saveTo(std::function<void(const uint8_t* bytes, std::size_t size)> sink);

    /// Sends the call again where it failed for a while; with one attempt only, it doesn't.
    /// @throws std::invalid_argument for less than one attempt, a growth less than 1, a jitter that is not from 0 to 1,
    ///     or a negative time.
    CallOptions& retry(const RetryPolicy& policy);

    /// Goes by another clock, in pauses, limits of retries, and what is left of a deadline then; an empty pointer for
    /// `systemClock()`. That the deadline itself is over is said by the real time.
    CallOptions& clock(std::shared_ptr<Clock> value);

    /// Authorizes the calls by tokens, which are asked for when they are needed.
    CallOptions& credentials(std::shared_ptr<Credentials> value);

    /// Tells what happens to the calls, start, attempts and end.
    CallOptions& observer(std::shared_ptr<Observer> value);

    /// Sends the header "traceparent" with what `context` returns, such as
    /// "00-0af7651916cd43dd8448eb211c80319c-b7ad6b7169203331-01"; none if that is empty. It is called in the call,
    /// which throws std::invalid_argument if it is anything else.
    CallOptions& traceparent(std::function<utility::string_t()> context);

    /// These wishes, and where they have none, those of `others`.
    CallOptions over(const CallOptions& others) const;

private:
    friend const detail::Wishes& detail::wishesOf(const CallOptions& options);
    detail::Wishes& change();

    std::shared_ptr<detail::Wishes> m_Wishes;
};

} // namespace VarnelAPI::Forms::transport
