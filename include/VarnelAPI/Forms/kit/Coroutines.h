#pragma once

// The library itself is C++17, and no other header includes this one.
#if !defined(__cpp_impl_coroutine)
#error "VarnelAPI/Forms/kit/Coroutines.h needs a compiler with C++20 coroutines"
#endif

#include <VarnelAPI/Forms/kit/Pages.h>

#include <coroutine>
#include <exception>
#include <functional>
#include <utility>

/// Coroutines of tasks:
///
///     pplx::task<int> countOpen(api::BaseClassApi issues, utility::string_t project) {
///         int open = 0;
///         auto cursor = kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project).cursor();
///         while (const auto page = co_await cursor.next()) {
///             for (const auto& issue : *page) {
///                 open += issue->getProperties()->isClosed() ? 0 : 1;
///             }
///         }
///         co_return open;
///     }
///
/// A coroutine may return a `pplx::task`, which it may drop. It starts in the thread of its caller, and after each
/// `co_await` of a task it goes on in the task library's pool (in its own thread if the task was done); `resumeOn`
/// takes it to another thread. Give it its arguments by value: references end before it does.
namespace VarnelAPI::Forms::kit {

namespace detail {

/// What waits for a task, without a thread.
template <class Result>
class TaskAwaiter {
public:
    explicit TaskAwaiter(pplx::task<Result> task) : m_Task(std::move(task)) {}

    bool await_ready() const { return m_Task.is_done(); }
    void await_suspend(std::coroutine_handle<> waiting) const {
        // A copy: the coroutine may go on, and this awaiter end with it, before `then` returns.
        const auto task = m_Task;
        task.then([waiting](const pplx::task<Result>&) { waiting.resume(); });
    }
    Result await_resume() const { return m_Task.get(); }

private:
    pplx::task<Result> m_Task;
};

/// What every coroutine that returns a task has.
template <class Result>
class TaskPromiseBase {
public:
    pplx::task<Result> get_return_object() { return observed(pplx::task<Result>(m_Done)); }
    std::suspend_never initial_suspend() const noexcept { return {}; }
    std::suspend_never final_suspend() const noexcept { return {}; }
    void unhandled_exception() { m_Done.set_exception(std::current_exception()); }

protected:
    pplx::task_completion_event<Result> m_Done;
};

/// What settles the task that such a coroutine returns.
template <class Result>
class TaskPromise : public TaskPromiseBase<Result> {
public:
    void return_value(Result value) { this->m_Done.set(std::move(value)); }
};
template <>
class TaskPromise<void> : public TaskPromiseBase<void> {
public:
    void return_void() { m_Done.set(); }
};

/// What goes on where a function posts it.
template <class Post>
class PostAwaiter {
public:
    explicit PostAwaiter(Post post) : m_Post(std::move(post)) {}

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> waiting) {
        // Moved out: once posted, the coroutine may go on, and end, before `post` returns.
        Post post = std::move(m_Post);
        post(std::function<void()>([waiting] { waiting.resume(); }));
    }
    void await_resume() const {}

private:
    Post m_Post;
};

} // namespace detail

/// `co_await resumeOn(post)` goes on in the thread to which `post` brings a `std::function<void()>`. If `post` throws,
/// so does the `co_await`, in the thread where it was. If what was posted is never called, the coroutine never goes on,
/// and what it holds is not freed.
template <class Post>
detail::PostAwaiter<Post> resumeOn(Post post) {
    return detail::PostAwaiter<Post>(std::move(post));
}

/// `co_await pages` gives all instances of the list.
template <class Instances>
auto operator co_await(const Pages<Instances>& pages) {
    return detail::TaskAwaiter<typename Pages<Instances>::Page>(all(pages));
}

} // namespace VarnelAPI::Forms::kit

#if defined(_MSC_VER) && (_MSC_VER >= 1900) && (!defined(CPPREST_FORCE_PPLX) || CPPREST_FORCE_PPLX == 0)
// The compiler's own, for its own task library.
#include <pplawait.h>
#else
namespace pplx {

template <class Result>
auto operator co_await(const task<Result>& task) {
    return VarnelAPI::Forms::kit::detail::TaskAwaiter<Result>(task);
}

} // namespace pplx

template <class Result, class... Arguments>
struct std::coroutine_traits<pplx::task<Result>, Arguments...> {
    using promise_type = VarnelAPI::Forms::kit::detail::TaskPromise<Result>;
};
#endif
