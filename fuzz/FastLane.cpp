#include "model/ModelJson.h"
#include "support/Fuzz.h"

#include <cstring>

using namespace VarnelAPI::Forms::model;
using forms_fuzz::failureOf;
using forms_fuzz::require;
using web::json::json_exception;
using web::json::value;

namespace {

template <class Plain>
std::string bitsOf(Plain plain) {
    std::string bits(sizeof plain, '\0');
    std::memcpy(bits.data(), &plain, sizeof plain);
    return bits;
}

/// All there is to know of a tree: kinds of numbers, bits of doubles, the order of members.
void dump(const value& json, std::string& to) {
    to += bitsOf(json.type());
    if (json.is_number()) {
        const auto number = json.as_number();
        to += number.is_integral() ? "i" + bitsOf(number.is_int64()) + bitsOf(number.to_uint64())
                                   : "d" + bitsOf(number.to_double());
    } else if (json.is_array()) {
        to += bitsOf(json.size());
        for (const auto& element : json.as_array()) {
            dump(element, to);
        }
    } else if (json.is_object()) {
        to += bitsOf(json.size());
        for (const auto& [name, member] : json.as_object()) {
            to += bitsOf(name.size()) + name;
            dump(member, to);
        }
    } else {
        to += json.serialize(); // What is escaped in it is told by the value, too.
    }
}

/// What of a model can be seen by what it writes, or what it says instead.
std::string seenOf(const Model& model) {
    std::string seen;
    return failureOf<std::invalid_argument, std::out_of_range>([&] {
               const value json = model.toJson();
               seen = json.serialize() + '\n';
               dump(json, seen);
           }) +
           seen;
}

/// Tells at the end how many texts there were, so that a lane that is never taken shows.
struct Tally {
    unsigned long accepted = 0;
    unsigned long taken = 0;
    ~Tally() { std::printf("the tree accepted %lu texts, the lane took %lu of them\n", accepted, taken); }
} tally;

} // namespace

/// A class's name, a line break, and the text of an answer. What the fast lane takes, the tree takes too, and the
/// models are the same; and a model is written without a tree as with one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    forms_fuzz::Input input(data, size);
    const auto& type = forms_fuzz::ModelClass::of(input.field('\n'));
    const auto byTree = std::dynamic_pointer_cast<Model>(type.make());
    if (!byTree) {
        return 0;
    }
    const auto byLane = std::dynamic_pointer_cast<Model>(type.make());
    const std::string text = input.rest();
    const bool isTaken = detail::readFast(*byLane, text);
    auto json = forms_fuzz::jsonIn(text);
    const bool isRead = json && failureOf<json_exception>([&] { byTree->fromJson(std::move(*json)); }).empty();
    tally.accepted += isRead ? 1 : 0;
    tally.taken += isTaken ? 1 : 0;
    require(isRead || !isTaken, "the lane takes what the tree takes");
    require(!isTaken || seenOf(*byLane) == seenOf(*byTree), "both ways give the same model");

    const auto written = [&](auto write) {
        std::string result;
        return failureOf<std::invalid_argument, std::out_of_range>([&] { result = write(*byTree); }) + result;
    };
    require(written([](const Model& model) { return detail::writeText(model); }) ==
                written([](const Model& model) { return model.toJson().serialize(); }),
            "a model's text is that of its tree");
    return 0;
}
