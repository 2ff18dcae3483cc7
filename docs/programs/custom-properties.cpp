#include "Setting.h"

using namespace VarnelAPI::Forms;

namespace {

// [write]
utility::string_t observe(const api::BaseClassApi& issues, const utility::string_t& project) {
    model::DynamicSchemaBaseClass issue;
    issue.setSubject(_XPLATSTR("Open shaft"));
    issue.setCustomProp(_XPLATSTR("Crew"), _XPLATSTR("Night shift"));
    issue.setCustomProp(_XPLATSTR("PeopleAtRisk"), 4);
    issue.setCustomProp(_XPLATSTR("Fenced"), false);
    return kit::stored(issues.insert_DynamicSchemaBaseClass(project, kit::envelope(issue, _XPLATSTR("Safety"))))
        .get()
        ->getInstanceId();
}
// [write]

// [read]
void report(const model::DynamicSchemaBaseClass& issue) {
    if (const auto atRisk = kit::customProperty<int64_t>(issue, _XPLATSTR("PeopleAtRisk"))) {
        ucout << *atRisk << _XPLATSTR(" people at risk") << std::endl;
    }
    for (const auto& [name, value] : kit::customProperties(issue)) {
        ucout << name << _XPLATSTR(" = ") << value.serialize() << std::endl;
    }
}
// [read]

} // namespace

int main() {
    Setting here;
    const api::BaseClassApi issues(here.client);
    const auto id = observe(issues, _XPLATSTR("tower"));
    report(*kit::stored(issues.get_DynamicSchemaBaseClass_instanceId(_XPLATSTR("tower"), id)).get()->getProperties());
    return here.printed("4 people at risk\nCrew = \"Night shift\"\nFenced = false\nPeopleAtRisk = 4\n");
}
