#include "Continuation.h"
#include "Pool.h"
#include "TokenStore.h"

#include <algorithm>
#include <stdexcept>

namespace VarnelAPI::Forms::transport {

namespace detail {

namespace {

Credentials::Provider checked(Credentials::Provider provider) {
    if (!provider) {
        throw std::invalid_argument("the provider of credentials is empty");
    }
    return provider;
}

/// Its failures don't say what it was.
utility::string_t headerOf(const Token& token) {
    utility::string_t header = token.scheme + _XPLATSTR(" ") + token.value;
    const bool isPlain = std::all_of(header.begin(), header.end(), [](auto c) { return c >= ' ' && c <= '~'; });
    if (token.scheme.empty() || token.value.empty() || !isPlain) {
        throw std::invalid_argument("the provider of credentials gave a token that no header can hold");
    }
    return header;
}

} // namespace

TokenStore::TokenStore(Credentials::Provider provider, std::chrono::milliseconds ahead)
    : m_Ahead(ahead), m_Provider(checked(std::move(provider))) {}

void TokenStore::change(Credentials::Provider provider) {
    provider = checked(std::move(provider));
    const std::lock_guard<std::mutex> lock(m_Mutex);
    std::swap(m_Provider, provider);
    ++m_Changes;
    m_Issued.reset();
    if (m_IsAsking) { // for those who wait: what the other one answers, if ever, counts for nobody
        runInPool([self = shared_from_this(), changes = m_Changes] { self->ask(Credentials::Reason::First, changes); });
    }
}

std::optional<TokenStore::Issued> TokenStore::get(uint64_t refused, Time time, Waiter waiter) {
    using Reason = Credentials::Reason;
    Reason reason = Reason::First;
    uint64_t changes = 0;
    {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        if (m_Issued) {
            const bool isRefused = m_Issued->number == refused;
            if (!isRefused && (!m_Issued->ends || time < *m_Issued->ends - m_Ahead)) {
                return m_Issued;
            }
            reason = isRefused ? Reason::Refused : Reason::Ending;
            m_Issued.reset();
        }
        m_Waiters.push_back(std::move(waiter));
        if (std::exchange(m_IsAsking, true)) {
            return std::nullopt;
        }
        changes = m_Changes;
    }
    ask(reason, changes);
    return std::nullopt;
}

void TokenStore::ask(Credentials::Reason reason, uint64_t changes) {
    std::unique_lock<std::mutex> lock(m_Mutex);
    if (changes != m_Changes) {
        return;
    }
    const auto provider = m_Provider;
    lock.unlock();
    try {
        continued(provider(reason), [self = shared_from_this(), changes](const pplx::task<Token>& done) {
            Issued issued;
            std::exception_ptr failure;
            try {
                const Token token = done.get();
                issued.header = headerOf(token);
                issued.ends = token.ends;
            } catch (...) {
                failure = std::current_exception();
            }
            self->answered(issued, failure, changes);
        });
    } catch (...) {
        answered({}, std::current_exception(), changes);
    }
}

void TokenStore::answered(Issued issued, std::exception_ptr failure, uint64_t changes) noexcept {
    std::unique_lock<std::mutex> lock(m_Mutex);
    if (changes != m_Changes) {
        return;
    }
    if (!failure) {
        issued.number = ++m_Numbers;
        atTheEnd([&] { m_Issued = issued; }); // else the next call asks again
    }
    m_IsAsking = false;
    const auto waiters = std::exchange(m_Waiters, {});
    lock.unlock();
    for (const auto& waiter : waiters) {
        try {
            runInPool([waiter, issued, failure] { waiter(issued, failure); });
        } catch (...) {
            waiter(issued, failure);
        }
    }
}

} // namespace detail

Credentials::Credentials(Provider provider, std::chrono::milliseconds ahead)
    : m_Store(std::make_shared<detail::TokenStore>(std::move(provider), ahead)) {}
Credentials::~Credentials() = default;

void Credentials::change(Provider provider) {
    m_Store->change(std::move(provider));
}

} // namespace VarnelAPI::Forms::transport
