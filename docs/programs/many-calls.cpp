#include "Setting.h"

#include <algorithm>
#include <deque>

#include <pplx/threadpool.h>

using namespace VarnelAPI::Forms;

namespace {

// [all]
pplx::task<std::size_t> countOpen(const api::BaseClassApi& issues, const utility::string_t& project,
                                  const std::vector<utility::string_t>& ids) {
    std::vector<pplx::task<std::shared_ptr<model::DynamicSchemaBaseClassInstance>>> calls;
    for (const auto& id : ids) {
        calls.push_back(issues.get_DynamicSchemaBaseClass_instanceId(project, id)); // on its way from here on
    }
    return pplx::when_all(calls.begin(), calls.end())
        .then([](const std::vector<std::shared_ptr<model::DynamicSchemaBaseClassInstance>>& answers) {
            return static_cast<std::size_t>(std::count_if(answers.begin(), answers.end(), [](const auto& answer) {
                return !kit::stored(answer)->getProperties()->isClosed();
            }));
        });
}
// [all]

// [some]
/// Deletes all of them, with no more than `atOnce` calls on their way. Waits: not for continuations.
std::size_t removeAll(const api::BaseClassApi& issues, const utility::string_t& project,
                      const std::vector<utility::string_t>& ids, std::size_t atOnce) {
    std::size_t failures = 0;
    std::deque<pplx::task<void>> running;
    const auto finishOldest = [&] {
        try {
            running.front().get();
        } catch (const std::exception&) {
            ++failures;
        }
        running.pop_front();
    };
    for (const auto& id : ids) {
        if (running.size() == atOnce) {
            finishOldest();
        }
        running.push_back(issues.delete_DynamicSchemaBaseClass_instanceId(project, id));
    }
    while (!running.empty()) {
        finishOldest();
    }
    return failures;
}
// [some]

} // namespace

// [pool]
int main() {
    crossplat::threadpool::initialize_with_threads(4); // before the first call; 40 threads otherwise
    // [pool]
    Setting here;
    const api::BaseClassApi issues(here.client);
    std::cout
        << countOpen(issues, _XPLATSTR("tower"), {_XPLATSTR("crack"), _XPLATSTR("rail"), _XPLATSTR("cable")}).get()
        << " open\n"
        << removeAll(issues, _XPLATSTR("tower"),
                     {_XPLATSTR("crack"), _XPLATSTR("none"), _XPLATSTR("rail"), _XPLATSTR("cable")}, 2)
        << " not deleted\n"
        << kit::total(issues.count_DynamicSchemaBaseClass(_XPLATSTR("tower"))).get() << " left\n";
    return here.printed("2 open\n1 not deleted\n0 left\n");
}
