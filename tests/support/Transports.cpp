#include "Transports.h"

#if defined(FORMS_TEST_CURL)
#include <VarnelAPI/Forms/transport/CurlTransport.h>
#endif

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace forms_test {

bool isOverCurl() {
    const char* const chosen = std::getenv("FORMS_TEST_TRANSPORT");
    return chosen != nullptr && chosen == std::string("curl");
}

std::shared_ptr<VarnelAPI::Forms::transport::Transport> chosenTransport() {
    if (!isOverCurl()) {
        return nullptr;
    }
#if defined(FORMS_TEST_CURL)
    return std::make_shared<VarnelAPI::Forms::transport::CurlTransport>();
#else
    throw std::runtime_error("the curl transport was not built");
#endif
}

} // namespace forms_test
