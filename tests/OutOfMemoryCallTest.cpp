#include "support/ServiceTest.h"

#include "support/FailingMemory.h"
#include "support/SomeIssues.h"

#include <cpprest/http_client.h>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <functional>
#include <sstream>
#include <thread>

/// Memory runs out at each single allocation that a call makes, once, or from there on. The process goes on, the call
/// ends with an exception or with all that it should give, its task settles, and then the same call works.
///
/// Each call runs in a child, which tries one point after the other and tells of each; where a child ends, another one
/// goes on. Until the child has forked, the process has no threads of the task library.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::api;
using namespace VarnelAPI::Forms::model;
using namespace std::chrono_literals;
using How = FailingMemory::How;
using Where = FailingMemory::Where;

/// How long a call may take whose memory failed, which is more than the time-out and the deadline of those that have
/// one; how long one that nothing disturbs, on a machine that is busy; and how long no memory of the other threads
/// succeeds, and what of it has not settled soon after.
constexpr std::chrono::milliseconds longest = 5s, timeOut = 3s, deadline = 2s, longestUndisturbed = 20s,
                                    exhausted = 100ms, longestAfterwards = 600ms;

/// Answers when it is told to, and leaves the bodies of requests to whoever asks.
class LateTransport final : public transport::Transport {
public:
    pplx::task<web::http::http_response> send(const web::uri&, const web::http::client::http_client_config&,
                                              web::http::http_request request,
                                              const pplx::cancellation_token&) override {
        m_Request = std::move(request);
        auto task = pplx::create_task(m_Answer);
        m_IsSent = true;
        return task;
    }
    /// Lets the transfer fail if nobody waited for it.
    void fail() {
        if (m_IsSent) {
            m_Answer.set_exception(web::http::http_exception("late"));
        }
    }
    void answer() {
        web::http::http_response response(200);
        response.set_body(someIssues, m_Request.headers()["Accept"_t] == "application/octet-stream"_t
                                          ? "application/octet-stream"
                                          : "application/json");
        m_Answer.set(response);
    }
    std::string sent() {
        std::string body(static_cast<std::size_t>(m_Request.headers().content_length()), ' ');
        if (m_Request.body().is_valid()) {
            m_Request.body().streambuf().getn(reinterpret_cast<uint8_t*>(body.data()), body.size()).get();
        }
        return body;
    }

private:
    web::http::http_request m_Request;
    bool m_IsSent = false;
    pplx::task_completion_event<web::http::http_response> m_Answer;
};

/// One use of the library, within which memory may fail.
class Trial {
public:
    /// @param nth 0 for a trial in which nothing fails.
    Trial(const std::shared_ptr<ApiConfiguration>& configuration, bool isLate, uint64_t nth = 0, How how = How::Once,
          Where where = Where::Here)
        : m_Client(std::make_shared<ApiClient>(configuration)), m_Nth(nth), m_How(how), m_Where(where) {
        if (isLate) {
            m_Late = std::make_shared<LateTransport>();
            configuration->setTransport(m_Late);
        }
    }
    ~Trial() {
        FailingMemory::mend();
        if (m_Late) {
            m_Late->fail();
        }
    }
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;

    bool isDisturbed() const { return m_Nth != 0; }
    const std::shared_ptr<ApiClient>& client() const { return m_Client; }

    /// What `work` gives. If it is a task, the memory of the other threads may fail until that has settled.
    template <class Work>
    auto in(Work work) const {
        struct Mending {
            Where where;
            ~Mending() {
                if (where == Where::Here) {
                    FailingMemory::mend();
                }
            }
        };
        const Mending mending{m_Where};
        if (m_Nth != 0) {
            FailingMemory::fail(m_Nth, m_How, m_Where);
        }
        return work();
    }
    /// The result of such a task, and what was sent for it.
    template <class Result>
    Result settled(const pplx::task<Result>& task) {
        if (m_Late) {
            m_Sent = m_Late->sent();
            m_Late->answer();
        }
        auto begin = std::chrono::steady_clock::now();
        const bool isExhausted = m_Nth != 0 && m_Where == Where::Elsewhere && m_How == How::FromThenOn;
        const auto patience = m_Nth == 0 ? longestUndisturbed : isExhausted ? exhausted + longestAfterwards : longest;
        while (!task.is_done()) {
            const auto now = std::chrono::steady_clock::now();
            if (isExhausted && FailingMemory::failures() == 0) {
                begin = now; // On a busy machine it may take a while until something fails.
            }
            if (isExhausted && now > begin + exhausted) {
                FailingMemory::mend();
            }
            if (now > begin + patience) {
                throw std::logic_error("the task does not settle");
            }
            std::this_thread::sleep_for(50us);
        }
        FailingMemory::mend();
        return task.get();
    }
    const std::string& sent() const { return m_Sent; }

private:
    const std::shared_ptr<ApiClient> m_Client;
    const uint64_t m_Nth;
    const How m_How;
    const Where m_Where;
    std::shared_ptr<LateTransport> m_Late;
    std::string m_Sent;
};

std::string textOf(const Model& model) {
    return utf8(model.toJson().serialize());
}

struct Use {
    const char* name;
    /// All that comes of it.
    std::string (*run)(Trial&);
    /// How many allocations it makes at least, in its call.
    uint64_t points;
};

constexpr Use calls[] = {
    {"selects",
     [](Trial& trial) {
         const auto task = trial.in([&] { return BaseClassApi(trial.client()).select_DynamicSchemaBaseClass("L"_t); });
         return textOf(*trial.settled(task));
     },
     90},
    {"inserts",
     [](Trial& trial) {
         const auto body = someIssue();
         const auto task =
             trial.in([&] { return BaseClassApi(trial.client()).insert_DynamicSchemaBaseClass("L"_t, {body}); });
         return textOf(*trial.settled(task)) + trial.sent();
     },
     100},
    {"deletes",
     [](Trial& trial) {
         trial.settled(
             trial.in([&] { return FileApi(trial.client()).delete_DynamicSchemaFile_instanceId("L"_t, "i"_t); }));
         return std::string("done");
     },
     90},
    {"calls by hand",
     [](Trial& trial) {
         const auto response = trial.settled(trial.in([&] {
             return trial.client()->callApi("/base/x"_t, "POST"_t, {}, nullptr, {}, {{"name"_t, "value"_t}}, {},
                                            "multipart/form-data"_t);
         }));
         // The boundary is another one each time.
         return utf8(response.extract_string(true).get()) + std::to_string(trial.sent().size());
     },
     90},
    {"saves",
     [](Trial& trial) {
         const auto saved = std::make_shared<std::string>();
         const auto sink = [saved](const uint8_t* bytes, std::size_t size) { saved->append(bytes, bytes + size); };
         const auto client = trial.client()->with(transport::CallOptions().saveTo(sink));
         trial.settled(trial.in([&] { return client->callApi("/base/x"_t, "GET"_t, {}, nullptr, {}, {}, {}, ""_t); }));
         return *saved;
     },
     60},
    {"has wishes",
     [](Trial& trial) {
         static const auto credentials = std::make_shared<transport::Credentials>([](auto) {
             return pplx::task_from_result(transport::Token{"a token of some length"_t, {}});
         });
         static std::atomic<int> ends{0};
         static const auto observer = std::make_shared<transport::Observer>(
             [](const auto& event) { ends += event.kind == transport::CallEvent::Kind::Ended ? 1 : 0; });
         const int endsBefore = ends;
         static const pplx::cancellation_token_source source;
         const auto client = trial.client()->with(transport::CallOptions()
                                                      .cancelOn(source.get_token())
                                                      .deadline(trial.isDisturbed() ? deadline : longestUndisturbed)
                                                      .retry({})
                                                      .credentials(credentials)
                                                      .observer(observer)
                                                      .onProgress([](const auto&) {})
                                                      .onResponse([](auto, const auto&) {}));
         const auto task = trial.in([&] { return BaseClassApi(client).select_DynamicSchemaBaseClass("L"_t); });
         const std::string result = textOf(*trial.settled(task));
         for (int i = 0; !trial.isDisturbed() && ends == endsBefore; ++i) {
             if (i == 20000) {
                 throw std::logic_error("the observer hears of no end");
             }
             std::this_thread::sleep_for(100us);
         }
         return result;
     },
     120}};

/// What a child tells.
struct Word {
    enum class Kind { Begins, Gives, Throws, IsUnsettled, IsWrong, IsOver };
    Kind kind = Kind::Begins;
    uint64_t point = 0;
    char text[200] = {};
};

class Child {
public:
    Child(const Use& use, const std::string& url, bool isLate, int pipe) : m_Use(use), m_IsLate(isLate), m_Pipe(pipe) {
        m_Configuration->setBaseUrl(text(url));
        m_Configuration->getHttpConfig().set_timeout(timeOut);
        m_Configuration->setTransport(chosenTransport());
        Trial trial(m_Configuration, m_IsLate);
        m_Expected = m_Use.run(trial);
    }

    /// Tries one point after the other until nothing fails any more. A process in which something went wrong ends.
    [[noreturn]] void run(uint64_t point, How how, Where where) {
        for (;; ++point) {
            alarm(20);
            tell(Word::Kind::Begins, point);
            std::string what;
            auto kind = tryPoint(point, how, where, what);
            if (FailingMemory::failures() == 0) {
                tell(kind == Word::Kind::Gives ? Word::Kind::IsOver : Word::Kind::IsWrong, point, what);
                _exit(0);
            }
            if (kind == Word::Kind::Gives || kind == Word::Kind::Throws) {
                const std::string again = undisturbed();
                kind = again == m_Expected ? kind : Word::Kind::IsWrong;
                what += again == m_Expected ? "" : ", and then " + again;
            }
            tell(kind, point, what);
            if (kind != Word::Kind::Gives && kind != Word::Kind::Throws) {
                _exit(0);
            }
        }
    }

private:
    std::string undisturbed() const {
        try {
            Trial trial(m_Configuration, m_IsLate);
            return m_Use.run(trial);
        } catch (const std::exception& error) {
            return error.what();
        }
    }
    Word::Kind tryPoint(uint64_t point, How how, Where where, std::string& what) const {
        try {
            Trial trial(m_Configuration, m_IsLate, point, how, where);
            what = m_Use.run(trial);
            return what == m_Expected ? Word::Kind::Gives : Word::Kind::IsWrong;
        } catch (const std::logic_error& error) {
            what = error.what();
            return Word::Kind::IsUnsettled;
        } catch (const std::exception& error) {
            what = error.what();
            return Word::Kind::Throws;
        }
    }
    void tell(Word::Kind kind, uint64_t point, const std::string& text = {}) const {
        Word word{kind, point, {}};
        std::strncpy(word.text, text.c_str(), sizeof(word.text) - 1);
        if (write(m_Pipe, &word, sizeof(word)) != sizeof(word)) {
            _exit(1);
        }
    }

    const Use& m_Use;
    const bool m_IsLate;
    const int m_Pipe;
    const std::shared_ptr<ApiConfiguration> m_Configuration = std::make_shared<ApiConfiguration>();
    std::string m_Expected;
};

/// How many points had which outcome.
struct Outcomes {
    uint64_t points = 0;
    uint64_t exceptions = 0;
    uint64_t unsettled = 0;
    uint64_t deaths = 0;
    /// What else was wrong.
    std::string wrong;
};

std::ostream& operator<<(std::ostream& stream, const Outcomes& outcomes) {
    return stream << outcomes.points << " points, " << outcomes.exceptions << " exceptions, " << outcomes.unsettled
                  << " unsettled, " << outcomes.deaths << " deaths" << outcomes.wrong;
}

class OutOfMemoryCallTest : public ::testing::Test {
protected:
    OutOfMemoryCallTest() { server.replyAlways(Reply::json(someIssues)); }

    Outcomes outcomesOf(const Use& use, bool isLate, How how, Where where) {
        Outcomes outcomes;
        for (uint64_t point = 1;; ++point) {
            int ends[2];
            if (pipe(ends) != 0) {
                throw std::runtime_error("no pipe");
            }
            const pid_t process = fork();
            if (process == 0) {
                runChild(use, isLate, how, where, point, ends[1]);
            }
            close(ends[1]);
            Word word;
            while (read(ends[0], &word, sizeof(word)) == sizeof(word)) {
                point = word.point;
                outcomes.exceptions += word.kind == Word::Kind::Throws ? 1 : 0;
                outcomes.unsettled += word.kind == Word::Kind::IsUnsettled ? 1 : 0;
                if (word.kind == Word::Kind::IsWrong) {
                    outcomes.wrong += "\n" + std::to_string(point) + ": " + word.text;
                }
            }
            close(ends[0]);
            waitpid(process, nullptr, 0);
            if (word.kind == Word::Kind::IsOver) {
                outcomes.points = point - 1;
                std::cout << use.name << ": " << outcomes << std::endl;
                return outcomes;
            }
            outcomes.deaths += word.kind == Word::Kind::Begins ? 1 : 0;
            if (point == 0 || outcomes.deaths > 250) {
                throw std::runtime_error("no child gets on");
            }
        }
    }

    [[noreturn]] void runChild(const Use& use, bool isLate, How how, Where where, uint64_t point, int pipe) {
        alarm(20);
        if (std::freopen("/dev/null", "w", stderr) != nullptr) { // where the C++ library tells what ends a process
            try {
                Child(use, server.url(), isLate, pipe).run(point, how, where);
            } catch (...) {
                // The parent hears nothing of it.
            }
        }
        _exit(1);
    }

    /// In the call, or where there is no task, nothing goes wrong, but for what the HTTP library does.
    void expectExceptions(const Use& use, bool isLate, bool isByTheHttpLibrary = false) {
        for (const How how : {How::Once, How::FromThenOn}) {
            const uint64_t maxDeaths = !isByTheHttpLibrary ? 0 : how == How::Once ? 5 : 20;
            const uint64_t maxUnsettled = isByTheHttpLibrary ? 3 : 0;
            SCOPED_TRACE(std::string(use.name) + (how == How::Once ? ", one failure" : ", failures from then on"));
            const Outcomes outcomes = outcomesOf(use, isLate, how, Where::Here);
            EXPECT_GE(outcomes.points, use.points);
            EXPECT_LE(outcomes.deaths, maxDeaths);
            EXPECT_LE(outcomes.unsettled, maxUnsettled);
            EXPECT_EQ(outcomes.wrong, "");
            EXPECT_GE(outcomes.exceptions + outcomes.deaths + outcomes.unsettled, use.points - 5);
        }
    }

    RecordingServer server;
};

TEST_F(OutOfMemoryCallTest, OfCallsThatAreMade) {
    for (const Use& use : calls) {
        expectExceptions(use, true);
    }
}

TEST_F(OutOfMemoryCallTest, OfCallsThatAreSent) {
    for (const Use& use : calls) {
        expectExceptions(use, false, !isOverCurl());
    }
    server.takeErrors(); // of children that died
}

/// One failure in all other threads: only a body that the transport's author made by the HTTP library may end the
/// process, by the four allocations of its destructor.
TEST_F(OutOfMemoryCallTest, OfAnswers) {
    uint64_t deaths = 0;
    for (const Use& use : calls) {
        SCOPED_TRACE(use.name);
        const Outcomes outcomes = outcomesOf(use, !isOverCurl(), How::Once, Where::Elsewhere);
        EXPECT_GE(outcomes.points, 15U);
        EXPECT_GE(outcomes.exceptions, 8U);
        EXPECT_EQ(outcomes.unsettled, 0U);
        EXPECT_EQ(outcomes.wrong, "");
        deaths += outcomes.deaths;
    }
    EXPECT_LE(deaths, isOverCurl() ? 0 : std::size(calls));
    server.takeErrors();
}

/// The task library can't let a task fail without memory, and ends the process, or forgets the task. Where it doesn't,
/// all is as it should be.
TEST_F(OutOfMemoryCallTest, OfAnswersWithNoneLeft) {
    uint64_t exceptions = 0;
    for (const Use& use : calls) {
        SCOPED_TRACE(use.name);
        const Outcomes outcomes = outcomesOf(use, !isOverCurl(), How::FromThenOn, Where::Elsewhere);
        EXPECT_GE(outcomes.points, 15U);
        EXPECT_EQ(outcomes.wrong, "");
        exceptions += outcomes.exceptions;
    }
    EXPECT_GE(exceptions, 60U);
    server.takeErrors();
}

} // namespace
} // namespace forms_test
