#pragma once

#include <VarnelAPI/Forms/transport/Credentials.h>

#include <mutex>
#include <vector>

namespace VarnelAPI::Forms::transport::detail {

/// The token of `Credentials`, and who waits for it. No lock is held while a function of the caller runs.
class TokenStore : public std::enable_shared_from_this<TokenStore> {
public:
    using Time = std::chrono::system_clock::time_point;
    struct Issued {
        utility::string_t header;
        std::optional<Time> ends;
        /// Of each token another one.
        uint64_t number = 0;
    };
    /// Gets a token, or why there is none.
    using Waiter = std::function<void(const Issued&, const std::exception_ptr&)>;

    TokenStore(Credentials::Provider provider, std::chrono::milliseconds ahead);

    void change(Credentials::Provider provider);
    /// A token that is good at this time, and not the one that was refused; or none: then it is asked for, and `waiter`
    /// called later, in another thread, which must not throw.
    std::optional<Issued> get(uint64_t refused, Time time, Waiter waiter);

private:
    /// Nothing happens if the provider was changed since it was so often.
    void ask(Credentials::Reason reason, uint64_t changes);
    void answered(Issued issued, std::exception_ptr failure, uint64_t changes) noexcept;

    const std::chrono::milliseconds m_Ahead;
    std::mutex m_Mutex;
    Credentials::Provider m_Provider;
    /// How often it was changed.
    uint64_t m_Changes = 0;
    std::optional<Issued> m_Issued;
    uint64_t m_Numbers = 0;
    bool m_IsAsking = false;
    std::vector<Waiter> m_Waiters;
};

} // namespace VarnelAPI::Forms::transport::detail
