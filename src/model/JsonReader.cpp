#include <boost/container/small_vector.hpp>

#include "Conversion.h"
#include "JsonSource.h"
#include "KeyIndex.h"

#include <algorithm>
#include <atomic>

namespace VarnelAPI::Forms::model::detail {

namespace {

/// The text of a string; an empty text for any other value.
template <class Source>
void convert(const Source& json, utility::string_t& value) {
    if (json.isString()) {
        value = json.text();
    } else {
        value.clear();
    }
}

// Everything else becomes what ModelBase makes of a tree's value, whichever source it comes from.
template <class Source>
void convert(const Source& json, int32_t& value) {
    auto&& tree = json.tree();
    value = ModelBase::int32_tFromJson(tree);
}
template <class Source>
void convert(const Source& json, int64_t& value) {
    auto&& tree = json.tree();
    value = ModelBase::int64_tFromJson(tree);
}
template <class Source>
void convert(const Source& json, double& value) {
    auto&& tree = json.tree();
    value = ModelBase::doubleFromJson(tree);
}
template <class Source>
void convert(const Source& json, bool& value) {
    auto&& tree = json.tree();
    value = ModelBase::boolFromJson(tree);
}
template <class Source>
void convert(const Source& json, utility::datetime& value) {
    auto&& tree = json.tree();
    value = ModelBase::dateFromJson(tree);
}

template <class Source>
void readElements(const Source& json, ListProperty& property) {
    if (json.isNull()) {
        return;
    }
    std::size_t i = 0;
    json.eachElement([&](std::size_t size) { property.reserve(size); },
                     [&](const Source& element) { naming(i++, [&] { property.append(JsonElement{element}); }); });
}

/// Reads one object: the members that the class knows are found first, by one walk over the object, and then
/// converted in declaration order.
template <class Source>
class JsonReader final : public PropertyVisitor {
public:
    static void read(Model& model, const Source& json) {
        JsonReader reader(ModelAccess::keyIndex(model), json, ModelAccess::customProperties(model));
        ModelAccess::describe(model, reader);
        reader.finish();
    }

private:
    JsonReader(const KeyIndex& keys, const Source& json, CustomProperties* customProperties)
        : m_CustomProperties(customProperties), m_Found(keys.size(), Source()) {
        if (!json.isObject()) {
            return;
        }
        json.eachMember([&](const typename Source::Member& member) {
            const std::size_t place = keys.placeOf(member.key());
            if (place == KeyIndex::npos) {
                if (m_CustomProperties != nullptr) {
                    m_Unknown.push_back(member);
                }
            } else if (m_Found[place]) {
                Source::repeated();
            } else {
                m_Found[place] = member.value();
            }
        });
    }

    void finish() {
        if (m_CustomProperties == nullptr) {
            return;
        }
        Source::sort(m_Unknown);
        m_CustomProperties->reserve(m_CustomProperties->size() + m_Unknown.size());
        for (const auto& member : m_Unknown) {
            member.moveTo(*m_CustomProperties);
        }
    }

    /// The member of the property that is visited now, or none.
    Source next() { return m_Found[m_Place++]; }

    /// The same, but a JSON null counts as none.
    Source nextNotNull() {
        const Source json = next();
        return json && json.isNull() ? Source() : json;
    }

    template <class Any>
    static void fill(Key key, NestedProperty& property, const Any& json) {
        naming(key, [&] {
            auto model = property.create();
            JsonReader<Any>::read(*model, json);
            property.store(std::move(model));
        });
    }

    void scalar(Key key, Scalar value, bool& isSet) override {
        if (const Source json = nextNotNull()) {
            naming(key, [&] { std::visit([&](auto* native) { convert(json, *native); }, value); });
            isSet = true;
        }
    }
    void nested(Key key, NestedProperty& property) override {
        if (const Source json = nextNotNull()) {
            fill(key, property, json);
        }
    }
    void nestedAsText(Key key, NestedProperty& property) override {
        const Source json = nextNotNull();
        if (json && json.isString()) {
            web::json::value parsed;
            naming(key, [&] { parsed = parseJson(json.text()); });
            fill(key, property, TreeValue(parsed, JsonUse::Consume));
        }
    }
    void list(Key key, ListProperty& property) override {
        property.clear();
        if (const Source json = next()) {
            naming(key, [&] { readElements(json, property); });
        }
    }

    CustomProperties* m_CustomProperties;
    std::size_t m_Place = 0;
    boost::container::small_vector<Source, 40> m_Found;
    boost::container::small_vector<typename Source::Member, 16> m_Unknown;
};

// One after the other, so that both are as they were at some moment only where no answer is being read.
std::atomic<uint64_t> given{0};
std::atomic<uint64_t> left{0};

#if defined(VARNEL_FORMS_SIMDJSON)

/// simdjson makes its objects when they are first used, and a process that ends destroys what was made last first: made
/// when the library is loaded, they outlive the pool, whose threads may be reading answers until then.
[[maybe_unused]] const bool outlivesThePool = !simdjson::get_active_implementation()->name().empty();

/// Whether the host made the HTTP library keep the order of members, in the whole process.
bool keepsOrder() {
    // Only its parser goes by that.
    const auto probe = web::json::value::parse(_XPLATSTR("{\"b\":null,\"a\":null}"));
    return probe.as_object().begin()->first == _XPLATSTR("b");
}

bool readByLane(Model& model, const std::string& text) {
    // The HTTP library goes down to 128 levels, and on some platforms to 32: no answer of the service comes near.
    constexpr std::size_t maxDepth = 30;
    static_assert(simdjson::SIMDJSON_PADDING <= lanePadding);
    simdjson::dom::document document;
    {
        // What only parsing needs is gone before the model is filled.
        simdjson::dom::parser parser;
        if (parser.allocate(std::max<std::size_t>(text.size(), 64), maxDepth) != simdjson::SUCCESS ||
            parser.parse_into_document(document, text).error() != simdjson::SUCCESS) {
            return false;
        }
    }
    try {
        JsonReader<DomValue>::read(model, DomValue(document.root()));
        return true;
    } catch (const std::exception&) {
        return false; // If it is an error, the tree's way says which.
    }
}

#else

bool keepsOrder() {
    return true;
}

bool readByLane(Model&, const std::string&) {
    return false;
}

#endif

} // namespace

std::string pathStep(Key key) {
    return utility::conversions::to_utf8string(utility::string_t(key));
}

std::string pathStep(std::size_t index) {
    return '[' + std::to_string(index) + ']';
}

void rethrowNaming(const std::string& step, const web::json::json_exception& error) {
    const std::string inner = error.what();
    const bool isPath = inner.find(": ") < inner.find(' ');
    throw web::json::json_exception(step + (isPath ? (inner.front() == '[' ? "" : ".") : ": ") + inner);
}

void readJson(Model& model, web::json::value& json, JsonUse use) {
    JsonReader<TreeValue>::read(model, TreeValue(json, use));
}

void readList(web::json::value& json, JsonUse use, ListProperty& property) {
    readElements(TreeValue(json, use), property);
}

bool readFast(Model& model, const std::string& text) {
    // The lane holds a text, its strings and the models at once. The tree is freed while models are filled, and where a
    // text is large that counts for more than time.
    constexpr std::size_t largest = std::size_t{4} << 20U;
    ++given;
    const bool isRead = text.size() <= largest && !keepsOrder() && readByLane(model, text);
    left += isRead ? 0 : 1;
    return isRead;
}

LaneCounts laneCounts() {
    return {given, left};
}

bool isNull(const JsonElement& element) {
    return std::visit([](const auto& json) { return json.isNull(); }, element.value);
}

void fromJsonElement(const JsonElement& element, utility::string_t& value) {
    std::visit([&](const auto& json) { convert(json, value); }, element.value);
}

void fromJsonElement(const JsonElement& element, double& value) {
    std::visit([&](const auto& json) { convert(json, value); }, element.value);
}

void fromJsonElement(const JsonElement& element, std::vector<double>& row) {
    std::visit(
        [&](const auto& json) {
            json.eachElement([&](std::size_t size) { row.reserve(size); },
                             [&](const auto& number) {
                                 naming(row.size(), [&] {
                                     double value = 0;
                                     convert(number, value);
                                     row.push_back(value);
                                 });
                             });
        },
        element.value);
}

void fromJsonElement(const JsonElement& element, Model& model) {
    std::visit([&](const auto& json) { JsonReader<std::decay_t<decltype(json)>>::read(model, json); }, element.value);
}

} // namespace VarnelAPI::Forms::model::detail
