#pragma once

#include "Text.h"

#include <VarnelAPI/Forms.h>

#include <memory>

namespace forms_test {

/// A list of two issues, whose texts are too long for a std::string to hold them within itself.
constexpr const char* someIssues =
    R"({"instances":[{"instanceId":"an id of some length","className":"AClass","properties":{)"
    R"("_Subject":"A subject of some length","Closed":true,"Latitude":1.5,"_CreatedDate":"2020-01-02T03:04:05Z",)"
    R"("Own text":"a text that is longer than others","Own number":17,"Own fraction":0.5,"Own flag":true}},)"
    R"({"instanceId":"another id of some length","properties":{"_Subject":"Another subject, as long"}}]})";

/// The first of them, as it is sent.
inline std::shared_ptr<VarnelAPI::Forms::model::DynamicSchemaBaseClassInstance> someIssue() {
    auto json = web::json::value::parse(text(someIssues)).at(_XPLATSTR("instances")).at(0);
    auto body = std::make_shared<VarnelAPI::Forms::model::DynamicSchemaBaseClassInstance>();
    body->setInstance(std::make_shared<VarnelAPI::Forms::model::DynamicSchemaBaseClassInstanceContent>());
    body->getInstance()->fromJson(json);
    return body;
}

} // namespace forms_test
