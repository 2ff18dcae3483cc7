#pragma once

#include <VarnelAPI/Forms/kit/Tasks.h>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

/// Results for the thread that owns the windows:
///
///     kit::deliver([=] { return issues.get_DynamicSchemaBaseClass_instanceId(project, id); },
///                  postToWindowThread, std::weak_ptr<IssueView>(view),
///                  [](IssueView& view, const std::shared_ptr<model::DynamicSchemaBaseClassInstance>& issue) { ... },
///                  [](IssueView& view, const std::exception_ptr& error) { ... });
///
namespace VarnelAPI::Forms::kit {

/// What became of a delivery.
enum class Delivered {
    /// The receiver has the result.
    result,
    /// The receiver has the failure.
    failure,
    /// The receiver is gone, or its thread takes no more work: it has nothing, and nobody was called.
    nothing,
};

namespace detail {

/// What is posted. Made in the pool, it runs and ends in the receiver's thread; one that ends without having run was
/// not delivered.
template <class Result, class Receiver, class Finished, class Failed>
class Parcel {
public:
    Parcel(std::weak_ptr<Receiver> receiver, Finished finished, Failed failed)
        : m_Receiver(std::move(receiver)), m_Callbacks(std::in_place, std::move(finished), std::move(failed)) {}
    Parcel(const Parcel&) = delete;
    Parcel& operator=(const Parcel&) = delete;
    ~Parcel() { m_Outcome.set(Delivered::nothing); } // Does nothing if something was delivered.

    pplx::task<Delivered> outcome() const { return observed(pplx::task<Delivered>(m_Outcome)); }

    void open(const pplx::task<Result>& task) {
        // The callbacks end here, and not in whatever thread ends the last copy of the posted work.
        auto callbacks = *std::exchange(m_Callbacks, std::nullopt);
        const auto receiver = m_Receiver.lock();
        if (!receiver) {
            return;
        }
        try {
            m_Outcome.set(give(callbacks, receiver, task));
        } catch (...) {
            // The callback's own: it belongs to the receiver's thread, as that of any other handler.
            m_Outcome.set_exception(std::current_exception());
            throw;
        }
    }

private:
    using Callbacks = std::pair<Finished, Failed>;

    static Delivered give(Callbacks& callbacks, const std::shared_ptr<Receiver>& receiver,
                          const pplx::task<Result>& task) {
        std::exception_ptr failure;
        if constexpr (std::is_void_v<Result>) {
            failure = failureOf([&] { task.get(); });
            if (!failure) {
                call(callbacks.first, receiver);
            }
        } else {
            std::optional<Result> result;
            failure = failureOf([&] { result.emplace(task.get()); });
            if (!failure) {
                call(callbacks.first, receiver, *result);
            }
        }
        if (failure) {
            call(callbacks.second, receiver, failure);
        }
        return failure ? Delivered::failure : Delivered::result;
    }

    template <class Callback, class... Values>
    static void call(Callback& callback, [[maybe_unused]] const std::shared_ptr<Receiver>& receiver,
                     const Values&... values) {
        if constexpr (std::is_void_v<Receiver>) {
            callback(values...);
        } else {
            callback(*receiver, values...);
        }
    }

    template <class Work>
    static std::exception_ptr failureOf(Work work) {
        try {
            work();
            return nullptr;
        } catch (...) {
            return std::current_exception();
        }
    }

    std::weak_ptr<Receiver> m_Receiver;
    std::optional<Callbacks> m_Callbacks;
    pplx::task_completion_event<Delivered> m_Outcome;
};

} // namespace detail

/// Gives the result of a call to a receiver in the receiver's own thread, whatever the program's window system. Neither
/// thread waits.
/// @param call a task, or a function that makes one. The function is called in the task library's pool: making a call
///     takes time too, over https some 20 ms for the certificates. What it throws is a failure like any other.
/// @param post called in the pool, once, with a `std::function<void()>` that it has to bring to the receiver's thread
///     and call there, once. If it throws, or drops the function, nothing is delivered.
/// @param receiver looked at in the receiver's thread, so that one that ends in that thread can't end in between. For
///     an object that no shared pointer owns, let it have a member `std::shared_ptr<void>` and give that as a
///     `std::weak_ptr<void>`: the callbacks then get no receiver.
/// @param finished called with the receiver and the result (of a `task<void>`, the receiver only).
/// @param failed called with the receiver and the `std::exception_ptr`; one of the two is called, in the receiver's
///     thread, and both end there. What they throw goes on into that thread, as it would from any handler.
/// @return what became of it; with the exception of the callback that threw. It may be dropped.
template <class Call, class Post, class Receiver, class Finished, class Failed>
pplx::task<Delivered> deliver(const Call& call, Post post, std::weak_ptr<Receiver> receiver, Finished finished,
                              Failed failed) {
    if constexpr (std::is_invocable_v<const Call&>) {
        return deliver(pplx::create_task(call), std::move(post), std::move(receiver), std::move(finished),
                       std::move(failed));
    } else {
        using Result = typename Call::result_type;
        using Parcel = detail::Parcel<Result, Receiver, Finished, Failed>;
        const auto parcel = std::make_shared<Parcel>(std::move(receiver), std::move(finished), std::move(failed));
        const auto outcome = parcel->outcome();
        call.then([parcel, post = std::move(post)](const pplx::task<Result>& task) mutable {
            try {
                task.get();
            } catch (...) {
                // The receiver's; but it may be gone, and somebody has to have looked.
            }
            try {
                post(std::function<void()>([parcel = std::move(parcel), task] { parcel->open(task); }));
            } catch (...) {
                // The thread takes no more work: the parcel's end says so.
            }
        });
        return outcome;
    }
}

} // namespace VarnelAPI::Forms::kit
