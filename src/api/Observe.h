#pragma once

#include <VarnelAPI/Forms/detail/HttpLibrary.h>

namespace VarnelAPI::Forms::api::detail {

/// Looks at a finished task. The task library ends the process when nobody ever looks at a failure, and a caller may
/// drop the task.
template <class Result>
void observe(const pplx::task<Result>& finished) {
    try {
        finished.get();
    } catch (...) {
        // It is the caller's, who has the same task.
    }
}

} // namespace VarnelAPI::Forms::api::detail
