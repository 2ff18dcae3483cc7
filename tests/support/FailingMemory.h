#pragma once

#include <cstdint>

namespace forms_test {

/// Memory that runs out, as far as it comes from `operator new` in this thread, whoever calls it: this library, the
/// HTTP library, the standard library. What C libraries take by themselves is there. Link `FailingMemory.cpp` to have
/// it.
class FailingMemory {
public:
    enum class How { Once, FromThenOn };

    /// Allocation `nth` of this thread, from now on and counted from 1, fails; or all from there on, too.
    static void fail(uint64_t nth, How how);
    /// From now on, none does.
    static void mend();
    /// How many did since `fail`.
    static uint64_t failures();
};

} // namespace forms_test
