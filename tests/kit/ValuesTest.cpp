#include "support/ServiceTest.h"

#include <VarnelAPI/Forms/kit.h>

#include <limits>

namespace forms_test {
namespace {

namespace kit = VarnelAPI::Forms::kit;
using std::chrono::system_clock;
using utility::datetime;

template <class Json>
std::string written(const std::vector<Json>& properties) {
    std::string all;
    for (const auto& [name, value] : properties) {
        all += name + "=" + value.serialize() + ";";
    }
    return all;
}

TEST(CustomProperties, CanBeWalked) {
    model::DynamicSchemaBaseClass issue;
    EXPECT_EQ(written(kit::customProperties(issue)), "");
    auto json = web::json::value::parse(R"({"_Subject":"s","b":1,"a":null,"Status":"Open","c":{"x":[2]},"A":"t"})");
    issue.fromJson(json);
    EXPECT_EQ(written(kit::customProperties(issue)), R"(A="t";a=null;b=1;c={"x":[2]};)");
    model::DynamicSchemaClassWithCustomProps object;
    object.setCustomProp("z", true);
    object.setCustomProp("n", 7);
    object.setCustomProp("_Subject", "s");
    EXPECT_EQ(written(kit::customProperties(object)), R"(_Subject="s";n=7;z=true;)");
}

TEST(CustomProperties, AreGivenByType) {
    model::DynamicSchemaBaseClass issue;
    auto json = web::json::value::parse(
        R"({"text":"t","empty":"","null":null,"int":-7,"big":5000000000,"whole":4.0,"half":4.5,"huge":18446744073709551615,
            "1e19":1e19,"-1e19":-1e19,"2^63":9223372036854775808.0,"-2^63":-9223372036854775808.0,
            "min":-9223372036854775808,"i31":2147483647,"i32":2147483648,"-i31":-2147483648,"-i32":-2147483649,
            "yes":true,"date":"2024-02-29T12:00:00.5Z","Status":"Open"})");
    issue.fromJson(json);
    const auto whole = [&](const char* name) { return kit::customProperty<int64_t>(issue, name); };
    const auto small = [&](const char* name) { return kit::customProperty<int32_t>(issue, name); };
    const auto number = [&](const char* name) { return kit::customProperty<double>(issue, name); };
    EXPECT_EQ(whole("int"), -7);
    EXPECT_EQ(whole("big"), 5000000000);
    EXPECT_EQ(whole("whole"), 4);
    EXPECT_EQ(whole("min"), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(whole("-2^63"), std::numeric_limits<int64_t>::min());
    for (const char* name : {"half", "huge", "1e19", "-1e19", "2^63", "text", "null", "yes", "none", "Status"}) {
        EXPECT_EQ(whole(name), std::nullopt) << name;
    }
    EXPECT_EQ(small("i31"), 2147483647);
    EXPECT_EQ(small("-i31"), -2147483647 - 1);
    EXPECT_EQ(small("i32"), std::nullopt);
    EXPECT_EQ(small("-i32"), std::nullopt);
    EXPECT_EQ(number("half"), 4.5);
    EXPECT_EQ(number("int"), -7.0);
    EXPECT_EQ(number("huge"), 18446744073709551615.0);
    EXPECT_EQ(number("text"), std::nullopt);
    EXPECT_EQ(kit::customProperty<bool>(issue, "yes"), true);
    EXPECT_EQ(kit::customProperty<bool>(issue, "int"), std::nullopt);
    EXPECT_EQ(kit::customProperty<utility::string_t>(issue, "text"), "t");
    EXPECT_EQ(kit::customProperty<utility::string_t>(issue, "empty"), "");
    EXPECT_EQ(kit::customProperty<utility::string_t>(issue, "int"), std::nullopt);
    EXPECT_EQ(kit::customProperty<datetime>(issue, "date"),
              datetime::from_string("2024-02-29T12:00:00.5Z", datetime::ISO_8601));
    EXPECT_EQ(kit::customProperty<datetime>(issue, "text"), std::nullopt);
    EXPECT_EQ(kit::customProperty<datetime>(issue, "null"), std::nullopt);
}

TEST(Time, IsTheClocksToTheTick) {
    const auto date = [](const char* text) { return datetime::from_string(text, datetime::ISO_8601); };
    EXPECT_EQ(kit::toTimePoint(date("1970-01-01T00:00:00Z")), system_clock::time_point());
    EXPECT_EQ(kit::toTimePoint(date("2001-09-09T01:46:40.1234567Z"))->time_since_epoch(),
              std::chrono::nanoseconds(1000000000123456700));
    EXPECT_EQ(kit::toTimePoint(datetime()), std::nullopt);
    EXPECT_FALSE(kit::toDatetime(std::nullopt).is_initialized());
    for (const char* text : {"1969-12-31T23:59:59.9999999Z", "1677-09-21T00:12:44Z", "2024-02-29T12:00:00.0000001Z",
                             "2262-04-11T23:47:16.8547758Z"}) {
        EXPECT_EQ(kit::toDatetime(kit::toTimePoint(date(text))), date(text)) << text;
    }
    for (const char* text : {"1677-09-21T00:12:43.1452241Z", "2262-04-11T23:47:16.8547759Z", "9999-12-31T23:59:59Z"}) {
        EXPECT_NE(messageOf<std::out_of_range>([&] { kit::toTimePoint(date(text)); }).find(text), std::string::npos);
    }
    const auto before = system_clock::time_point(std::chrono::nanoseconds(-1));
    EXPECT_EQ(kit::toDatetime(before), date("1969-12-31T23:59:59.9999999Z")) << "towards the past";
    EXPECT_EQ(kit::toDatetime(system_clock::time_point(std::chrono::nanoseconds(199))).to_interval(),
              date("1970-01-01T00:00:00.0000001Z").to_interval());
}

} // namespace
} // namespace forms_test
