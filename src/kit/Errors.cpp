#include <VarnelAPI/Forms/kit/Errors.h>

#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/model/ErrorSchema.h>

#include <iterator>
#include <mutex>
#include <string>

namespace VarnelAPI::Forms::kit {

using utility::conversions::to_string_t;

namespace {

constexpr Trouble allTroubles[] = {Trouble::refused,  Trouble::noSuchHost, Trouble::certificate,
                                   Trouble::timedOut, Trouble::brokenOff,  Trouble::canceled};

#if defined(_WIN32)
/// The codes of WinHTTP, in the system's category.
bool isTrouble(Trouble trouble, const std::error_code& code) {
    switch (trouble) {
    case Trouble::refused:
        return code.value() == 12029;
    case Trouble::noSuchHost:
        return code.value() == 12007;
    case Trouble::certificate:
        return code.value() == 12175 || code.value() == 12037 || code.value() == 12038 || code.value() == 12045;
    case Trouble::timedOut:
        return code.value() == 12002 || code == std::errc::timed_out;
    case Trouble::brokenOff:
        return code.value() == 12030 || code.value() == 12152;
    case Trouble::canceled:
        return code == std::errc::operation_canceled;
    }
    return false;
}
#else
/// Asio's codes, of which the HTTP library keeps the number and calls it one of the system's: of `netdb.h` when a name
/// is looked up, of OpenSSL when the certificates are checked.
bool isTrouble(Trouble trouble, const std::error_code& code) {
    constexpr int hostNotFound = 1;
    constexpr int tryAgain = 2;                          // The name server can't be reached.
    constexpr int certificateRefused = (20 << 23) | 134; // ERR_PACK(ERR_LIB_SSL, 0, SSL_R_CERTIFICATE_VERIFY_FAILED)
    switch (trouble) {
    case Trouble::refused:
        return code == std::errc::connection_refused || code == std::errc::host_unreachable ||
               code == std::errc::network_unreachable || code.value() == tryAgain;
    case Trouble::noSuchHost:
        return code.value() == hostNotFound;
    case Trouble::certificate:
        return code.value() == certificateRefused;
    case Trouble::timedOut:
        return code == std::errc::timed_out;
    case Trouble::brokenOff:
        return code == std::errc::connection_reset || code == std::errc::connection_aborted ||
               code == std::errc::broken_pipe;
    case Trouble::canceled:
        return code == std::errc::operation_canceled;
    }
    return false;
}
#endif

class TroubleCategory final : public std::error_category {
public:
    const char* name() const noexcept override { return "trouble on the way to the service"; }
    std::string message(int condition) const override {
        switch (static_cast<Trouble>(condition)) {
        case Trouble::refused:
            return "no connection to the service could be made";
        case Trouble::noSuchHost:
            return "no host of that name is known";
        case Trouble::certificate:
            return "the service's certificate is not accepted";
        case Trouble::timedOut:
            return "there was no answer in time";
        case Trouble::brokenOff:
            return "the connection broke off";
        case Trouble::canceled:
            return "it was canceled";
        }
        return "unknown trouble";
    }
    bool equivalent(const std::error_code& code, int condition) const noexcept override {
        return (code.category() == std::generic_category() || code.category() == std::system_category()) &&
               isTrouble(static_cast<Trouble>(condition), code);
    }
};

std::error_condition troubleOf(const std::error_code& code) {
    for (const Trouble trouble : allTroubles) {
        if (code == trouble) {
            return trouble;
        }
    }
    return {};
}

/// All bytes of a stream, whose position and flags stay; none if it can't be repositioned. Copies of an exception share
/// their stream, and may be looked at in several threads.
std::string peek(std::istream& stream) {
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    auto* const buffer = stream.rdbuf();
    const auto failed = std::streampos(std::streamoff(-1));
    const auto place = buffer ? buffer->pubseekoff(0, std::ios::cur, std::ios::in) : failed;
    if (place == failed || buffer->pubseekpos(0, std::ios::in) == failed) {
        return {};
    }
    std::string bytes{std::istreambuf_iterator<char>(buffer), {}};
    buffer->pubseekpos(place, std::ios::in);
    return bytes;
}

std::shared_ptr<model::ErrorSchema> payloadOf(const std::shared_ptr<std::istream>& content) {
    if (!content) {
        return nullptr;
    }
    std::error_code unreadable;
    auto json = web::json::value::parse(to_string_t(peek(*content)), unreadable);
    if (unreadable || !json.is_object()) {
        return nullptr;
    }
    auto payload = std::make_shared<model::ErrorSchema>();
    payload->fromJson(json);
    return payload->errorIdIsSet() || payload->errorMessageIsSet() || payload->errorDescriptionIsSet() ? payload
                                                                                                       : nullptr;
}

utility::string_t sentenceOf(const model::ErrorSchema& payload) {
    const auto message = payload.getErrorMessage();
    const auto description = payload.getErrorDescription();
    if (message.empty() || description.empty() || message == description) {
        return message.empty() ? description : message;
    }
    return message + _XPLATSTR(" (") + description + _XPLATSTR(")");
}

bool isTemporaryStatus(int status) {
    using web::http::status_codes;
    return status == status_codes::RequestTimeout || status == 429 || status == status_codes::BadGateway ||
           status == status_codes::ServiceUnavailable || status == status_codes::GatewayTimeout;
}

} // namespace

std::error_condition make_error_condition(Trouble trouble) {
    static const TroubleCategory category;
    return {static_cast<int>(trouble), category};
}

Failure::Failure(const std::exception_ptr& error, const utility::string_t& attempt) {
    if (!error) {
        throw std::invalid_argument("there is no exception to explain");
    }
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& known) {
        look(known, attempt);
    } catch (...) {
        m_Sentence = (attempt.empty() ? _XPLATSTR("The call") : attempt) + _XPLATSTR(" failed for an unknown reason");
    }
}

Failure::Failure(const std::exception& error, const utility::string_t& attempt) {
    look(error, attempt);
}

Failure::Failure(const Failure&) = default;
Failure& Failure::operator=(const Failure&) = default;
Failure::~Failure() = default;

void Failure::look(const std::exception& error, const utility::string_t& attempt) {
    utility::string_t what = attempt.empty() ? utility::string_t(_XPLATSTR("The call")) : attempt;
    utility::string_t reason = to_string_t(std::string(error.what()));
    if (const auto* refusal = dynamic_cast<const api::ApiException*>(&error)) {
        m_Status = refusal->error_code().value();
        m_Payload = payloadOf(refusal->getContent());
        m_IsTemporary = isTemporaryStatus(m_Status);
        // "error calling OPERATION: REASON"
        const utility::string_t prefix = _XPLATSTR("error calling ");
        const auto end = reason.find(_XPLATSTR(": "));
        if (reason.compare(0, prefix.size(), prefix) == 0 && end != utility::string_t::npos) {
            what = attempt.empty() ? reason.substr(prefix.size(), end - prefix.size()) : what;
            reason.erase(0, end + 2);
        }
        m_Sentence = what + _XPLATSTR(" failed with status ") + to_string_t(std::to_string(m_Status)) +
                     (reason.empty() ? reason : _XPLATSTR(" (") + reason + _XPLATSTR(")"));
        reason = m_Payload ? sentenceOf(*m_Payload) : utility::string_t();
    } else {
        if (const auto* broken = dynamic_cast<const web::http::http_exception*>(&error)) {
            m_Trouble = troubleOf(broken->error_code());
            m_IsTemporary =
                m_Trouble != Trouble::noSuchHost && m_Trouble != Trouble::certificate && m_Trouble != Trouble::canceled;
            reason = m_Trouble ? to_string_t(m_Trouble.message()) : reason;
        }
        m_Sentence = what + _XPLATSTR(" failed");
    }
    if (!reason.empty()) {
        m_Sentence += _XPLATSTR(": ") + reason;
    }
}

} // namespace VarnelAPI::Forms::kit
