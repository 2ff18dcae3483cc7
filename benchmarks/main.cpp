#include "Rows.h"

#include "support/Memory.h"
#include "support/Server.h"

#include <benchmark/benchmark.h>
#include <pplx/threadpool.h>

#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include <sys/resource.h>

namespace {

using bench::Operation;
using bench::Row;

std::vector<Row> allRows() {
    auto rows = bench::modelRows();
    for (auto& others : {bench::callRows(), bench::transportRows(), bench::repositoryRows()}) {
        rows.insert(rows.end(), others.begin(), others.end());
    }
    return rows;
}

void measure(benchmark::State& state, const std::function<Operation()>& prepare, Row::Memory memory, bool grows) {
    const Operation operation = prepare();
    const auto growth = static_cast<double>(bench::growthOf(operation));
    if (grows) {
        state.counters["growth"] = growth;
    }
    for ([[maybe_unused]] const auto _ : state) {
        operation();
    }
    if (memory == Row::Memory::Allocated) {
        state.counters["peak"] = static_cast<double>(bench::peakOf(operation));
    } else if (memory == Row::Memory::Resident) {
        state.counters["resident"] = static_cast<double>(bench::residentPeakOf(operation));
    }
}

int runBenchmarks(int argc, char** argv) {
    for (const Row& row : allRows()) {
        const auto add = [&row](const char* side, const std::function<Operation()>& prepare) {
            benchmark::RegisterBenchmark((row.name + side).c_str(), measure, prepare, row.memory, row.grows)
                ->MeasureProcessCPUTime()
                ->UseRealTime()
                ->Unit(benchmark::kMillisecond);
        };
        add("/ours", row.ours);
        add("/reference", row.reference);
    }
    bench::registerLongRows();
    bench::registerStartRow();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}

/// Nothing but the operation, so that instructions can be counted from outside.
int runOne(const std::string& name, const std::string& side, int repeat) {
    for (const Row& row : allRows()) {
        if (row.name == name) {
            const Operation operation = (side == "ours" ? row.ours : row.reference)();
            for (int i = 0; i < repeat; ++i) {
                operation();
            }
            return EXIT_SUCCESS;
        }
    }
    throw std::invalid_argument("there is no row " + name);
}

/// A thousand calls at once need more descriptors than most shells give.
void raiseDescriptorLimit() {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

/// bench [--threads N] [Google Benchmark's arguments]     measures, with a pool of N threads
/// bench --one ROW ours|reference REPEAT                  runs one side of one row
/// bench --serve [FOLDER]                                 is the server of the calls, over TLS with a FOLDER
int main(int argc, char** argv) {
    try {
        raiseDescriptorLimit();
        const std::string mode = argc > 1 ? argv[1] : "";
        if (mode == "--serve") {
            bench::serve(argc > 2 ? argv[2] : "");
        }
        if (mode == "--one" && argc == 5) {
            return runOne(argv[2], argv[3], std::stoi(argv[4]));
        }
        if (mode == "--threads" && argc > 2) {
            crossplat::threadpool::initialize_with_threads(static_cast<std::size_t>(std::stoi(argv[2])));
            argv[2] = argv[0];
            return runBenchmarks(argc - 2, argv + 2);
        }
        return runBenchmarks(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << argv[0] << ": " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
