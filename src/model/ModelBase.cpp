#include <VarnelAPI/Forms/model/ModelBase.h>

#include "Conversion.h"
#include "Streams.h"

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace VarnelAPI::Forms::model {

using utility::conversions::to_string_t;
using utility::conversions::to_utf8string;
using web::json::json_exception;

namespace {

const utility::char_t dispositionKey[] = _XPLATSTR("ContentDisposition");
const utility::char_t typeKey[] = _XPLATSTR("ContentType");
const utility::char_t fileNameKey[] = _XPLATSTR("FileName");
const utility::char_t dataKey[] = _XPLATSTR("InputStream");

template <class Integer>
Integer integerFromJson(const web::json::value& json, const char* outOfRange) {
    const web::json::number number = json.as_number();
    if (json.is_double()) {
        // The bounds are doubles, unlike the greatest number of 64 bits. The fraction goes before the comparison.
        constexpr auto least = static_cast<double>(std::numeric_limits<Integer>::min());
        const double value = std::trunc(number.to_double());
        if (value >= least && value < -least) {
            return static_cast<Integer>(value);
        }
    } else if (number.is_int64()) {
        const int64_t exact = number.to_int64();
        if (exact >= std::numeric_limits<Integer>::min() && exact <= std::numeric_limits<Integer>::max()) {
            return static_cast<Integer>(exact);
        }
    }
    throw json_exception(outOfRange);
}

template <class Value>
std::shared_ptr<HttpContent> numberContent(const utility::string_t& name, Value value,
                                           const utility::string_t& contentType) {
    utility::ostringstream_t text;
    text.exceptions(std::ios_base::badbit); // or a number would be cut off where memory runs out
    text.imbue(std::locale::classic());
    text << value;
    return ModelBase::toHttpContent(name, text.str(), contentType);
}

template <class Value>
Value numberOf(const std::shared_ptr<HttpContent>& content) {
    utility::istringstream_t text(to_string_t(detail::requiredBytes(content)));
    text.imbue(std::locale::classic());
    Value value{};
    return (text >> value) ? value : Value{};
}

} // namespace

ModelBase::~ModelBase() = default;

web::json::value ModelBase::toJson(const utility::string_t& value) {
    return web::json::value::string(value);
}

web::json::value ModelBase::toJson(const utility::char_t* value) {
    return toJson(detail::textOf(value));
}

web::json::value ModelBase::toJson(int32_t value) {
    return web::json::value::number(value);
}

web::json::value ModelBase::toJson(int64_t value) {
    return web::json::value::number(value);
}

web::json::value ModelBase::toJson(double value) {
    detail::requireFinite(value);
    return web::json::value::number(value);
}

web::json::value ModelBase::toJson(bool value) {
    return web::json::value::boolean(value);
}

web::json::value ModelBase::toJson(const utility::datetime& value) {
    return value.is_initialized() ? toJson(detail::dateText(value)) : toJson(_XPLATSTR("1970-01-01T00:00:00Z"));
}

web::json::value ModelBase::toJson(std::shared_ptr<HttpContent> value) {
    const auto data = detail::requiredData(value);
    std::vector<std::pair<utility::string_t, web::json::value>> fields;
    fields.emplace_back(dispositionKey, toJson(value->getContentDisposition()));
    fields.emplace_back(typeKey, toJson(value->getContentType()));
    fields.emplace_back(fileNameKey, toJson(value->getFileName()));
    // Base64 holds nothing that JSON escapes, so the text needs no search for it.
    fields.emplace_back(dataKey, web::json::value::string(toBase64(data), false));
    return web::json::value::object(std::move(fields), true);
}

web::json::value ModelBase::toJson(std::shared_ptr<ModelBase> value) {
    return value ? value->toJson() : web::json::value::null();
}

utility::string_t ModelBase::stringFromJson(web::json::value& val) {
    return val.is_string() ? val.as_string() : utility::string_t();
}

int32_t ModelBase::int32_tFromJson(web::json::value& val) {
    return integerFromJson<int32_t>(val, "the number is beyond the range of a 32-bit integer");
}

int64_t ModelBase::int64_tFromJson(web::json::value& val) {
    return integerFromJson<int64_t>(val, "the number is beyond the range of a 64-bit integer");
}

double ModelBase::doubleFromJson(web::json::value& val) {
    const double number = val.as_double();
    if (!std::isfinite(number)) {
        throw json_exception("the number is beyond the range of a double");
    }
    return number;
}

float ModelBase::floatFromJson(web::json::value& val) {
    const double number = doubleFromJson(val);
    constexpr double limit = 0x1.ffffffp127; // From here on it would round to infinity.
    if (std::abs(number) >= limit) {
        throw json_exception("the number is beyond the range of a float");
    }
    return static_cast<float>(number);
}

bool ModelBase::boolFromJson(web::json::value& val) {
    return val.as_bool();
}

utility::datetime ModelBase::dateFromJson(web::json::value& val) {
    return utility::datetime::from_string(val.as_string(), utility::datetime::ISO_8601);
}

std::shared_ptr<HttpContent> ModelBase::fileFromJson(web::json::value& val) {
    auto content = std::make_shared<HttpContent>();
    if (val.has_field(dispositionKey)) {
        content->setContentDisposition(stringFromJson(val.at(dispositionKey)));
    }
    if (val.has_field(typeKey)) {
        content->setContentType(stringFromJson(val.at(typeKey)));
    }
    if (val.has_field(fileNameKey)) {
        content->setFileName(stringFromJson(val.at(fileNameKey)));
    }
    if (val.has_field(dataKey)) {
        content->setData(fromBase64(stringFromJson(val.at(dataKey))));
    }
    return content;
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, const utility::string_t& value,
                                                      const utility::string_t& contentType) {
    auto content = std::make_shared<HttpContent>();
    content->setName(name);
    content->setContentDisposition(_XPLATSTR("form-data"));
    content->setContentType(contentType);
    content->setData(detail::streamOf(to_utf8string(value)));
    return content;
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, const utility::char_t* value,
                                                      const utility::string_t& contentType) {
    return toHttpContent(name, detail::textOf(value), contentType);
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, const utility::datetime& value,
                                                      const utility::string_t& contentType) {
    return toHttpContent(name, detail::dateText(value), contentType);
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, const web::json::value& value,
                                                      const utility::string_t& contentType) {
    detail::requireFinite(value);
    return toHttpContent(name, value.serialize(), contentType);
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, int32_t value,
                                                      const utility::string_t& contentType) {
    return numberContent(name, value, contentType);
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, int64_t value,
                                                      const utility::string_t& contentType) {
    return numberContent(name, value, contentType);
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, double value,
                                                      const utility::string_t& contentType) {
    return numberContent(name, value, contentType);
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name, bool value,
                                                      const utility::string_t& contentType) {
    return numberContent(name, value, contentType);
}

std::shared_ptr<HttpContent> ModelBase::toHttpContent(const utility::string_t& name,
                                                      std::shared_ptr<HttpContent> value) {
    // By its getters, which a class of the caller's own may have overridden.
    detail::required(value, "the file's content");
    auto content = std::make_shared<HttpContent>();
    content->setName(name);
    content->setContentDisposition(value->getContentDisposition());
    content->setFileName(value->getFileName());
    content->setContentType(value->getContentType());
    content->setData(value->getData());
    return content;
}

utility::string_t ModelBase::stringFromHttpContent(std::shared_ptr<HttpContent> val) {
    return to_string_t(detail::requiredBytes(val));
}

int32_t ModelBase::int32_tFromHttpContent(std::shared_ptr<HttpContent> val) {
    return numberOf<int32_t>(val);
}

int64_t ModelBase::int64_tFromHttpContent(std::shared_ptr<HttpContent> val) {
    return numberOf<int64_t>(val);
}

float ModelBase::floatFromHttpContent(std::shared_ptr<HttpContent> val) {
    return numberOf<float>(val);
}

double ModelBase::doubleFromHttpContent(std::shared_ptr<HttpContent> val) {
    return numberOf<double>(val);
}

bool ModelBase::boolFromHttpContent(std::shared_ptr<HttpContent> val) {
    return numberOf<bool>(val);
}

utility::datetime ModelBase::dateFromHttpContent(std::shared_ptr<HttpContent> val) {
    return utility::datetime::from_string(stringFromHttpContent(std::move(val)), utility::datetime::ISO_8601);
}

web::json::value ModelBase::valueFromHttpContent(std::shared_ptr<HttpContent> val) {
    return detail::parseJson(stringFromHttpContent(std::move(val)));
}

} // namespace VarnelAPI::Forms::model
