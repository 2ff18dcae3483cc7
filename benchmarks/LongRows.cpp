#include "Rows.h"

#include "support/Memory.h"
#include "support/Server.h"

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/api/ApiConfiguration.h>
#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/api/BaseClassApi.h>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace bench {

namespace {

using VarnelAPI::Forms::api::ApiClient;
using VarnelAPI::Forms::api::ApiConfiguration;
using VarnelAPI::Forms::api::ApiException;
using VarnelAPI::Forms::api::BaseClassApi;

BaseClassApi issuesApi() {
    auto configuration = std::make_shared<ApiConfiguration>();
    configuration->setBaseUrl(serverUrl());
    return BaseClassApi(std::make_shared<ApiClient>(configuration));
}

/// 64 calls at once whose bodies come late; counts those that end as they should.
void late(benchmark::State& state, const char* location, web::http::status_code expectedStatus) {
    const BaseClassApi api = issuesApi();
    int finished = 0;
    for ([[maybe_unused]] const auto _ : state) {
        std::vector<decltype(api.get_DynamicSchemaBaseClass_instanceId("", ""))> tasks;
        for (int i = 0; i < 64; ++i) {
            tasks.push_back(api.get_DynamicSchemaBaseClass_instanceId(location, "1"));
        }
        for (const auto& task : tasks) {
            try {
                task.get();
                finished += expectedStatus == web::http::status_codes::OK ? 1 : 0;
            } catch (const ApiException& error) {
                finished += error.error_code().value() == expectedStatus ? 1 : 0;
            }
        }
    }
    state.counters["finished"] = finished;
    state.counters["delay"] = std::chrono::duration<double, std::milli>(lateDelay).count();
}

double residentBytes() {
    std::ifstream statm("/proc/self/statm");
    double pages = 0;
    statm >> pages >> pages;
    return pages * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

double descriptors() {
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return static_cast<double>(std::distance(begin(open), end(open)));
}

/// Many calls one after the other: how much the process grows after the first ones.
void growth(benchmark::State& state) {
    constexpr int warmUp = 5000;
    constexpr int calls = 50000;
    const BaseClassApi api = issuesApi();
    for ([[maybe_unused]] const auto _ : state) {
        double live = 0;
        double resident = 0;
        double open = 0;
        for (int i = 0; i < calls; ++i) {
            if (i == warmUp) {
                live = static_cast<double>(liveBytes());
                resident = residentBytes();
                open = descriptors();
            }
            api.get_DynamicSchemaBaseClass_instanceId(locations::issueClosing, "1").get();
        }
        state.counters["live"] = static_cast<double>(liveBytes()) - live;
        state.counters["resident"] = residentBytes() - resident;
        state.counters["descriptors"] = descriptors() - open;
    }
}

} // namespace

void registerLongRows() {
    const auto once = [](benchmark::internal::Benchmark* row) {
        row->UseRealTime()->Iterations(1)->Unit(benchmark::kMillisecond);
    };
    once(benchmark::RegisterBenchmark("late-200/ours", late, locations::late, web::http::status_codes::OK));
    once(benchmark::RegisterBenchmark("late-500/ours", late, locations::lateFailure,
                                      web::http::status_codes::InternalError));
    once(benchmark::RegisterBenchmark("late-type/ours", late, locations::lateOtherType,
                                      web::http::status_codes::InternalError));
    once(benchmark::RegisterBenchmark("growth/ours", growth));
}

} // namespace bench
