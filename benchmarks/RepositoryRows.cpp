#include "Rows.h"

#include "Store.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <thread>

/// The local repository: what its pages, its queries and its readers cost, without the transfer.
namespace bench {
namespace {

namespace repository = VarnelAPI::Forms::repository;
using repository::Query;

constexpr int many = 100'000;
constexpr int few = 1'000;

/// So many issues of about 1 KB and twenty properties, every hundredth of them urgent.
repository::Store& storeOf(int count) {
    static std::unique_ptr<repository::Store> stores[2];
    auto& store = stores[count == many ? 0 : 1];
    if (store != nullptr) {
        return *store;
    }
    store = std::make_unique<repository::Store>(":memory:");
    for (int first = 0; first < count; first += few) {
        repository::Json instances = repository::Json::array();
        for (int i = first; i < first + few; ++i) {
            repository::Json properties;
            for (int j = 0; j < 16; ++j) {
                properties["Property" + std::to_string(j)] =
                    "value " + std::to_string(i * 31 + j) + std::string(24, 'x');
            }
            properties["Subject"] = "Subject of " + std::to_string(i);
            properties["Number"] = i;
            properties["Priority"] = i % 100 == 0 ? "urgent" : "normal";
            properties["Due"] = "2026-01-01T00:00:00Z";
            instances.push_back(
                {{"location", "L"}, {"schemaName", "S"}, {"className", "Issue"}, {"properties", properties}});
        }
        store->seed(repository::toText({{"instances", instances}}));
    }
    return *store;
}

Operation listing(int count, const repository::QueryOptions& options) {
    repository::Store& store = storeOf(count);
    return [&store, query = std::make_shared<Query>(options, Query::Accepts::All)] {
        benchmark::DoNotOptimize(store.list({"L", "S", "Issue"}, false, *query));
    };
}

const repository::QueryOptions firstPage{{"$top", "100"}};

/// What a filter costs where every instance of the class is read.
Operation filteringByHand() {
    repository::Store& store = storeOf(many);
    return [&store] {
        store.read([](repository::Database& database) {
            repository::Json page = repository::Json::array();
            repository::Statement row(database, "SELECT id, properties FROM instances ORDER BY number");
            while (page.size() < 100 && row.step()) {
                repository::Json content{{"instanceId", row.text(0)},
                                         {"properties", repository::Json::parse(row.text(1))}};
                if (content["properties"]["Priority"] == "urgent" && content["properties"]["Number"] >= 90'000) {
                    page.push_back(std::move(content));
                }
            }
            benchmark::DoNotOptimize(repository::toText({{"instances", page}}));
            return 0;
        });
    };
}

/// 512 pages, read by so many threads: enough that it does not matter which of them ends last.
Operation reading(int threads) {
    return [threads, page = listing(few, firstPage)] {
        std::vector<std::thread> readers;
        for (int i = 0; i < threads; ++i) {
            readers.emplace_back([&] {
                for (int j = 0; j < 512 / threads; ++j) {
                    page();
                }
            });
        }
        for (std::thread& reader : readers) {
            reader.join();
        }
    };
}

} // namespace

std::vector<Row> repositoryRows() {
    const repository::QueryOptions filter{{"$filter", "Priority eq 'urgent' and Number ge 90000"}, {"$top", "100"}};
    return {
        {"repository-page", [] { return listing(many, firstPage); }, [] { return listing(few, firstPage); }},
        {"repository-last-page",
         [] {
             return listing(many, {{"$top", "100"}, {"$skip", "99900"}});
         },
         [] {
             return listing(few, {{"$top", "100"}, {"$skip", "900"}});
         }},
        {"repository-filter", [filter] { return listing(many, filter); }, filteringByHand},
        {"repository-filter-memory", [filter] { return listing(many, filter); }, [] { return listing(few, firstPage); },
         Row::Memory::Allocated},
        {"repository-order-memory",
         [] {
             return listing(many, {{"$orderby", "Subject desc"}, {"$top", "100"}});
         },
         [] { return listing(few, firstPage); }, Row::Memory::Allocated},
        {"repository-readers", [] { return reading(8); }, [] { return reading(1); }},
    };
}

} // namespace bench
