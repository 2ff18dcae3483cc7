#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace VarnelAPI::Forms::transport::detail {

/// Looks at a finished task. The task library ends the process when nobody ever looks at a failure, and a caller may
/// drop the task.
template <class Result>
void observe(const pplx::task<Result>& finished) noexcept {
    try {
        finished.get();
    } catch (...) {
        // It is the caller's, who has the same task.
    }
}

class PoolOrHere final : public pplx::scheduler_interface {
    void schedule(pplx::TaskProc_t work, void* argument) override {
        try {
            pplx::get_ambient_scheduler()->schedule(work, argument);
        } catch (...) {
            work(argument);
        }
    }
};

/// Tasks with these options run their continuations in the task library's pool, and, if there is no memory to take one
/// there, at once: the library alone would fail the continuation instead of running it. Continuations inherit them.
inline pplx::task_options inPoolOrHere() {
    // Never destroyed: threads of the pool outlive static objects.
    static auto* const scheduler = new PoolOrHere;
    return {pplx::scheduler_ptr(scheduler)};
}

/// Lets a task go that is on its way, and whose failure nobody will see.
template <class Result>
void abandon(const pplx::task<Result>& task) noexcept {
    try {
        task.then(
            [](const pplx::task<Result>& finished) {
                observe(finished);
                return true; // of what gives nothing, the library makes a function, for which there may be no memory
            },
            inPoolOrHere());
    } catch (...) {
        // There is no memory to look at it later: it is never freed.
        using Task = pplx::task<Result>;
        alignas(Task) unsigned char kept[sizeof(Task)];
        new (kept) Task(task);
    }
}

/// Does what is left to do at the end of continuations, where nobody looks at what is thrown: that is no more than that
/// there is no memory, and the task library would end the process for it.
template <class Work>
void atTheEnd(Work work) noexcept {
    try {
        work();
    } catch (...) {
        // Who waits for a task that was not settled hears of it when the event goes: the task is canceled.
    }
}

/// What `work` gives for the finished task, or for its result.
template <class Result, class Work>
auto resultOf(Work& work, const pplx::task<Result>& done) {
    if constexpr (std::is_invocable_v<Work&, const pplx::task<Result>&>) {
        return work(done);
    } else if constexpr (std::is_void_v<Result>) {
        done.get();
        return work();
    } else {
        return work(done.get());
    }
}

/// Lets `work` run on the finished task, whatever came of it, once. The library copies a continuation before it runs
/// it, and where there is no memory for that, the failure is nobody's. A pointer takes none.
template <class Result, class Work>
auto runAfter(const pplx::task<Result>& task, Work work) {
    auto held = std::make_unique<Work>(std::move(work));
    auto next = task.then(
        [pointer = held.get()](const pplx::task<Result>& done) {
            const std::unique_ptr<Work> taken(pointer);
            return (*taken)(done);
        },
        inPoolOrHere());
    static_cast<void>(held.release());
    return next;
}

/// Does what is to set `event`, and fails it if that throws. An event that is never set cancels its task.
template <class Result, class Work>
void settling(const pplx::task_completion_event<Result>& event, Work work) noexcept {
    atTheEnd([&] {
        try {
            work();
        } catch (const pplx::task_canceled&) {
            // It is canceled, then.
        } catch (...) {
            event.set_exception(std::current_exception());
        }
    });
}

template <class Given>
constexpr bool isTask = false;
template <class Result>
constexpr bool isTask<pplx::task<Result>> = true;

/// `task.then(work)`, with those options; true where that gives nothing. If this throws, the task is not left behind
/// unseen.
template <class Result, class Work>
auto continued(const pplx::task<Result>& task, Work work) {
    using Given = decltype(resultOf(work, task));
    try {
        if constexpr (std::is_void_v<Given>) {
            return runAfter(task, [work = std::move(work)](const pplx::task<Result>& done) mutable {
                resultOf(work, done);
                return true;
            });
        } else if constexpr (isTask<Given>) {
            // The library would wait for the task within by a continuation of its own, which needs memory to run.
            pplx::task_completion_event<typename Given::result_type> event;
            Given outcome(event, inPoolOrHere());
            runAfter(task, [work = std::move(work), event](const pplx::task<Result>& done) mutable {
                settling(event, [&] {
                    continued(resultOf(work, done),
                              [event](const Given& inner) { settling(event, [&] { event.set(inner.get()); }); });
                });
                return true;
            });
            return outcome;
        } else {
            return runAfter(task, [work = std::move(work)](const pplx::task<Result>& done) mutable {
                return resultOf(work, done);
            });
        }
    } catch (...) {
        abandon(task);
        throw;
    }
}

} // namespace VarnelAPI::Forms::transport::detail
