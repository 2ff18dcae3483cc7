#include <boost/container/small_vector.hpp>

#include <VarnelAPI/Forms/detail/Model.h>

#include "Conversion.h"
#include "KeyIndex.h"
#include "MediaTypes.h"

namespace VarnelAPI::Forms::model::detail {

namespace {

using Fields = std::vector<std::pair<utility::string_t, web::json::value>>;

std::string pathStep(Key key) {
    return utility::conversions::to_utf8string(utility::string_t(key));
}
std::string pathStep(std::size_t index) {
    return '[' + std::to_string(index) + ']';
}

/// Runs `convert`, and puts `step` in front of what the JSON library has to say, so that the text reads
/// "instances[3].properties.Size: Not a number".
template <class Step, class Convert>
void naming(Step step, Convert convert) {
    try {
        convert();
    } catch (const web::json::json_exception& error) {
        const std::string inner = error.what();
        const bool isPath = inner.find(": ") < inner.find(' ');
        throw web::json::json_exception(pathStep(step) + (isPath ? (inner.front() == '[' ? "" : ".") : ": ") + inner);
    }
}

/// The text of a JSON string, copied or taken; an empty text for any other value.
void convert(web::json::value& json, JsonUse use, utility::string_t& value) {
    if (!json.is_string()) {
        value.clear();
    } else if (use == JsonUse::Keep) {
        value = json.as_string();
    } else {
        // The tree is ours to consume, so what `as_string` refers to is not a constant.
        value = std::move(const_cast<utility::string_t&>(json.as_string()));
    }
}

void convert(web::json::value& json, JsonUse, int32_t& value) {
    value = ModelBase::int32_tFromJson(json);
}
void convert(web::json::value& json, JsonUse, int64_t& value) {
    value = ModelBase::int64_tFromJson(json);
}
void convert(web::json::value& json, JsonUse, double& value) {
    value = ModelBase::doubleFromJson(json);
}
void convert(web::json::value& json, JsonUse, bool& value) {
    value = ModelBase::boolFromJson(json);
}
void convert(web::json::value& json, JsonUse, utility::datetime& value) {
    value = ModelBase::dateFromJson(json);
}

using Part = std::shared_ptr<HttpContent>;

void convert(const Part& part, utility::string_t& value) {
    value = ModelBase::stringFromHttpContent(part);
}
void convert(const Part& part, int32_t& value) {
    value = ModelBase::int32_tFromHttpContent(part);
}
void convert(const Part& part, int64_t& value) {
    value = ModelBase::int64_tFromHttpContent(part);
}
void convert(const Part& part, double& value) {
    value = ModelBase::doubleFromHttpContent(part);
}
void convert(const Part& part, bool& value) {
    value = ModelBase::boolFromHttpContent(part);
}
void convert(const Part& part, utility::datetime& value) {
    value = ModelBase::dateFromHttpContent(part);
}

void readList(web::json::value& json, JsonUse use, ListProperty& property) {
    if (json.is_null()) {
        return;
    }
    auto& elements = json.as_array();
    property.reserve(elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        naming(i, [&] { property.append(elements[i], use); });
        if (use == JsonUse::Consume) {
            // Frees each element once it is read, so that tree and models don't both stand in memory whole.
            elements[i] = web::json::value();
        }
    }
}

web::json::value listToJson(const ListProperty& property) {
    std::vector<web::json::value> elements;
    elements.reserve(property.size());
    for (std::size_t i = 0; i < property.size(); ++i) {
        elements.push_back(property.elementToJson(i));
    }
    return web::json::value::array(std::move(elements));
}

class KeyCollector final : public PropertyVisitor {
public:
    std::vector<Key> keys;

private:
    void scalar(Key key, Scalar, bool&) override { keys.push_back(key); }
    void nested(Key key, NestedProperty&) override { keys.push_back(key); }
    void list(Key key, ListProperty&) override { keys.push_back(key); }
    void nestedAsText(Key key, NestedProperty&) override { keys.push_back(key); }
};

class JsonWriter final : public PropertyVisitor {
public:
    explicit JsonWriter(std::size_t size) { m_Fields.reserve(size); }

    web::json::value finish(const CustomProperties* customProperties) {
        if (customProperties != nullptr) {
            for (const auto& [name, value] : *customProperties) {
                requireFinite(value);
                m_Fields.emplace_back(name, value);
            }
        }
        return web::json::value::object(std::move(m_Fields), true);
    }

private:
    void add(Key key, web::json::value value) { m_Fields.emplace_back(key, std::move(value)); }

    void scalar(Key key, Scalar value, bool& isSet) override {
        if (isSet) {
            add(key, std::visit([](const auto* native) { return ModelBase::toJson(*native); }, value));
        }
    }
    void nullableDate(Key key, Property<utility::datetime>& property) override {
        if (property.isSet && !property.value.is_initialized()) {
            add(key, web::json::value::null());
        } else {
            scalar(key, &property.value, property.isSet);
        }
    }
    void nested(Key key, NestedProperty& property) override {
        if (property.isSet()) {
            add(key, property.get() != nullptr ? property.get()->toJson() : web::json::value::null());
        }
    }
    void nestedAsText(Key key, NestedProperty& property) override {
        if (property.isSet()) {
            add(key, property.get() != nullptr ? ModelBase::toJson(property.get()->toJson().serialize())
                                               : web::json::value::null());
        }
    }
    void list(Key key, ListProperty& property) override {
        if (property.size() != 0) {
            add(key, listToJson(property));
        }
    }

    Fields m_Fields;
};

} // namespace

/// Reads one object: the members that the class knows are found first, by one walk over the object, and then
/// converted in declaration order.
class JsonReader final : public PropertyVisitor {
public:
    JsonReader(const KeyIndex& keys, web::json::value& json, JsonUse use, CustomProperties* customProperties)
        : m_Use(use), m_CustomProperties(customProperties), m_Found(keys.size(), nullptr) {
        if (!json.is_object()) {
            return;
        }
        std::size_t cursor = 0;
        for (auto& field : json.as_object()) {
            const std::size_t place = keys.placeOf(field.first, cursor);
            if (place == KeyIndex::npos) {
                if (m_CustomProperties != nullptr) {
                    m_Unknown.push_back(&field);
                }
            } else if (m_Found[place] == nullptr) {
                m_Found[place] = &field.second;
            }
        }
    }

    void finish() {
        if (m_CustomProperties == nullptr) {
            return;
        }
        m_CustomProperties->reserve(m_CustomProperties->size() + m_Unknown.size());
        for (auto* field : m_Unknown) {
            if (m_Use == JsonUse::Consume) {
                m_CustomProperties->insert_or_assign(std::move(field->first), std::move(field->second));
            } else {
                m_CustomProperties->insert_or_assign(field->first, field->second);
            }
        }
    }

private:
    /// The member of the property that is visited now, or null if there is none.
    web::json::value* next() { return m_Found[m_Place++]; }

    /// The same, but a JSON null counts as none.
    web::json::value* nextNotNull() {
        auto* json = next();
        return json != nullptr && json->is_null() ? nullptr : json;
    }

    void fill(Key key, NestedProperty& property, web::json::value& json, JsonUse use) {
        naming(key, [&] {
            auto model = property.create();
            model->read(json, use);
            property.store(std::move(model));
        });
    }

    void scalar(Key key, Scalar value, bool& isSet) override {
        if (auto* json = nextNotNull()) {
            naming(key, [&] { std::visit([&](auto* native) { convert(*json, m_Use, *native); }, value); });
            isSet = true;
        }
    }
    void nested(Key key, NestedProperty& property) override {
        if (auto* json = nextNotNull()) {
            fill(key, property, *json, m_Use);
        }
    }
    void nestedAsText(Key key, NestedProperty& property) override {
        auto* json = nextNotNull();
        if (json != nullptr && json->is_string()) {
            web::json::value parsed;
            naming(key, [&] { parsed = parseJson(json->as_string()); });
            fill(key, property, parsed, JsonUse::Consume);
        }
    }
    void list(Key key, ListProperty& property) override {
        property.clear();
        if (auto* json = next()) {
            naming(key, [&] { readList(*json, m_Use, property); });
        }
    }

    JsonUse m_Use;
    CustomProperties* m_CustomProperties;
    std::size_t m_Place = 0;
    boost::container::small_vector<web::json::value*, 40> m_Found;
    boost::container::small_vector<std::pair<utility::string_t, web::json::value>*, 16> m_Unknown;
};

namespace {

class MultipartWriter final : public PropertyVisitor {
public:
    MultipartWriter(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix)
        : m_Multipart(std::move(multipart)), m_Prefix(partPrefix(namePrefix)) {}

    void finish(const CustomProperties* customProperties) {
        if (customProperties != nullptr) {
            for (const auto& [name, value] : *customProperties) {
                m_Multipart->add(ModelBase::toHttpContent(m_Prefix + name, value, jsonType));
            }
        }
    }

private:
    utility::string_t partName(Key key) const { return m_Prefix + utility::string_t(key); }

    void scalar(Key key, Scalar value, bool& isSet) override {
        if (isSet) {
            std::visit([&](const auto* native) { m_Multipart->add(ModelBase::toHttpContent(partName(key), *native)); },
                       value);
        }
    }
    void nested(Key key, NestedProperty& property) override {
        if (property.isSet() && property.get() != nullptr) {
            // The outer prefix is left behind on purpose: the service knows nested parts by this short form.
            property.get()->toMultipart(m_Multipart, utility::string_t(key) + _XPLATSTR("."));
        }
    }
    void nestedAsText(Key key, NestedProperty& property) override {
        if (property.isSet() && property.get() != nullptr) {
            // This one part never carries the prefix.
            m_Multipart->add(ModelBase::toHttpContent(utility::string_t(key), property.get()->toJson().serialize()));
        }
    }
    void list(Key key, ListProperty& property) override {
        if (property.size() != 0) {
            m_Multipart->add(ModelBase::toHttpContent(partName(key), listToJson(property), jsonType));
        }
    }

    std::shared_ptr<MultipartFormData> m_Multipart;
    utility::string_t m_Prefix;
};

class MultipartReader final : public PropertyVisitor {
public:
    MultipartReader(std::shared_ptr<MultipartFormData> multipart, const KeyIndex& keys)
        : m_Multipart(std::move(multipart)), m_Keys(keys) {}

    void finish(CustomProperties* customProperties) {
        if (customProperties != nullptr) {
            for (const auto& part : m_Multipart->getContents()) {
                const utility::string_t name = part->getName();
                if (m_Keys.placeOf(name) == KeyIndex::npos) {
                    customProperties->insert_or_assign(name, ModelBase::valueFromHttpContent(part));
                }
            }
        }
    }

private:
    /// Parts are looked up under the bare key on purpose, whatever prefix they were written under.
    Part part(Key key) const { return m_Multipart->getContent(utility::string_t(key)); }

    void scalar(Key key, Scalar value, bool& isSet) override {
        if (const auto found = part(key)) {
            std::visit([&](auto* native) { convert(found, *native); }, value);
            isSet = true;
        }
    }
    void nested(Key key, NestedProperty& property) override {
        if (part(key)) {
            auto model = property.create();
            model->fromMultiPart(m_Multipart, utility::string_t(key) + _XPLATSTR("."));
            property.store(std::move(model));
        }
    }
    void nestedAsText(Key key, NestedProperty& property) override {
        if (const auto found = part(key)) {
            auto model = property.create();
            naming(key, [&] { model->fromJson(ModelBase::valueFromHttpContent(found)); });
            property.store(std::move(model));
        }
    }
    void list(Key key, ListProperty& property) override {
        property.clear();
        if (const auto found = part(key)) {
            naming(key, [&] {
                auto json = ModelBase::valueFromHttpContent(found);
                readList(json, JsonUse::Consume, property);
            });
        }
    }

    std::shared_ptr<MultipartFormData> m_Multipart;
    const KeyIndex& m_Keys;
};

/// `describe` serves reading and writing alike, so it is not const; the writers only look.
Model& forWriting(const Model& model) {
    return const_cast<Model&>(model);
}

} // namespace

PropertyVisitor::~PropertyVisitor() = default;

void PropertyVisitor::nullableDate(Key key, Property<utility::datetime>& property) {
    scalar(key, &property.value, property.isSet);
}

web::json::value toJsonArray(const std::vector<double>& numbers) {
    std::vector<web::json::value> elements;
    elements.reserve(numbers.size());
    for (const double number : numbers) {
        elements.push_back(ModelBase::toJson(number));
    }
    return web::json::value::array(std::move(elements));
}

void fromJsonElement(web::json::value& element, JsonUse use, utility::string_t& value) {
    convert(element, use, value);
}

void fromJsonElement(web::json::value& element, JsonUse, double& value) {
    value = ModelBase::doubleFromJson(element);
}

void fromJsonElement(web::json::value& element, JsonUse use, std::vector<double>& row) {
    auto& numbers = element.as_array();
    row.resize(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        naming(i, [&] { fromJsonElement(numbers[i], use, row[i]); });
    }
}

void fromJsonElement(web::json::value& element, JsonUse use, Model& model) {
    model.read(element, use);
}

void Model::validate() {}

CustomProperties* Model::customProperties() {
    return nullptr;
}

bool Model::isKey(const utility::string_t& key) const {
    return keyIndex().placeOf(key) != KeyIndex::npos;
}

const KeyIndex& Model::makeKeyIndex(Model&& model) {
    KeyCollector collector;
    model.describe(collector);
    // Never freed: a call may still be in flight while the process ends.
    return *new KeyIndex(collector.keys);
}

void Model::read(web::json::value& json, JsonUse use) {
    JsonReader reader(keyIndex(), json, use, customProperties());
    describe(reader);
    reader.finish();
}

void Model::fromJson(web::json::value& val) {
    read(val, JsonUse::Keep);
}

void Model::fromJson(web::json::value&& val) {
    read(val, JsonUse::Consume);
}

web::json::value Model::toJson() const {
    Model& self = forWriting(*this);
    const auto* custom = self.customProperties();
    JsonWriter writer(keyIndex().size() + (custom != nullptr ? custom->size() : 0));
    self.describe(writer);
    return writer.finish(custom);
}

void Model::toMultipart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) const {
    Model& self = forWriting(*this);
    MultipartWriter writer(required(multipart, "the multipart body"), namePrefix);
    self.describe(writer);
    writer.finish(self.customProperties());
}

void Model::fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t&) {
    MultipartReader reader(required(multipart, "the multipart body"), keyIndex());
    describe(reader);
    reader.finish(customProperties());
}

} // namespace VarnelAPI::Forms::model::detail
