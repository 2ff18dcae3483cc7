#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace VarnelAPI::Forms::transport {

namespace detail {
class Attempts;
class TokenStore;
} // namespace detail

/// What authorizes calls for a while: the header "Authorization: Bearer VALUE".
struct Token {
    utility::string_t value; ///< What proves it.
    /// When the service refuses it from then on; nothing if it says so itself, by a 401.
    std::optional<std::chrono::system_clock::time_point> ends;
    utility::string_t scheme = _XPLATSTR("Bearer"); ///< The word before the value.
};

/// The tokens of those calls whose options have this object, which any number of clients may share. It holds the
/// last token, and asks the provider for another one when there is none, when it ends soon, and once for each call that
/// was refused with a 401, which is then sent once more, whatever it does: it was not done. All calls that wait for a
/// token wait for one answer of the provider.
///
/// The token goes to scheme, host and port of the base URL and nowhere else, in place of any other Authorization. It
/// stands in no text and no record that the library makes. Any thread may use this object.
class VARNEL_FORMS_API Credentials {
public:
    /// Why a token is asked for.
    enum class Reason { First, Ending, Refused };
    /// Called in a thread that makes a call, or of the task library's pool; it must not wait. What it throws,
    /// and the failure of its task, is the failure of all calls that wait for the token, as it is; the next call asks
    /// again. It must not wait for calls with these credentials.
    using Provider = std::function<pplx::task<Token>(Reason)>;

    /// @param ahead how long before a token ends another one is asked for.
    /// @throws std::invalid_argument for an empty provider.
    explicit Credentials(Provider provider, std::chrono::milliseconds ahead = std::chrono::minutes(1));
    Credentials(const Credentials&) = delete;
    Credentials& operator=(const Credentials&) = delete;
    ~Credentials();

    /// Forgets the token, and asks another provider from now on, for calls that wait too: somebody else signed in. What
    /// the old one still answers counts for nobody. Calls in flight keep the token they have.
    /// @throws std::invalid_argument for an empty provider.
    void change(Provider provider);

private:
    friend class detail::Attempts;

    std::shared_ptr<detail::TokenStore> m_Store;
};

} // namespace VarnelAPI::Forms::transport
