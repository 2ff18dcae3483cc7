#pragma once

#include <VarnelAPI/Forms/model/MultipartFormData.h>

#include <stdexcept>
#include <string>

/// Rules that more than one source of the models follows.
namespace VarnelAPI::Forms::model::detail {

/// The pointer itself, or std::invalid_argument that names what is missing.
template <class Pointer>
const Pointer& required(const Pointer& pointer, const char* what) {
    if (!pointer) {
        throw std::invalid_argument(std::string(what) + " is an empty pointer");
    }
    return pointer;
}

/// The text of a literal; a null pointer, of which a text would be undefined behaviour, is std::invalid_argument that
/// names what is missing.
inline utility::string_t textOf(const utility::char_t* literal, const char* what = "the text") {
    return required(literal, what);
}

/// The data stream of a content, or std::invalid_argument that names the content.
std::shared_ptr<std::istream> requiredData(const std::shared_ptr<HttpContent>& content);

/// The bytes of the content's data stream.
std::string requiredBytes(const std::shared_ptr<HttpContent>& content);

/// Refuses a text that, in a header or a request line, would write lines of its own.
/// @throws std::invalid_argument that says that `what` holds CR, LF or NUL.
void refuseControlCharacters(const utility::string_t& text, const std::string& what);

/// The date as everything that is sent has it.
/// @throws std::out_of_range after 9999-12-31T23:59:59.999Z: the HTTP library refuses some of these dates, and makes
///     others of the rest.
utility::string_t dateText(const utility::datetime& date);

/// The working prefix of part names: as given, ended by "." unless it is empty or ends in one.
utility::string_t partPrefix(utility::string_t namePrefix);

/// Runs `decode`: a text that can't be decoded is a json_exception, like any other text that is no JSON.
template <class Decode>
auto decoding(Decode decode) {
    try {
        return decode();
    } catch (const std::range_error& error) {
        throw web::json::json_exception(error.what());
    }
}

/// @throws web::json::json_exception if `text` is not JSON, or has escapes for half of a character.
web::json::value parseJson(const utility::string_t& text);

/// @throws std::invalid_argument if `number` is infinite or not a number.
void requireFinite(double number);
/// The same for every number anywhere in `json`.
void requireFinite(const web::json::value& json);

} // namespace VarnelAPI::Forms::model::detail
