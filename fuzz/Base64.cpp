#include "support/Fuzz.h"

#include <cpprest/asyncrt_utils.h>

#include <sstream>

using forms_fuzz::bytesOf;
using forms_fuzz::failureOf;
using forms_fuzz::require;
using VarnelAPI::Forms::model::HttpContent;
using VarnelAPI::Forms::model::ModelBase;

namespace {

std::string decoded(const std::string& text) {
    std::ostringstream bytes;
    bytes << ModelBase::fromBase64(text)->rdbuf();
    return bytes.str();
}

} // namespace

/// The input is both bytes to encode and a text to decode. The HTTP library's own coding is what ours must agree with.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string input(data, data + size);
    const std::string text = ModelBase::toBase64(std::make_shared<std::istringstream>(input));
    require(text == utility::conversions::to_base64(std::vector<unsigned char>(data, data + size)),
            "both encode alike");
    require(text == ModelBase::toBase64(input), "a text is encoded like a stream");
    require(decoded(text) == input, "decoding undoes encoding");

    std::string ours;
    const std::string failure = failureOf<web::json::json_exception>([&] { ours = decoded(input); });
    std::vector<unsigned char> theirs;
    const bool theyRefuse =
        !failureOf<std::runtime_error>([&] { theirs = utility::conversions::from_base64(input); }).empty();
    require(failure.empty() || theyRefuse, "what the HTTP library decodes, we decode");
    require(!failure.empty() || theyRefuse || ours == std::string(theirs.begin(), theirs.end()), "both decode alike");
    if (failure.empty()) {
        // The bits beyond the last byte are not looked at, so only the length is that of the input.
        require(ModelBase::toBase64(ours).size() == input.size(), "no character is skipped");
    }

    HttpContent file;
    file.setFileName(text);
    file.setData(std::make_shared<std::istringstream>(input));
    web::json::value json = ModelBase::toJson(std::make_shared<HttpContent>(file));
    require(bytesOf(*ModelBase::fileFromJson(json)) == input, "a file survives JSON");
    return 0;
}
