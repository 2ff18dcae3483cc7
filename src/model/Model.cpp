#include <VarnelAPI/Forms/model/Model.h>

#include "Conversion.h"
#include "KeyIndex.h"
#include "MediaTypes.h"
#include "ModelJson.h"

namespace VarnelAPI::Forms::model::detail {

namespace {

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

class KeyCollector final : public PropertyVisitor {
public:
    std::vector<Key> keys;

private:
    void scalar(Key key, Scalar, bool&) override { keys.push_back(key); }
    void nested(Key key, NestedProperty&) override { keys.push_back(key); }
    void list(Key key, ListProperty&) override { keys.push_back(key); }
    void nestedAsText(Key key, NestedProperty&) override { keys.push_back(key); }
};

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

} // namespace

PropertyVisitor::~PropertyVisitor() = default;

void PropertyVisitor::nullableDate(Key key, Property<utility::datetime>& property) {
    scalar(key, &property.value, property.isSet);
}

} // namespace VarnelAPI::Forms::model::detail

namespace VarnelAPI::Forms::model {

void Model::validate() {}

detail::CustomProperties* Model::customProperties() {
    return nullptr;
}

bool Model::isKey(const utility::string_t& key) const {
    return keyIndex().placeOf(key) != detail::KeyIndex::npos;
}

const detail::KeyIndex& Model::makeKeyIndex(Model&& model) {
    detail::KeyCollector collector;
    model.describe(collector);
    // Never freed: a call may still be in flight while the process ends.
    return *new detail::KeyIndex(collector.keys);
}

void Model::fromJson(web::json::value& val) {
    detail::readJson(*this, val, detail::JsonUse::Keep);
}

void Model::fromJson(web::json::value&& val) {
    detail::readJson(*this, val, detail::JsonUse::Consume);
}

web::json::value Model::toJson() const {
    return detail::writeJson(*this);
}

void Model::toMultipart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) const {
    Model& self = detail::forWriting(*this);
    detail::MultipartWriter writer(detail::required(multipart, "the multipart body"), namePrefix);
    self.describe(writer);
    writer.finish(self.customProperties());
}

void Model::fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t&) {
    detail::MultipartReader reader(detail::required(multipart, "the multipart body"), keyIndex());
    describe(reader);
    reader.finish(customProperties());
}

} // namespace VarnelAPI::Forms::model
