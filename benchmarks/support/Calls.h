#pragma once

#include "Rows.h"

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/api/BaseClassApi.h>

#include <benchmark/benchmark.h>
#include <cpprest/http_client.h>

#include <memory>
#include <string>
#include <vector>

/// The calls of the benchmarks, by the library and by hand.
namespace bench {

/// A client as a program makes it.
/// @param transport an empty pointer for the default.
std::shared_ptr<VarnelAPI::Forms::api::ApiClient>
clientOf(const std::string& url, const std::shared_ptr<VarnelAPI::Forms::transport::Transport>& transport = nullptr);

/// The request of such a client, made by hand.
web::http::http_request requestOf(const web::http::method& method, const std::string& path, const char* accept);

/// Sends it. Another status than 200 is a failure.
pplx::task<web::http::http_response> sent(web::http::client::http_client client,
                                          const web::http::http_request& request);

/// Gets an issue of 1 KB by hand, as JSON.
pplx::task<web::json::value> getByHand(const web::http::client::http_client& client);

/// Makes `count` calls at once, and waits for all of them.
template <class Call>
Operation atOnce(std::size_t count, Call call) {
    return [count, call] {
        std::vector<decltype(call())> tasks;
        tasks.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            tasks.push_back(call());
        }
        for (const auto& task : tasks) {
            benchmark::DoNotOptimize(task.get());
        }
    };
}

/// Gets that issue by the library, so many times at once.
Operation getting(std::size_t count, const std::shared_ptr<VarnelAPI::Forms::api::ApiClient>& client);

} // namespace bench
