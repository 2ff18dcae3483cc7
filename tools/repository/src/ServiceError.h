#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace VarnelAPI::Forms::repository {

/// A request that can't be served: becomes a response of this status with an error payload.
class ServiceError : public std::runtime_error {
public:
    ServiceError(int status, const std::string& description, std::string allowedMethods = {})
        : std::runtime_error(description), m_status(status), m_allowedMethods(std::move(allowedMethods)) {}

    int status() const { return m_status; }
    /// The value of the Allow header, for status 405.
    const std::string& allowedMethods() const { return m_allowedMethods; }

private:
    int m_status;
    std::string m_allowedMethods;
};

} // namespace VarnelAPI::Forms::repository
