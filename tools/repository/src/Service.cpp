#include "Service.h"

#include "Control.h"
#include "Pages.h"
#include "ServiceError.h"

#include <boost/asio/post.hpp>

#include <algorithm>

namespace VarnelAPI::Forms::repository {
namespace {

constexpr std::size_t workerCount = 8;
constexpr std::string_view controlPath = "/_control";

std::string normalise(const std::string& basePath) {
    const std::size_t begin = basePath.find_first_not_of('/');
    return begin == std::string::npos ? "" : "/" + basePath.substr(begin, basePath.find_last_not_of('/') + 1 - begin);
}

/// Whether the request names this machine, and no page from elsewhere makes it: a name that an attacker's DNS sends
/// here would let pages of that name read the answers.
bool isFromThisMachine(const HttpRequest& request) {
    std::string host = request.header("Host");
    host.resize(std::min(host.rfind(':') == std::string::npos || host.back() == ']' ? host.size() : host.rfind(':'),
                         host.size()));
    const bool isName = host.find_first_not_of("0123456789.") != std::string::npos && host.substr(0, 1) != "[";
    return request.isLocal && (!isName || host == "localhost") && request.header("Origin").empty();
}

LoggedRequest logged(const HttpRequest& request) {
    LoggedRequest entry;
    entry.method = request.method;
    entry.path = std::string(request.path());
    entry.query = std::string(request.query());
    entry.headers = request.headers;
    entry.requestBytes = request.body.size();
    return entry;
}

/// Whether an answer is made for the request, and not by the fault.
bool isCarriedOut(const Fault& fault) {
    const bool isWithheld = fault.status != 0 || fault.isStall || (fault.isReset && !fault.truncateAfter);
    return !isWithheld || fault.isAfterEffect;
}

HttpAnswer answerOf(Reply reply, const Fault* fault) {
    HttpAnswer answer(std::move(reply));
    if (fault == nullptr) {
        return answer;
    }
    if (fault->status != 0) {
        answer.reply = Reply(fault->status, fault->body, fault->body.empty() ? "" : "application/json");
        answer.reply.headers = fault->headers;
    }
    answer.delay = fault->delay;
    answer.isStall = fault->isStall;
    answer.isReset = fault->isReset;
    answer.truncateAfter = fault->truncateAfter;
    answer.dripBytes = fault->dripBytes;
    answer.dripPause = fault->dripPause;
    return answer;
}

} // namespace

Service::Service(const ServerOptions& options)
    : m_options(options), m_basePath(normalise(options.basePath)), m_store(options.database),
      m_log(options.loggedRequests), m_tokens(options.tokens), m_workers(workerCount),
      m_changes(m_workers.get_executor()) {}

bool Service::isControl(const HttpRequest& request) const {
    const std::string root = m_basePath + std::string(controlPath);
    const std::string_view path = request.path();
    return m_options.hasControl && path.substr(0, root.size()) == root &&
           (path.size() == root.size() || path[root.size()] == '/');
}

bool Service::isPage(const HttpRequest& request) const {
    return (request.path() == m_basePath + "/" || request.path() == m_basePath) && isFromThisMachine(request);
}

std::optional<Reply> Service::refuse(const HttpRequest& head) {
    if (isControl(head)) {
        return isFromThisMachine(head)
                   ? std::nullopt
                   : std::optional(errorReply(403, "This is for programs on the loopback address only"));
    }
    if (isPage(head)) {
        return std::nullopt;
    }
    const Tokens::Verdict verdict = m_tokens.use(head.header("Authorization"));
    if (verdict == Tokens::Verdict::Good) {
        return std::nullopt;
    }
    const bool isBad = verdict == Tokens::Verdict::Bad;
    Reply reply = errorReply(401, isBad ? "The token is unknown or no longer good" : "There is no bearer token");
    reply.headers.emplace_back("WWW-Authenticate",
                               std::string("Bearer realm=\"repository\"") + (isBad ? ", error=\"invalid_token\"" : ""));
    return reply;
}

void Service::note(const HttpRequest& head, const Reply& reply) {
    if (isControl(head)) {
        return;
    }
    LoggedRequest entry = logged(head);
    entry.status = reply.status;
    entry.answerBytes = reply.body.size();
    m_log.add(std::move(entry));
}

void Service::serve(HttpRequest request, std::function<void(HttpAnswer)> answer) {
    const bool isForControl = isControl(request);
    if (isForControl || isPage(request)) {
        boost::asio::post(m_workers, [this, isForControl, held = std::move(request), answer] {
            try {
                answer(HttpAnswer(isForControl
                                      ? control(*this, held, held.path().substr(m_basePath.size() + controlPath.size()))
                                      : page(*this, held)));
            } catch (...) {
                answer(HttpAnswer(currentFailure()));
            }
        });
        return;
    }
    std::optional<Call> call;
    std::optional<Reply> refusal;
    try {
        call = readCall(request.method, request.target, m_basePath);
    } catch (...) {
        refusal = currentFailure();
    }
    auto met = m_faults.meet(call ? &*call : nullptr);
    auto work = [this, held = std::move(request), refused = std::move(refusal), call, met, answer] {
        LoggedRequest entry = logged(held);
        Reply reply = refused ? *refused : Reply(0, "");
        const Fault* fault = met ? &met->second : nullptr;
        if (!refused && (fault == nullptr || isCarriedOut(*fault))) {
            try {
                reply = carryOut(m_store, *call, held.body);
                entry.tookEffect = call->isChange();
            } catch (...) {
                reply = currentFailure();
            }
        }
        HttpAnswer result = answerOf(std::move(reply), fault);
        const bool isWithheld = result.isStall || (result.isReset && !result.truncateAfter);
        entry.fault = met ? met->first : 0;
        entry.status = isWithheld ? 0 : result.reply.status;
        entry.answerBytes = isWithheld || held.method == "HEAD"
                                ? 0
                                : std::min(result.reply.body.size(), result.truncateAfter.value_or(SIZE_MAX));
        m_log.add(std::move(entry));
        answer(std::move(result));
    };
    if (call && call->isChange()) {
        boost::asio::post(m_changes, std::move(work));
    } else {
        boost::asio::post(m_workers, std::move(work));
    }
}

void Service::stop() {
    m_workers.join();
}

void Service::clearFaults() {
    m_faults.clear();
    m_release();
}

void Service::reset() {
    m_store.reset();
    clearFaults();
    m_log.clear();
    m_tokens.reset(m_options.tokens);
}

} // namespace VarnelAPI::Forms::repository
