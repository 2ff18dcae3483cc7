#include <VarnelAPI/Forms.h>

#include "support/LeakCheck.h"
#include "support/Transports.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

/// A process that ends while its calls are in flight: by the return of main, or by std::exit, for the second argument
/// "exit" there, and for "callback" where a socket is made ready. The third is how many milliseconds it waits before
/// that.
int main(int, char** arguments) {
    forms_test::turnLeakCheckOff();
    // Each call over TLS would read the system's certificates first, and be slow where time is what is tried.
    setenv("SSL_CERT_FILE", "/dev/null", 1);
    setenv("SSL_CERT_DIR", "/dev/null", 1);
    namespace api = VarnelAPI::Forms::api;
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(arguments[1]);
    configuration->getHttpConfig().set_validate_certificates(false);
    configuration->setTransport(forms_test::chosenTransport());
    const auto client = std::make_shared<api::ApiClient>(configuration);
    static pplx::task<void> kept;
    // What is answered with 503 waits for its next attempt, and what waits for a token gets none.
    namespace transport = VarnelAPI::Forms::transport;
    static const auto& never =
        *new pplx::task_completion_event<transport::Token>; // It would be destroyed after the pool.
    const auto observer = std::make_shared<transport::Observer>([](const auto&) {});
    const auto waiting = transport::CallOptions().deadline(std::chrono::hours(1)).observer(observer);
    const auto pausing = client->with(transport::CallOptions(waiting).retry({}));
    const auto asking = client->with(transport::CallOptions(waiting).credentials(
        std::make_shared<transport::Credentials>([](auto) { return pplx::create_task(never); })));
    for (int i = 0; i < 10; ++i) {
        api::BaseClassApi(client).select_DynamicSchemaBaseClass("L");
        api::FileApi(client).fILEGET_DynamicSchemaFile_instanceId("L", "i");
        client->callApi("/x", "GET", {}, nullptr, {}, {}, {}, "");
        api::BaseClassApi(pausing).select_DynamicSchemaBaseClass("L");
        api::BaseClassApi(asking).select_DynamicSchemaBaseClass("L");
        kept = api::FileApi(client).delete_DynamicSchemaFile_instanceId("L", "i");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(arguments[3])));
    if (arguments[2] == std::string("callback")) {
        configuration->getHttpConfig().set_nativehandle_options([](auto) { std::exit(0); });
        client->callApi("/x", "GET", {}, nullptr, {}, {}, {}, "");
        std::this_thread::sleep_for(std::chrono::minutes(1));
    }
    if (arguments[2] == std::string("exit")) {
        std::exit(0);
    }
}
