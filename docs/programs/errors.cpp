#include "Setting.h"

using namespace VarnelAPI::Forms;

namespace {

void show(const utility::string_t& sentence) {
    ucout << sentence << std::endl;
}
void offerToTryAgain() {
    ucout << _XPLATSTR("Try again?") << std::endl;
}
void explainCertificates() {
    ucout << _XPLATSTR("Ask who runs the service.") << std::endl;
}

void load(const api::BaseClassApi& issues, const utility::string_t& project) {
    // [failure]
    try {
        const auto list = issues.select_DynamicSchemaBaseClass(project).get();
        ucout << list->getInstances().size() << _XPLATSTR(" issues") << std::endl;
    } catch (const std::exception& error) {
        const kit::Failure failure(error, _XPLATSTR("Loading the issues"));
        show(failure.sentence()); // Loading the issues failed with status 404 (Not Found): There is no such class
        if (failure.isTemporary()) {
            offerToTryAgain();
        }
        if (failure.trouble() == kit::Trouble::certificate) {
            explainCertificates();
        }
    }
    // [failure]
}

// [status]
bool isThere(const api::BaseClassApi& issues, const utility::string_t& project, const utility::string_t& id) {
    try {
        issues.get_DynamicSchemaBaseClass_instanceId(project, id).get();
        return true;
    } catch (const api::ApiException& error) { // before http_exception, from which it derives
        if (error.error_code().value() == 404) {
            return false;
        }
        throw;
    }
}
// [status]

// [continuation]
pplx::task<utility::string_t> subject(const api::BaseClassApi& issues, const utility::string_t& project,
                                      const utility::string_t& id) {
    using Task = pplx::task<std::shared_ptr<model::DynamicSchemaBaseClassInstance>>;
    return issues.get_DynamicSchemaBaseClass_instanceId(project, id).then([](const Task& task) {
        try {
            return kit::stored(task.get())->getProperties()->getSubject(); // It is done: get does not wait.
        } catch (const std::exception& error) {
            return kit::Failure(error).sentence();
        }
    });
}
// [continuation]

} // namespace

int main() {
    Setting here;
    const api::BaseClassApi issues(here.client);
    const utility::string_t project = _XPLATSTR("tower");
    load(issues, project);
    repository::Fault busy;
    busy.operation = "list";
    busy.status = 503;
    here.server.inject(busy);
    load(issues, project);
    std::cout << isThere(issues, project, _XPLATSTR("crack")) << isThere(issues, project, _XPLATSTR("none")) << '\n';
    show(subject(issues, project, _XPLATSTR("cable")).get());
    const bool isSentence =
        subject(issues, project, _XPLATSTR("none")).get().find(_XPLATSTR("404")) != std::string::npos;
    std::cout << isSentence << '\n';
    return here.printed("3 issues\nLoading the issues failed with status 503 (Service Unavailable)\nTry again?\n10\n"
                        "Loose cable\n1\n");
}
