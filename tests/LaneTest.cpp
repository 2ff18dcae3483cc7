#include "support/Lane.h"
#include "support/Seeds.h"
#include "support/ServiceTest.h"

/// What the fast lane takes and what it leaves to the tree, and that both make the same of it. The fuzz target FastLane
/// starts from these texts.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::model;

std::string nested(std::size_t levels) {
    return std::string(levels, '[') + std::string(levels, ']');
}

/// Whether the lane takes an issue with these members.
bool isTaken(const std::string& members) {
    DynamicSchemaBaseClass issue;
    seedJson(issue, "{" + members + "}");
    seedJson(DynamicSchemaBaseClassInstances(), R"({"instances":[null,{"properties":{)" + members + "}}]}");
    const bool isRead = detail::readFast(issue, "{" + members + "}");
    if (isRead) {
        DynamicSchemaBaseClass byTree;
        byTree.fromJson(web::json::value::parse("{" + members + "}"));
        EXPECT_EQ(issue.toJson().serialize(), byTree.toJson().serialize());
    }
    return isRead;
}

TEST(FastLane, TakesWhatIsOrdinary) {
    for (const std::string& members : std::vector<std::string>{
             "", " \t\r\n", R"("a":-0,"b":-0.0,"c":1.0,"d":1E-5,"e":1e2,"f":0.1)",
             R"("a":9223372036854775807,"b":9223372036854775808,"c":-9223372036854775808)",
             R"("a":18446744073709551615,"b":9007199254740993,"c":0.1234567890123456789)",
             R"("a":4.9e-324,"b":1e-400,"c":2.2250738585072011e-308,"d":1.7976931348623157e308)",
             R"("Latitude":5,"Longitude":-0.0,"Status":5,"Closed":false,"_DueDate":"x")",
             R"("_Subject":"\"\\\/\b\f\n\r\t\u0000\u0001\u007f\u00e9\ud83d\ude00","é":"\u00e9"," ":"")",
             R"("b":"\u0001","a":{"z":[1,2.0,{"y":null,"x":true}],"b":{}},"":[])",
             R"("z":1,"Status":null,"y":2,"x":3,"Y":4,"é":5,"_Subject":"s","w":6)",
             R"("_ModelViewDefinition":"{\"viewId\":\"a\",\"x\":1,\"x\":2}","_ModelPinLocation":{"x":1})",
             R"("_ModelViewDefinition":5,"deep":)" + nested(28)}) {
        EXPECT_EQ(isTaken(members), hasLane) << members;
    }
}

TEST(FastLane, LeavesTheRestToTheTree) {
    for (const std::string& members : std::vector<std::string>{R"("Status":"a","Status":"b")",
                                                               R"("Status":null,"Status":"b")",
                                                               R"("own":1,"own":2)",
                                                               R"("own":{"a":1,"b":2,"a":3})",
                                                               R"("own":[{"\u0061":1,"a":2}])",
                                                               R"("a":18446744073709551616)",
                                                               R"("a":-9223372036854775809)",
                                                               R"("a":1e400)",
                                                               R"("a":01)",
                                                               R"("a":1 /* one */)",
                                                               "\"a\":\v1",
                                                               R"("a":"\udc00")",
                                                               R"("a":"\ud800")",
                                                               "\"a\":\"\xFF\"",
                                                               "\"a\":\"\xed\xa0\x80\"",
                                                               "\"a\":\"\t\"",
                                                               R"("a":nul)",
                                                               R"("a":[1,])",
                                                               R"("a":1,)",
                                                               R"("Closed":1)",
                                                               R"("Latitude":"x")",
                                                               R"("_DueDate":5)",
                                                               R"("_ModelViewDefinition":"{")",
                                                               "\"deep\":" + nested(31),
                                                               "\"deep\":" + nested(127),
                                                               "\"deep\":" + nested(128)}) {
        EXPECT_FALSE(isTaken(members)) << members;
    }
    DynamicSchemaBaseClassInstances list;
    EXPECT_FALSE(detail::readFast(list, "{\"a\":\"" + std::string(std::size_t{4} << 20U, 'x') + "\"}"));
    for (const std::string text :
         {"", " ", "{", "\xef\xbb\xbf{}", "{}}", "{}x", "{\"instances\":{}}", "{\"instances\":5}", "nul", "\""}) {
        seedJson(list, text);
        EXPECT_FALSE(detail::readFast(list, text)) << text;
    }
}

TEST(FastLane, LeavesAllToTheTreeWhereMembersKeepTheirOrder) {
    web::json::keep_object_element_order(true);
    EXPECT_FALSE(isTaken(R"("b":1,"a":2)"));
    web::json::keep_object_element_order(false);
    EXPECT_EQ(isTaken(R"("b":1,"a":2)"), hasLane);
}

TEST(Texts, AreWrittenAsTheTreeWritesThem) {
    // Each byte at each place of the eight that are looked at together, and among the rest.
    DynamicSchemaBaseClass issue;
    for (int byte = 0; byte < 0x80; ++byte) {
        for (std::size_t place = 0; place < 19; ++place) {
            utility::string_t text = _XPLATSTR("a text of 24 bytes \u00e9 \u00e9");
            text.insert(place, 1, static_cast<utility::char_t>(byte));
            issue.setSubject(text);
            ASSERT_EQ(detail::writeText(issue), utility::conversions::to_utf8string(issue.toJson().serialize()))
                << byte << " at " << place;
        }
    }
    // What was set to nothing, and lists that grow.
    DynamicSchemaBaseClass nothing;
    for (const auto set : {&DynamicSchemaBaseClass::setCreatedDate, &DynamicSchemaBaseClass::setModifiedDate,
                           &DynamicSchemaBaseClass::setDueDate, &DynamicSchemaBaseClass::setModelEventDateTime}) {
        (nothing.*set)({});
    }
    nothing.setModelViewDefinition(nullptr);
    nothing.setModelPinLocation(nullptr);
    nothing.setCustomProp(_XPLATSTR("own"), web::json::value::null());
    EXPECT_EQ(detail::writeText(nothing), utility::conversions::to_utf8string(nothing.toJson().serialize()));
    DynamicSchemaBaseClassInstances many;
    for (int i = 0; i < 300; ++i) {
        many.getInstances().push_back(i % 7 == 0 ? nullptr : std::make_shared<DynamicSchemaBaseClassInstanceContent>());
    }
    EXPECT_EQ(detail::writeText(many), utility::conversions::to_utf8string(many.toJson().serialize()));
    // And numbers as it does on Linux, on Windows too: its C library writes exponents of three digits.
    const std::pair<double, const char*> numbers[] = {{0.1, "0.10000000000000001"},
                                                      {1.0 / 3, "0.33333333333333331"},
                                                      {1e22, "1e+22"},
                                                      {5e-324, "4.9406564584124654e-324"},
                                                      {123456789.12345679, "123456789.12345679"}};
    for (const auto& [number, text] : numbers) {
        DynamicSchemaBaseClass place;
        place.setLatitude(number);
        EXPECT_EQ(detail::writeText(place), std::string(R"({"Latitude":)") + text + "}");
    }
}

} // namespace
} // namespace forms_test
