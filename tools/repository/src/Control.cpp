#include "Control.h"

#include "ServiceError.h"

#include <ctime>
#include <stdexcept>

namespace VarnelAPI::Forms::repository {
namespace {

Json headersOf(const Headers& headers) {
    Json json = Json::array();
    for (const auto& [name, value] : headers) {
        json.push_back({name, value});
    }
    return json;
}

Json toJson(const FaultState& state) {
    const Fault& fault = state.fault;
    return {{"id", state.id},
            {"seen", state.seen},
            {"met", state.met},
            {"left", state.left},
            {"fault",
             {{"operation", fault.operation},
              {"className", fault.className},
              {"first", fault.first},
              {"every", fault.every},
              {"times", fault.times},
              {"delay", fault.delay.count()},
              {"status", fault.status},
              {"body", fault.body},
              {"headers", headersOf(fault.headers)},
              {"isReset", fault.isReset},
              {"isStall", fault.isStall},
              {"truncateAfter", fault.truncateAfter ? Json(*fault.truncateAfter) : Json()},
              {"dripBytes", fault.dripBytes},
              {"dripPause", fault.dripPause.count()},
              {"isAfterEffect", fault.isAfterEffect}}}};
}

/// The JSON library alone would cut a number to fit.
template <class Number>
Number whole(const Json& value) {
    static_assert(sizeof(Number) <= sizeof(std::int32_t));
    if (!value.is_number_integer() || value != Json(value.get<Number>())) {
        throw ServiceError(400, value.dump() + " is not a whole number that can be meant here");
    }
    return value.get<Number>();
}

/// The members of Fault by their names; times in milliseconds, headers as a list of pairs.
Fault faultFrom(const Json& json) {
    Fault fault;
    const auto milliseconds = [](const Json& value) { return std::chrono::milliseconds(whole<int>(value)); };
    for (const auto& [name, value] : json.items()) {
        if (name == "operation") {
            fault.operation = value.get<std::string>();
        } else if (name == "className") {
            fault.className = value.get<std::string>();
        } else if (name == "first") {
            fault.first = whole<int>(value);
        } else if (name == "every") {
            fault.every = whole<int>(value);
        } else if (name == "times") {
            fault.times = whole<int>(value);
        } else if (name == "delay") {
            fault.delay = milliseconds(value);
        } else if (name == "status") {
            fault.status = whole<int>(value);
        } else if (name == "body") {
            fault.body = value.get<std::string>();
        } else if (name == "headers") {
            for (const Json& header : value) {
                fault.headers.emplace_back(header.at(0).get<std::string>(), header.at(1).get<std::string>());
            }
        } else if (name == "isReset") {
            fault.isReset = value.get<bool>();
        } else if (name == "isStall") {
            fault.isStall = value.get<bool>();
        } else if (name == "truncateAfter") {
            fault.truncateAfter =
                value.is_null() ? std::nullopt : std::optional<std::size_t>(whole<std::uint32_t>(value));
        } else if (name == "dripBytes") {
            fault.dripBytes = whole<std::uint32_t>(value);
        } else if (name == "dripPause") {
            fault.dripPause = milliseconds(value);
        } else if (name == "isAfterEffect") {
            fault.isAfterEffect = value.get<bool>();
        } else {
            throw ServiceError(400, "A fault has no member \"" + name + "\"");
        }
    }
    return fault;
}

Json toJson(const LoggedRequest& request) {
    return {{"number", request.number},
            {"time", std::chrono::duration_cast<std::chrono::milliseconds>(request.time.time_since_epoch()).count()},
            {"method", request.method},
            {"path", request.path},
            {"query", request.query},
            {"headers", headersOf(request.headers)},
            {"requestBytes", request.requestBytes},
            {"status", request.status},
            {"answerBytes", request.answerBytes},
            {"tookEffect", request.tookEffect},
            {"fault", request.fault}};
}

Reply answerControl(Service& service, const HttpRequest& request, std::string_view path) {
    const std::string action = request.method + " " + std::string(path);
    const Reply done(204, "", "");
    if (action == "GET /faults") {
        Json faults = Json::array();
        for (const FaultState& state : service.faults().all()) {
            faults.push_back(toJson(state));
        }
        return {200, toText({{"faults", faults}})};
    }
    if (action == "POST /faults") {
        const FaultId id = service.faults().inject(faultFrom(parseJson(request.body)));
        return {201, toText({{"id", id}})};
    }
    if (action == "DELETE /faults") {
        service.clearFaults();
        return done;
    }
    if (action == "GET /requests") {
        Json requests = Json::array();
        for (const LoggedRequest& one : service.log().all()) {
            requests.push_back(toJson(one));
        }
        return {200, toText({{"requests", requests}})};
    }
    if (action == "DELETE /requests") {
        service.log().clear();
        return done;
    }
    if (action == "POST /tokens") {
        const Json token = parseJson(request.body);
        service.tokens().add({token.at("value").get<std::string>(), whole<int>(token.value("calls", Json(0))),
                              std::chrono::milliseconds(whole<int>(token.value("lifetime", Json(0))))});
        return done;
    }
    if (action == "POST /reset") {
        service.reset();
        return done;
    }
    if (action == "POST /seed") {
        service.store().seed(request.body);
        return done;
    }
    if (action == "GET /dump") {
        return {200, service.store().dump()};
    }
    throw ServiceError(404, "There is no \"" + action + "\" below /_control");
}

} // namespace

Reply control(Service& service, const HttpRequest& request, std::string_view path) {
    try {
        return answerControl(service, request, path);
    } catch (const Json::exception& error) {
        throw ServiceError(400, error.what());
    } catch (const std::invalid_argument& error) {
        throw ServiceError(400, error.what());
    }
}

} // namespace VarnelAPI::Forms::repository
