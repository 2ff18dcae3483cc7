#pragma once

#include "Store.h"

#include <string>
#include <utility>

namespace VarnelAPI::Forms::repository {

struct Reply {
    Reply(int theStatus, std::string theBody, std::string theContentType = "application/json")
        : status(theStatus), body(std::move(theBody)), contentType(std::move(theContentType)) {}

    int status;
    std::string body;
    std::string contentType;
    /// The Allow header, if any.
    std::string allow;
};

/// The error payload of a status, with what is wrong in this case.
Reply errorReply(int status, const std::string& description);

/// Answers requests from a store: what each path and method means, whatever carries them.
class Routes {
public:
    Routes(Store& store, const std::string& basePath);

    /// The base path with a leading and without a final slash, or "".
    const std::string& basePath() const { return m_basePath; }
    /// Never throws what a request caused: that becomes an error payload. Safe from any thread.
    Reply handle(const std::string& method, const std::string& target, const std::string& body) const;

private:
    Reply answer(const std::string& method, const std::string& target, const std::string& body) const;

    Store& m_store;
    std::string m_basePath;
};

} // namespace VarnelAPI::Forms::repository
