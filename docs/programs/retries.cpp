#include "Setting.h"

#include <chrono>

using namespace VarnelAPI::Forms;

namespace {

// [retry]
std::shared_ptr<api::ApiClient> patient(const std::shared_ptr<api::ApiClient>& client) {
    transport::RetryPolicy policy; // four attempts, half a second before the second one, then twice as long
    policy.firstPause = std::chrono::milliseconds(20);
    policy.totalTime = std::chrono::seconds(30);
    return client->with(transport::CallOptions().retry(policy));
}
// [retry]

// [changes]
std::shared_ptr<api::ApiClient> stubborn(const std::shared_ptr<api::ApiClient>& client) {
    transport::RetryPolicy policy;
    policy.firstPause = std::chrono::milliseconds(20);
    policy.changes = true; // inserts, updates and uploads too: an insert may make two instances
    return client->with(transport::CallOptions().retry(policy));
}
// [changes]

} // namespace

int main() {
    Setting here;
    repository::Fault busy;
    busy.status = 503;
    busy.times = 2;
    const auto id = here.server.inject(busy);
    std::cout
        << kit::total(api::BaseClassApi(patient(here.client)).count_DynamicSchemaBaseClass(_XPLATSTR("tower"))).get()
        << " issues after " << here.server.fault(id).met + 1 << " attempts\n";
    // The answers to two inserts are lost. Only the second client makes such a call again.
    busy.times = 1;
    busy.isReset = true;
    busy.status = 0;
    busy.operation = "insert";
    busy.isAfterEffect = true;
    model::DynamicSchemaBaseClass draft;
    draft.setSubject(_XPLATSTR("Dark stairs"));
    for (const auto& client : {patient(here.client), stubborn(here.client)}) {
        here.server.inject(busy);
        try {
            api::BaseClassApi(client).insert_DynamicSchemaBaseClass(_XPLATSTR("tower"), kit::envelope(draft)).get();
            std::cout << "stored, ";
        } catch (const web::http::http_exception&) {
            std::cout << "failed, ";
        }
        std::cout << kit::total(api::BaseClassApi(client).count_DynamicSchemaBaseClass(_XPLATSTR("tower"))).get()
                  << '\n';
    }
    return here.printed("3 issues after 3 attempts\nfailed, 4\nstored, 6\n");
}
