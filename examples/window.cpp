// What a program with a window does: its thread draws a frame 60 times a second, and must never wait. Here is a window
// without pixels, which lists the issues of a project, page by page, while it draws; at the end it says how long its
// thread was busy at most between two frames. It works over https too, where making a call takes longer than a frame:
// `deliver` does that in another thread.

#include <VarnelAPI/Forms.h>
#include <VarnelAPI/Forms/kit.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <iostream>
#include <mutex>
#include <thread>

using namespace VarnelAPI::Forms;
using utility::string_t;
using utility::conversions::to_utf8string;

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto frame = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / 60));

/// The event loop of a window system. Those that exist have a function like `post`; see the guide.
class EventLoop {
public:
    void post(std::function<void()> work) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Posted.push_back(std::move(work));
    }

    /// Works and draws, in the calling thread, until `quit`.
    template <class Draw>
    void run(Draw draw) {
        for (auto next = Clock::now(); !m_Quits; next = std::max(next + frame, Clock::now())) {
            std::this_thread::sleep_until(next);
            const auto begin = Clock::now();
            for (auto& work : take()) {
                work();
            }
            draw();
            m_Longest = std::max(m_Longest, Clock::now() - begin);
        }
    }
    void quit() { m_Quits = true; }
    Clock::duration longest() const { return m_Longest; }

private:
    std::deque<std::function<void()>> take() {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        return std::exchange(m_Posted, {});
    }

    std::mutex m_Mutex;
    std::deque<std::function<void()>> m_Posted;
    bool m_Quits = false;
    Clock::duration m_Longest{};
};

class IssueWindow : public std::enable_shared_from_this<IssueWindow> {
public:
    using Pages = kit::Pages<model::DynamicSchemaBaseClassInstances>;

    IssueWindow(EventLoop& loop, const Pages& pages) : m_Loop(loop), m_Cursor(pages.cursor()) {}

    /// Asks for the next page. What comes is given to this window in its own thread, unless it was closed meanwhile.
    void more() {
        kit::deliver([cursor = m_Cursor] { return cursor.next(); },
                     [&loop = m_Loop](std::function<void()> work) { loop.post(std::move(work)); }, weak_from_this(),
                     [](IssueWindow& window, const std::shared_ptr<const Pages::Page>& page) { window.show(page); },
                     [](IssueWindow& window, const std::exception_ptr& error) { window.fail(error); });
    }
    void draw() { ++m_Frames; }

    bool hasFailed() const { return m_HasFailed; }
    std::size_t lines() const { return m_Lines.size(); }
    std::size_t frames() const { return m_Frames; }

private:
    void show(const std::shared_ptr<const Pages::Page>& page) {
        if (!page) {
            m_Loop.quit();
            return;
        }
        for (const auto& issue : *page) {
            m_Lines.push_back(issue->getProperties() ? issue->getProperties()->getSubject() : string_t());
        }
        more();
    }
    void fail(const std::exception_ptr& error) {
        std::cerr << to_utf8string(kit::Failure(error, _XPLATSTR("Loading the issues")).sentence()) << '\n';
        m_HasFailed = true;
        m_Loop.quit();
    }

    EventLoop& m_Loop;
    Pages::Cursor m_Cursor;
    std::vector<string_t> m_Lines;
    std::size_t m_Frames = 0;
    bool m_HasFailed = false;
};

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: window BASE-URL PROJECT\n";
        return 2;
    }
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(utility::conversions::to_string_t(argv[1]));
    configuration->setUserAgent(_XPLATSTR("window/1.0"));
    const api::BaseClassApi issues(std::make_shared<api::ApiClient>(configuration));

    EventLoop loop;
    const auto window =
        std::make_shared<IssueWindow>(loop, kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass,
                                                       utility::conversions::to_string_t(argv[2])));
    window->more();
    loop.run([&] { window->draw(); });
    using Milliseconds = std::chrono::duration<double, std::milli>;
    std::cout << window->lines() << " issues and " << window->frames() << " frames; busy for "
              << Milliseconds(loop.longest()).count() << " ms at most, of the " << Milliseconds(frame).count()
              << " ms of a frame\n";
    return window->hasFailed() ? 1 : 0;
}
