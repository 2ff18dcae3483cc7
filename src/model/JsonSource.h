#pragma once

#include "ModelJson.h"

#include <algorithm>
#include <variant>

#if defined(VARNEL_FORMS_SIMDJSON)
#include <simdjson.h>
#endif

/// What JsonReader reads from: values of the HTTP library's tree or of simdjson's document, by the same names.
namespace VarnelAPI::Forms::model::detail {

/// A value of the HTTP library's tree, or none.
class TreeValue {
public:
    class Member {
    public:
        Member(std::pair<utility::string_t, web::json::value>& field, JsonUse use) : m_Field(&field), m_Use(use) {}
        Key key() const { return m_Field->first; }
        TreeValue value() const { return {m_Field->second, m_Use}; }
        void moveTo(CustomProperties& table) const {
            if (m_Use == JsonUse::Consume) {
                table.insert_or_assign(std::move(m_Field->first), std::move(m_Field->second));
            } else {
                table.insert_or_assign(m_Field->first, m_Field->second);
            }
        }

    private:
        std::pair<utility::string_t, web::json::value>* m_Field;
        JsonUse m_Use;
    };

    TreeValue() = default;
    TreeValue(web::json::value& json, JsonUse use) : m_Json(&json), m_Use(use) {}

    explicit operator bool() const { return m_Json != nullptr; }
    bool isNull() const { return m_Json->is_null(); }
    bool isObject() const { return m_Json->is_object(); }
    bool isString() const { return m_Json->is_string(); }
    /// The text of a string, copied or taken.
    utility::string_t text() const {
        const utility::string_t& text = m_Json->as_string();
        if (m_Use == JsonUse::Keep) {
            return text;
        }
        // A tree that is ours to consume is no constant.
        return std::move(const_cast<utility::string_t&>(text));
    }
    /// The value as a tree, for the conversions of single values.
    web::json::value& tree() const { return *m_Json; }

    template <class Visit>
    void eachMember(Visit visit) const {
        for (auto& field : m_Json->as_object()) {
            visit(Member(field, m_Use));
        }
    }
    /// Calls `begin` with the number of elements, and then `visit` with each one.
    template <class Begin, class Visit>
    void eachElement(Begin begin, Visit visit) const {
        auto& elements = m_Json->as_array();
        begin(elements.size());
        for (auto& element : elements) {
            visit(TreeValue(element, m_Use));
            if (m_Use == JsonUse::Consume) {
                // Frees each element once it is read, so that tree and models don't both stand in memory whole.
                element = web::json::value();
            }
        }
    }

    /// Is told of a key that comes again: the first one counts.
    static void repeated() {}
    /// Puts members into the order of the tree, in which they are.
    template <class Members>
    static void sort(Members&) {}

private:
    web::json::value* m_Json = nullptr;
    JsonUse m_Use = JsonUse::Keep;
};

#if defined(VARNEL_FORMS_SIMDJSON)

/// What ends the fast lane: the text is left to the tree.
struct Remarkable : std::exception {};

/// A text of the document as the library has texts: where they are narrow, a view of it.
inline auto ownText(std::string_view utf8) {
    if constexpr (std::is_same_v<utility::char_t, char>) {
        return utf8;
    } else {
        return utility::conversions::to_string_t(std::string(utf8));
    }
}

/// A value of simdjson's document, or none.
class DomValue {
public:
    class Member {
    public:
        explicit Member(const simdjson::dom::key_value_pair& pair) : m_Key(ownText(pair.key)), m_Value(pair.value) {}
        Key key() const { return m_Key; }
        DomValue value() const { return DomValue(m_Value); }
        void moveTo(CustomProperties& table) const { table.insert_or_assign(utility::string_t(m_Key), value().tree()); }

    private:
        decltype(ownText({})) m_Key;
        simdjson::dom::element m_Value;
    };

    DomValue() = default;
    explicit DomValue(const simdjson::dom::element& json) : m_Json(json), m_IsThere(true) {}

    explicit operator bool() const { return m_IsThere; }
    bool isNull() const { return m_Json.is_null(); }
    bool isObject() const { return m_Json.is_object(); }
    bool isString() const { return m_Json.is_string(); }
    utility::string_t text() const { return utility::string_t(ownText(get<std::string_view>())); }
    /// By this, what a value becomes is said once: a tree of one leaf, as the HTTP library's parser would make it.
    web::json::value tree() const {
        using simdjson::dom::element_type;
        switch (m_Json.type()) {
        case element_type::NULL_VALUE:
            return web::json::value::null();
        case element_type::BOOL:
            return web::json::value::boolean(get<bool>());
        case element_type::INT64:
            return web::json::value::number(get<int64_t>());
        case element_type::UINT64:
            return web::json::value::number(get<uint64_t>());
        case element_type::DOUBLE:
            return web::json::value::number(get<double>());
        case element_type::STRING:
            return web::json::value::string(text(), true); // What has to be escaped is looked for when it is written.
        case element_type::ARRAY: {
            std::vector<web::json::value> elements;
            eachElement([&](std::size_t size) { elements.reserve(size); },
                        [&](const DomValue& element) { elements.push_back(element.tree()); });
            return web::json::value::array(std::move(elements));
        }
        case element_type::OBJECT:
            break;
        }
        std::vector<Member> members;
        eachMember([&](const Member& member) { members.push_back(member); });
        sort(members);
        std::vector<std::pair<utility::string_t, web::json::value>> fields;
        fields.reserve(members.size());
        for (const Member& member : members) {
            fields.emplace_back(member.key(), member.value().tree());
        }
        return web::json::value::object(std::move(fields));
    }

    template <class Visit>
    void eachMember(Visit visit) const {
        for (const auto& pair : get<simdjson::dom::object>()) {
            visit(Member(pair));
        }
    }
    template <class Begin, class Visit>
    void eachElement(Begin begin, Visit visit) const {
        const auto elements = get<simdjson::dom::array>();
        begin(elements.size());
        for (const auto& element : elements) {
            visit(DomValue(element));
        }
    }

    /// Which one the tree would take follows from how it sorts.
    [[noreturn]] static void repeated() { throw Remarkable(); }
    template <class Members>
    static void sort(Members& members) {
        std::sort(members.begin(), members.end(), [](const auto& a, const auto& b) { return a.key() < b.key(); });
        const auto same = [](const auto& a, const auto& b) { return a.key() == b.key(); };
        if (std::adjacent_find(members.begin(), members.end(), same) != members.end()) {
            repeated();
        }
    }

private:
    template <class Type>
    Type get() const {
        Type value{};
        if (m_Json.get(value) != simdjson::SUCCESS) {
            throw Remarkable();
        }
        return value;
    }

    simdjson::dom::element m_Json;
    bool m_IsThere = false;
};

/// An element of a list, from either.
class JsonElement {
public:
    std::variant<TreeValue, DomValue> value;
};

#else

class JsonElement {
public:
    std::variant<TreeValue> value;
};

#endif

} // namespace VarnelAPI::Forms::model::detail
