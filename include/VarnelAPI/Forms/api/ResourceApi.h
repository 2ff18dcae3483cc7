#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#pragma push_macro("U")
#undef U
#include <boost/optional.hpp>
#pragma pop_macro("U")

#include <memory>

namespace VarnelAPI::Forms::api {

class ApiClient;

/// What an operation yields: a task of a model that was read from the service's answer.
template <class Model>
using ModelTask = pplx::task<std::shared_ptr<Model>>;

/// A query option, sent only when it is set (an empty text too).
using TextOption = boost::optional<utility::string_t>;
using NumberOption = boost::optional<int>;

/// The body of an insert or update. Unset, or set to an empty pointer, JSON null is sent.
template <class Instance>
using Body = boost::optional<std::shared_ptr<Instance>>;

/// What the resource API classes have in common: the client, and nothing else. Copies share it, and calls may be made
/// from several threads at once. A call in flight needs neither the API object nor the client.
///
/// **Paths** are given below "/sv1.2/Repositories/Varnel.Forms--" of the base URL. Path arguments go into them as they
/// stand: percent-encode what needs it. `location` says which repository; `instanceId` is the id that the service gave
/// the instance.
///
/// **Query options**, each sent only when it is set: `filter`, `select`, `orderby` and
/// `filtersettings` are texts of the service's own: `select` names properties, separated by commas, as the wire does
/// (see `model::PropertyName`). `skip` and `top` are counts of instances.
///
/// **Every operation sends** the configuration's default headers, and Accept.
///
/// **Thrown in the call**, before any request is made:
/// - std::invalid_argument: no configuration; a base URL without a host, with a fragment, or of another scheme than
///   http and https; a path argument that holds "?" or "#" or has a segment "." or ".."; CR, LF or NUL in a path
///   argument or a header; a default header whose name is not one word, or is Transfer-Encoding, or a Content-Length
///   other than the body's; a number in the body that JSON can't hold (not finite);
/// - std::out_of_range: a date after 9999-12-31T23:59:59.999Z in the body;
/// - web::uri_exception: a path argument or base URL that holds what a URL can't, such as a space or a non-ASCII
///   character.
///
/// **Thrown by the task**:
/// - ApiException with the HTTP status, if that is 400 or more. The message is "error calling", the operation and the
///   reason phrase; the content is what arrived of the response's body, usually the payload of `model::ErrorSchema`;
/// - ApiException 500, if the response names another type than the accepted one. The content is as above;
/// - web::json::json_exception, if the body is not JSON, or a property has the wrong type (its path is in the message);
/// - web::http::http_exception for a transport failure, a time-out, or a body that is shorter than announced, or
///   whose announced length is none;
/// - what the HTTP library throws for a body that can't be decompressed (a std::runtime_error), and whatever a callback
///   of the client settings throws, as it is.
///
/// A task may be dropped: a failure that nobody looks at is harmless.
class VARNEL_FORMS_API ResourceApi {
public:
    /// @throws std::invalid_argument if `client` is an empty pointer.
    explicit ResourceApi(std::shared_ptr<ApiClient> client);
    ResourceApi(const ResourceApi&);
    ResourceApi& operator=(const ResourceApi&);
    virtual ~ResourceApi();

    /// The client that the calls go through.
    const std::shared_ptr<ApiClient>& getApiClient() const { return m_ApiClient; }

protected:
    std::shared_ptr<ApiClient> m_ApiClient; ///< Never empty.
};

} // namespace VarnelAPI::Forms::api
