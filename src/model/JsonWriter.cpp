#include "Conversion.h"
#include "KeyIndex.h"
#include "ModelJson.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace VarnelAPI::Forms::model::detail {

namespace {

using Fields = std::vector<std::pair<utility::string_t, web::json::value>>;

class TreeWriter final : public PropertyVisitor {
public:
    explicit TreeWriter(std::size_t size) { m_Fields.reserve(size); }

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

/// Whether any of eight bytes needs an escape in a string of JSON: a control character, a quote or a backslash. From a
/// byte less than n, n can't be taken without setting its highest bit, and the lowest such byte is the first to borrow.
bool needEscape(const char* eight) {
    constexpr std::uint64_t each = 0x0101010101010101U;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, eight, sizeof(bytes));
    const auto anyLess = [](std::uint64_t all, std::uint64_t n) { return (all - each * n) & ~all; };
    const auto any = anyLess(bytes, 0x20) | anyLess(bytes ^ (each * '"'), 1) | anyLess(bytes ^ (each * '\\'), 1);
    return (any & (each * 0x80)) != 0;
}

/// Appends a string of JSON, as the HTTP library writes it.
void appendString(std::string& text, std::string_view utf8) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    text += '"';
    std::size_t from = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        while (utf8.size() - i > sizeof(std::uint64_t) && !needEscape(utf8.data() + i)) {
            i += sizeof(std::uint64_t);
        }
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte >= 0x20 && byte != '"' && byte != '\\') {
            continue;
        }
        text.append(utf8, from, i - from);
        from = i + 1;
        constexpr std::string_view named = "\"\\\b\f\n\r\t";
        const auto name = named.find(utf8[i]);
        text += '\\';
        if (name != std::string_view::npos) {
            text += "\"\\bfnrt"[name];
        } else {
            text.append("u00") += digits[byte >> 4U];
            text += digits[byte & 0xFU];
        }
    }
    text.append(utf8, from) += '"';
}

template <class Char>
void appendText(std::string& text, std::basic_string_view<Char> value) {
    if constexpr (std::is_same_v<Char, char>) {
        appendString(text, value);
    } else {
        appendString(text, utility::conversions::to_utf8string(utility::string_t(value)));
    }
}

template <class... Number>
void appendNumber(std::string& text, Number... number) {
    std::array<char, 32> digits; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    char* const begin = digits.data();
    text.append(begin, std::to_chars(begin, begin + digits.size(), number...).ptr);
}

void appendScalar(std::string& text, const utility::string_t& value) {
    appendText(text, Key(value));
}
void appendScalar(std::string& text, int32_t value) {
    appendNumber(text, value);
}
void appendScalar(std::string& text, int64_t value) {
    appendNumber(text, value);
}
void appendScalar(std::string& text, double value) {
    requireFinite(value);
    appendNumber(text, value, std::chars_format::general, 17);
}
void appendScalar(std::string& text, bool value) {
    text += value ? "true" : "false";
}
void appendScalar(std::string& text, const utility::datetime& value) {
    appendScalar(text, ModelBase::toJson(value).as_string());
}

class TextWriter final : public PropertyVisitor {
public:
    explicit TextWriter(std::string& text) : m_Text(text) { m_Text += '{'; }

    void finish(const CustomProperties* customProperties) {
        if (customProperties != nullptr) {
            for (const auto& [name, value] : *customProperties) {
                requireFinite(value);
                appendJson(member(name), value);
            }
        }
        m_Text += '}';
    }

private:
    /// The text, with the key of the next member at its end.
    std::string& member(Key key) {
        if (!m_IsFirst) {
            m_Text += ',';
        }
        m_IsFirst = false;
        appendText(m_Text, key);
        return m_Text += ':';
    }

    void scalar(Key key, Scalar value, bool& isSet) override {
        if (isSet) {
            std::visit([&](const auto* native) { appendScalar(member(key), *native); }, value);
        }
    }
    void nullableDate(Key key, Property<utility::datetime>& property) override {
        if (property.isSet && !property.value.is_initialized()) {
            member(key) += "null";
        } else {
            scalar(key, &property.value, property.isSet);
        }
    }
    void nested(Key key, NestedProperty& property) override {
        if (property.isSet()) {
            property.write(member(key));
        }
    }
    void nestedAsText(Key key, NestedProperty& property) override {
        if (!property.isSet()) {
            return;
        }
        if (property.get() == nullptr) {
            member(key) += "null";
        } else {
            std::string inner;
            property.write(inner);
            appendString(member(key), inner);
        }
    }
    void list(Key key, ListProperty& property) override {
        const std::size_t size = property.size();
        std::size_t begin = 0, next = 16;
        for (std::size_t i = 0; i < size; ++i) {
            // A text that only doubles is copied again and again. What is left of it is told by what is there, but the
            // first elements may be larger than all others.
            if (i == next) {
                next *= 8;
                const std::size_t rest = (m_Text.size() - begin) / (i - 1) * (size - i);
                m_Text.reserve(m_Text.size() + std::min(rest, 16 * m_Text.size()));
            }
            property.writeElement(i, i == 0 ? member(key) += '[' : m_Text += ',');
            begin = i == 0 ? m_Text.size() : begin;
        }
        if (size != 0) {
            m_Text += ']';
        }
    }

    std::string& m_Text;
    bool m_IsFirst = true;
};

} // namespace

web::json::value listToJson(const ListProperty& property) {
    std::vector<web::json::value> elements;
    elements.reserve(property.size());
    for (std::size_t i = 0; i < property.size(); ++i) {
        elements.push_back(property.elementToJson(i));
    }
    return web::json::value::array(std::move(elements));
}

web::json::value toJsonArray(const std::vector<double>& numbers) {
    std::vector<web::json::value> elements;
    elements.reserve(numbers.size());
    for (const double number : numbers) {
        elements.push_back(ModelBase::toJson(number));
    }
    return web::json::value::array(std::move(elements));
}

web::json::value writeJson(const Model& model) {
    Model& self = forWriting(model);
    const auto* custom = ModelAccess::customProperties(self);
    TreeWriter writer(ModelAccess::keyIndex(model).size() + (custom != nullptr ? custom->size() : 0));
    ModelAccess::describe(self, writer);
    return writer.finish(custom);
}

std::string writeText(const Model& model) {
    std::string text;
    appendJson(text, model);
    return text;
}

void appendJson(std::string& text, const utility::string_t& value) {
    appendScalar(text, value);
}

void appendJson(std::string& text, double value) {
    appendScalar(text, value);
}

void appendJson(std::string& text, const std::vector<double>& row) {
    text += '[';
    for (std::size_t i = 0; i < row.size(); ++i) {
        text += i == 0 ? "" : ",";
        appendScalar(text, row[i]);
    }
    text += ']';
}

void appendJson(std::string& text, const Model& model) {
    Model& self = forWriting(model);
    TextWriter writer(text);
    ModelAccess::describe(self, writer);
    writer.finish(ModelAccess::customProperties(self));
}

void appendJson(std::string& text, const web::json::value& json) {
    text += utility::conversions::to_utf8string(json.serialize());
}

} // namespace VarnelAPI::Forms::model::detail
