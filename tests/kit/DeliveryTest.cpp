#include "support/ServiceTest.h"

#include <VarnelAPI/Forms/kit.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace forms_test {
namespace {

namespace kit = VarnelAPI::Forms::kit;
using kit::Delivered;

/// What a window system has: a queue, and one thread that works it off.
class EventLoop {
public:
    void post(std::function<void()> work) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Queue.push_back(std::move(work));
        m_Posted.notify_all();
    }
    /// Works off one piece of work, in the calling thread; whether there was one.
    bool runOne() {
        std::unique_lock<std::mutex> lock(m_Mutex);
        if (!m_Posted.wait_for(lock, RecordingServer::patience, [this] { return !m_Queue.empty(); })) {
            return false;
        }
        auto work = std::move(m_Queue.front());
        m_Queue.pop_front();
        lock.unlock();
        work();
        return true;
    }
    void clear() {
        std::unique_lock<std::mutex> lock(m_Mutex);
        m_Posted.wait_for(lock, RecordingServer::patience, [this] { return !m_Queue.empty(); });
        m_Queue.clear();
    }

private:
    std::mutex m_Mutex;
    std::condition_variable m_Posted;
    std::deque<std::function<void()>> m_Queue;
};

/// Tells in which thread it ends.
struct Witness {
    explicit Witness(std::vector<std::thread::id>& list) : ends(&list) {}
    ~Witness() { ends->push_back(std::this_thread::get_id()); }
    std::vector<std::thread::id>* ends;
};

struct View {
    std::string shown;
};

class DeliveryTest : public ServiceTest {
protected:
    /// Delivers to the view.
    template <class Call>
    pplx::task<Delivered> deliver(const Call& call) {
        return kit::deliver(
            call,
            [this](std::function<void()> work) {
                copy = keepsCopy ? work : nullptr;
                loop.post(std::move(work));
            },
            std::weak_ptr<View>(view),
            [this, witness = std::make_shared<Witness>(ends)](View& receiver, const auto&... value) {
                EXPECT_EQ(std::this_thread::get_id(), here);
                receiver.shown += (std::string("got ") + ... + std::to_string(value));
            },
            [this, witness = std::make_shared<Witness>(ends)](View& receiver, const std::exception_ptr& error) {
                EXPECT_EQ(std::this_thread::get_id(), here);
                receiver.shown += kit::Failure(error, "It").sentence();
            });
    }

    const std::thread::id here = std::this_thread::get_id();
    EventLoop loop;
    std::vector<std::thread::id> ends;
    bool keepsCopy = false;
    std::function<void()> copy;
    std::shared_ptr<View> view = std::make_shared<View>();
};

TEST_F(DeliveryTest, BringsResultsAndFailuresToTheReceiversThread) {
    keepsCopy = true;
    const auto seven = deliver(pplx::create_task([] { return 7; }));
    EXPECT_TRUE(loop.runOne());
    EXPECT_EQ(view->shown, "got 7");
    EXPECT_EQ(seven.get(), Delivered::result);
    EXPECT_EQ(ends, (std::vector<std::thread::id>{here, here}))
        << "the callbacks end in the receiver's thread, whoever has the work";

    view->shown.clear();
    const auto nothing = deliver(pplx::create_task([] {}));
    EXPECT_TRUE(loop.runOne());
    EXPECT_EQ(view->shown, "got ");
    EXPECT_EQ(nothing.get(), Delivered::result);

    view->shown.clear();
    const auto failing = deliver(pplx::create_task([]() -> int { throw std::domain_error("mine"); }));
    EXPECT_TRUE(loop.runOne());
    EXPECT_EQ(view->shown, "It failed: mine");
    EXPECT_EQ(failing.get(), Delivered::failure);
}

TEST_F(DeliveryTest, MakesTheCallInThePool) {
    std::atomic<bool> wasPool{false};
    const auto call = [&] {
        wasPool = kit::isPoolThread();
        return pplx::task_from_result(1);
    };
    EXPECT_EQ((deliver(call), loop.runOne(), view->shown), "got 1");
    EXPECT_TRUE(wasPool);
    const auto refused = [this] { return kit::total(api::FileApi(client).count_DynamicSchemaFile("a#b")); };
    view->shown.clear();
    deliver(refused);
    EXPECT_TRUE(loop.runOne());
    EXPECT_EQ(view->shown.substr(0, 18), "It failed: FileApi") << "what is thrown in the call is a failure, too";
}

TEST_F(DeliveryTest, IsDroppedWhenTheReceiverIsGone) {
    const auto late = deliver(pplx::create_task([]() -> int { throw std::domain_error("nobody looks"); }));
    view.reset();
    EXPECT_TRUE(loop.runOne());
    EXPECT_EQ(late.get(), Delivered::nothing);
    EXPECT_EQ(ends, (std::vector<std::thread::id>{here, here}));
}

TEST_F(DeliveryTest, IsDroppedWhenTheThreadTakesNoMoreWork) {
    const auto cleared = deliver(pplx::create_task([] { return 1; }));
    loop.clear();
    EXPECT_EQ(cleared.get(), Delivered::nothing);
    const auto ignore = [](auto&&...) {};
    const auto refused = kit::deliver(
        pplx::create_task([] { return 1; }), [](const std::function<void()>&) { throw std::runtime_error("closed"); },
        std::weak_ptr<View>(view), ignore, ignore);
    EXPECT_EQ(refused.get(), Delivered::nothing);
    EXPECT_EQ(view->shown, "");
}

TEST_F(DeliveryTest, NeedsNoReceiverThatIsShared) {
    auto alive = std::make_shared<int>();
    std::string shown;
    const auto post = [this](std::function<void()> work) { loop.post(std::move(work)); };
    const auto give = [&] {
        return kit::deliver(
            pplx::create_task([] { return 3; }), post, std::weak_ptr<void>(alive),
            [&](int value) { shown += std::to_string(value); }, [](const std::exception_ptr&) {});
    };
    EXPECT_EQ((give(), loop.runOne(), shown), "3");
    const auto late = give();
    alive.reset();
    EXPECT_TRUE(loop.runOne());
    EXPECT_EQ(late.get(), Delivered::nothing);
    EXPECT_EQ(shown, "3");
}

TEST_F(DeliveryTest, LeavesWhatCallbacksThrowToTheirThread) {
    const auto throwing = kit::deliver(
        pplx::create_task([] { return 1; }), [this](std::function<void()> work) { loop.post(std::move(work)); },
        std::weak_ptr<View>(view), [](View&, int) { throw std::domain_error("callback"); },
        [](View&, const std::exception_ptr&) { ADD_FAILURE() << "the call did not fail"; });
    EXPECT_EQ(messageOf<std::domain_error>([&] { loop.runOne(); }), "callback");
    EXPECT_EQ(messageOf<std::domain_error>([&] { throwing.get(); }), "callback");
}

} // namespace
} // namespace forms_test
