#include "Setting.h"

using namespace VarnelAPI::Forms;

// [issue]
using Issue = model::DynamicSchemaBaseClass;
// [issue]

namespace {

// [name]
constexpr model::PropertyName<Issue, int32_t> floorNumber{_XPLATSTR("Floor")};
// [name]

void overdue(const api::BaseClassApi& issues, const utility::string_t& project, const utility::datetime& today) {
    // [overdue]
    for (const auto& issue : kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project)
                                 .filter(Issue::closed != true && Issue::dueDate < today)
                                 .orderby(kit::order(kit::descending(Issue::dueDate), Issue::subject))) {
        ucout << issue->getProperties()->getSubject() << std::endl;
    }
    // [overdue]
}

// [list]
void listOpen(const api::BaseClassApi& issues, const utility::string_t& project) {
    const auto open = kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project)
                          .filter(Issue::status == _XPLATSTR("Open") && floorNumber >= 3)
                          .select(kit::names(Issue::subject, Issue::dueDate))
                          .orderby(kit::order(Issue::dueDate, Issue::subject))
                          .pageSize(50);
    for (const auto& issue : open) { // The next page is on its way while this one is used.
        ucout << issue->getProperties()->getSubject() << std::endl;
    }
}
// [list]

// [tasks]
pplx::task<void> countSubjects(const api::BaseClassApi& issues, const utility::string_t& project) {
    const auto pages = kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, project);
    return kit::all(pages).then(
        [](const std::vector<std::shared_ptr<model::DynamicSchemaBaseClassInstanceContent>>& all) {
            ucout << all.size() << _XPLATSTR(" issues") << std::endl;
        });
}
// [tasks]

// [by-hand]
std::shared_ptr<model::DynamicSchemaBaseClassInstances> firstTen(const api::BaseClassApi& issues,
                                                                 const utility::string_t& project) {
    return issues
        .select_DynamicSchemaBaseClass(project, utility::string_t(_XPLATSTR("Status eq 'Open'")), boost::none,
                                       utility::string_t(_XPLATSTR("_DueDate desc")), boost::none, 0, 10)
        .get();
}
// [by-hand]

} // namespace

int main() {
    Setting here;
    const api::BaseClassApi issues(here.client);
    const utility::string_t project = _XPLATSTR("tower");
    overdue(issues, project,
            utility::datetime::from_string(_XPLATSTR("2027-02-01T00:00:00Z"), utility::datetime::ISO_8601));
    listOpen(issues, project);
    countSubjects(issues, project).get();
    std::cout << firstTen(issues, project)->getInstances().size() << " open\n";
    return here.printed("Loose cable\nCrack in the wall\nCrack in the wall\nLoose cable\n3 issues\n2 open\n");
}
