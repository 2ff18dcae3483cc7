#include "Rows.h"

#include "support/Data.h"

#include <VarnelAPI/Forms/model/DynamicSchemaBaseClass.h>
#include <VarnelAPI/Forms/model/JsonBody.h>

#include <benchmark/benchmark.h>

#include <sstream>

namespace bench {

namespace {

namespace conversions = utility::conversions;
using VarnelAPI::Forms::model::DynamicSchemaBaseClass;
using VarnelAPI::Forms::model::DynamicSchemaBaseClassInstances;
using VarnelAPI::Forms::model::JsonBody;
using VarnelAPI::Forms::model::ModelBase;
using web::json::value;

constexpr std::size_t base64Size = std::size_t{16} << 20U;

Operation parsingAndFilling() {
    return [] {
        DynamicSchemaBaseClassInstances issues;
        issues.fromJson(value::parse(issueListText()));
        benchmark::DoNotOptimize(issues);
    };
}

Operation filling() {
    auto tree = std::make_shared<value>(value::parse(issueListText()));
    return [tree] {
        DynamicSchemaBaseClassInstances issues;
        issues.fromJson(*tree);
        benchmark::DoNotOptimize(issues);
    };
}

template <class Model>
std::shared_ptr<Model> modelOf(const std::string& text) {
    auto model = std::make_shared<Model>();
    model->fromJson(value::parse(text));
    return model;
}

Operation writing(const std::string& text) {
    return [issues = modelOf<DynamicSchemaBaseClassInstances>(text)] { benchmark::DoNotOptimize(issues->toJson()); };
}

/// What one would write by hand for the issues of the benchmark, and nothing else.
class HandWritten {
public:
    explicit HandWritten(const std::string& text) : m_Issues(modelOf<DynamicSchemaBaseClassInstances>(text)) {
        const value tree = value::parse(text);
        for (const auto& instance : tree.at("instances").as_array()) {
            auto& custom = m_Custom.emplace_back();
            for (const auto& [name, member] : instance.at("properties").as_object()) {
                if (name.compare(0, 7, "Custom_") == 0) {
                    custom.emplace(name, member);
                }
            }
        }
    }

    value toJson() const {
        std::vector<value> elements;
        elements.reserve(m_Custom.size());
        for (std::size_t i = 0; i < m_Custom.size(); ++i) {
            auto& content = *m_Issues->getInstances()[i];
            Fields fields;
            fields.reserve(5);
            fields.emplace_back("instanceId", value::string(content.getInstanceId()));
            fields.emplace_back("schemaName", value::string(content.getSchemaName()));
            fields.emplace_back("className", value::string(content.getClassName()));
            fields.emplace_back("eTag", value::string(content.getETag()));
            fields.emplace_back("properties", propertiesToJson(*content.getProperties(), m_Custom[i]));
            elements.push_back(value::object(std::move(fields), true));
        }
        Fields fields;
        fields.emplace_back("instances", value::array(std::move(elements)));
        return value::object(std::move(fields), true);
    }

    /// Whether the library makes the same of the same issues, but for the order of the custom properties.
    bool isFaithful() const { return toJson().serialize().size() == m_Issues->toJson().serialize().size(); }

private:
    using Fields = std::vector<std::pair<std::string, value>>;
    using Custom = std::unordered_map<std::string, value>;

    static value propertiesToJson(DynamicSchemaBaseClass& issue, const Custom& custom) {
        const auto date = [](const utility::datetime& moment) {
            return value::string(moment.to_string(utility::datetime::ISO_8601));
        };
        Fields fields;
        fields.reserve(25 + custom.size());
        fields.emplace_back("KeldaroServer", value::string(issue.getKeldaroServer()));
        fields.emplace_back("KeldaroObjectId", value::string(issue.getKeldaroObjectId()));
        fields.emplace_back("_Subject", value::string(issue.getSubject()));
        fields.emplace_back("_Description", value::string(issue.getDescription()));
        fields.emplace_back("_DisplayName", value::string(issue.getDisplayName()));
        fields.emplace_back("Latitude", value::number(issue.getLatitude()));
        fields.emplace_back("Longitude", value::number(issue.getLongitude()));
        fields.emplace_back("GPSLocation", value::string(issue.getGPSLocation()));
        fields.emplace_back("Status", value::string(issue.getStatus()));
        fields.emplace_back("Closed", value::boolean(issue.isClosed()));
        fields.emplace_back("AssignedTo", value::string(issue.getAssignedTo()));
        fields.emplace_back("AssignedToId", value::string(issue.getAssignedToId()));
        fields.emplace_back("_Discipline", value::string(issue.getDiscipline()));
        fields.emplace_back("_Classification", value::string(issue.getClassification()));
        fields.emplace_back("_Source", value::string(issue.getSource()));
        fields.emplace_back("_ContainerId", value::string(issue.getContainerId()));
        fields.emplace_back("_ItemId", value::string(issue.getItemId()));
        fields.emplace_back("_BackContainerUrl", value::string(issue.getBackContainerUrl()));
        fields.emplace_back("_CreatedDate", date(issue.getCreatedDate()));
        fields.emplace_back("_CreatedBy", value::string(issue.getCreatedBy()));
        fields.emplace_back("_ModifiedDate", date(issue.getModifiedDate()));
        fields.emplace_back("_ModifiedBy", value::string(issue.getModifiedBy()));
        fields.emplace_back("_DueDate", date(issue.getDueDate()));
        fields.emplace_back("_IdNumber", value::string(issue.getIdNumber()));
        fields.emplace_back("Type", value::string(issue.getType()));
        for (const auto& [name, member] : custom) {
            fields.emplace_back(name, member);
        }
        return value::object(std::move(fields), true);
    }

    std::shared_ptr<DynamicSchemaBaseClassInstances> m_Issues;
    std::vector<Custom> m_Custom;
};

Operation writingByHand() {
    auto issues = std::make_shared<HandWritten>(issueListText());
    if (!issues->isFaithful()) {
        throw std::logic_error("the hand-written issues are not those of the library");
    }
    return [issues] { benchmark::DoNotOptimize(issues->toJson()); };
}

/// A stream over a string, for what a body writes.
class StringSink final : public std::streambuf {
public:
    std::string bytes;

protected:
    int_type overflow(int_type character) override {
        bytes.push_back(traits_type::to_char_type(character));
        return character;
    }
    std::streamsize xsputn(const char* data, std::streamsize size) override {
        bytes.append(data, static_cast<std::size_t>(size));
        return size;
    }
};

Operation writingBody() {
    auto body = std::make_shared<JsonBody>(value::parse(issueListText()));
    return [body] {
        StringSink sink;
        std::ostream stream(&sink);
        body->writeTo(stream);
        benchmark::DoNotOptimize(sink.bytes);
    };
}

Operation serializing() {
    auto tree = std::make_shared<value>(value::parse(issueListText()));
    return [tree] { benchmark::DoNotOptimize(tree->serialize()); };
}

/// The same without what the sink holds.
Operation writingBodyAway() {
    class Nowhere final : public std::streambuf {
        int_type overflow(int_type character) override { return traits_type::not_eof(character); }
        std::streamsize xsputn(const char*, std::streamsize size) override { return size; }
    };
    auto body = std::make_shared<JsonBody>(value::parse(issueListText()));
    return [body] {
        Nowhere sink;
        std::ostream stream(&sink);
        body->writeTo(stream);
    };
}

Operation encoding() {
    auto stream = std::make_shared<std::istringstream>(randomBytes(base64Size));
    return [stream] { benchmark::DoNotOptimize(ModelBase::toBase64(stream)); };
}

Operation encodingByHttpLibrary() {
    const std::string bytes = randomBytes(base64Size);
    std::vector<unsigned char> data(bytes.begin(), bytes.end());
    return [data = std::move(data)] { benchmark::DoNotOptimize(conversions::to_base64(data)); };
}

std::string encodedBytes() {
    const std::string bytes = randomBytes(base64Size);
    return conversions::to_base64(std::vector<unsigned char>(bytes.begin(), bytes.end()));
}

Operation decoding() {
    return [text = encodedBytes()] { benchmark::DoNotOptimize(ModelBase::fromBase64(text)); };
}

Operation decodingByHttpLibrary() {
    return [text = encodedBytes()] { benchmark::DoNotOptimize(conversions::from_base64(text)); };
}

} // namespace

Operation parsing() {
    return parsing(issueListText());
}

Operation parsing(const std::string& text) {
    return [&text] { benchmark::DoNotOptimize(value::parse(text)); };
}

std::vector<Row> modelRows() {
    return {
        {"fill", parsingAndFilling, [] { return parsing(); }},
        {"from-json", filling, [] { return parsing(); }},
        {"to-json", [] { return writing(issueListText()); }, writingByHand},
        {"to-json-custom", [] { return writing(customIssuesText(1, 10010)); },
         [] { return writing(customIssuesText(286, 35)); }},
        {"json-body", writingBody, serializing},
        {"json-body-memory", writingBodyAway, serializing, Row::Memory::Allocated},
        {"base64-encode", encoding, encodingByHttpLibrary},
        {"base64-decode", decoding, decodingByHttpLibrary},
    };
}

} // namespace bench
