#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <exception>
#include <memory>
#include <system_error>

namespace VarnelAPI::Forms::model {
class ErrorSchema;
}

namespace VarnelAPI::Forms::kit {

/// What went wrong on the way to the service. The HTTP library's codes say it in a way of their own on each system;
/// these can be compared with them:
///
///     catch (const web::http::http_exception& error) {
///         if (error.error_code() == kit::Trouble::timedOut) ...
///
enum class Trouble {
    /// Nobody listens there, or there is no way to the host or to its name server.
    refused = 1,
    /// No host of that name is known.
    noSuchHost,
    /// The service's certificate is not accepted.
    certificate,
    /// There was no answer in time.
    timedOut,
    /// The connection broke off.
    brokenOff,
    /// The program itself ended the call.
    canceled,
};

VARNEL_FORMS_API std::error_condition make_error_condition(Trouble trouble); ///< For the comparison above.

/// What a failure means, to a person and to the program.
class VARNEL_FORMS_API Failure {
public:
    /// @param error any exception: of a task, of a call, of the program itself.
    /// @param attempt what was tried, as the beginning of a sentence: "Loading the issues". Without it, the name of the
    ///     operation if the exception knows it.
    /// @throws std::invalid_argument if `error` is empty.
    explicit Failure(const std::exception_ptr& error, const utility::string_t& attempt = utility::string_t());
    explicit Failure(const std::exception& error, const utility::string_t& attempt = utility::string_t());
    Failure(const Failure&);
    Failure& operator=(const Failure&);
    ~Failure();

    /// One sentence: what was tried, why it failed, and what the service says of it: "Loading the issues failed with
    /// status 404 (Not Found): There is no such class."
    const utility::string_t& sentence() const { return m_Sentence; }

    /// The code of an ApiException, which is the HTTP status of a refusal; 0 for anything else.
    int status() const { return m_Status; }

    /// The service's payload; an empty pointer if there is none. The content of the exception, which its copies share,
    /// is left as it is.
    const std::shared_ptr<model::ErrorSchema>& payload() const { return m_Payload; }

    /// The Trouble, as `std::error_condition`; nothing (which is false) if there is none or another.
    const std::error_condition& trouble() const { return m_Trouble; }

    /// Whether the same may succeed a while later: the service is busy (408, 429, 502, 503, 504) or the transfer failed
    /// other than by an unknown host, a certificate or the program itself. Whether an operation may be repeated is
    /// another question: an insert may have worked although its answer was lost.
    bool isTemporary() const { return m_IsTemporary; }

private:
    void look(const std::exception& error, const utility::string_t& attempt);

    utility::string_t m_Sentence;
    int m_Status = 0;
    std::shared_ptr<model::ErrorSchema> m_Payload;
    std::error_condition m_Trouble;
    bool m_IsTemporary = false;
};

} // namespace VarnelAPI::Forms::kit

template <>
struct std::is_error_condition_enum<VarnelAPI::Forms::kit::Trouble> : std::true_type {};
