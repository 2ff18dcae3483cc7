#include "Setting.h"

using namespace VarnelAPI::Forms;

namespace {

// [create]
utility::string_t create(const api::BaseClassApi& issues, const utility::string_t& project) {
    model::DynamicSchemaBaseClass draft;
    draft.setSubject(_XPLATSTR("Wet floor"));
    draft.setStatus(_XPLATSTR("Open"));
    // [kit]
    const auto issue =
        kit::stored(issues.insert_DynamicSchemaBaseClass(project, kit::envelope(draft, _XPLATSTR("Defect")))).get();
    // [kit]
    return issue->getInstanceId(); // the service's choice
}
// [create]

// [by-hand]
std::shared_ptr<model::DynamicSchemaBaseClassInstance> wrapped(const model::DynamicSchemaBaseClass& draft) {
    auto content = std::make_shared<model::DynamicSchemaBaseClassInstanceContent>();
    content->setClassName(_XPLATSTR("Defect"));
    content->setProperties(std::make_shared<model::DynamicSchemaBaseClass>(draft));
    auto instance = std::make_shared<model::DynamicSchemaBaseClassInstance>();
    instance->setInstance(content);
    return instance;
}
// [by-hand]

// [read]
void show(const api::BaseClassApi& issues, const utility::string_t& project, const utility::string_t& id) {
    const auto issue = kit::stored(issues.get_DynamicSchemaBaseClass_instanceId(project, id)).get();
    if (const auto properties = issue->getProperties()) { // A service may leave out anything.
        ucout << issue->getClassName() << _XPLATSTR(": ") << properties->getSubject() << _XPLATSTR(", ")
              << (properties->statusIsSet() ? properties->getStatus() : _XPLATSTR("no status")) << std::endl;
    }
}
// [read]

// [update]
void close(const api::BaseClassApi& issues, const utility::string_t& project, const utility::string_t& id) {
    // [kit]
    kit::update(issues, &api::BaseClassApi::get_DynamicSchemaBaseClass_instanceId,
                &api::BaseClassApi::update_DynamicSchemaBaseClass, project, id,
                [](model::DynamicSchemaBaseClass& now) {
                    now.setStatus(_XPLATSTR("Closed"));
                    now.setClosed(true);
                })
        .get();
    // [kit]
}
// [update]

// [delete]
int64_t removeAndCount(const api::BaseClassApi& issues, const utility::string_t& project, const utility::string_t& id) {
    issues.delete_DynamicSchemaBaseClass_instanceId(project, id).get();
    // [kit]
    const int64_t count = kit::total(issues.count_DynamicSchemaBaseClass(project)).get();
    // [kit]
    return count;
}
// [delete]

} // namespace

int main() {
    Setting here;
    const api::BaseClassApi issues(here.client);
    const utility::string_t project = _XPLATSTR("tower");
    const auto id = create(issues, project);
    show(issues, project, id);
    close(issues, project, id);
    show(issues, project, id);
    model::DynamicSchemaBaseClass draft;
    draft.setSubject(_XPLATSTR("Dark stairs"));
    show(issues, project,
         kit::stored(issues.insert_DynamicSchemaBaseClass(project, wrapped(draft))).get()->getInstanceId());
    std::cout << removeAndCount(issues, project, id) << " issues\n";
    return here.printed(
        "Defect: Wet floor, Open\nDefect: Wet floor, Closed\nDefect: Dark stairs, no status\n4 issues\n");
}
