#include "Setting.h"

#include <chrono>
#include <thread>

using namespace VarnelAPI::Forms;

namespace {

// [cancel]
/// A search that ends when another one begins.
class Search {
public:
    explicit Search(std::shared_ptr<api::ApiClient> client) : m_Client(std::move(client)) {}

    auto begin(const utility::string_t& project) {
        m_Running.cancel();
        m_Running = pplx::cancellation_token_source();
        const api::BaseClassApi issues(m_Client->with(transport::CallOptions().cancelOn(m_Running.get_token())));
        return issues.select_DynamicSchemaBaseClass(project);
    }

private:
    std::shared_ptr<api::ApiClient> m_Client;
    pplx::cancellation_token_source m_Running;
};
// [cancel]

// [deadline]
bool hasAnswered(const std::shared_ptr<api::ApiClient>& client, const utility::string_t& project,
                 std::chrono::milliseconds limit) {
    try {
        api::BaseClassApi(client->with(transport::CallOptions().deadline(limit)))
            .count_DynamicSchemaBaseClass(project)
            .get();
        return true;
    } catch (const web::http::http_exception& error) {
        if (error.error_code() == std::errc::timed_out) {
            return false;
        }
        throw;
    }
}
// [deadline]

// [leg]
void bePatient(api::ApiConfiguration& configuration) {
    configuration.getHttpConfig().set_timeout(std::chrono::minutes(2)); // of each leg of a call; 30 s unless set
}
// [leg]

} // namespace

int main() {
    Setting here;
    repository::Fault silent;
    silent.operation = "list";
    silent.isStall = true;
    here.server.inject(silent); // the first list, and no other
    Search search(here.client);
    const auto first = search.begin(_XPLATSTR("tower"));
    while (here.server.faults().at(0).met == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    std::cout << search.begin(_XPLATSTR("tower")).get()->getInstances().size() << " issues\n";
    try {
        first.get();
    } catch (const web::http::http_exception& error) {
        std::cout << (error.error_code() == std::errc::operation_canceled ? "canceled" : error.what()) << '\n';
    }
    bePatient(*here.configuration);
    silent.operation = "count";
    silent.times = 0;
    std::cout << hasAnswered(here.client, _XPLATSTR("tower"), std::chrono::minutes(1)) << '\n';
    here.server.inject(silent);
    std::cout << hasAnswered(here.client, _XPLATSTR("tower"), std::chrono::milliseconds(50)) << '\n';
    here.server.clearFaults();
    return here.printed("3 issues\ncanceled\n1\n0\n");
}
