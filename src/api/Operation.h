#pragma once

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/Model.h>

#include "model/MediaTypes.h"
#include "transport/CallControl.h"
#include "transport/Continuation.h"

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
    transport::detail::Effect effect = transport::detail::Effect::Changes;
    /// An empty pointer where the call has no wishes.
    std::shared_ptr<transport::detail::CallControl> control;

    /// Whether the status and the type are as the operation expects them.
    bool isExpected() const;

    /// Throws unless the call went as the operation expects. `ready` is the finished task that waited for the body.
    /// @throws ApiException for a failed status or an unexpected type; else whatever broke the transfer, as it is.
    void check(const pplx::task<web::http::http_response>& ready) const;

    /// The body of a response that passes that check.
    std::string body(const pplx::task<web::http::http_response>& ready) const;

    /// The same, or, where it was saved, a stream of what is there.
    std::shared_ptr<std::istream> download(const pplx::task<web::http::http_response>& ready) const;

    /// A model that `make` made, filled from the JSON of such a body.
    std::shared_ptr<model::Model> read(std::shared_ptr<model::Model> (*make)(),
                                       const pplx::task<web::http::http_response>& ready) const;

private:
    /// Whether it was deleted by an attempt whose answer was lost.
    bool isGone() const;
    [[noreturn]] void fail(web::http::status_code code, const utility::string_t& reason,
                           std::shared_ptr<std::istream> content) const;
    void requireWhole(std::size_t size) const;
};

/// The waiting end of a call: what its last continuation settles.
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
        transport::detail::observe(m_Task);
    }

private:
    pplx::task_completion_event<Result> m_Event;
    pplx::task<Result> m_Task{m_Event, transport::detail::inPoolOrHere()};
};

/// The media type of a request, chosen from those that the operation consumes; JSON if it names none.
/// @throws ApiException 415 if none of them can be sent.
utility::string_t requestType(const std::string& operation, const std::set<utility::string_t>& consumed);

/// One call: the whole recipe from typed arguments to the typed result. It lives until the request is sent; what
/// comes after is in the continuations.
class Operation {
public:
    /// @param path below the service's repository prefix, with placeholders in braces.
    Operation(const std::shared_ptr<ApiClient>& client, const char* api, const char* name,
              const utility::string_t& method, const utility::string_t& path);

    /// Replaces "{placeholder}" by the value as it stands: a caller percent-encodes what needs it. Placeholders are
    /// filled from left to right, and nothing in a value is one: with its braces it is no path.
    /// @throws std::logic_error if there is no placeholder of that name after those filled before.
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
    /// The instance to send; null, as JSON null. `described` is the same, if its class describes what is sent.
    Operation& body(const std::shared_ptr<model::ModelBase>& instance, const model::Model* described);
    /// A body that is not a model, and its media type.
    Operation& body(std::shared_ptr<model::IHttpBody> body, const utility::string_t& contentType);
    template <class Instance>
    Operation& body(const Body<Instance>& instance) {
        const auto model = instance.value_or(nullptr);
        return body(model, model::detail::asDescribed(model));
    }

    /// Sends the request; the task yields the JSON of the response as a model.
    template <class Result>
    ModelTask<Result> yieldModel() {
        Settlement<std::shared_ptr<Result>> settlement;
        read([]() -> std::shared_ptr<model::Model> { return std::make_shared<Result>(); },
             [settlement](std::shared_ptr<model::Model> result, std::exception_ptr failure) {
                 failure ? settlement.fail(std::move(failure))
                         : settlement.fulfil(std::static_pointer_cast<Result>(std::move(result)));
             });
        return settlement.task();
    }
    /// Sends the request; the task yields the response's bytes, and what `describe` learns from its headers.
    using Describe = void (*)(model::HttpContent& content, const web::http::http_response& response);
    pplx::task<model::HttpContent> yieldContent(Describe describe = nullptr);
    /// Sends the request; the task yields nothing but the end of a call that went well.
    pplx::task<void> yieldNothing();

private:
    using Ready = pplx::task<web::http::http_response>;
    using Finish = std::function<void(const Answer&, const Ready&)>;

    /// What becomes of the body of an answer that is as the operation expects it.
    enum class Wanted { Nothing, Text, Download };

    /// Sends the request, keeps the response for the answer, and waits for its body if that is wanted, or is needed
    /// for an error. Then calls `finish`, which must not throw, with the finished task that waited.
    void send(Wanted wanted, Finish finish);
    /// Sends the request, fills a model that `make` makes, and calls `settle` with it, or with the failure.
    void read(std::shared_ptr<model::Model> (*make)(),
              std::function<void(std::shared_ptr<model::Model>, std::exception_ptr)> settle);

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
        // An empty location alone keeps an insert below its issue, so `belowIssue` doesn't look at it; an empty class
        // makes it take the flat path.
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
                                            const utility::string_t& instanceId,
                                            Operation::Describe describe = nullptr) const {
        return onInstance(client, name, web::http::methods::GET, location, instanceId, _XPLATSTR("$file"))
            .produces({model::detail::binaryType})
            .yieldContent(describe);
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
