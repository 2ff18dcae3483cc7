#include "support/ServiceTest.h"

#include <VarnelAPI/Forms/kit.h>

#include <condition_variable>
#include <future>
#include <mutex>
#include <numeric>
#include <thread>

namespace forms_test {
namespace {

namespace kit = VarnelAPI::Forms::kit;
using model::DynamicSchema_CommentInstances;
using Comments = kit::Pages<DynamicSchema_CommentInstances>;

/// A list of comments whose ids are the numbers from `first` to before `end`.
std::string list(int first, int end) {
    std::string json = R"({"instances":[)";
    for (int i = first; i < end; ++i) {
        json += (i == first ? "" : ",") + (R"({"instanceId":")" + std::to_string(i)) + "\"}";
    }
    return json + "]}";
}

class PagesTest : public ServiceTest {
protected:
    /// Scripts the pages of a list of so many comments, and the empty page that ends it.
    void script(std::initializer_list<int> sizes) {
        int first = 0;
        for (const int size : sizes) {
            server.reply(Reply::json(list(first, first + size)));
            first += size;
        }
        server.reply(Reply::json(list(0, 0)));
    }

    Comments comments(int pageSize = 2) const {
        return kit::pages(api::CommentApi(client), &api::CommentApi::select_DynamicSchemaComment, "L")
            .pageSize(pageSize);
    }

    /// The queries of all requests so far, each after "?".
    std::string queries() const {
        std::string all;
        for (const Request& request : server.requests()) {
            all += request.target.substr(request.target.find('?'));
        }
        return all;
    }

    template <class Page>
    static std::string ids(const Page& page) {
        std::string all;
        for (const auto& comment : page) {
            all += comment->getInstanceId();
        }
        return all;
    }
};

TEST_F(PagesTest, AreFetchedUntilOneIsEmpty) {
    // The service has a limit of its own: a page that is shorter than asked for is not the last one.
    script({2, 1, 2});
    EXPECT_EQ(ids(comments()), "01234");
    EXPECT_EQ(queries(), "?$skip=0&$top=2?$skip=2&$top=2?$skip=3&$top=2?$skip=5&$top=2");
    script({});
    EXPECT_EQ(ids(comments()), "");
    script({1, 1});
    EXPECT_EQ(ids(kit::all(comments(1)).get()), "01");
    server.reply(Reply::json(R"({"instances":[{}]})"));
    script({1});
    EXPECT_EQ(kit::all(comments(1)).get().size(), 2U) << "what has no name is not the same";
    server.reply(Reply::json(R"({"instances":[null,{"instanceId":"a"},null]})"));
    server.reply(Reply::json(R"({"instances":[null]})"));
    server.reply(Reply::json(R"({"instances":[{"instanceId":"b"}]})"));
    server.reply(Reply::json("{}"));
    EXPECT_EQ(ids(comments()), "ab") << "what came as null is counted, and not given";
    EXPECT_EQ(server.requests().back().target.substr(server.requests().back().target.find('?')), "?$skip=5&$top=2");
}

TEST_F(PagesTest, SendEachOptionAndPathArgumentOfAnySelectOperation) {
    // The range outlives the lists that it was made of, and the texts that they were told.
    script({1});
    for (const auto& attachment :
         kit::pages(api::AttachmentApi(client), &api::AttachmentApi::select_DynamicSchemaAttachment2, "L",
                    std::string("Class"), "issue")
             .filter(std::string("a") + " eq 'b'")
             .select("Name")
             .orderby("Name desc")
             .filtersettings("")) {
        EXPECT_EQ(attachment->getInstanceId(), "0");
    }
    EXPECT_EQ(server.requests().front().target,
              "/base/sv1.2/Repositories/Varnel.Forms--L/DynamicSchema/Class/issue/Attachment"
              "?$filter=a%20eq%20'b'&$orderby=Name%20desc&$select=Name&$skip=0&$top=100&api.filtersettings=");
    script({});
    const auto unfiltered = kit::pages(api::StatsApi(client), &api::StatsApi::select_PlexumStats, "L").pageSize(7);
    const auto filtered = unfiltered.filter("x");
    EXPECT_EQ(unfiltered.begin(), unfiltered.end());
    EXPECT_EQ(server.requests().back().target, "/base/sv1.2/Repositories/Varnel.Forms--L/Plexum/Stats?$skip=0&$top=7");
    EXPECT_EQ(messageOf<std::invalid_argument>([&] { unfiltered.pageSize(0); }), "a page has at least one instance");
}

TEST_F(PagesTest, AskForTheNextPageWhileThisOneIsUsed) {
    script({2, 2, 2});
    std::vector<Comments::Element> kept;
    for (const auto& comment : comments()) {
        kept.push_back(comment);
        EXPECT_TRUE(server.waitForRequests(kept.size() <= 2 ? 2 : kept.size() <= 4 ? 3 : 4));
    }
    EXPECT_EQ(ids(kept), "012345");
}

TEST_F(PagesTest, SendOneRequestTooManyAtMostWhenTheyAreLeftEarly) {
    script({2, 2, 2});
    for (const auto& comment : comments()) {
        EXPECT_EQ(comment->getInstanceId(), "0");
        break;
    }
    EXPECT_TRUE(server.waitForReplies(2));
    int pages = 0;
    kit::forEachPage(comments(), [&](const Comments::Page&) { return ++pages < 1; }).get();
    EXPECT_TRUE(server.waitForReplies(4));
    EXPECT_EQ(pages, 1);
    EXPECT_EQ(server.requests().size(), 4U);
    const auto nothingSent = comments();
    EXPECT_EQ(server.requests().size(), 4U);
}

TEST_F(PagesTest, ThrowAtTheStepThatNeedsThePage) {
    server.reply(Reply::json(list(0, 2)));
    server.reply(Reply::json("{}", 503, "Busy"));
    const auto two = comments();
    auto place = two.begin();
    EXPECT_TRUE(server.waitForReplies(2));
    EXPECT_EQ((*place)->getInstanceId(), "0");
    ++place;
    EXPECT_EQ((*place)->getInstanceId(), "1");
    EXPECT_EQ(apiErrorOf([&] { ++place; }), "503 error calling select_DynamicSchemaComment: Busy|{}");
    EXPECT_EQ(place, two.end());
    server.reply(Reply::json("{}", 404, "None"));
    EXPECT_EQ(apiErrorOf([&] { two.begin(); }), "404 error calling select_DynamicSchemaComment: None|{}");
    EXPECT_EQ(messageOf<std::invalid_argument>([&] {
                  kit::pages(api::CommentApi(client), &api::CommentApi::select_DynamicSchemaComment, "..").begin();
              }).substr(0, 11),
              "CommentApi-");
    // A cursor asks again for the page that failed.
    server.reply(Reply::json(list(0, 2)));
    server.reply(Reply::json("{}", 503, "Busy"));
    server.reply(Reply::json(list(2, 3)));
    server.reply(Reply::json("{}"));
    auto cursor = two.cursor();
    EXPECT_EQ(ids(*cursor.next().get()), "01");
    EXPECT_THROW(cursor.next().get(), api::ApiException);
    EXPECT_EQ(ids(*cursor.next().get()), "2");
    EXPECT_EQ(cursor.next().get(), nullptr);
    EXPECT_EQ(cursor.next().get(), nullptr) << "after the end nothing more is asked for";
}

TEST_F(PagesTest, NoticeAServiceThatDoesNotCount) {
    server.replyAlways(Reply::json(list(0, 2)));
    EXPECT_EQ(messageOf<std::runtime_error>([&] { kit::all(comments()).get(); }),
              "the service sent the same page again: it does not heed $skip");
    EXPECT_EQ(ids(comments(3)), "01") << "all of it was in the first page";
}

TEST_F(PagesTest, RefuseToBlockThePool) {
    server.replyAlways(Reply::json(list(0, 0)));
    EXPECT_FALSE(kit::isPoolThread());
    std::thread([&] { EXPECT_EQ(ids(comments()), ""); }).join();
    const auto asked = server.requests().size();
    const auto refusal = [this] {
        return messageOf<kit::WouldBlockPool>([this] {
            for (const auto& comment : comments()) {
                comment->getInstanceId();
            }
        });
    };
    const char* text = "a range of pages waits for them, and must not do so inside a continuation; use forEachPage";
    ASSERT_EQ(pplx::create_task(refusal).get(), text);
    // More than the pool has threads, so that it would stand still for good.
    std::vector<pplx::task<std::string>> refused;
    for (int i = 0; i < 100; ++i) {
        refused.push_back(pplx::create_task(refusal));
    }
    for (const auto& task : refused) {
        EXPECT_EQ(task.get(), text);
    }
    EXPECT_EQ(server.requests().size(), asked) << "what is refused is refused before anything is sent";
    EXPECT_EQ(pplx::create_task([this] { return kit::all(comments()); }).get().size(), 0U);
}

TEST_F(PagesTest, AreGivenOneAfterTheOtherWithoutWaiting) {
    using Page = Comments::Page;
    std::string seen;
    script({2, 1});
    kit::forEachPage(comments(), [&](const Page& page) { seen += ids(page) + ";"; }).get();
    EXPECT_EQ(seen, "01;2;");
    // A task is waited for, here one that ends when the test says so.
    script({1, 1});
    pplx::task_completion_event<void> goOn;
    std::promise<void> first;
    std::atomic<int> calls{0};
    const auto walk = kit::forEachPage(comments(), [&](const Page&) {
        if (++calls == 1) {
            first.set_value();
        }
        return pplx::task<void>(goOn);
    });
    first.get_future().wait();
    EXPECT_TRUE(server.waitForReplies(5)) << "the second page is there";
    EXPECT_EQ(calls, 1);
    goOn.set();
    walk.get();
    EXPECT_EQ(calls, 2);
    script({1, 1});
    calls = 0;
    kit::forEachPage(comments(), [&](const Page&) { return pplx::task_from_result(++calls == 2); }).get();
    EXPECT_EQ(calls, 1);
}

TEST_F(PagesTest, FailAsTheOperationOrTheFunctionDoesAndMayBeDropped) {
    const auto fail = [](const Comments::Page&) -> bool { throw std::domain_error("mine"); };
    const auto failLater = [](const Comments::Page&) {
        return pplx::create_task([] { throw std::domain_error("later"); });
    };
    server.replyAlways(Reply::json(list(0, 1)));
    EXPECT_EQ(messageOf<std::domain_error>([&] { kit::forEachPage(comments(), fail).get(); }), "mine");
    EXPECT_EQ(messageOf<std::domain_error>([&] { kit::forEachPage(comments(), failLater).get(); }), "later");
    server.replyAlways(Reply::json("{}", 500, "Broken"));
    EXPECT_THROW(kit::forEachPage(comments(), fail).get(), api::ApiException);
    EXPECT_THROW(kit::all(comments()).get(), api::ApiException);
    // Of a fetch of the program's own nobody but the range can look at a failure.
    const auto onePage = [] {
        const auto page = std::make_shared<DynamicSchema_CommentInstances>();
        page->setInstances({std::make_shared<model::DynamicSchema_CommentInstanceContent>()});
        return page;
    };
    const Comments own([onePage](const kit::PageQuery&, int skip, int) {
        return pplx::create_task([skip, onePage]() -> std::shared_ptr<DynamicSchema_CommentInstances> {
            if (skip > 0) {
                throw std::domain_error("own");
            }
            return onePage();
        });
    });
    for (const auto& comment : own) {
        EXPECT_NE(comment, nullptr);
        break;
    }
    kit::all(own);
    kit::all(comments());
    kit::forEachPage(comments(), failLater);
    own.cursor().next();
    EXPECT_THROW(kit::all(own).get(), std::domain_error);
    const Comments throwing([onePage](const kit::PageQuery&, int skip, int) {
        return skip > 0 ? throw std::domain_error("in the call") : pplx::task_from_result(onePage());
    });
    auto steps = throwing.cursor();
    EXPECT_EQ(steps.next().get()->size(), 1U) << "though the next page is asked for by then";
    EXPECT_THROW(steps.next().get(), std::domain_error);
}

TEST_F(PagesTest, GoOneByOne) {
    pplx::task_completion_event<std::shared_ptr<DynamicSchema_CommentInstances>> never;
    const Comments own([&](const kit::PageQuery&, int, int) { return pplx::create_task(never); });
    auto cursor = own.cursor();
    const auto first = cursor.next();
    EXPECT_EQ(messageOf<std::logic_error>([&] { cursor.next(); }),
              "one page after the other: the last call of next has not finished");
    never.set(std::make_shared<DynamicSchema_CommentInstances>());
    EXPECT_EQ(first.get(), nullptr);
}

} // namespace
} // namespace forms_test
