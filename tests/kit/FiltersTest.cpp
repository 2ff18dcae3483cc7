#include "support/ServiceTest.h"

#include <VarnelAPI/Forms/kit.h>
#include <VarnelRepository/Server.h>

#include <array>
#include <limits>
#include <locale>
#include <random>
#include <set>

namespace forms_test {
namespace {

namespace kit = VarnelAPI::Forms::kit;
using Issue = model::DynamicSchemaBaseClass;
using Content = model::DynamicSchemaBaseClassInstanceContent;
using utility::datetime;

constexpr model::PropertyName<Issue, utility::string_t> crew{"Crew"};
constexpr model::PropertyName<Issue, int64_t> people{"People"};
constexpr model::PropertyName<Issue, double> depth{"Depth"};

TEST(Filters, AreWrittenWithTypedNames) {
    const auto date = datetime::from_string("2024-02-29T12:00:00.5Z", datetime::ISO_8601);
    const std::pair<kit::Filter<Issue>, const char*> rows[] = {
        {Issue::status == "Open", "Status eq 'Open'"},
        {Issue::subject != std::string("it's 'so'"), "_Subject ne 'it''s ''so'''"},
        {Issue::dueDate < date, "_DueDate lt 2024-02-29T12:00:00.5Z"},
        {Issue::dueDate == datetime(), "_DueDate eq null"},
        {Issue::dueDate != nullptr, "_DueDate ne null"},
        {Issue::closed == true, "Closed eq true"},
        {people >= 3, "People ge 3"},
        {people <= std::numeric_limits<int64_t>::min(), "People le -9223372036854775808"},
        {people > std::numeric_limits<uint64_t>::max(), "People gt 18446744073709551615"},
        {Issue::latitude > -1.5, "Latitude gt -1.5"},
        {Issue::latitude <= 2, "Latitude le 2"},
        {Content::className == "C", "className eq 'C'"},
        {kit::contains(Issue::subject, "a'b"), "contains(_Subject,'a''b')"},
        {kit::startsWith(crew, ""), "startswith(Crew,'')"},
        {kit::endsWith(crew, "x"), "endswith(Crew,'x')"},
        {people == 1 && people == 2 && people == 3, "People eq 1 and People eq 2 and People eq 3"},
        {people == 1 || (people == 2 && people == 3), "People eq 1 or People eq 2 and People eq 3"},
        {(people == 1 || people == 2) && people == 3, "(People eq 1 or People eq 2) and People eq 3"},
        {people == 1 && (people == 2 || people == 3), "People eq 1 and (People eq 2 or People eq 3)"},
        {people == 1 && !(people == 2), "People eq 1 and not (People eq 2)"},
        {!(people == 1 || people == 2), "not (People eq 1 or People eq 2)"},
        {people == 1 && kit::Filter<Issue>("a or b"), "People eq 1 and (a or b)"},
    };
    for (const auto& [filter, text] : rows) {
        EXPECT_EQ(filter.text(), text);
    }
    EXPECT_EQ(kit::names(Issue::subject, people, Issue::closed), "_Subject,People,Closed");
    EXPECT_EQ(kit::names(crew), "Crew");
    EXPECT_EQ(kit::names(model::PropertyName<Issue, bool>{"!~"}), "!~");
    EXPECT_EQ(kit::order(kit::descending(Issue::dueDate), Issue::subject, kit::descending(crew)),
              "_DueDate desc,_Subject,Crew desc");
    const api::TextOption option = Issue::status == "Open";
    EXPECT_EQ(option.value(), "Status eq 'Open'");
}

TEST(Filters, RefuseWhatWouldChangeThem) {
    EXPECT_THROW(depth == std::numeric_limits<double>::infinity(), std::invalid_argument);
    EXPECT_THROW(Issue::dueDate < datetime(), std::invalid_argument);
    for (const char* name : {"", "a b", "a eq 1 or b", "a'", "a\"", "(a", "a)", "a,b", "a\n", "a\x7f"}) {
        const model::PropertyName<Issue, utility::string_t> odd{name};
        EXPECT_EQ(messageOf<std::invalid_argument>([&] { odd == "x"; }),
                  '"' + std::string(name) + "\" can't be the name of a property in an expression");
        EXPECT_THROW(kit::names(odd), std::invalid_argument) << name;
        EXPECT_THROW(kit::descending(odd), std::invalid_argument) << name;
        EXPECT_THROW(kit::contains(odd, "x"), std::invalid_argument) << name;
    }
}

/// Numbers with commas, as in much of the world.
struct Commas : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Filters, FindExactlyTheInstanceOfAnyValue) {
    struct Restore {
        std::locale before = std::locale::global(std::locale(std::locale::classic(), new Commas));
        ~Restore() { std::locale::global(before); }
    };
    const Restore restore;
    const VarnelAPI::Forms::repository::Server repository;
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(repository.url());
    const api::BaseClassApi issues(std::make_shared<api::ApiClient>(configuration));

    std::mt19937 random(4711); // NOLINT(cert-msc51-cpp): the same in each run
    const std::array<const char*, 20> pieces{"'", "''", "%", "%27", " ",  "\n", "\r\n", "\t", "+",  "&",
                                             "#", "?",  "/", "\\",  "\"", "ü",  "😀",    "a",  "or", "eq '"};
    std::set<std::string> texts;
    while (texts.size() < 40) {
        std::string text;
        for (auto count = random() % 6 + 1; count > 0; --count) {
            text += pieces[random() % pieces.size()];
        }
        texts.insert(text);
    }
    std::vector<std::pair<kit::Filter<Issue>, std::string>> ids;
    int64_t number = 123456;
    for (const std::string& text : texts) {
        Issue issue;
        issue.setSubject(text);
        issue.setCustomProp("Crew", "'" + text);
        issue.setCustomProp("People", ++number);
        const auto due =
            datetime::from_interval(datetime::utc_now().to_interval() + static_cast<uint64_t>(number) * 10000000);
        issue.setDueDate(due);
        const double fraction = std::generate_canonical<double, 53>(random) * 1e6;
        issue.setCustomProp("Depth", fraction);
        const auto id =
            kit::stored(issues.insert_DynamicSchemaBaseClass("L", kit::envelope(issue))).get()->getInstanceId();
        for (const auto& filter : {Issue::subject == text, crew == "'" + text, people == number, depth == fraction,
                                   Content::instanceId == id, people >= number && people < number + 1,
                                   people == number && kit::contains(Issue::subject, text) &&
                                       kit::startsWith(crew, "'") && kit::endsWith(crew, text) && !(crew == text),
                                   people == number && Issue::dueDate >= due && Issue::dueDate <= due}) {
            ids.emplace_back(filter, id);
        }
    }
    for (const auto& [filter, id] : ids) {
        SCOPED_TRACE(filter.text());
        const auto found =
            kit::all(kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, "L").filter(filter)).get();
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0]->getInstanceId(), id);
    }
}

} // namespace
} // namespace forms_test
