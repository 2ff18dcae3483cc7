#pragma once

#include "CallControl.h"
#include "Recorder.h"
#include "RequestParts.h"
#include "TokenStore.h"

namespace VarnelAPI::Forms::transport::detail {

/// Sends the request, as often as the wishes of the call say; `onResponse` gets the response that is neither a redirect
/// nor the reason for another attempt.
pplx::task<web::http::http_response> send(Call call, OnResponse onResponse);

/// The attempts of one call, one after the other, and what lies between them. It is kept by its call's control, until
/// that is over.
class Attempts : public std::enable_shared_from_this<Attempts> {
public:
    /// The call has a control, and the request is not sent yet.
    Attempts(Call call, OnResponse onResponse);

    /// Makes the first attempt. The last one settles the control.
    /// @throws what the transport throws at once.
    void begin();
    /// Makes no further attempt, as the call has ended with this failure. Whether none is on its way: then nothing else
    /// settles the control.
    bool stop(const std::exception_ptr& failure);

private:
    using Ended = pplx::task<web::http::http_response>;
    using Pause = std::optional<std::chrono::milliseconds>;

    /// Gets a token, if one is needed, and makes an attempt, now or later.
    void prepare();
    void attempt();
    pplx::task<web::http::http_response> arrived(const web::http::http_response& response,
                                                 const std::shared_ptr<ResponseBuffer>& buffer);
    void ended(const Ended& task);
    void next(int wait);
    void settle(const Ended& task);
    void fail(const std::exception_ptr& failure) noexcept;
    /// Nothing is on its way from now on, until `resume`, which says whether the attempts go on.
    int wait();
    bool resume(int wait);
    /// Does what may throw where nobody catches it: a failure is that of the call.
    template <class Work>
    void guarded(Work work);
    void learn(web::http::status_code status, const web::http::http_headers& headers,
               const std::shared_ptr<ResponseBuffer>& buffer);
    void record(CallEvent::Kind kind, const std::exception_ptr& failure) noexcept;

    Pause pauseAfter(const web::http::http_response& response);
    Pause pauseAfter(const Ended& task);
    /// The pause before the next attempt, which is at least `asked`; none if there is to be no other.
    Pause pauseOf(std::chrono::milliseconds asked) const;

    /// All but its request.
    Call m_Call;
    web::uri m_Uri;
    RequestParts m_Parts;
    OnResponse m_OnResponse;
    std::shared_ptr<Clock> m_Clock;
    std::chrono::steady_clock::time_point m_Start;
    bool m_CanRepeat = false;

    /// Of the attempt that is on its way.
    bool m_HasAnswer = false;
    Pause m_Pause;
    /// Whether it was refused for its token; the attempt after it is made at once.
    bool m_IsRefused = false;

    uint64_t m_Token = 0;
    uint64_t m_RefusedToken = 0;

    /// An empty pointer where nobody wants to know.
    std::shared_ptr<Recorder> m_Recorder;
    CallEvent m_Event;
    std::shared_ptr<ResponseBuffer> m_Received;
    std::chrono::steady_clock::time_point m_AttemptStart;

    std::mutex m_Mutex;
    bool m_IsStopped = false;
    bool m_IsEnded = false;
    int m_Waits = 0;
    /// Whether the last wait is not over.
    bool m_IsWaiting = false;
    std::function<void()> m_EndPause;
};

} // namespace VarnelAPI::Forms::transport::detail
