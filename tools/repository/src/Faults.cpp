#include "Faults.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace VarnelAPI::Forms::repository {
namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        throw std::invalid_argument(std::string("This fault can't be met: ") + what);
    }
}

bool isLine(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

void check(const Fault& fault) {
    constexpr std::array<std::string_view, 10> operations{"",       "list",   "count",  "get",    "download",
                                                          "insert", "relate", "update", "upload", "delete"};
    require(std::find(operations.begin(), operations.end(), fault.operation) != operations.end(),
            "there is no such operation");
    require(fault.first >= 1 && fault.every >= 1, "requests are counted from 1");
    require(fault.times >= 0, "it is met a negative number of times");
    require(fault.delay.count() >= 0 && fault.dripPause.count() >= 0, "a time is negative");
    require(fault.status == 0 || (fault.status >= 200 && fault.status <= 599), "the status is not from 200 to 599");
    require(fault.status != 0 || (fault.body.empty() && fault.headers.empty()),
            "a body or headers without a status replace nothing");
    for (const auto& [name, value] : fault.headers) {
        require(!name.empty() && isLine(name) && name.find_first_of(": ") == std::string::npos && isLine(value),
                "a header is not one");
    }
    const bool isCut = fault.truncateAfter.has_value() || fault.dripBytes != 0;
    require(!fault.isStall || (!fault.isReset && fault.status == 0 && !isCut),
            "an answer that is withheld can't be anything else");
    require(!fault.isReset || fault.status == 0 || isCut, "an answer is either replaced or reset");
    require((fault.dripBytes == 0) == (fault.dripPause.count() == 0), "a drip needs both its bytes and its pause");
    require(fault.delay.count() > 0 || fault.status != 0 || fault.isReset || fault.isStall || isCut,
            "nothing goes wrong");
}

bool isFor(const Fault& fault, const Call* call) {
    if (fault.operation.empty() && fault.className.empty()) {
        return true;
    }
    return call != nullptr && (fault.operation.empty() || fault.operation == call->operation) &&
           (fault.className.empty() || fault.className == call->subject.name ||
            fault.className == call->subject.schema + "." + call->subject.name);
}

} // namespace

FaultId Faults::inject(const Fault& fault) {
    check(fault);
    const std::lock_guard lock(m_mutex);
    m_faults.push_back({++m_last, fault, 0, 0, fault.times == 0 ? -1 : fault.times});
    return m_last;
}

std::optional<std::pair<FaultId, Fault>> Faults::meet(const Call* call) {
    const std::lock_guard lock(m_mutex);
    std::optional<std::pair<FaultId, Fault>> met;
    for (FaultState& state : m_faults) {
        const Fault& fault = state.fault;
        if (!isFor(fault, call)) {
            continue;
        }
        ++state.seen;
        const bool isDue = state.seen >= fault.first && (state.seen - fault.first) % fault.every == 0;
        if (isDue && state.left != 0 && !met) {
            ++state.met;
            state.left -= state.left > 0 ? 1 : 0;
            met.emplace(state.id, fault);
        }
    }
    return met;
}

std::vector<FaultState> Faults::all() const {
    const std::lock_guard lock(m_mutex);
    return m_faults;
}

void Faults::clear() {
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
}

} // namespace VarnelAPI::Forms::repository
