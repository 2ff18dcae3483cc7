#include "support/Locales.h"
#include "support/Seeds.h"
#include "support/ServiceTest.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <locale>
#include <sstream>

#include <unistd.h>

namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::model;
using web::json::json_exception;
using web::json::value;

const auto infinity = std::numeric_limits<double>::infinity();

std::shared_ptr<HttpContent> part(const std::string& data) {
    return ModelBase::toHttpContent("n"_t, text(data));
}

std::shared_ptr<std::istream> stream(const std::string& bytes) {
    return std::make_shared<std::istringstream>(bytes);
}

utility::datetime date(const char* iso) {
    return utility::datetime::from_string(text(iso), utility::datetime::ISO_8601);
}

template <class Result>
Result fromJson(Result (*convert)(value&), const std::string& jsonText) {
    value json = value::parse(text(jsonText));
    return convert(json);
}

/// "name|disposition|type|file name|data"
std::string textOf(const std::shared_ptr<HttpContent>& content) {
    return utf8(content->getName()) + "|" + utf8(content->getContentDisposition()) + "|" +
           utf8(content->getContentType()) + "|" + utf8(content->getFileName()) + "|" +
           (content->getData() ? bytesOf(*content->getData()) : "no data");
}

TEST(ToJson, WritesEachTypeAsItsJsonText) {
    const std::pair<value, std::string> rows[] = {
        {ModelBase::toJson("a\"é\n"_t), R"("a\"é\n")"},
        {ModelBase::toJson(_XPLATSTR("a literal, no bool")), R"("a literal, no bool")"},
        {ModelBase::toJson(std::numeric_limits<int32_t>::min()), "-2147483648"},
        {ModelBase::toJson(std::numeric_limits<int64_t>::max()), "9223372036854775807"},
        {ModelBase::toJson(2.5), "2.5"},
        {ModelBase::toJson(0.1), "0.10000000000000001"},
        {ModelBase::toJson(true), "true"},
        {ModelBase::toJson(date("2024-02-29T12:34:56.1234567Z")), R"("2024-02-29T12:34:56.1234567Z")"},
        {ModelBase::toJson(date("2024-02-29T12:00:00+02:00")), R"("2024-02-29T10:00:00Z")"},
        {ModelBase::toJson(utility::datetime()), R"("1970-01-01T00:00:00Z")"},
        {ModelBase::toJson(date("9999-12-31T23:59:59.999Z")), R"("9999-12-31T23:59:59.999Z")"},
        {ModelBase::toJson(std::shared_ptr<ModelBase>()), "null"},
        {ModelBase::toJson(std::shared_ptr<ModelBase>(std::make_shared<Object>())), "{}"},
    };
    for (const auto& [json, text] : rows) {
        EXPECT_EQ(json.serialize(), text);
    }
    for (const double number : {infinity, -infinity, std::nan("")}) {
        messageOf<std::invalid_argument>([=] { ModelBase::toJson(number); });
        messageOf<std::invalid_argument>([=] { ModelBase::toHttpContent("n"_t, value(number), "a/j"_t); });
    }
    const uint64_t last = date("9999-12-31T23:59:59.999Z").to_interval();
    for (const uint64_t ticks : {last + 1, last + 10000, uint64_t{1} << 62U, uint64_t{1} << 63U, ~uint64_t{0}}) {
        const auto late = utility::datetime::from_interval(ticks);
        messageOf<std::out_of_range>([=] { ModelBase::toJson(late); });
        messageOf<std::out_of_range>([=] { ModelBase::toHttpContent("n"_t, late); });
        messageOf<std::out_of_range>([=] { api::ApiClient::parameterToString(late); });
    }
}

TEST(ToJson, WritesAFileWithItsDataInBase64) {
    const auto file = std::make_shared<HttpContent>();
    EXPECT_EQ(messageOf<std::invalid_argument>([] { ModelBase::toJson(std::shared_ptr<HttpContent>()); }),
              "the content is an empty pointer");
    messageOf<std::invalid_argument>([&] { ModelBase::toJson(file); });
    file->setContentDisposition("form-data"_t);
    file->setContentType("image/png"_t);
    file->setFileName("a.png"_t);
    file->setData(stream("foob"));
    file->getData()->seekg(2);
    const auto json = ModelBase::toJson(file);
    EXPECT_EQ(json.serialize(), R"({"ContentDisposition":"form-data","ContentType":"image/png","FileName":"a.png",)"
                                R"("InputStream":"Zm9vYg=="})");
    auto copy = json;
    EXPECT_EQ(textOf(ModelBase::fileFromJson(copy)), "|form-data|image/png|a.png|foob");
    EXPECT_EQ(textOf(fromJson(ModelBase::fileFromJson, "{}")), "||||no data");
    EXPECT_EQ(textOf(fromJson(ModelBase::fileFromJson, R"({"FileName":7,"InputStream":""})")), "||||");
    EXPECT_EQ(textOf(fromJson(ModelBase::fileFromJson, R"({"FileName":"a"})")), "|||a|no data");
    EXPECT_EQ(textOf(fromJson(ModelBase::fileFromJson, R"({"ContentType":"b"})")), "||b||no data");
    EXPECT_EQ(textOf(fromJson(ModelBase::fileFromJson, R"({"InputStream":null})")), "||||") << "empty, but there";
}

TEST(FromJson, ReadsEachType) {
    EXPECT_EQ(fromJson(ModelBase::stringFromJson, R"("é")"), "é");
    for (const auto* other : {"null", "1", "true", "{}", "[\"a\"]"}) {
        EXPECT_EQ(fromJson(ModelBase::stringFromJson, other), "") << other;
    }
    EXPECT_EQ(fromJson(ModelBase::int32_tFromJson, "-2147483648"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(fromJson(ModelBase::int32_tFromJson, "-2.9"), -2);
    EXPECT_EQ(fromJson(ModelBase::int64_tFromJson, "9223372036854775807"), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(fromJson(ModelBase::int64_tFromJson, "-9223372036854775808"), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(fromJson(ModelBase::int64_tFromJson, "-9223372036854775808.0"), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(fromJson(ModelBase::int64_tFromJson, "9223372036854774784.0"), 9223372036854774784);
    EXPECT_EQ(fromJson(ModelBase::int64_tFromJson, "5e9"), 5000000000);
    EXPECT_EQ(fromJson(ModelBase::int64_tFromJson, "-2.9"), -2);
    EXPECT_EQ(fromJson(ModelBase::doubleFromJson, "1e-3"), 0.001);
    EXPECT_EQ(fromJson(ModelBase::doubleFromJson, "3"), 3.0);
    for (const double number : {0.1, 1e-300, 1.7976931348623157e308, 4.9e-324}) {
        EXPECT_EQ(fromJson(ModelBase::doubleFromJson, utf8(ModelBase::toJson(number).serialize())), number);
    }
    EXPECT_EQ(fromJson(ModelBase::floatFromJson, "0.1"), 0.1F);
    EXPECT_EQ(fromJson(ModelBase::floatFromJson, "-3.4028235e38"), std::numeric_limits<float>::lowest());
    EXPECT_EQ(messageOf<json_exception>([] { fromJson(ModelBase::floatFromJson, "-1e39"); }),
              "the number is beyond the range of a float");
    EXPECT_TRUE(fromJson(ModelBase::boolFromJson, "true"));
    EXPECT_EQ(fromJson(ModelBase::dateFromJson, R"("2024-02-29T12:34:56.7Z")"), date("2024-02-29T12:34:56.7Z"));
    for (const auto* unreadable : {R"("")", R"("soon")", R"("2023-02-29T00:00:00Z")"}) {
        EXPECT_FALSE(fromJson(ModelBase::dateFromJson, unreadable).is_initialized()) << unreadable;
    }
}

TEST(FromJson, RefusesOtherTypesAndNumbersOutOfRange) {
    const auto refuses = [](auto convert, std::initializer_list<const char*> texts) {
        for (const auto* text : texts) {
            SCOPED_TRACE(text);
            messageOf<json_exception>([&] { fromJson(convert, text); });
        }
    };
    refuses(ModelBase::int32_tFromJson, {"\"1\"", "null", "true", "{}", "5000000000", "2147483648", "-2147483649",
                                         "1e10", "1e400", "18446744073709551615"});
    refuses(ModelBase::int64_tFromJson, {"\"1\"", "null", "9223372036854775808", "1e19", "-1e19", "1e400"});
    refuses(ModelBase::doubleFromJson, {"\"1\"", "null", "[]", "1e400", "-1e400"});
    refuses(ModelBase::boolFromJson, {"1", "\"true\"", "null"});
    refuses(ModelBase::dateFromJson, {"0", "null"});
}

TEST(ToHttpContent, HoldsEachTypeAsItsText) {
    const std::pair<std::shared_ptr<HttpContent>, const char*> rows[] = {
        {ModelBase::toHttpContent("n"_t, "é"_t), "n|form-data|||é"},
        {ModelBase::toHttpContent("n"_t, _XPLATSTR("literal"), "text/plain"_t), "n|form-data|text/plain||literal"},
        {ModelBase::toHttpContent("n"_t, date("2024-02-29T12:34:56Z")), "n|form-data|||2024-02-29T12:34:56Z"},
        {ModelBase::toHttpContent("n"_t, utility::datetime()), "n|form-data|||1601-01-01T00:00:00Z"},
        {ModelBase::toHttpContent("n"_t, value::parse("[1, \"é\"]"_t), "a/j"_t), "n|form-data|a/j||[1,\"é\"]"},
        {ModelBase::toHttpContent("n"_t, int32_t{-1234567}), "n|form-data|||-1234567"},
        {ModelBase::toHttpContent("n"_t, int32_t{7}, "a/i"_t), "n|form-data|a/i||7"},
        {ModelBase::toHttpContent("n"_t, int64_t{7}, "a/l"_t), "n|form-data|a/l||7"},
        {ModelBase::toHttpContent("n"_t, 7.5, "a/d"_t), "n|form-data|a/d||7.5"},
        {ModelBase::toHttpContent("n"_t, true, "a/b"_t), "n|form-data|a/b||1"},
        {ModelBase::toHttpContent("n"_t, date("2024-02-29T12:34:56Z"), "a/t"_t),
         "n|form-data|a/t||2024-02-29T12:34:56Z"},
        {ModelBase::toHttpContent("n"_t, int64_t{5000000000}), "n|form-data|||5000000000"},
        {ModelBase::toHttpContent("n"_t, 2.5), "n|form-data|||2.5"},
        {ModelBase::toHttpContent("n"_t, 1e21), "n|form-data|||1e+21"},
        {ModelBase::toHttpContent("n"_t, 1234567.0), "n|form-data|||1.23457e+06"},
        {ModelBase::toHttpContent("n"_t, -infinity), "n|form-data|||-inf"},
        {ModelBase::toHttpContent("n"_t, std::nan("")), "n|form-data|||nan"},
        {ModelBase::toHttpContent("n"_t, true), "n|form-data|||1"},
        {ModelBase::toHttpContent("n"_t, false), "n|form-data|||0"},
    };
    for (const auto& [content, text] : rows) {
        EXPECT_EQ(textOf(content), text);
    }
    const auto file = std::make_shared<HttpContent>();
    file->setName("old"_t);
    file->setContentDisposition("attachment"_t);
    file->setContentType("t"_t);
    file->setFileName("f"_t);
    file->setData(stream("data"));
    const auto copy = ModelBase::toHttpContent("n"_t, file);
    EXPECT_EQ(copy->getData(), file->getData()) << "the stream is shared";
    EXPECT_EQ(file->getName(), "old");
    EXPECT_EQ(textOf(copy), "n|attachment|t|f|data");
    messageOf<std::invalid_argument>([] { ModelBase::toHttpContent("n"_t, std::shared_ptr<HttpContent>()); });
}

TEST(FromHttpContent, ReadsLikeAStream) {
    EXPECT_EQ(ModelBase::stringFromHttpContent(part("é\n")), "é\n");
    EXPECT_EQ(ModelBase::int32_tFromHttpContent(part("  -12x")), -12);
    EXPECT_EQ(ModelBase::int32_tFromHttpContent(part("5000000000")), 0);
    EXPECT_EQ(ModelBase::int64_tFromHttpContent(part("5000000000")), 5000000000);
    EXPECT_EQ(ModelBase::int64_tFromHttpContent(part("none")), 0);
    EXPECT_EQ(ModelBase::floatFromHttpContent(part("0.5")), 0.5F);
    EXPECT_EQ(ModelBase::doubleFromHttpContent(part("1e3 m")), 1000.0);
    EXPECT_EQ(ModelBase::doubleFromHttpContent(part("")), 0.0);
    EXPECT_TRUE(ModelBase::boolFromHttpContent(part("1")));
    EXPECT_FALSE(ModelBase::boolFromHttpContent(part("true")));
    EXPECT_FALSE(ModelBase::boolFromHttpContent(part("0")));
    EXPECT_FALSE(ModelBase::boolFromHttpContent(part("2")));
    EXPECT_EQ(ModelBase::dateFromHttpContent(part("2024-02-29T12:34:56Z")), date("2024-02-29T12:34:56Z"));
    EXPECT_EQ(ModelBase::valueFromHttpContent(part("{\"a\": [1]}")).serialize(), "{\"a\":[1]}");
    messageOf<json_exception>([] { ModelBase::valueFromHttpContent(part("{")); });
    const auto twice = part("again");
    EXPECT_EQ(ModelBase::stringFromHttpContent(twice) + ModelBase::stringFromHttpContent(twice), "againagain");
}

TEST(FromHttpContent, NamesWhatIsMissing) {
    const auto empty = std::make_shared<HttpContent>();
    empty->setName("photo"_t);
    const auto refuses = [&](auto convert) {
        EXPECT_EQ(messageOf<std::invalid_argument>([&] { convert(nullptr); }), "the content is an empty pointer");
        EXPECT_EQ(messageOf<std::invalid_argument>([&] { convert(empty); }),
                  "the content \"photo\" has no data stream");
    };
    refuses(ModelBase::stringFromHttpContent);
    refuses(ModelBase::int32_tFromHttpContent);
    refuses(ModelBase::int64_tFromHttpContent);
    refuses(ModelBase::floatFromHttpContent);
    refuses(ModelBase::doubleFromHttpContent);
    refuses(ModelBase::boolFromHttpContent);
    refuses(ModelBase::dateFromHttpContent);
    refuses(ModelBase::valueFromHttpContent);
}

TEST(Base64, EncodesAndDecodesEveryLengthAndByte) {
    const std::pair<std::string, std::string> rows[] = {{"", ""},
                                                        {"f", "Zg=="},
                                                        {"fo", "Zm8="},
                                                        {"foo", "Zm9v"},
                                                        {"foob", "Zm9vYg=="},
                                                        {"é", "w6k="},
                                                        {std::string(3, '\0'), "AAAA"},
                                                        {"\xFB\xEF\xBF", "+++/"}};
    for (const auto& [bytes, encoded] : rows) {
        seed("Base64", bytes);
        seed("Base64", encoded);
        EXPECT_EQ(ModelBase::toBase64(stream(bytes)), encoded);
        EXPECT_EQ(bytesOf(*ModelBase::fromBase64(text(encoded))), bytes);
    }
    EXPECT_EQ(ModelBase::toBase64("é"_t), "w6k=");
    std::string all;
    for (int i = 0; i < 3 * 256; ++i) {
        all += static_cast<char>(i);
        std::vector<unsigned char> bytes(all.begin(), all.end());
        const utility::string_t text = ModelBase::toBase64(stream(all));
        EXPECT_EQ(text, utility::conversions::to_base64(bytes)) << "unlike the HTTP library's";
        EXPECT_EQ(bytesOf(*ModelBase::fromBase64(text)), all);
    }
    seed("Base64", all);
    // Around the sizes of the blocks that it works in.
    std::string large;
    for (std::size_t i = 0; i < 2 * 6144 + 1; ++i) {
        large += static_cast<char>(i * 7 + i / 256);
    }
    for (const std::size_t size : {6143U, 6144U, 6145U, 8191U, 8192U, 8193U, 12288U, 12289U}) {
        const std::string some = large.substr(0, size);
        const utility::string_t text = ModelBase::toBase64(stream(some));
        EXPECT_EQ(text, utility::conversions::to_base64(std::vector<unsigned char>(some.begin(), some.end())));
        EXPECT_EQ(bytesOf(*ModelBase::fromBase64(text)), some) << size;
        // A file gives its bytes in pieces, of another size than these blocks.
        const std::string path = testing::TempDir() + "base64-" + std::to_string(getpid());
        EXPECT_TRUE(std::ofstream(path, std::ios::binary) << some);
        EXPECT_EQ(ModelBase::toBase64(std::make_shared<std::ifstream>(path, std::ios::binary)), text) << size;
        std::remove(path.c_str());
    }
    messageOf<std::invalid_argument>([] { ModelBase::toBase64(std::shared_ptr<std::istream>()); });
    EXPECT_EQ(ModelBase::toBase64(std::make_shared<std::ifstream>(testing::TempDir())), "")
        << "it opens, but has no data";
    // One that can go to its start, but not tell where its end is.
    struct Endless final : std::stringbuf {
        using std::stringbuf::stringbuf;
        pos_type seekoff(off_type by, std::ios_base::seekdir from, std::ios_base::openmode which) override {
            return from == std::ios_base::end ? pos_type(-1) : std::stringbuf::seekoff(by, from, which);
        }
    } buffer("foob");
    const auto endless = std::make_shared<std::istream>(&buffer);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(ModelBase::toBase64(endless), "Zm9vYg==") << "from its start";
    }
}

TEST(Base64, SaysWhatIsWrong) {
    const std::string character = "Non-Valid Character in Base 64!";
    const std::string padding = "Invalid Padding in Base 64!";
    const std::pair<const char*, std::string> rows[] = {
        {"Zg", character},   {"Zm9vZ", character},  {"Zm9", character},    {"Zm 9", character}, {"Zm9v\n", character},
        {"Zm9é", character}, {"Zm-_", character},   {"Z===", padding},     {"====", padding},   {"=", padding},
        {"Zg=", padding},    {"Zg==Zm9v", padding}, {"Zm8=Zm9v", padding}, {"Z=g=", padding},   {"Zm9v=", padding},
        {"Zm9v==", padding}, {"Zg=a", padding},     {"QU$=", character},   {"Q$==", character}, {"$U==", character}};
    for (const auto& [encoded, message] : rows) {
        seed("Base64", encoded);
        EXPECT_EQ(messageOf<json_exception>([wrong = text(encoded)] { ModelBase::fromBase64(wrong); }), message)
            << encoded;
        const auto late = text(std::string(8192, 'A') + encoded);
        EXPECT_EQ(messageOf<json_exception>([&] { ModelBase::fromBase64(late); }), message) << "in a later block";
    }
    const utility::string_t more(16384, _XPLATSTR('A'));
    for (const auto& first : {"$AAA"_t, "A$AA"_t, "AA$A"_t, "AAA$"_t, "AAAA\n"_t}) {
        EXPECT_EQ(messageOf<json_exception>([&] { ModelBase::fromBase64(first + more); }), character) << "early";
    }
    EXPECT_EQ(messageOf<json_exception>([&] { ModelBase::fromBase64("Zg=="_t + more); }), padding) << "early";
}

TEST(Base64, GivesAStreamThatSeeks) {
    const auto decoded = ModelBase::fromBase64("Zm9vYmFy"_t);
    const auto rest = [&] { return std::string(std::istreambuf_iterator<char>(*decoded), {}); };
    decoded->ignore(2);
    EXPECT_EQ(decoded->tellg(), 2);
    EXPECT_EQ(decoded->seekg(1, std::ios::cur).tellg(), 3);
    EXPECT_EQ(rest(), "bar");
    EXPECT_EQ(decoded->seekg(0, std::ios::end).tellg(), 6);
    EXPECT_EQ(rest(), "");
    EXPECT_EQ(decoded->seekg(-1, std::ios::end).get(), 'r');
    EXPECT_EQ(decoded->seekg(-6, std::ios::cur).get(), 'f');
    EXPECT_EQ(decoded->seekg(4).get(), 'a');
    for (const std::streamoff nowhere : {std::streamoff{-1}, std::streamoff{7}, std::streamoff{1} << 62U}) {
        EXPECT_TRUE(decoded->seekg(nowhere).fail()) << nowhere;
        decoded->clear();
        EXPECT_EQ(decoded->tellg(), 5) << "it stays where it was";
    }
    EXPECT_EQ(decoded->rdbuf()->pubseekoff(2, std::ios::cur), -1) << "there is one byte left";
    EXPECT_EQ(decoded->rdbuf()->pubseekoff(0, std::ios::beg, std::ios::out), -1) << "nothing is written to it";
}

TEST(ObjectModel, HoldsAnyObject) {
    Object object;
    const auto read = [&](const char* jsonText) {
        auto json = value::parse(text(jsonText));
        object.fromJson(json);
    };
    EXPECT_EQ(object.toJson().serialize(), "{}");
    read(R"({"b":1,"a":{"c":[null]}})");
    for (const auto* ignored : {"[1]", "null", "\"x\"", "1"}) {
        read(ignored);
    }
    EXPECT_EQ(object.getValue("a"_t).serialize(), R"({"c":[null]})");
    messageOf<json_exception>([&] { object.getValue("none"_t); });
    object.setValue("b"_t, value::string("new"_t));
    object.setValue("d"_t, value::null());

    for (const auto& [prefix, name] :
         {std::pair<std::string, std::string>{"", "object"}, {"p", "p.object"}, {"p.", "p.object"}}) {
        const auto multipart = std::make_shared<MultipartFormData>("B"_t);
        object.toMultipart(multipart, text(prefix));
        const auto only = multipart->getContents().at(0);
        EXPECT_EQ(textOf(only), name + "|form-data|application/json||" + utf8(object.toJson().serialize()));
        Object copy;
        seedParts(copy, *multipart);
        copy.fromMultiPart(multipart, text(prefix));
        EXPECT_EQ(copy.getValue("b"_t).as_string(), "new");
        EXPECT_EQ(messageOf<std::invalid_argument>([&] { copy.fromMultiPart(multipart, "q"_t); }),
                  "the multipart body has no part \"q.object\"");
    }
    messageOf<std::invalid_argument>([&] { object.toMultipart(nullptr, ""_t); });
}

/// Writes numbers as "1.234,5" and bools as words, as a host application's locale may.
class Commas : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    std::string do_truename() const override { return "wahr"; }
};

TEST(Locale, OfTheHostChangesNothingOnTheWire) {
    struct Locales {
        Locales() { EXPECT_TRUE(chooseGerman()); }
        ~Locales() {
            std::locale::global(before);
            chooseNone();
        }
        std::locale before = std::locale::global(std::locale(std::locale::classic(), new Commas));
    } const german;
    std::ostringstream probe;
    probe << 1234.5 << ' ' << std::to_string(2.5);
    EXPECT_EQ(probe.str(), "1.234,5 2,500000") << "the locales are in force";

    EXPECT_EQ(textOf(ModelBase::toHttpContent("n"_t, int32_t{1234567})), "n|form-data|||1234567");
    EXPECT_EQ(textOf(ModelBase::toHttpContent("n"_t, int64_t{5000000000})), "n|form-data|||5000000000");
    EXPECT_EQ(textOf(ModelBase::toHttpContent("n"_t, 1234.5)), "n|form-data|||1234.5");
    EXPECT_EQ(textOf(ModelBase::toHttpContent("n"_t, date("2024-02-29T12:34:56Z"))),
              "n|form-data|||2024-02-29T12:34:56Z");
    EXPECT_EQ(ModelBase::doubleFromHttpContent(part("1234.5")), 1234.5);
    EXPECT_EQ(ModelBase::int32_tFromHttpContent(part("1234567")), 1234567);
    EXPECT_EQ(ModelBase::valueFromHttpContent(part("2.5")).serialize(), "2.5");
    EXPECT_EQ(textOf(ModelBase::toHttpContent("n"_t, value(2.5), "a/j"_t)), "n|form-data|a/j||2.5");
    EXPECT_EQ(api::ApiClient::parameterToString(int32_t{1234567}), "1234567");
    EXPECT_EQ(api::ApiClient::parameterToString(1234.5), "1234.500000");
    DynamicSchemaBaseClass issue;
    auto json = value::parse(R"({"Latitude":1234.5,"_ModelViewDefinition":"{\"cameraInfo\":{\"extents\":[1.5]}}"})"_t);
    issue.fromJson(json);
    EXPECT_EQ(issue.toJson().serialize(),
              R"({"Latitude":1234.5,"_ModelViewDefinition":"{\"cameraInfo\":{\"extents\":[1.5]}}"})");
    std::ostringstream body;
    MultipartFormData("B"_t).writeTo(body);
    EXPECT_EQ(body.str(), "\r\n--B--\r\n");
    EXPECT_EQ(MultipartFormData().getBoundary().size(), 36U);
}

} // namespace
} // namespace forms_test
