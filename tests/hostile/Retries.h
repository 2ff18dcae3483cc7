#pragma once

#include <VarnelAPI/Forms.h>

#include <chrono>
#include <thread>

namespace forms_test {

namespace api = VarnelAPI::Forms::api;

// What follows is shown in docs/behaviour.md, word for word.
template <class Operation>
auto withRetries(Operation operation, int attempts, std::chrono::milliseconds pause) {
    for (;; pause *= 2) {
        try {
            return operation().get(); // not inside a continuation
        } catch (const api::ApiException& error) {
            const int status = error.error_code().value();
            if (--attempts == 0 || (status != 429 && status != 502 && status != 503 && status != 504)) {
                throw;
            }
        } catch (const web::http::http_exception&) {
            if (--attempts == 0) {
                throw;
            }
        }
        std::this_thread::sleep_for(pause);
    }
}

} // namespace forms_test
