#pragma once

#include <cstdint>
#include <string>

namespace forms_test {

/// Memory that runs out, as far as it comes from `operator new`, whoever calls it: this library, the HTTP library, the
/// standard library. What C libraries take by themselves is there. Link `FailingMemory.cpp` to have it.
///
/// The memory fails once, or from then on until it is mended; for one thread, or for all the others: the rest of the
/// process goes on.
class FailingMemory {
public:
    enum class How { Once, FromThenOn };
    enum class Where { Here, Elsewhere };

    /// Allocation `nth` in these threads, from now on and counted from 1, fails.
    static void fail(uint64_t nth, How how, Where where);
    /// From now on, none does.
    static void mend();
    /// How many did since `fail`.
    static uint64_t failures();
};

} // namespace forms_test
