#pragma once

#include <VarnelAPI/Forms/detail/Model.h>
#include <VarnelAPI/Forms/detail/ResourceApi.h>

#include "model/MediaTypes.h"

#include <cpprest/http_msg.h>

#include <functional>
#include <optional>
#include <set>

namespace VarnelAPI::Forms::api::detail {

/// The six query options of a select.
struct SelectOptions {
    const TextOption& filter;
    const TextOption& select;
    const TextOption& orderby;
    const TextOption& filtersettings;
    const NumberOption& skip;
    const NumberOption& top;
};

/// The response of a call, once there is one.
using Arrived = std::shared_ptr<std::optional<web::http::http_response>>;

/// What is left to know about a call once it was sent. Continuations hold it by value.
struct Answer {
    utility::string_t operation;
    utility::string_t accept;
    Arrived arrived;
    /// Whether the HTTP library decodes encoded bodies, whose Content-Length is then another.
    bool isDecoded = false;

    /// Whether the status and the type are as the operation expects them.
    bool isExpected() const;

    /// Throws unless the call went as the operation expects. `ready` is the finished task that waited for the body.
    /// @throws ApiException for a failed status or an unexpected type; else whatever broke the transfer.
    void check(const pplx::task<web::http::http_response>& ready) const;

    /// The body of a response that passes that check.
    std::string body(const pplx::task<web::http::http_response>& ready) const;

    /// Fills `result` from the JSON of such a body.
    void read(model::detail::Model& result, const pplx::task<web::http::http_response>& ready) const;
};

/// The waiting end of a call: what its last continuation settles. A task that the caller dropped must not bring the
/// process down, as the task library would when nobody ever looks at a failure; so a failure is looked at here.
template <class Result>
class Settlement {
public:
    pplx::task<Result> task() const { return m_Task; }

    template <class... Value>
    void fulfil(Value&&... value) const {
        m_Event.set(std::forward<Value>(value)...);
    }
    void fail(std::exception_ptr failure) const {
        m_Event.set_exception(std::move(failure));
        try {
            m_Task.get();
        } catch (...) {
            // It is the caller's, who has the same task.
        }
    }

private:
    pplx::task_completion_event<Result> m_Event;
    pplx::task<Result> m_Task{m_Event};
};

/// One call: the whole recipe from typed arguments to the typed result. It lives until the request is sent; what
/// comes after is in the continuations.
class Operation {
public:
    /// @param path below the service's repository prefix, with placeholders in braces.
    Operation(const std::shared_ptr<ApiClient>& client, const char* api, const char* name,
              const utility::string_t& method, const utility::string_t& path);

    /// Replaces "{placeholder}" by the value as it stands: a caller percent-encodes what needs it. Placeholders are
    /// filled from left to right, and nothing in a value is one: with its braces it is no path. Without one of that
    /// name, nothing happens.
    /// @throws std::invalid_argument for a value that would silently address something else: one that holds "?" or
    ///     "#", or has a segment "." or "..".
    Operation& fill(const utility::char_t* placeholder, const utility::string_t& value);
    Operation& query(const utility::char_t* key, const TextOption& value);
    Operation& query(const utility::char_t* key, const NumberOption& value);
    Operation& options(const SelectOptions& options);
    /// Sets a header in place of one of the same name in any spelling.
    Operation& header(const utility::string_t& name, const utility::string_t& value);
    /// The media types of the response, and of the request, to choose from; unless said otherwise JSON.
    Operation& produces(const std::set<utility::string_t>& types);
    Operation& consumes(const std::set<utility::string_t>& types);
    /// The instance to send; null, as JSON null.
    Operation& body(std::shared_ptr<model::ModelBase> instance);
    /// A body that is not a model, and its media type.
    Operation& body(std::shared_ptr<model::IHttpBody> body, const utility::string_t& contentType);
    template <class Instance>
    Operation& body(const Body<Instance>& instance) {
        return body(std::shared_ptr<model::ModelBase>(instance.value_or(nullptr)));
    }

    /// Sends the request; the task yields the JSON of the response as a model.
    template <class Result>
    ModelTask<Result> yieldModel() {
        auto result = std::make_shared<Result>();
        Settlement<std::shared_ptr<Result>> settlement;
        read(result, [result, settlement](std::exception_ptr failure) {
            failure ? settlement.fail(std::move(failure)) : settlement.fulfil(result);
        });
        return settlement.task();
    }
    /// Sends the request; the task yields the response's bytes.
    pplx::task<model::HttpContent> yieldContent();
    /// Sends the request; the task yields nothing but the end of a call that went well.
    pplx::task<void> yieldNothing();

private:
    using Ready = pplx::task<web::http::http_response>;

    /// Sends the request, keeps the response for the answer, and waits for its body if that is wanted, or is needed
    /// for an error. Then calls `finish`, which must not throw, with the finished task that waited.
    void send(bool wantsBody, std::function<void(const Ready&)> finish);
    /// Sends the request, fills `result`, and calls `settle` with the failure or null.
    void read(std::shared_ptr<model::detail::Model> result, std::function<void(std::exception_ptr)> settle);

    std::shared_ptr<ApiClient> m_Client;
    std::string m_Name;
    Answer m_Answer;
    utility::string_t m_Method;
    utility::string_t m_Path;
    /// Where the last value that was filled in ends.
    std::size_t m_Filled = 0;
    std::map<utility::string_t, utility::string_t> m_Query;
    std::map<utility::string_t, utility::string_t> m_Headers;
    std::shared_ptr<model::IHttpBody> m_Body;
    utility::string_t m_ContentType;
};

/// One class of instances on the service, and the shapes of operation that most of them have. The names of the
/// operations are those of the functions that call these, so that texts of errors can't drift from them.
class Resource {
public:
    using Client = std::shared_ptr<ApiClient>;

    /// @param api the name of the API class.
    /// @param path schema and class, for example "Lists/ListGroup".
    constexpr Resource(const char* api, const utility::char_t* path) : m_Api(api), m_Path(path) {}

    template <class Count>
    ModelTask<Count> count(const Client& client, const char* name, const utility::string_t& location) const {
        return onClass(client, name, web::http::methods::GET, location, _XPLATSTR("/$count")).yieldModel<Count>();
    }
    template <class Instances>
    ModelTask<Instances> select(const Client& client, const char* name, const utility::string_t& location,
                                const SelectOptions& options) const {
        return onClass(client, name, web::http::methods::GET, location).options(options).yieldModel<Instances>();
    }
    /// The records of one issue; all of the class if any of the three ids is empty.
    template <class Instances>
    ModelTask<Instances> selectBelowIssue(const Client& client, const char* name, const utility::string_t& location,
                                          const utility::string_t& issueClass, const utility::string_t& issueId,
                                          const SelectOptions& options) const {
        return belowIssue(client, name, web::http::methods::GET, location,
                          location.empty() ? utility::string_t() : issueClass, issueId)
            .options(options)
            .template yieldModel<Instances>();
    }
    template <class Instance>
    ModelTask<Instance> get(const Client& client, const char* name, const utility::string_t& location,
                            const utility::string_t& instanceId, const TextOption& select) const {
        return onInstance(client, name, web::http::methods::GET, location, instanceId)
            .query(_XPLATSTR("$select"), select)
            .yieldModel<Instance>();
    }
    template <class Changed, class Instance>
    ModelTask<Changed> insert(const Client& client, const char* name, const utility::string_t& location,
                              const Body<Instance>& body) const {
        return onClass(client, name, web::http::methods::POST, location).body(body).template yieldModel<Changed>();
    }
    template <class Changed, class Instance>
    ModelTask<Changed> update(const Client& client, const char* name, const utility::string_t& location,
                              const utility::string_t& instanceId, const Body<Instance>& body) const {
        return onInstance(client, name, web::http::methods::POST, location, instanceId)
            .body(body)
            .template yieldModel<Changed>();
    }
    pplx::task<void> remove(const Client& client, const char* name, const utility::string_t& location,
                            const utility::string_t& instanceId) const {
        return onInstance(client, name, web::http::methods::DEL, location, instanceId).yieldNothing();
    }
    pplx::task<model::HttpContent> download(const Client& client, const char* name, const utility::string_t& location,
                                            const utility::string_t& instanceId) const {
        return onInstance(client, name, web::http::methods::GET, location, instanceId, _XPLATSTR("$file"))
            .produces({model::detail::binaryType})
            .yieldContent();
    }

    /// @name The parts of those shapes, for operations that differ
    /// @{
    Operation onClass(const Client& client, const char* name, const utility::string_t& method,
                      const utility::string_t& location, const utility::string_t& suffix = utility::string_t()) const;
    Operation onInstance(const Client& client, const char* name, const utility::string_t& method,
                         const utility::string_t& location, const utility::string_t& instanceId,
                         const utility::string_t& suffix = utility::string_t()) const;
    /// The records of this class that belong to one issue; all of the class if `issueClass` or `issueId` is empty.
    Operation belowIssue(const Client& client, const char* name, const utility::string_t& method,
                         const utility::string_t& location, const utility::string_t& issueClass,
                         const utility::string_t& issueId) const;
    Operation onPath(const Client& client, const char* name, const utility::string_t& method,
                     const utility::string_t& path) const;
    /// @}

private:
    const char* m_Api;
    const utility::char_t* m_Path;
};

} // namespace VarnelAPI::Forms::api::detail
