#include "support/Fuzz.h"

#include "Routes.h"
#include "ServiceError.h"

#include <algorithm>

using forms_fuzz::require;
namespace repository = VarnelAPI::Forms::repository;

namespace {

/// A store with some of each kind of value, made once.
repository::Store& store() {
    static const auto made = [] {
        auto fresh = std::make_unique<repository::Store>(":memory:");
        fresh->seed(R"({"instances":[
            {"location":"here","schemaName":"S","className":"C","instanceId":"a",
             "properties":{"id":1,"t":"it's","n":2,"b":true,"d":"2026-01-31T23:59:59.5Z"}},
            {"location":"here","schemaName":"S","className":"C","properties":{"id":2,"t":"Z","n":10.5,"o":{}}},
            {"location":"here","schemaName":"DynamicSchema","className":"Attachment","owner":"a"}]})");
        return fresh;
    }();
    return *made;
}

} // namespace

/// The input is a method, a blank, and an address. Whatever it is, it is refused as the client's mistake or served; in
/// particular each filter that is understood is one for the database too.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    forms_fuzz::Input input(data, size);
    const std::string method = input.field(' ');
    const std::string target = input.rest();
    if (!std::all_of(method.begin(), method.end(), [](char c) { return c > ' ' && c < 0x7F; })) {
        return 0; // what carries requests would not let it through
    }
    try {
        const repository::Call call = repository::readCall(method, target, "");
        require(!call.operation.empty() && call.query.has_value(), "what is understood is whole");
        if (!call.isChange()) {
            const repository::Reply reply = repository::carryOut(store(), call, "");
            require(reply.status == 200, "what is only read is served");
            require(reply.contentType != "application/json" || repository::Json::accept(reply.body), "lists are JSON");
        }
    } catch (const repository::ServiceError& error) {
        require(error.status() >= 400 && error.status() < 500, "a refusal is of the client's mistake");
        require(std::string(error.what()).size() > 10, "a refusal says why");
    }
    return 0;
}
