#include "Attempts.h"
#include "Continuation.h"

namespace VarnelAPI::Forms::transport::detail {

using web::http::http_exception;
using web::http::http_response;

namespace {

std::exception_ptr failureOf(std::errc code, const utility::char_t* text) {
    return std::make_exception_ptr(http_exception(std::make_error_code(code), text));
}

} // namespace

std::shared_ptr<CallControl> CallControl::forWishes(const Wishes& wishes) {
    return wishes.concernTransfer() ? std::make_shared<CallControl>(wishes) : nullptr;
}

CallControl::CallControl(const Wishes& wishes) : m_Wishes(wishes) {
    if (!wishes.path.empty()) {
        m_File = std::make_unique<SavedFile>(wishes.path);
    }
}

CallControl::~CallControl() = default;

pplx::task<http_response> CallControl::run(const std::function<pplx::task<http_response>()>& send) {
    return watch([&] {
        continued(send(),
                  [self = shared_from_this()](const pplx::task<http_response>& transfer) { self->settle(transfer); });
    });
}

pplx::task<http_response> CallControl::run(const std::shared_ptr<Attempts>& attempts) {
    m_Course = attempts;
    return watch([&] { attempts->begin(); });
}

pplx::task<http_response> CallControl::watch(const std::function<void()>& begin) {
    pplx::task<http_response> outcome(m_Outcome, inPoolOrHere());
    const std::weak_ptr<CallControl> weak = weak_from_this();
    if (m_Wishes.deadline) {
        m_EndTimer = afterPause(*m_Wishes.deadline, [weak] {
            if (const auto self = weak.lock()) {
                self->end(failureOf(std::errc::timed_out, _XPLATSTR("the call took longer than its deadline")));
            }
        });
    }
    if (m_Wishes.token && m_Wishes.token->is_cancelable()) {
        // It may be called here and now.
        m_Registration = m_Wishes.token->register_callback([weak] {
            if (const auto self = weak.lock()) {
                self->end(failureOf(std::errc::operation_canceled, _XPLATSTR("the call was canceled")));
            }
        });
    }
    if (failure()) {
        finish();
        return outcome;
    }
    try {
        begin();
    } catch (...) {
        finish();
        abandon(outcome); // It may have ended meanwhile, by its deadline or its token.
        throw;
    }
    return outcome;
}

void CallControl::settle(const pplx::task<http_response>& transfer) noexcept {
    try {
        settle(transfer.get());
    } catch (...) {
        fail(std::current_exception());
    }
}

void CallControl::fail(const std::exception_ptr& failure) noexcept {
    atTheEnd([&] {
        finish();
        discardFile();
    });
    settle(failure);
}

utility::string_t CallControl::afterAttempts(bool changes) const {
    if (m_Attempts < 2) {
        return {};
    }
    const auto count = utility::conversions::to_string_t(std::to_string(m_Attempts));
    return _XPLATSTR(" (after ") + count + _XPLATSTR(" attempts") +
           (changes && m_Repeats != 0 ? _XPLATSTR("; an earlier one may have taken effect)") : _XPLATSTR(")"));
}

template <class Work>
void CallControl::endingWithFailure(Work work) {
    try {
        const std::lock_guard<std::mutex> lock(m_Observing);
        if (!failure()) {
            work();
        }
    } catch (...) {
        end(std::current_exception());
        throw;
    }
}

http_response CallControl::arrived(const http_response& response, const std::shared_ptr<ResponseBuffer>& buffer) {
    http_response own(response.status_code());
    own.set_reason_phrase(response.reason_phrase());
    own.headers() = response.headers();
    const auto impl = own._get_impl();
    impl->set_outstream(response._get_impl()->outstream(), false);
    impl->set_instream(response.body());
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        if (m_Failure) {
            std::rethrow_exception(m_Failure);
        }
        m_Response = impl;
        m_Buffer = buffer;
    }
    if (m_Wishes.onResponse) {
        endingWithFailure([&] { m_Wishes.onResponse(response.status_code(), response.headers()); });
    }
    if (m_Wishes.onProgress && !m_Wishes.saves()) {
        buffer->handTo(nullptr, downloadCounter(response));
    }
    return own;
}

void CallControl::finishAfter(const http_response& response) {
    continued(pplx::create_task(response._get_impl()->_get_data_available(), inPoolOrHere()),
              [self = shared_from_this()](const pplx::task<utility::size64_t>& ready) {
                  atTheEnd([&] {
                      try {
                          self->completeBody(ready.get(), nullptr);
                      } catch (...) {
                          self->completeBody(0, std::current_exception());
                      }
                  });
                  self->finish();
              });
}

ResponseBuffer::Counter CallControl::downloadCounter(const http_response& response) {
    if (!m_Wishes.onProgress) {
        return nullptr;
    }
    return [self = shared_from_this(), total = announcedLength(response)](uint64_t bytes) {
        self->report(Progress::Direction::Download, bytes, total);
    };
}

void CallControl::save(const http_response& response, const std::shared_ptr<ResponseBuffer>& buffer) {
    buffer->handTo(
        [self = shared_from_this()](const uint8_t* bytes, std::size_t size) {
            self->endingWithFailure(
                [&] { self->m_File ? self->m_File->write(bytes, size) : self->m_Wishes.sink(bytes, size); });
            self->m_Saved += size;
        },
        downloadCounter(response));
}

void CallControl::report(Progress::Direction direction, uint64_t bytes, const std::optional<uint64_t>& total) {
    endingWithFailure([&] { m_Wishes.onProgress({direction, bytes, total}); });
}

void CallControl::discardFile() {
    if (m_File) {
        m_File->discard();
    }
}

std::exception_ptr CallControl::failure() const {
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Failure;
}

void CallControl::end(std::exception_ptr failure) {
    std::unique_lock<std::mutex> lock(m_Mutex);
    if (m_Failure || m_IsOver) {
        return;
    }
    m_Failure = failure;
    const auto buffer = m_Buffer;
    const auto course = m_Course;
    lock.unlock();
    const bool isAlone = course && course->stop(failure);
    discardFile();
    if (buffer) {
        completeBody(0, failure);
        buffer->close(std::ios_base::out, failure);
    }
    settle(failure);
    atTheEnd([&] {
        runInPool([transfers = m_Transfers, self = isAlone ? shared_from_this() : nullptr] {
            atTheEnd([&] { transfers.cancel(); });
            if (self) {
                self->finish(); // as no transfer will
            }
        });
    });
}

void CallControl::settle(const http_response& response) {
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        if (std::exchange(m_IsSettled, true)) {
            return;
        }
    }
    m_Outcome.set(response);
}

void CallControl::settle(std::exception_ptr failure) {
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        if (std::exchange(m_IsSettled, true)) {
            return;
        }
    }
    try {
        m_Outcome.set_exception(failure);
    } catch (...) {
        // There is no memory for it. Without its event the task is canceled.
        const auto dropped = std::move(m_Outcome);
    }
}

void CallControl::completeBody(utility::size64_t size, const std::exception_ptr& failure) {
    std::unique_lock<std::mutex> lock(m_Mutex);
    const auto response = m_Response;
    if (!response || std::exchange(m_IsBodyComplete, true)) {
        return;
    }
    lock.unlock();
    try {
        response->_complete(size, failure);
    } catch (...) {
        lock.lock();
        m_IsBodyComplete = false; // It was not told, for want of memory.
        throw;
    }
}

void CallControl::finish() {
    std::unique_lock<std::mutex> lock(m_Mutex);
    if (m_IsOver) {
        return;
    }
    m_IsOver = true;
    m_Response.reset();
    const auto buffer = std::move(m_Buffer);
    const auto course = std::move(m_Course);
    lock.unlock();
    if (buffer) {
        buffer->letGo();
    }
    if (m_Registration != pplx::cancellation_token_registration()) {
        m_Wishes.token->deregister_callback(m_Registration);
    }
    if (m_EndTimer) {
        m_EndTimer();
    }
}

} // namespace VarnelAPI::Forms::transport::detail
