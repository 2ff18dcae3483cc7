#include <VarnelAPI/Forms/kit/Instances.h>

#include <VarnelAPI/Forms/api/ApiException.h>

#include <set>
#include <string>

namespace VarnelAPI::Forms::kit::detail {

void requirePart(bool isThere, const char* what) {
    if (!isThere) {
        throw std::runtime_error(std::string("the service's answer has no ") + what);
    }
}

web::json::value differenceOf(const web::json::value& before, const web::json::value& after) {
    std::vector<std::pair<utility::string_t, web::json::value>> members;
    std::set<utility::string_t> names;
    for (const auto& [name, value] : after.as_object()) {
        names.insert(name);
        const auto old = before.as_object().find(name);
        // By their texts: numbers and nested objects that are written alike are alike for the service.
        if (old == before.as_object().end() || old->second.serialize() != value.serialize()) {
            members.emplace_back(name, value);
        }
    }
    for (const auto& [name, value] : before.as_object()) {
        if (names.count(name) == 0) {
            members.emplace_back(name, web::json::value::null());
        }
    }
    return web::json::value::object(std::move(members), true);
}

bool isConflict(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const api::ApiException& error) {
        return error.error_code().value() == web::http::status_codes::Conflict;
    } catch (...) {
        return false;
    }
}

} // namespace VarnelAPI::Forms::kit::detail
