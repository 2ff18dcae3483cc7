#include "Setting.h"

#include <QCoreApplication>
#include <QMetaObject>

using namespace VarnelAPI::Forms;

namespace {

// [post]
const auto post = [](std::function<void()> work) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work), Qt::QueuedConnection);
};
// [post]

// [view]
class IssueView : public std::enable_shared_from_this<IssueView> {
public:
    explicit IssueView(api::BaseClassApi issues) : m_Issues(std::move(issues)) {}

    void load(const utility::string_t& project, const utility::string_t& id) {
        // [deliver]
        kit::deliver(
            [issues = m_Issues, project, id] { return issues.get_DynamicSchemaBaseClass_instanceId(project, id); },
            post, weak_from_this(),
            [](IssueView& view, const std::shared_ptr<model::DynamicSchemaBaseClassInstance>& issue) {
                view.show(kit::stored(issue)->getProperties()->getSubject());
            },
            [](IssueView& view, const std::exception_ptr& error) {
                view.show(kit::Failure(error, _XPLATSTR("Loading the issue")).sentence());
            });
        // [deliver]
    }

    void show(const utility::string_t& text) { // in the window's thread
        ucout << text << std::endl;
        QCoreApplication::quit();
    }

private:
    api::BaseClassApi m_Issues;
};
// [view]

// [object]
/// No shared pointer owns it, as it is with most of Qt's objects.
class Counter : public QObject {
public:
    void load(const api::BaseClassApi& issues, const utility::string_t& project) {
        kit::deliver([issues, project] { return kit::total(issues.count_DynamicSchemaBaseClass(project)); }, post,
                     std::weak_ptr<void>(m_Alive), [this](int64_t count) { show(count); },
                     [this](const std::exception_ptr&) { show(-1); });
    }

private:
    void show(int64_t count) {
        std::cout << count << std::endl;
        QCoreApplication::quit();
    }

    std::shared_ptr<void> m_Alive = std::make_shared<int>();
};
// [object]

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    Setting here;
    const auto view = std::make_shared<IssueView>(api::BaseClassApi(here.client));
    for (const char* id : {"crack", "none"}) {
        view->load(_XPLATSTR("tower"), utility::conversions::to_string_t(id));
        QCoreApplication::exec();
    }
    Counter counter;
    counter.load(api::BaseClassApi(here.client), _XPLATSTR("tower"));
    { Counter().load(api::BaseClassApi(here.client), _XPLATSTR("tower")); } // gone before the answer: nothing is shown
    QCoreApplication::exec();
    return here.printed(
        "Crack in the wall\nLoading the issue failed with status 404 (Not Found): There is nothing at this "
        "address. (There is no instance \"none\" of class DynamicSchema.BaseClass)\n3\n");
}
