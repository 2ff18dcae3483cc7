#pragma once

#include "Routes.h"
#include "VarnelRepository/Fault.h"

#include <mutex>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// The faults that are injected, and which request is next to meet one. Safe from any thread.
class Faults {
public:
    /// @throws std::invalid_argument
    FaultId inject(const Fault& fault);
    /// The fault that a request meets, if any; counts it.
    /// @param call nothing when the request can't be understood
    std::optional<std::pair<FaultId, Fault>> meet(const Call* call);
    std::vector<FaultState> all() const;
    void clear();

private:
    mutable std::mutex m_mutex;
    std::vector<FaultState> m_faults;
    FaultId m_last = 0;
};

} // namespace VarnelAPI::Forms::repository
