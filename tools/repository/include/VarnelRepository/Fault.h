#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// Names an injected fault, from 1 on.
using FaultId = std::uint64_t;

/// What goes wrong with some requests. It must do something: delay, replace, withhold or cut the answer.
/// When several faults are due for a request, it meets the one injected first, and the others stay due.
struct Fault {
    // Which requests: those that are both; an empty text is all. Requests that can't be understood have neither.

    /// One of list, count, get, download, insert, relate, update, upload, delete.
    std::string operation;
    /// The class of the path, or of the record or related instance at its end: "Issue" or "DynamicSchema.Issue".
    std::string className;

    // How often. Of the requests above, those numbered first, first + every, first + 2 * every ... from 1.

    int first = 1; ///< The first one to meet it.
    int every = 1; ///< From then on each of so many.
    /// How many requests meet it; 0 is all.
    int times = 1;

    // What happens.

    /// The answer comes so much later. The effect takes place before.
    std::chrono::milliseconds delay{0};
    /// Answers with this status (200 to 599) and body instead.
    int status = 0;
    std::string body;
    /// Headers of the answer, for example Retry-After; they replace those of the same name.
    std::vector<std::pair<std::string, std::string>> headers;
    /// The connection is reset instead of an answer, or after truncateAfter bytes of its body.
    bool isReset = false;
    /// No answer comes until the fault is removed; the connection stays open, and then closes.
    bool isStall = false;
    /// The answer tells its full length, and ends after this many bytes of its body.
    std::optional<std::size_t> truncateAfter;
    /// The body of the answer comes in parts of so many bytes, with a pause before each.
    std::size_t dripBytes = 0;
    std::chrono::milliseconds dripPause{0}; ///< Before each part.

    /// A request whose answer is replaced, withheld or reset is not carried out, unless this is set. What is only
    /// delayed, dripped or truncated is always carried out.
    bool isAfterEffect = false;
};

/// A fault, and what became of it.
struct FaultState {
    FaultId id = 0; ///< The fault's number.
    Fault fault;    ///< What was injected.
    /// How many requests it was for.
    int seen = 0;
    /// How many met it.
    int met = 0;
    /// How many will still meet it; -1 when there is no limit.
    int left = 0;
};

} // namespace VarnelAPI::Forms::repository
