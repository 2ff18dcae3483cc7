#pragma once

#include "Faults.h"
#include "Http.h"
#include "RequestLog.h"
#include "Store.h"
#include "Tokens.h"

#include <boost/asio/strand.hpp>
#include <boost/asio/thread_pool.hpp>

#include <functional>
#include <string>

namespace VarnelAPI::Forms::repository {

/// What the server does with a request, whatever carries it: credentials, faults, the log, control, pages, and the
/// store. Reads are carried out side by side; changes one after the other, so that they hold up no read.
class Service final : public HttpService {
public:
    explicit Service(const ServerOptions& options);

    std::optional<Reply> refuse(const HttpRequest& head) override;
    void serve(HttpRequest request, std::function<void(HttpAnswer)> answer) override;
    void note(const HttpRequest& head, const Reply& reply) override;

    /// Waits for what is under way.
    void stop();
    /// Called when answers that are held back are to be let go.
    void onRelease(std::function<void()> release) { m_release = std::move(release); }

    const std::string& basePath() const { return m_basePath; }
    Store& store() { return m_store; }
    Faults& faults() { return m_faults; }
    RequestLog& log() { return m_log; }
    Tokens& tokens() { return m_tokens; }
    void clearFaults();
    void reset();

private:
    /// What lies below the base path and is asked for by a person or a tool on this machine, and not by a client.
    bool isControl(const HttpRequest& request) const;
    bool isPage(const HttpRequest& request) const;

    ServerOptions m_options;
    std::string m_basePath;
    Store m_store;
    Faults m_faults;
    RequestLog m_log;
    Tokens m_tokens;
    std::function<void()> m_release;
    boost::asio::thread_pool m_workers;
    boost::asio::strand<boost::asio::thread_pool::executor_type> m_changes;
};

} // namespace VarnelAPI::Forms::repository
