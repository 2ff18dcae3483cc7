#include "support/Fuzz.h"

#include <array>
#include <cmath>
#include <map>

using namespace VarnelAPI::Forms::model;
using forms_fuzz::bytesOf;
using forms_fuzz::failureOf;
using forms_fuzz::Input;
using forms_fuzz::require;
using forms_fuzz::same;
using web::json::json_exception;
using web::json::value;

namespace {

/// A field as JSON; as a JSON string, if it is none.
value jsonOf(const std::string& field) {
    return forms_fuzz::jsonIn(field).value_or(value::string(field));
}

bool allFinite(const value& json) {
    if (json.is_double()) {
        return std::isfinite(json.as_double());
    }
    bool finite = true;
    if (json.is_array()) {
        for (const auto& element : json.as_array()) {
            finite = finite && allFinite(element);
        }
    } else if (json.is_object()) {
        for (const auto& member : json.as_object()) {
            finite = finite && allFinite(member.second);
        }
    }
    return finite;
}

value objectOf(const std::map<std::string, value>& members) {
    return value::object(std::vector<std::pair<std::string, value>>(members.begin(), members.end()));
}

/// The parts of `model` under the prefix "p", as name and text, sorted.
std::multimap<std::string, std::string> partsOf(const ModelBase& model) {
    const auto multipart = std::make_shared<MultipartFormData>("boundary");
    model.toMultipart(multipart, "p");
    std::multimap<std::string, std::string> parts;
    for (const auto& part : multipart->getContents()) {
        parts.emplace(part->getName(), bytesOf(*part));
    }
    return parts;
}

/// What a DynamicSchemaClassWithCustomProps should hold.
struct Tables {
    std::map<std::string, std::string> texts;
    std::map<std::string, int> integers;
    std::map<std::string, double> doubles;
    std::map<std::string, bool> booleans;

    /// Reads as the class should; false where that should fail.
    bool read(const value& json) {
        if (!json.is_object()) {
            return true;
        }
        for (const auto& [name, member] : json.as_object()) {
            if (member.is_string()) {
                texts[name] = member.as_string();
            } else if (member.is_integer()) {
                if (!member.as_number().is_int32()) {
                    return false;
                }
                integers[name] = member.as_integer();
            } else if (member.is_double()) {
                if (!allFinite(member)) {
                    return false;
                }
                doubles[name] = member.as_double();
            } else if (member.is_boolean()) {
                booleans[name] = member.as_bool();
            }
        }
        return true;
    }

    value json() const {
        std::map<std::string, value> members;
        const auto add = [&members](const auto& table) {
            for (const auto& [name, native] : table) {
                members[name] = value(native);
            }
        };
        add(texts);
        add(integers);
        add(doubles);
        add(booleans);
        return objectOf(members);
    }

    bool finite() const {
        bool finite = true;
        for (const auto& [name, number] : doubles) {
            finite = finite && std::isfinite(number);
        }
        return finite;
    }
};

template <class Table, class Model>
void requireEntry(const Table& table, const Model& model, const std::string& name) {
    typename Table::mapped_type out{};
    const auto found = table.find(name);
    const bool has = model.getCustomProp(out, name);
    require(has == (found != table.end()), "a getter tells whether the name is there");
    require(!has || out == found->second || found->second != found->second, "a getter yields what was set");
}

void object(Input& input) {
    DynamicSchemaClassWithCustomProps model;
    Tables tables;
    while (!input.empty()) {
        const char step = input.letter();
        const std::string name = input.field();
        if (step == 's') {
            const std::string text = input.field();
            model.setCustomProp(name, text);
            tables.texts[name] = text;
        } else if (step == 'v') {
            const value json = jsonOf(input.field());
            if (json.is_integer() && json.as_number().is_int32()) {
                model.setCustomProp(name, json.as_integer());
                tables.integers[name] = json.as_integer();
            } else if (json.is_number()) {
                model.setCustomProp(name, json.as_double());
                tables.doubles[name] = json.as_double();
            } else if (json.is_boolean()) {
                model.setCustomProp(name, json.as_bool());
                tables.booleans[name] = json.as_bool();
            }
        } else if (step == 'u') {
            model.unsetCustomProp(name);
            tables.texts.erase(name);
            tables.integers.erase(name);
            tables.doubles.erase(name);
            tables.booleans.erase(name);
        } else if (step == 'j') {
            value json = jsonOf(name);
            const bool failed = !failureOf<json_exception>([&] { model.fromJson(json); }).empty();
            require(failed != tables.read(json), "numbers that don't fit are refused, no others");
        } else if (step == 'm') {
            const auto multipart = std::make_shared<MultipartFormData>("boundary");
            multipart->add(ModelBase::toHttpContent(name, input.field()));
            model.fromMultiPart(multipart, "p");
            tables.texts[name] = ModelBase::stringFromHttpContent(multipart->getContent(name));
        }
        requireEntry(tables.texts, model, name);
        requireEntry(tables.integers, model, name);
        requireEntry(tables.doubles, model, name);
        requireEntry(tables.booleans, model, name);
    }
    require(partsOf(model).size() ==
                tables.texts.size() + tables.integers.size() + tables.doubles.size() + tables.booleans.size(),
            "each entry of each table is a part");
    value json;
    const bool written = failureOf<std::invalid_argument>([&] { json = model.toJson(); }).empty();
    require(written == tables.finite(), "only finite numbers are written");
    require(!written || same(json, tables.json()), "all entries are written");
}

void issue(Input& input) {
    DynamicSchemaBaseClass model;
    std::map<std::string, value> custom;
    const auto isFixed = [](const std::string& name) {
        DynamicSchemaBaseClass fresh;
        fresh.setCustomProp(name, "");
        value out;
        return !fresh.getCustomProp(out, name);
    };
    for (const auto* name : {"_Subject", "Closed", "Latitude", "_DueDate", "_ModelViewDefinition"}) {
        require(isFixed(name), "fixed keys are no custom names");
    }
    while (!input.empty()) {
        const char step = input.letter();
        const std::string name = input.field();
        if (step == 's' || step == 'v') {
            const std::string text = input.field();
            const value json = step == 's' ? value::string(text) : jsonOf(text);
            step == 's' ? model.setCustomProp(name, text) : model.setCustomProp(name, json);
            if (!isFixed(name)) {
                custom[name] = json;
            }
        } else if (step == 'u') {
            model.unsetCustomProp(name);
            custom.erase(name);
        } else if (step == 'j') {
            value json = jsonOf(name);
            // The custom members are read last: not at all, if a fixed one is refused.
            if (failureOf<json_exception>([&] { model.fromJson(json); }).empty() && json.is_object()) {
                for (const auto& [key, member] : json.as_object()) {
                    if (!isFixed(key)) {
                        custom[key] = member;
                    }
                }
            }
        }
        value out;
        std::string text;
        const auto found = custom.find(name);
        const bool has = model.getCustomProp(out, name);
        require(has == (found != custom.end()) && (!has || out.serialize() == found->second.serialize()),
                "the JSON getter yields what was set");
        require(model.getCustomProp(text, name) == (has && out.is_string()) &&
                    (text.empty() || text == out.as_string()),
                "the text getter yields strings only");
    }
    value json;
    const bool written = failureOf<std::invalid_argument, std::out_of_range>([&] { json = model.toJson(); }).empty();
    require(!written || allFinite(objectOf(custom)), "only finite numbers are written");
    if (written) {
        std::map<std::string, value> members;
        for (const auto& [name, member] : json.as_object()) {
            require(members.emplace(name, member).second, "no name is written twice");
            require(isFixed(name) == (custom.count(name) == 0), "all members are fixed or custom");
        }
        const auto parts = partsOf(model);
        for (const auto& [name, member] : custom) {
            require(members.count(name) != 0 && same(members[name], member), "all custom properties are written");
            require(parts.count("p." + name) != 0, "all custom properties are parts");
        }
    }
}

void array(Input& input) {
    enum Tag { None, Integer, Double, Boolean, String, Object };
    DynamicSchemaArrayWithCustomProps model;
    Tag tag = None;
    std::array<std::vector<value>, 6> lists;
    const auto tagOf = [](const value& json) {
        return json.is_integer()   ? Integer
               : json.is_double()  ? Double
               : json.is_boolean() ? Boolean
               : json.is_string()  ? String
               : json.is_object()  ? Object
                                   : None;
    };
    // Appends as the class should; false where that should fail.
    const auto append = [&](const value& json) {
        for (const auto& element : json.as_array()) {
            Tables tables;
            if (tag == None || tagOf(element) != tag) {
                continue;
            }
            if ((tag == Integer && !element.as_number().is_int32()) || (tag == Double && !allFinite(element)) ||
                !tables.read(element)) {
                return false;
            }
            lists[tag].push_back(tag == Object ? tables.json() : element);
        }
        return true;
    };
    while (!input.empty()) {
        const char step = input.letter();
        const std::string field = input.field();
        value json = jsonOf(field);
        auto& list = lists[tag];
        if (step == 'j') {
            tag = json.is_array() && json.size() != 0 ? tagOf(json.at(0)) : None;
            const bool failed = !failureOf<json_exception>([&] { model.fromJson(json); }).empty();
            require(failed == (json.is_array() && !append(json)), "numbers that don't fit are refused, no others");
        } else if (step == 'a') {
            model.setTypeForArray(json);
            tag = json.is_array() && json.size() != 0 ? tagOf(json.at(0)) : None;
        } else if (step == 'v') {
            model.setTypeForVal(json);
            tag = tagOf(json);
        } else if (step == 'r') {
            const int i = static_cast<int>(std::strtol(field.c_str(), nullptr, 10));
            model.remove(i);
            if (i >= 0 && static_cast<std::size_t>(i) < list.size()) {
                list.erase(list.begin() + i);
            }
        } else if (step == 'l' && !list.empty()) {
            // Sets the last element to what the first one is.
            const int last = model.size() - 1;
            switch (tag) {
            case Integer:
                model.setInt(last, model.getInt(0));
                break;
            case Double:
                model.setDouble(last, model.getDouble(0));
                break;
            case Boolean:
                model.setBool(last, model.getBool(0) != 0);
                break;
            case String:
                model.setStr(last, model.getStr(0));
                break;
            case Object:
                model.setObj(last, model.getObj(0));
                break;
            case None:
                break;
            }
            list.back() = value(list.front());
        }
        require(model.size() == static_cast<int>(lists[tag].size()), "the size is that of the current type");
        require(same(model.toJson(), value::array(lists[tag])), "the elements of the current type are written");
    }
    const auto parts = partsOf(model);
    if (tag != Object) {
        require(parts.size() == lists[tag].size(), "each element is a part");
    }
    const std::array<std::string, 6> labels{"", "int", "double", "bool", "str", "obj"};
    for (const auto& [name, text] : parts) {
        require(name.rfind("p." + labels[tag] + '[', 0) == 0, "a part is labelled with its type");
    }
}

} // namespace

/// Steps on one of the dynamic classes, checked against a plain model of it. The first letter says which class; each
/// step is a letter and its fields.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    Input input(data, size);
    switch (input.letter()) {
    case 'O':
        object(input);
        break;
    case 'I':
        issue(input);
        break;
    default:
        array(input);
    }
    return 0;
}
