#include "Data.h"

#include <array>
#include <cstring>
#include <random>

namespace bench {

namespace {

class Writer {
public:
    explicit Writer(unsigned seed) : m_Random(seed) {}

    std::string take() { return std::move(m_Text); }
    void raw(const std::string& text) { m_Text += text; }

    void issue(std::size_t fixedProperties, std::size_t customProperties, std::size_t relatedForms = 0) {
        open("Defect");
        for (std::size_t i = 0; i < fixedProperties; ++i) {
            member(fixedKeys[i], fixedValue(fixedKeys[i]));
        }
        for (std::size_t i = 0; i < customProperties; ++i) {
            member("Custom_" + std::to_string(i * 7919 % 100003), customValue(i));
        }
        m_Text += '}';
        for (std::size_t i = 0; i < relatedForms; ++i) {
            m_Text += i == 0 ? ",\"relationshipInstances\":[" : ",";
            m_Text += "{\"instanceId\":" + quoted(guid()) + R"(,"direction":"forward","relatedInstance":)";
            form();
            m_Text += '}';
        }
        m_Text += relatedForms != 0 ? "]}" : "}";
    }

    void form() {
        open("Form");
        for (const char* key : {"FormId", "ClassName", "ClassSchema", "Type", "Status", "ProjectId", "ProjectNumber",
                                "ProjectName", "Discipline", "Classification"}) {
            member(key, fixedValue(key));
        }
        m_Text += "}}";
    }

    void attachment() {
        open("Attachment");
        member("Name", quoted(words(2) + ".jpg"));
        member("Size", std::to_string(below(10000000)));
        member("CreatedDate", date());
        member("ModifiedDate", date());
        member("Caption", quoted(words(4)));
        member("Binding", quoted("Rectangle" + std::to_string(below(9))));
        member("SasUrl", quoted("https://store.example/container/" + guid() + "?sv=2020-10-02&sig=" + hex(40)));
        m_Text += "}}";
    }

private:
    static constexpr std::array<const char*, 25> fixedKeys{
        "KeldaroServer", "KeldaroObjectId", "_Subject",          "_Description",    "_DisplayName",
        "Latitude",      "Longitude",       "GPSLocation",       "Status",          "Closed",
        "AssignedTo",    "AssignedToId",    "_Discipline",       "_Classification", "_Source",
        "_ContainerId",  "_ItemId",         "_BackContainerUrl", "_CreatedDate",    "_CreatedBy",
        "_ModifiedDate", "_ModifiedBy",     "_DueDate",          "_IdNumber",       "Type"};

    static std::string quoted(const std::string& text) { return '"' + text + '"'; }

    /// Begins an instance, up to its properties.
    void open(const std::string& className) {
        m_Text += "{\"instanceId\":" + quoted(guid()) +
                  ",\"schemaName\":\"DynamicSchema\",\"className\":" + quoted(className) +
                  ",\"eTag\":" + quoted(hex(16)) + ",\"properties\":{";
    }
    void member(const std::string& name, const std::string& value) {
        m_Text += (m_Text.back() == '{' ? "" : ",") + quoted(name) + ':' + value;
    }

    std::size_t below(std::size_t bound) { return m_Random() % bound; }

    std::string hex(std::size_t length) {
        std::string text;
        while (text.size() < length) {
            text += "0123456789abcdef"[below(16)];
        }
        return text;
    }
    std::string guid() { return hex(8) + '-' + hex(4) + '-' + hex(4) + '-' + hex(4) + '-' + hex(12); }

    std::string words(std::size_t count) {
        static constexpr std::array<const char*, 12> vocabulary{"pump",  "leaks",  "below", "deck",   "north", "span",
                                                                "crack", "repair", "seal",  "bolted", "joint", "at"};
        std::string text;
        while (count-- != 0) {
            text += (text.empty() ? "" : " ") + std::string(vocabulary[below(vocabulary.size())]);
        }
        return text;
    }

    std::string date() {
        const auto two = [this](std::size_t bound) { return std::to_string(10 + below(bound)); };
        return "\"20" + two(15) + '-' + two(3) + '-' + two(18) + 'T' + two(14) + ':' + two(50) + ':' + two(50) + "Z\"";
    }

    std::string number() { return std::to_string(below(180)) + '.' + std::to_string(100001 + below(800000)); }

    std::string fixedValue(const std::string& key) {
        if (key == "Latitude" || key == "Longitude") {
            return number();
        }
        if (key == "Closed") {
            return below(2) != 0 ? "true" : "false";
        }
        if (key.find("Date") != std::string::npos) {
            return date();
        }
        if (key == "AssignedToId" || key == "_ItemId") {
            return quoted(guid());
        }
        if (key == "_BackContainerUrl") {
            return quoted("https://work.example/containers/" + hex(12));
        }
        return quoted(words(key == "_Description" ? 14 : 1 + below(3)));
    }

    std::string customValue(std::size_t index) {
        switch (index % 5) {
        case 0:
            return std::to_string(below(100000));
        case 1:
            return number();
        case 2:
            return below(2) != 0 ? "true" : "false";
        default:
            return quoted(words(2 + below(6)));
        }
    }

    std::mt19937 m_Random;
    std::string m_Text;
};

std::string listText(std::size_t issues, std::size_t fixedProperties, std::size_t customProperties) {
    Writer writer(4711);
    writer.raw("{\"instances\":[");
    for (std::size_t i = 0; i < issues; ++i) {
        writer.raw(i == 0 ? "" : ",");
        writer.issue(fixedProperties, customProperties);
    }
    writer.raw("]}");
    return writer.take();
}

} // namespace

const std::string& issueText() {
    static const std::string text = [] {
        Writer writer(42);
        writer.raw("{\"instance\":");
        writer.issue(25, 0);
        writer.raw("}");
        return writer.take();
    }();
    return text;
}

const std::string& issueListText() {
    static const std::string text = listText(issueCount, 25, 10);
    return text;
}

const std::string& largeListText() {
    static const std::string text = [] {
        const std::string list = issueListText();
        const auto begin = list.find('[') + 1;
        const std::string issues = list.substr(begin, list.rfind(']') - begin);
        std::string large = "{\"instances\":[" + issues;
        while (large.size() < std::size_t{50} << 20U) {
            large += ',' + issues;
        }
        return large + "]}";
    }();
    return text;
}

const std::string& attachmentListText() {
    static const std::string text = [] {
        Writer writer(815);
        writer.raw("{\"instances\":[");
        for (std::size_t i = 0; i < issueCount; ++i) {
            writer.raw(i == 0 ? "" : ",");
            writer.attachment();
        }
        writer.raw("]}");
        return writer.take();
    }();
    return text;
}

const std::string& relatedIssueText() {
    static const std::string text = [] {
        Writer writer(99);
        writer.raw("{\"instance\":");
        writer.issue(25, 10, 500);
        writer.raw("}");
        return writer.take();
    }();
    return text;
}

const std::string& customListText() {
    static const std::string text = customIssuesText(286, 35);
    return text;
}

std::string customIssuesText(std::size_t issues, std::size_t customProperties) {
    return listText(issues, 0, customProperties);
}

std::string randomBytes(std::size_t size) {
    std::mt19937_64 random(1234);
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i + sizeof(uint64_t) <= size; i += sizeof(uint64_t)) {
        const uint64_t number = random();
        std::memcpy(&bytes[i], &number, sizeof number);
    }
    return bytes;
}

const std::string& fileBytes() {
    static const std::string bytes = randomBytes(fileSize);
    return bytes;
}

} // namespace bench
