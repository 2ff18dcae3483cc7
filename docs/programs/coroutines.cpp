#include "Setting.h"

#include <VarnelAPI/Forms/kit/Coroutines.h>

using namespace VarnelAPI::Forms;

namespace {

// [count]
pplx::task<int> countOpen(api::BaseClassApi issues, utility::string_t project) {
    int open = 0;
    auto cursor = kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project).cursor();
    while (const auto page = co_await cursor.next()) {
        for (const auto& issue : *page) {
            open += issue->getProperties()->isClosed() ? 0 : 1;
        }
    }
    co_return open;
}
// [count]

// [several]
pplx::task<void> closeAll(api::BaseClassApi issues, utility::string_t project) {
    for (const auto& issue : co_await kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project)
                                 .filter(model::DynamicSchemaBaseClass::closed != true)) {
        try {
            co_await kit::update(issues, &api::BaseClassApi::get_DynamicSchemaBaseClass_instanceId,
                                 &api::BaseClassApi::update_DynamicSchemaBaseClass, project, issue->getInstanceId(),
                                 [](model::DynamicSchemaBaseClass& now) { now.setClosed(true); });
        } catch (const api::ApiException& error) {
            ucout << kit::Failure(error).sentence() << std::endl;
        }
    }
}
// [several]

} // namespace

int main() {
    Setting here;
    const api::BaseClassApi issues(here.client);
    std::cout << countOpen(issues, _XPLATSTR("tower")).get() << " open\n";
    closeAll(issues, _XPLATSTR("tower")).get();
    std::cout << countOpen(issues, _XPLATSTR("tower")).get() << " open\n";
    return here.printed("2 open\n0 open\n");
}
