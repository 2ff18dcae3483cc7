#include "support/Fuzz.h"

#include <array>
#include <sstream>

using namespace VarnelAPI::Forms::model;
using forms_fuzz::bytesOf;
using forms_fuzz::failureOf;
using forms_fuzz::require;

namespace {

/// Disposition, name, file name, type and data.
using Part = std::array<std::string, 5>;

const std::string boundary = "B";

bool hasAny(const std::string& text, const std::string& characters) {
    return text.find_first_of(characters) != std::string::npos;
}

/// Takes a multipart body apart as a server would.
class Reader {
public:
    explicit Reader(const std::string& bytes) : m_Rest(bytes) {}

    std::vector<Part> read() {
        std::vector<Part> parts;
        const std::string close = "\r\n--" + boundary + "--\r\n";
        while (m_Rest != close) {
            require(take(parts.empty() ? 0 : 2) == (parts.empty() ? "" : "\r\n"), "a line break ends the data");
            require(line() == "--" + boundary, "a dash line begins a part");
            parts.push_back(part());
        }
        return parts;
    }

private:
    Part part() {
        Part part;
        for (std::string header = line(); !header.empty(); header = line()) {
            const std::size_t colon = header.find(": ");
            require(colon != std::string::npos, "a header line has a name");
            const std::string value = header.substr(colon + 2);
            if (header.compare(0, colon, "Content-Type") == 0) {
                part[3] = value;
                continue;
            }
            require(header.compare(0, colon, "Content-Disposition") == 0, "no other header");
            part[0] = value.substr(0, value.find("; "));
            part[1] = quoted(value, "; name=\"");
            part[2] = quoted(value, "; filename=\"");
        }
        part[4] = take(m_Rest.find("\r\n--" + boundary));
        return part;
    }
    static std::string quoted(const std::string& value, const std::string& clause) {
        const std::size_t begin = value.find(clause) + clause.size();
        return value.find(clause) == std::string::npos ? "" : value.substr(begin, value.find('"', begin) - begin);
    }
    std::string take(std::size_t size) {
        require(size <= m_Rest.size(), "the body goes on");
        std::string taken = m_Rest.substr(0, size);
        m_Rest.erase(0, size);
        return taken;
    }
    std::string line() {
        const std::string text = take(m_Rest.find("\r\n"));
        take(2);
        return text;
    }

    std::string m_Rest;
};

} // namespace

/// Parts of five fields each, disposition, name, file name, type and data: written, and taken apart again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    forms_fuzz::Input input(data, size);
    MultipartFormData multipart(boundary);
    std::vector<Part> parts;
    bool refused = false;
    bool ambiguous = false;
    while (!input.empty()) {
        Part part;
        for (auto& field : part) {
            field = input.field();
        }
        auto content = std::make_shared<HttpContent>();
        content->setContentDisposition(part[0]);
        content->setName(part[1]);
        content->setFileName(part[2]);
        content->setContentType(part[3]);
        content->setData(std::make_shared<std::stringstream>(part[4]));
        multipart.add(content);
        require(multipart.getContent(part[1]) == content, "the last part of a name is found");
        for (std::size_t i = 0; i < 4; ++i) {
            refused = refused || hasAny(part[i], std::string("\r\n\0", 3));
            // Nothing is quoted on the wire: a reader can't tell these from the syntax.
            ambiguous = ambiguous || hasAny(part[i], "\";");
        }
        ambiguous = ambiguous || part[4].find("--" + boundary) != std::string::npos;
        parts.push_back(std::move(part));
    }

    std::ostringstream wire;
    std::size_t announced = 0;
    const std::string writeFailure = failureOf<std::invalid_argument>([&] { multipart.writeTo(wire); });
    const std::string sizeFailure = failureOf<std::invalid_argument>([&] { announced = multipart.size(); });
    require(writeFailure.empty() != refused && sizeFailure == writeFailure, "CR, LF and NUL in a header are refused");
    require(announced == wire.str().size(), "the size is that of what is written: nothing, if it is refused");
    if (refused) {
        return 0;
    }
    require(bytesOf(multipart) == wire.str(), "a body can be written again");
    require(ambiguous || Reader(wire.str()).read() == parts, "what is written can be taken apart again");
    return 0;
}
