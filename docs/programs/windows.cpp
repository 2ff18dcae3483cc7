#include "Setting.h"

using namespace VarnelAPI::Forms;

namespace {

// [text]
/// The same source for both: text is wide on Windows, UTF-8 elsewhere.
void rename(const api::BaseClassApi& issues, const utility::string_t& id, const std::string& utf8) {
    kit::update(issues, &api::BaseClassApi::get_DynamicSchemaBaseClass_instanceId,
                &api::BaseClassApi::update_DynamicSchemaBaseClass, _XPLATSTR("tower"), id,
                [&](model::DynamicSchemaBaseClass& now) { now.setSubject(utility::conversions::to_string_t(utf8)); })
        .get();
}

std::string subject(const api::BaseClassApi& issues, const utility::string_t& id) {
    const auto issue = kit::stored(issues.get_DynamicSchemaBaseClass_instanceId(_XPLATSTR("tower"), id)).get();
    return utility::conversions::to_utf8string(issue->getProperties()->getSubject());
}
// [text]

} // namespace

int main() {
    Setting here;
    const api::BaseClassApi issues(here.client);
    rename(issues, _XPLATSTR("crack"), "Riß, 3 µm");
    std::cout << subject(issues, _XPLATSTR("crack")) << '\n';
    return here.printed("Riß, 3 µm\n");
}
