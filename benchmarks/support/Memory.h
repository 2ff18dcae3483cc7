#pragma once

#include <cstdint>
#include <functional>

namespace bench {

/// The most bytes that `operation` holds at once, in all threads, beyond what was there before. Counted are the blocks
/// of operator new, with the sizes that the allocator gives them, in the whole process.
int64_t peakOf(const std::function<void()>& operation);

/// By how many bytes the memory of the process in use grows at most while `operation` runs.
int64_t growthOf(const std::function<void()>& operation);
/// The same once nothing of earlier operations is kept.
int64_t residentPeakOf(const std::function<void()>& operation);

/// The bytes of such blocks that were allocated and not freed, from the first call of this function on.
int64_t liveBytes();

} // namespace bench
