#include "support/Fuzz.h"

using namespace VarnelAPI::Forms::model;
using forms_fuzz::failureOf;
using forms_fuzz::require;
using web::json::json_exception;

/// A class's name, a line break, and JSON text: read into a model of the class, and written again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    forms_fuzz::Input input(data, size);
    const auto& type = forms_fuzz::ModelClass::of(input.field('\n'));
    const auto parsed = forms_fuzz::jsonIn(input.rest());
    if (!parsed) {
        return 0;
    }
    web::json::value json = *parsed;
    const std::string before = json.serialize();
    const auto copied = type.make();
    const std::string failure = failureOf<json_exception>([&] { copied->fromJson(json); });
    require(json.serialize() == before, "reading leaves the JSON as it is");

    const auto consuming = type.make();
    if (auto* model = dynamic_cast<Model*>(consuming.get())) {
        require(failureOf<json_exception>([&] { model->fromJson(std::move(json)); }) == failure,
                "reading from a copy and from a consumed tree fail alike");
        // After a failure too: what was read before it stays set.
        web::json::value ofCopied;
        web::json::value ofConsuming;
        const auto write = [](const ModelBase& from, web::json::value& to) {
            return failureOf<std::invalid_argument, std::out_of_range>([&] { to = from.toJson(); });
        };
        require(write(*copied, ofCopied) == write(*consuming, ofConsuming) && forms_fuzz::same(ofCopied, ofConsuming),
                "reading from a copy and from a consumed tree give the same model");
    }
    requireStable(type, *copied);
    return 0;
}
