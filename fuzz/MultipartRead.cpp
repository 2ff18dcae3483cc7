#include "support/Fuzz.h"

using namespace VarnelAPI::Forms::model;
using forms_fuzz::bytesOf;
using forms_fuzz::failureOf;
using forms_fuzz::jsonIn;
using forms_fuzz::require;

namespace {

/// Whether the texts are equal, or the JSON in them.
bool sameText(const std::string& a, const std::string& b) {
    const auto aJson = jsonIn(a);
    const auto bJson = jsonIn(b);
    return a == b || (aJson && bJson && forms_fuzz::same(*aJson, *bJson));
}

/// Whether JSON can carry the text, which it can't unless it is UTF-8. What a part holds is not looked at when it is
/// read.
bool fitsJson(const std::string& text) {
    return jsonIn(web::json::value::string(text).serialize()).has_value();
}

} // namespace

/// A class's name, a line break, and parts of two fields each, name and data: read into a model of the class, which is
/// then written both as JSON and as parts.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    forms_fuzz::Input input(data, size);
    const auto& type = forms_fuzz::ModelClass::of(input.field('\n'));
    const auto multipart = std::make_shared<MultipartFormData>("boundary");
    bool allFitJson = true;
    while (!input.empty()) {
        const std::string name = input.field();
        const std::string text = input.field();
        multipart->add(ModelBase::toHttpContent(name, text));
        allFitJson = allFitJson && fitsJson(name) && fitsJson(text);
    }
    const auto model = type.make();
    const std::string failure =
        failureOf<web::json::json_exception, std::invalid_argument>([&] { model->fromMultiPart(multipart, "p"); });
    if (allFitJson) {
        requireStable(type, *model);
    }

    const auto written = std::make_shared<MultipartFormData>("boundary");
    std::size_t announced = 0;
    std::string bytes;
    const std::string writeFailure = failureOf<std::invalid_argument, std::out_of_range>([&] {
        model->toMultipart(written, "");
        announced = written->size();
        bytes = bytesOf(*written);
    });
    require(bytes.size() == announced, "the size is that of what is written");

    if (!failure.empty() || !writeFailure.empty()) {
        return 0;
    }

    // Nested models don't come back from their parts; all else does.
    const auto again = type.make();
    const auto rewritten = std::make_shared<MultipartFormData>("boundary");
    failureOf<web::json::json_exception, std::invalid_argument, std::out_of_range>([&] {
        again->fromMultiPart(written, "");
        again->toMultipart(rewritten, "");
    });
    for (const auto& part : rewritten->getContents()) {
        const auto before = written->getContent(part->getName());
        require(before && sameText(bytesOf(*before), bytesOf(*part)), "a part that is read is written again");
    }
    return 0;
}
