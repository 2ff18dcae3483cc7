#include <VarnelAPI/Forms.h>

#include "support/LeakCheck.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

/// A process that ends while its calls are in flight: by the return of main, or by std::exit for the second argument
/// "exit". The third is how many milliseconds it waits before that.
int main(int, char** arguments) {
    forms_test::turnLeakCheckOff();
    // Each call over TLS would read the system's certificates first, and be slow where time is what is tried.
    setenv("SSL_CERT_FILE", "/dev/null", 1);
    setenv("SSL_CERT_DIR", "/dev/null", 1);
    namespace api = VarnelAPI::Forms::api;
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(arguments[1]);
    configuration->getHttpConfig().set_validate_certificates(false);
    const auto client = std::make_shared<api::ApiClient>(configuration);
    static pplx::task<void> kept;
    for (int i = 0; i < 10; ++i) {
        api::BaseClassApi(client).select_DynamicSchemaBaseClass("L");
        api::FileApi(client).fILEGET_DynamicSchemaFile_instanceId("L", "i");
        client->callApi("/x", "GET", {}, nullptr, {}, {}, {}, "");
        kept = api::FileApi(client).delete_DynamicSchemaFile_instanceId("L", "i");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(arguments[3])));
    if (arguments[2] == std::string("exit")) {
        std::exit(0);
    }
}
