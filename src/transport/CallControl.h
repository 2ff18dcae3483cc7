#pragma once

#include "Exchange.h"
#include "Pool.h"
#include "ResponseBuffer.h"
#include "SavedFile.h"
#include "Wishes.h"

namespace VarnelAPI::Forms::transport::detail {

class Attempts;

/// Watches one call that has wishes while it is on its way, and can end it before its transfer ends.
///
/// Whoever ends it (the holder of the token, the deadline, a function of the caller that throws) may stand anywhere,
/// within one of those functions or within a continuation of the call itself. So it is ended without a lock that is
/// held while any of them runs, and the transfer itself is ended by another thread.
class CallControl : public std::enable_shared_from_this<CallControl> {
public:
    /// An empty pointer if nothing needs to be watched.
    /// @throws std::system_error if the file to save to can't be made.
    static std::shared_ptr<CallControl> forWishes(const Wishes& wishes);
    explicit CallControl(const Wishes& wishes);
    CallControl(const CallControl&) = delete;
    CallControl& operator=(const CallControl&) = delete;
    ~CallControl();

    /// Does `send` within a call that can be ended.
    pplx::task<web::http::http_response> run(const std::function<pplx::task<web::http::http_response>()>& send);
    /// The same with several attempts, which settle it.
    pplx::task<web::http::http_response> run(const std::shared_ptr<Attempts>& attempts);
    /// Ends the call by its last transfer, unless it was ended before.
    void settle(const pplx::task<web::http::http_response>& transfer) noexcept;
    /// The same for a transfer that failed.
    void fail(const std::exception_ptr& failure) noexcept;

    /// What the transfers of the call are canceled by.
    pplx::cancellation_token token() const { return m_Transfers.get_token(); }

    /// Takes the response that is no redirect, and gives one like it whose body this can end.
    /// @throws why the call was ended, if it was.
    web::http::http_response arrived(const web::http::http_response& response,
                                     const std::shared_ptr<ResponseBuffer>& buffer);

    /// Watches no more once the body of the response that was taken is there. To be said when all who look at the
    /// response have.
    void finishAfter(const web::http::http_response& response);

    /// Lets the body of that response go where it is to be saved. There must be such a place.
    void save(const web::http::http_response& response, const std::shared_ptr<ResponseBuffer>& buffer);

    /// Why the call was ended before its time, or null.
    std::exception_ptr failure() const;

    /// How often the request was sent; redirects don't count.
    int attempts() const { return m_Attempts; }
    void countAttempt() { ++m_Attempts; }
    /// How often it was sent again after an attempt that may have taken effect.
    int repeats() const { return m_Repeats; }
    void repeat() { ++m_Repeats; }
    /// What to add to the text of a failure.
    /// @param changes whether the call changes something.
    utility::string_t afterAttempts(bool changes) const;

    /// How many bytes of the body were saved.
    std::size_t saved() const { return m_Saved; }

    const Wishes& wishes() const { return m_Wishes; }
    /// Tells the caller's observer of progress. There must be one.
    void report(Progress::Direction direction, uint64_t bytes, const std::optional<uint64_t>& total);
    /// Removes what was saved to a file, if it was, as the call failed.
    void discardFile();
    /// Null unless a file is to be saved.
    const std::unique_ptr<SavedFile>& file() const { return m_File; }

private:
    void end(std::exception_ptr failure);
    void settle(const web::http::http_response& response);
    void settle(std::exception_ptr failure);
    void completeBody(utility::size64_t size, const std::exception_ptr& failure);
    void finish();
    pplx::task<web::http::http_response> watch(const std::function<void()>& begin);
    ResponseBuffer::Counter downloadCounter(const web::http::http_response& response);
    /// Ends the call with what `work` throws, and passes it on.
    template <class Work>
    void endingWithFailure(Work work);

    const Wishes m_Wishes;
    std::unique_ptr<SavedFile> m_File;
    pplx::cancellation_token_source m_Transfers;
    pplx::task_completion_event<web::http::http_response> m_Outcome;

    mutable std::mutex m_Mutex;
    std::exception_ptr m_Failure;
    bool m_IsOver = false;
    // The task library's events can't bear a value and a failure at the same time.
    bool m_IsSettled = false;
    bool m_IsBodyComplete = false;
    std::shared_ptr<ResponseBuffer> m_Buffer;
    std::shared_ptr<web::http::details::_http_response> m_Response;

    std::shared_ptr<Attempts> m_Course;

    std::atomic<std::size_t> m_Saved{0};
    std::atomic<int> m_Attempts{0};
    std::atomic<int> m_Repeats{0};

    /// Held while a function of the caller runs.
    std::mutex m_Observing;

    pplx::cancellation_token_registration m_Registration;
    std::function<void()> m_EndTimer;
};

} // namespace VarnelAPI::Forms::transport::detail
