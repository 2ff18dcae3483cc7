#pragma once

#include <VarnelAPI/Forms.h>

#include "LeakCheck.h"
#include "RecordingServer.h"
#include "Text.h"
#include "Transports.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace forms_test {

namespace api = VarnelAPI::Forms::api;
namespace model = VarnelAPI::Forms::model;
namespace transport = VarnelAPI::Forms::transport;

/// A recording server, and a client that is configured for it.
class ServiceTest : public ::testing::Test {
protected:
    ServiceTest() {
        configuration->setBaseUrl(text(server.url()));
        configuration->setUserAgent("forms-test/1"_t);
        configuration->getDefaultHeaders()["Authorization"_t] = "Bearer t"_t;
        configuration->getHttpConfig().set_timeout(RecordingServer::patience);
        configuration->setTransport(chosenTransport());
    }
    void TearDown() override {
        for (const auto& error : server.takeErrors()) {
            ADD_FAILURE() << "the server saw: " << error;
        }
    }

    RecordingServer server;
    std::shared_ptr<api::ApiConfiguration> configuration = std::make_shared<api::ApiConfiguration>();
    std::shared_ptr<api::ApiClient> client = std::make_shared<api::ApiClient>(configuration);
};

/// The result of a task that needs nothing more; the test fails if it does not settle.
template <class Result>
Result soon(const pplx::task<Result>& task) {
    const auto end = std::chrono::steady_clock::now() + RecordingServer::patience;
    while (!task.is_done()) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::logic_error("the task does not settle");
        }
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
    return task.get();
}

inline std::string bytesOf(std::istream& stream) {
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The text of the exception of exactly this type that `act` throws; a failure if it throws none or another.
template <class Exception, class Act>
std::string messageOf(Act act) {
    try {
        act();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::exception& error) {
        EXPECT_EQ(typeid(error), typeid(Exception)) << error.what();
        return error.what();
    }
    return {};
}

/// The code, message and content of the ApiException that `act` throws, as "404 message|content".
template <class Act>
std::string apiErrorOf(Act act) {
    try {
        act();
        return "nothing was thrown";
    } catch (api::ApiException& error) {
        EXPECT_TRUE(error.getHeaders().empty());
        const auto content = error.getContent();
        return std::to_string(error.error_code().value()) + " " + error.what() + "|" +
               (content ? bytesOf(*content) : "no content");
    }
}

} // namespace forms_test
