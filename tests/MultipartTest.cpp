#include "support/Seeds.h"
#include "support/ServiceTest.h"

#include <algorithm>
#include <sstream>

namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::model;

std::string written(IHttpBody& body) {
    std::ostringstream stream;
    body.writeTo(stream);
    return stream.str();
}

std::shared_ptr<HttpContent> part(const std::string& name, const std::string& fileName, const std::string& type,
                                  const std::string& data) {
    const auto content = ModelBase::toHttpContent(text(name), utility::string_t(), text(type));
    content->setFileName(text(fileName));
    content->setData(std::make_shared<std::istringstream>(data));
    return content;
}

void seedWriting(const MultipartFormData& multipart) {
    std::string input;
    for (const auto& part : multipart.getContents()) {
        std::ostringstream data;
        if (part->getData()) {
            part->writeTo(data);
        }
        input += fields(part->getContentDisposition(), part->getName(), part->getFileName(), part->getContentType(),
                        data.str());
    }
    seed("MultipartWrite", input);
}

TEST(Multipart, WritesItsPartsInTheOrderOfAdding) {
    MultipartFormData multipart("B"_t);
    EXPECT_EQ(written(multipart), "\r\n--B--\r\n");
    multipart.add(part("a", "", "", "x"));
    EXPECT_EQ(written(multipart), "--B\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\nx\r\n--B--\r\n");

    const std::string binary("\0\r\n--B\r\n\xFF", 9);
    multipart.add(part("", "", "", ""));
    multipart.add(part("ü\"", "ä.pdf", "application/pdf", binary));
    const std::string expected = "--B\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\nx"
                                 "\r\n--B\r\nContent-Disposition: form-data\r\n\r\n"
                                 "\r\n--B\r\nContent-Disposition: form-data; name=\"ü\"\"; filename=\"ä.pdf\"\r\n"
                                 "Content-Type: application/pdf\r\n\r\n" +
                                 binary + "\r\n--B--\r\n";
    EXPECT_EQ(written(multipart), expected);
    EXPECT_EQ(written(multipart), expected) << "a second time, from streams at their ends";
    EXPECT_EQ(multipart.size(), expected.size());
    const auto stream = multipart.asStream();
    stream->ignore(static_cast<std::streamsize>(expected.size()) - 20);
    stream->seekg(0);
    std::string begin(10, '\0');
    stream->read(begin.data(), 10);
    EXPECT_EQ(begin, expected.substr(0, 10));
    EXPECT_EQ(stream->tellg(), 10);
    seedWriting(multipart);
    // From within a part that is read block by block, too.
    multipart.add(part("large", "", "", std::string(100000, 'x')));
    const auto blocks = multipart.asStream();
    blocks->ignore(static_cast<std::streamsize>(expected.size()) + 100);
    blocks->seekg(0);
    EXPECT_EQ(bytesOf(*blocks), written(multipart));
    blocks->clear();
    EXPECT_EQ(blocks->tellg(), written(multipart).size());
    auto& buffer = *blocks->rdbuf();
    EXPECT_EQ(buffer.pubseekoff(1, std::ios::beg), -1);
    EXPECT_EQ(buffer.pubseekoff(1, std::ios::cur), -1);
    EXPECT_EQ(buffer.pubseekoff(0, std::ios::end), -1);
    EXPECT_EQ(buffer.pubseekoff(0, std::ios::beg), 0);
    EXPECT_EQ(buffer.sgetc(), '-');
    EXPECT_EQ(buffer.pubseekoff(0, std::ios::cur), 0);
}

TEST(Multipart, EndsWhereAPartHasLessThanItSaid) {
    struct Shrunk final : std::streambuf {
        int_type underflow() override {
            if (isGiven && ++calls < 1000) { // Who asks for ever gets the rest.
                return traits_type::eof();
            }
            isGiven = true;
            setg(&byte, &byte, &byte + 1);
            return byte;
        }
        pos_type seekoff(off_type, std::ios_base::seekdir from, std::ios_base::openmode) override {
            setg(nullptr, nullptr, nullptr);
            isGiven = false;
            return from == std::ios_base::end ? 5 : 0;
        }
        char byte = 'a';
        bool isGiven = false;
        int calls = 0;
    } shrunk;
    MultipartFormData multipart("B"_t);
    multipart.add(part("a", "", "", ""));
    multipart.getContent("a"_t)->setData(std::make_shared<std::istream>(&shrunk));
    const std::string read = bytesOf(*multipart.asStream());
    EXPECT_EQ(read.substr(read.find("\r\n\r\n")), "\r\n\r\na");
}

TEST(Multipart, FindsPartsByName) {
    MultipartFormData multipart;
    const auto first = part("a", "", "", "1");
    const auto second = part("a", "", "", "2");
    multipart.add(first);
    multipart.add(second);
    EXPECT_EQ(multipart.getContent("a"_t), second);
    EXPECT_EQ(multipart.getContents(), (std::vector<std::shared_ptr<HttpContent>>{first, second}));
    EXPECT_TRUE(multipart.hasContent("a"_t));
    EXPECT_FALSE(multipart.hasContent("A"_t));
    EXPECT_EQ(multipart.getContent("A"_t), nullptr);
    messageOf<std::invalid_argument>([&] { multipart.add(nullptr); });
}

TEST(Multipart, MakesAFreshBoundary) {
    const std::string one = utf8(MultipartFormData().getBoundary());
    EXPECT_NE(one, utf8(MultipartFormData().getBoundary()));
    std::string shape = one;
    const std::string digits = "0123456789abcdef";
    std::replace_if(
        shape.begin(), shape.end(), [&](char c) { return digits.find(c) != std::string::npos; }, 'h');
    EXPECT_EQ(shape, "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh") << one;
    EXPECT_EQ(one[14], '4') << "the version of a random one";
    EXPECT_EQ(MultipartFormData("own"_t).getBoundary(), "own");
}

TEST(Multipart, RefusesPartsThatItCantWrite) {
    const auto refusal = [](const std::shared_ptr<HttpContent>& content) {
        MultipartFormData multipart("B"_t);
        multipart.add(part("fine", "", "", ""));
        multipart.add(content);
        seedWriting(multipart);
        std::ostringstream stream;
        const std::string message = messageOf<std::invalid_argument>([&] { multipart.writeTo(stream); });
        EXPECT_EQ(stream.str(), "");
        return message;
    };
    const auto bare = std::make_shared<HttpContent>();
    bare->setName("bare"_t);
    EXPECT_EQ(refusal(bare), "the content \"bare\" has no data stream");
    EXPECT_EQ(refusal(part("a\r\nX: 1", "", "", "")), "the name of the part \"a\r\nX: 1\" holds CR, LF or NUL");
    EXPECT_EQ(refusal(part("a", "b\nc", "", "")), "the file name of the part \"a\" holds CR, LF or NUL");
    EXPECT_EQ(refusal(part("a", "", std::string("t\0", 2), "")),
              "the content type of the part \"a\" holds CR, LF or NUL");
    const auto disposed = part("a", "", "", "");
    disposed->setContentDisposition("form-data\r"_t);
    EXPECT_EQ(refusal(disposed), "the disposition of the part \"a\" holds CR, LF or NUL");
}

TEST(HttpContentTest, StartsEmptyAndSharesItsStream) {
    HttpContent content;
    EXPECT_EQ(content.getName() + content.getFileName() + content.getContentType() + content.getContentDisposition(),
              "");
    EXPECT_EQ(content.getData(), nullptr);
    std::ostringstream stream;
    messageOf<std::invalid_argument>([&] { content.writeTo(stream); });
    content.setData(std::make_shared<std::istringstream>("data"));
    const HttpContent copy = content;
    EXPECT_EQ(copy.getData(), content.getData());
    EXPECT_EQ(bytesOf(*copy.getData()), "data");
    content.writeTo(stream);
    content.writeTo(stream);
    EXPECT_EQ(stream.str(), "datadata");
    content.setData(std::make_shared<std::istringstream>(""));
    content.writeTo(stream);
    EXPECT_TRUE(stream.good()) << "writing nothing is no failure";

    struct Own final : HttpContent {
        std::shared_ptr<std::istream> getData() const override { return std::make_shared<std::istringstream>("own"); }
    } own;
    own.writeTo(stream);
    EXPECT_EQ(stream.str(), "datadataown");
}

TEST(Bodies, WriteTheirBytes) {
    std::string bytes("\0\r\n\xFF", 4);
    BinaryBody binary(bytes.data(), 4);
    bytes = "gone";
    EXPECT_EQ(written(binary), std::string("\0\r\n\xFF", 4));
    BinaryBody empty(nullptr, 0);
    EXPECT_EQ(written(empty), "");
    messageOf<std::invalid_argument>([] { BinaryBody(nullptr, 1); });
    messageOf<std::invalid_argument>([] { BinaryBody("", -1); });
    static_assert(!std::is_copy_constructible_v<BinaryBody> && !std::is_copy_assignable_v<BinaryBody>);

    auto json = web::json::value::parse(R"({"b": "ü€𝄞", "a": [1, 2.5, null]})"_t);
    JsonBody body(json);
    json = web::json::value();
    EXPECT_EQ(written(body), R"({"a":[1,2.5,null],"b":"ü€𝄞"})");
}

} // namespace
} // namespace forms_test
