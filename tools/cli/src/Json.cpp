#include "Json.h"

#include "Failures.h"

#include <array>
#include <charconv>
#include <optional>

namespace VarnelAPI::Forms::cli {
namespace {

/// Whether a terminal obeys the character of three bytes whose first is E2: marks of direction, and breaks of lines.
bool isObeyed(unsigned second, unsigned third) {
    return (second == 0x80 && ((third >= 0x8e && third <= 0x8f) || (third >= 0xa8 && third <= 0xae))) ||
           (second == 0x81 && third >= 0xa6 && third <= 0xa9);
}

/// Control characters as JSON writes them: those below blank, and, for terminals, DEL, the second set (U+0080 to
/// U+009F, which begin with the byte C2 in UTF-8), and what else they obey.
void writeText(const std::string& text, std::string& out) {
    constexpr char digits[] = "0123456789abcdef";
    const auto escape = [&](unsigned code) {
        out += "\\u";
        for (const unsigned shift : {12U, 8U, 4U, 0U}) {
            out += digits[(code >> shift) & 15U];
        }
    };
    const auto at = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    out += '"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned byte = at(i);
        const unsigned next = at(i + 1);
        if (byte == '"' || byte == '\\') {
            out += '\\';
            out += text[i];
        } else if (byte == '\n') {
            out += "\\n";
        } else if (byte == '\t') {
            out += "\\t";
        } else if (byte < 0x20 || byte == 0x7f) {
            escape(byte);
        } else if (byte == 0xc2 && next < 0xa0) {
            escape(next);
            ++i;
        } else if (byte == 0xe2 && isObeyed(next, at(i + 2))) {
            escape(0x2000 + ((next & 0x3fU) << 6U) + (at(i + 2) & 0x3fU));
            i += 2;
        } else {
            out += text[i];
        }
    }
    out += '"';
}

void writeNumber(const Json& value, std::string& out) {
    const auto& number = value.as_number();
    std::array<char, 32> text{};
    char* const end = text.data() + text.size();
    const auto written = number.is_int64()    ? std::to_chars(text.data(), end, number.to_int64())
                         : number.is_uint64() ? std::to_chars(text.data(), end, number.to_uint64())
                                              : std::to_chars(text.data(), end, number.to_double());
    out.append(text.data(), written.ptr);
}

class Writer {
public:
    Writer(std::string& out, bool isIndented) : m_out(out), m_isIndented(isIndented) {}

    void write(const Json& value) {
        if (value.is_object()) {
            list('{', value.as_object(), '}', [&](const auto& field) {
                writeText(field.first, m_out);
                m_out += m_isIndented ? ": " : ":";
                write(field.second);
            });
        } else if (value.is_array()) {
            list('[', value.as_array(), ']', [&](const Json& element) { write(element); });
        } else if (value.is_string()) {
            writeText(value.as_string(), m_out);
        } else if (value.is_number()) {
            writeNumber(value, m_out);
        } else {
            m_out += value.serialize();
        }
    }

private:
    template <class Container, class Write>
    void list(char opening, const Container& all, char closing, Write writeOne) {
        m_out += opening;
        ++m_depth;
        bool isFirst = true;
        for (const auto& one : all) {
            m_out += isFirst ? "" : ",";
            isFirst = false;
            newLine();
            writeOne(one);
        }
        --m_depth;
        if (!isFirst) {
            newLine();
        }
        m_out += closing;
    }
    void newLine() {
        if (m_isIndented) {
            m_out += '\n';
            m_out.append(2 * m_depth, ' ');
        }
    }

    std::string& m_out;
    const bool m_isIndented;
    std::size_t m_depth = 0;
};

std::optional<Json> parsed(const std::string& text) {
    std::error_code error;
    auto value = Json::parse(text, error);
    return error ? std::nullopt : std::optional<Json>(std::move(value));
}

bool isSameText(const std::string& given, const std::string& read) {
    if (given == read) {
        return true;
    }
    const auto date = utility::datetime::from_string(given, utility::datetime::ISO_8601);
    if (date.is_initialized()) {
        return utility::datetime::from_string(read, utility::datetime::ISO_8601) == date;
    }
    const auto object = parsed(given);
    const auto readObject = parsed(read);
    return object && object->is_object() && readObject && lost(*object, *readObject).empty();
}

} // namespace

std::string toText(const Json& value, bool isIndented) {
    std::string text;
    Writer(text, isIndented).write(value);
    return text;
}

Json parse(const std::string& text, const std::string& what) {
    auto value = parsed(text);
    if (!value) {
        throw Usage(what + " is not JSON");
    }
    return *std::move(value);
}

const Json* member(const Json& value, const std::string& name) {
    if (!value.is_object()) {
        return nullptr;
    }
    const auto& fields = value.as_object();
    const auto found = fields.find(name);
    return found == fields.end() ? nullptr : &found->second;
}

Json object(std::vector<std::pair<std::string, Json>> members) {
    return Json::object(std::move(members), true);
}

Json column(const Json& instance, const std::string& name) {
    const std::string key = name == "id"       ? "instanceId"
                            : name == "class"  ? "className"
                            : name == "schema" ? "schemaName"
                                               : name;
    const Json* properties = member(instance, "properties");
    for (const Json* place : {properties, &instance}) {
        const Json* value = place == nullptr ? nullptr : member(*place, key);
        for (std::size_t point = key.find('.'); place != nullptr && value == nullptr && point != std::string::npos;
             point = key.find('.', point + 1)) {
            if (const Json* outer = member(*place, key.substr(0, point))) {
                return column(*outer, key.substr(point + 1));
            }
        }
        if (value != nullptr) {
            return *value;
        }
    }
    return Json::null();
}

std::string cell(const Json& value) {
    return value.is_null() ? std::string() : value.is_string() ? value.as_string() : toText(value);
}

std::string lost(const Json& given, const Json& read, const std::string& path) {
    if (given.is_object() && read.is_object()) {
        for (const auto& [name, value] : given.as_object()) {
            const Json* there = member(read, name);
            const std::string place = path.empty() ? name : path + "." + name;
            if (there == nullptr) {
                return place;
            }
            if (auto inner = lost(value, *there, place); !inner.empty()) {
                return inner;
            }
        }
        return {};
    }
    if (given.is_array() && read.is_array() && given.size() == read.size()) {
        for (std::size_t i = 0; i < given.size(); ++i) {
            if (auto inner = lost(given.at(i), read.at(i), path + "[" + std::to_string(i) + "]"); !inner.empty()) {
                return inner;
            }
        }
        return {};
    }
    const bool isSame = given.is_string() && read.is_string()   ? isSameText(given.as_string(), read.as_string())
                        : given.is_number() && read.is_number() ? given.as_double() == read.as_double()
                                                                : given == read;
    return isSame ? std::string() : path.empty() ? "the whole" : path;
}

} // namespace VarnelAPI::Forms::cli
