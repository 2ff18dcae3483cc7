#include "support/RecordingServer.h"

#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/api/ApiConfiguration.h>
#include <VarnelAPI/Forms/api/ApiException.h>
#include <VarnelAPI/Forms/api/CommentApi.h>
#include <VarnelAPI/Forms/kit/Coroutines.h>

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>

namespace forms_test {
namespace {

namespace api = VarnelAPI::Forms::api;
namespace kit = VarnelAPI::Forms::kit;
using std::string;

class CoroutinesTest : public ::testing::Test {
protected:
    CoroutinesTest() {
        const auto configuration = std::make_shared<api::ApiConfiguration>();
        configuration->setBaseUrl(server.url());
        comments = std::make_shared<api::CommentApi>(std::make_shared<api::ApiClient>(configuration));
        for (const char* page : {R"({"instances":[{"instanceId":"a"},{"instanceId":"b"}]})",
                                 R"({"instances":[{"instanceId":"c"}]})", "{}"}) {
            server.reply(Reply::json(page));
        }
    }
    auto list() const { return kit::pages(*comments, &api::CommentApi::select_DynamicSchemaComment, "L"); }

    RecordingServer server;
    std::shared_ptr<api::CommentApi> comments;
};

pplx::task<int> sum(pplx::task<int> a, pplx::task<int> b) {
    co_return co_await a + co_await b;
}
pplx::task<void> fail(pplx::task<void> first) {
    co_await first;
    throw std::domain_error("mine");
}

TEST_F(CoroutinesTest, AwaitTasksAndAreTasks) {
    pplx::task_completion_event<int> later;
    const auto waiting = sum(pplx::task_from_result(1), pplx::create_task(later));
    EXPECT_FALSE(waiting.is_done());
    later.set(2);
    EXPECT_EQ(waiting.get(), 3);
    EXPECT_THROW(fail(pplx::task_from_result()).get(), std::domain_error);
    EXPECT_THROW(fail(pplx::create_task([] {})).get(), std::domain_error);
    EXPECT_THROW(sum(pplx::create_task([]() -> int { throw std::logic_error("theirs"); }), waiting).get(),
                 std::logic_error);
    pplx::cancellation_token_source stop;
    const auto stopped = fail(pplx::task<void>(pplx::task_completion_event<void>(), stop.get_token()));
    stop.cancel();
    EXPECT_THROW(stopped.get(), pplx::task_canceled);
    // The failures of these nobody looks at.
    fail(pplx::task_from_result());
    fail(pplx::create_task([] {}));
}

TEST_F(CoroutinesTest, TakeNoThreadWhileTheyWait) {
    // More than the pool has threads.
    pplx::task_completion_event<int> later;
    std::vector<pplx::task<int>> waiting;
    for (int i = 0; i < 100; ++i) {
        waiting.push_back(
            pplx::create_task([later, i] { return sum(pplx::create_task(later), pplx::task_from_result(i)); }));
    }
    pplx::create_task([later] { later.set(1); }).get();
    int total = 0;
    for (const auto& task : waiting) {
        total += task.get();
    }
    EXPECT_EQ(total, 100 + 99 * 50);
}

TEST_F(CoroutinesTest, AwaitPages) {
    const auto all = [](auto pages) -> pplx::task<string> {
        string ids;
        for (const auto& comment : co_await pages) {
            ids += comment->getInstanceId();
        }
        co_return ids;
    };
    EXPECT_EQ(all(list()).get(), "abc");
}

TEST_F(CoroutinesTest, AwaitOnePageAfterTheOther) {
    const auto paged = [](auto pages) -> pplx::task<string> {
        string ids;
        auto cursor = pages.cursor();
        while (const auto page = co_await cursor.next()) {
            for (const auto& comment : *page) {
                ids += comment->getInstanceId();
            }
            ids += ";";
        }
        co_return ids;
    };
    EXPECT_EQ(paged(list()).get(), "ab;c;");
    server.reply(Reply::json("{}", 404, "None"));
    EXPECT_THROW(paged(list()).get(), api::ApiException);
}

TEST_F(CoroutinesTest, GoOnInAThreadOfTheirChoice) {
    std::promise<std::function<void()>> posted;
    const auto elsewhere = [](auto post) -> pplx::task<std::thread::id> {
        co_await kit::resumeOn(post);
        co_return std::this_thread::get_id();
    };
    const auto task = elsewhere([&](std::function<void()> work) { posted.set_value(std::move(work)); });
    std::thread::id there;
    std::thread([&] {
        there = std::this_thread::get_id();
        posted.get_future().get()();
    }).join();
    EXPECT_EQ(task.get(), there);
    EXPECT_THROW(elsewhere([](const std::function<void()>&) { throw std::domain_error("closed"); }).get(),
                 std::domain_error);
}

} // namespace
} // namespace forms_test
