#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <stdexcept>

namespace VarnelAPI::Forms::kit {

/// Whether the calling thread is one of the task library's pool, in which continuations run. Waiting there for a task
/// takes a thread from those that could finish it: once all of them wait, none ever goes on. False on systems whose
/// pool can't be asked (Windows, macOS).
VARNEL_FORMS_API bool isPoolThread();

/// Thrown by what would have to wait in a thread of that pool, and doesn't.
class VARNEL_FORMS_API WouldBlockPool : public std::logic_error {
public:
    WouldBlockPool();
    WouldBlockPool(const WouldBlockPool&);
    WouldBlockPool& operator=(const WouldBlockPool&);
    ~WouldBlockPool() override;
};

/// The task, which may be dropped from now on: the task library ends a process in which a task failed and nobody ever
/// looked. (The tasks of the operations and of this layer may be dropped as they are.)
template <class Result>
pplx::task<Result> observed(pplx::task<Result> task) {
    task.then([](const pplx::task<Result>& finished) {
        try {
            finished.get();
        } catch (...) {
            // It is the caller's, who has the same task.
        }
    });
    return task;
}

} // namespace VarnelAPI::Forms::kit
