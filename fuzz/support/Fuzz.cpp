#include "support/Fuzz.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace forms_fuzz {

using namespace VarnelAPI::Forms::model;
using web::json::json_exception;
using web::json::value;

namespace {

const std::vector<ModelClass>& modelClasses() {
    static const std::vector<ModelClass> classes{
#define FORMS_MODEL(Name) {#Name, [] { return std::make_shared<Name>(); }},
#include "Models.inc"
#undef FORMS_MODEL
    };
    return classes;
}

/// The members that count, by name and then by text, since a name may come twice.
std::vector<std::pair<std::string, value>> membersOf(const value& object) {
    static const std::array<std::string, 4> neverSet{"_CreatedDate", "_ModifiedDate", "_DueDate",
                                                     "_ModelEventDateTime"};
    std::vector<std::pair<std::string, value>> members;
    for (const auto& [name, member] : object.as_object()) {
        if (name == "_ModelViewDefinition" && member.is_string()) {
            members.emplace_back(name, jsonIn(member.as_string()).value_or(member));
        } else if (!member.is_null() || std::find(neverSet.begin(), neverSet.end(), name) == neverSet.end()) {
            members.emplace_back(name, member);
        }
    }
    std::sort(members.begin(), members.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : a.second.serialize() < b.second.serialize();
    });
    return members;
}

template <class List, class Same>
bool sameLists(const List& a, const List& b, Same sameElements) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameElements);
}

/// Reads the JSON text of what a model of `type` wrote, and writes it again.
value readAndWrite(const ModelClass& type, const value& written) {
    value json = value::parse(written.serialize());
    const auto model = type.make();
    model->fromJson(json);
    return model->toJson();
}

} // namespace

const ModelClass& ModelClass::of(const std::string& name) {
    const auto& classes = modelClasses();
    const auto found =
        std::find_if(classes.begin(), classes.end(), [&](const auto& type) { return type.name == name; });
    return found != classes.end() ? *found : classes[std::hash<std::string>()(name) % classes.size()];
}

std::optional<value> jsonIn(const std::string& text) {
    std::optional<value> json;
    failureOf<json_exception, std::range_error>([&] { json = value::parse(text); });
    return json;
}

bool same(const value& a, const value& b) {
    if (a.type() != b.type()) {
        return false;
    }
    if (a.is_object()) {
        return sameLists(membersOf(a), membersOf(b), [](const auto& one, const auto& other) {
            return one.first == other.first && same(one.second, other.second);
        });
    }
    if (a.is_array()) {
        return sameLists(a.as_array(), b.as_array(), same);
    }
    if (a.is_number() && !(a.is_integer() && b.is_integer())) {
        return a.as_double() == b.as_double();
    }
    return a.serialize() == b.serialize();
}

void requireStable(const ModelClass& type, const ModelBase& model) {
    value first;
    // An infinite number among custom values, or a date in the last moment of the year 9999.
    if (!failureOf<std::invalid_argument, std::out_of_range>([&] { first = model.toJson(); }).empty()) {
        return;
    }
    // A part may give an Object any JSON value, but as JSON it reads objects only.
    if (type.name == "Object" && !first.is_object()) {
        return;
    }
    // Without fixed types, a double that goes out without a fraction comes back an integer: beyond 32 bits it is
    // refused, and in an array it is no longer of the type of the others, which reading drops. What is left is stable.
    const bool isArray = type.name == "DynamicSchemaArrayWithCustomProps";
    if (isArray || type.name == "DynamicSchemaClassWithCustomProps") {
        value next;
        if (!failureOf<json_exception>([&] { next = readAndWrite(type, first); }).empty()) {
            return;
        }
        first = isArray ? next : first;
    }
    require(same(first, readAndWrite(type, first)), "what is written reads back as it was");
}

std::string bytesOf(IHttpBody& body) {
    std::ostringstream bytes;
    body.writeTo(bytes);
    return bytes.str();
}

std::string bytesOf(const HttpContent& content) {
    std::ostringstream bytes;
    HttpContent(content).writeTo(bytes);
    return bytes.str();
}

} // namespace forms_fuzz
