#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>
#include <VarnelAPI/Forms/model/HttpContent.h>
#include <VarnelAPI/Forms/model/MultipartFormData.h>
#include <VarnelAPI/Forms/model/NarrowText.h>

namespace VarnelAPI::Forms::model {

/// The base of every model class: the five operations that each model has, and the conversions of single values
/// that all of them use.
///
/// Models are plain values without locks: one model may be read by several threads, or used by one that changes it.
/// The static conversions keep no state and may be called from any thread.
class VARNEL_FORMS_API ModelBase {
public:
    virtual ~ModelBase();

    /// Checks nothing: which properties are required is the service's to say.
    virtual void validate() = 0;

    /// The model as JSON: set properties and non-empty lists only, in declaration order.
    /// @throws std::invalid_argument for a number that is infinite or not a number.
    /// @throws std::out_of_range for a date after 9999-12-31T23:59:59.999Z.
    virtual web::json::value toJson() const = 0;

    /// Reads what `val` holds. A missing or null member leaves its property as it is; a list is always replaced;
    /// unknown members are ignored, except in the classes with custom properties.
    /// @throws web::json::json_exception if a member has the wrong JSON type. What was read before it stays set.
    virtual void fromJson(web::json::value& val) = 0;

    /// Adds the model's properties to `multipart`, one part each, named `namePrefix` (with a "." if it does not end
    /// in one) and the key. A nested model's parts begin with its own key only: prefixes do not add up.
    /// @throws std::invalid_argument if `multipart` is an empty pointer, or for a list, or a property that goes out as
    ///     JSON, with a number that is infinite or not a number.
    /// @throws std::out_of_range for a date after 9999-12-31T23:59:59.999Z.
    virtual void toMultipart(std::shared_ptr<MultipartFormData> multipart,
                             const utility::string_t& namePrefix) const = 0;

    /// Reads the parts of `multipart` under their bare keys: the prefix is deliberately not looked at, so a nested
    /// model written by `toMultipart` does not come back.
    /// @throws std::invalid_argument if `multipart` is an empty pointer, or a part has no data stream.
    /// @throws web::json::json_exception if the text of a part that should be JSON (a list, an `Object`) is not.
    virtual void fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) = 0;

    /// @name To JSON
    /// @{
    static web::json::value toJson(const utility::string_t& value);
    /// A literal is a string. Without this overload it would convert to bool.
    static web::json::value toJson(const utility::char_t* value);
    template <class Narrow, typename text_is_wide_write_XPLATSTR_or_to_string_t<Narrow>::type = 0>
    static web::json::value toJson(const Narrow& value) = delete;
    static web::json::value toJson(int32_t value);
    static web::json::value toJson(int64_t value);
    /// @throws std::invalid_argument if `value` is infinite or not a number: JSON has no text for it.
    static web::json::value toJson(double value);
    static web::json::value toJson(bool value);
    /// The date's ISO 8601 text in UTC; a date never set gives "1970-01-01T00:00:00Z".
    /// @throws std::out_of_range for a date after 9999-12-31T23:59:59.999Z.
    static web::json::value toJson(const utility::datetime& value);
    /// An object with "ContentDisposition", "ContentType", "FileName" and "InputStream", the whole data in Base64.
    /// @throws std::invalid_argument if the pointer, or its data stream, is empty, or the stream has no buffer.
    static web::json::value toJson(std::shared_ptr<HttpContent> value);
    /// The model's own JSON; null for an empty pointer.
    static web::json::value toJson(std::shared_ptr<ModelBase> value);
    /// @}

    /// @name From JSON
    /// All but `stringFromJson` and `fileFromJson` throw web::json::json_exception for a value of another type.
    /// @{
    /// The string; an empty one for any other type of value.
    static utility::string_t stringFromJson(web::json::value& val);
    /// A fraction is dropped. A number beyond the range of the type is a json_exception, never another number.
    static int32_t int32_tFromJson(web::json::value& val);
    static int64_t int64_tFromJson(web::json::value& val);
    /// A number too large for the type is a json_exception.
    static double doubleFromJson(web::json::value& val);
    static float floatFromJson(web::json::value& val);
    static bool boolFromJson(web::json::value& val);
    /// The date of an ISO 8601 text; an unreadable text gives the date never set.
    static utility::datetime dateFromJson(web::json::value& val);
    /// A content with those of its fields and data that the object holds; an empty one for any other type of value.
    /// @throws web::json::json_exception if the data is not Base64.
    static std::shared_ptr<HttpContent> fileFromJson(web::json::value& val);
    /// @}

    /// @name To a part of a multipart body
    /// A new content named `name`, of disposition "form-data" and the given type, that holds the value as text.
    /// Numbers are written as by an output stream in the classic locale, bools as 1 and 0.
    /// @{
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, const utility::string_t& value,
                                                      const utility::string_t& contentType = utility::string_t());
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, const utility::char_t* value,
                                                      const utility::string_t& contentType = utility::string_t());
    template <class Narrow, typename text_is_wide_write_XPLATSTR_or_to_string_t<Narrow>::type = 0>
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, const Narrow& value,
                                                      const utility::string_t& contentType = {}) = delete;
    /// The date's ISO 8601 text, a date never set included.
    /// @throws std::out_of_range for a date after 9999-12-31T23:59:59.999Z.
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, const utility::datetime& value,
                                                      const utility::string_t& contentType = utility::string_t());
    /// @throws std::invalid_argument for a number in `value` that is infinite or not a number.
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, const web::json::value& value,
                                                      const utility::string_t& contentType = utility::string_t());
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, int32_t value,
                                                      const utility::string_t& contentType = utility::string_t());
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, int64_t value,
                                                      const utility::string_t& contentType = utility::string_t());
    /// Six significant digits, in the shorter of fixed and scientific notation; "inf", "-inf" or "nan".
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, double value,
                                                      const utility::string_t& contentType = utility::string_t());
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name, bool value,
                                                      const utility::string_t& contentType = utility::string_t());
    /// The given file under another name; the data stream is shared.
    /// @throws std::invalid_argument if `value` is an empty pointer.
    static std::shared_ptr<HttpContent> toHttpContent(const utility::string_t& name,
                                                      std::shared_ptr<HttpContent> value);
    /// @}

    /// @name From a part of a multipart body
    /// All throw std::invalid_argument for an empty pointer, or a content without data or whose stream has no buffer. A
    /// number is read like by an input stream in the classic locale: leading blanks and what follows it are skipped,
    /// and an unreadable or too large one gives 0 (false).
    /// @{
    static utility::string_t stringFromHttpContent(std::shared_ptr<HttpContent> val);
    static int32_t int32_tFromHttpContent(std::shared_ptr<HttpContent> val);
    static int64_t int64_tFromHttpContent(std::shared_ptr<HttpContent> val);
    static float floatFromHttpContent(std::shared_ptr<HttpContent> val);
    static double doubleFromHttpContent(std::shared_ptr<HttpContent> val);
    /// True for the text 1 only, not for "true".
    static bool boolFromHttpContent(std::shared_ptr<HttpContent> val);
    static utility::datetime dateFromHttpContent(std::shared_ptr<HttpContent> val);
    /// @throws web::json::json_exception if the text is not JSON.
    static web::json::value valueFromHttpContent(std::shared_ptr<HttpContent> val);
    /// @}

    /// @name Base64 (RFC 4648, standard alphabet, padded, without line breaks)
    /// @{
    /// Encodes the text's UTF-8 bytes.
    static utility::string_t toBase64(utility::string_t value);
    /// Encodes the whole stream, from its start to its end.
    /// @throws std::invalid_argument if the pointer is empty.
    static utility::string_t toBase64(std::shared_ptr<std::istream> value);
    /// The decoded bytes, as a stream at its start.
    /// @throws web::json::json_exception "Non-Valid Character in Base 64!" for any character outside the alphabet
    ///     (blanks and line breaks too) and for a text that ends inside a group of four; "Invalid Padding in Base
    ///     64!" for a "=" in any other place than the end of the last group.
    static std::shared_ptr<std::istream> fromBase64(const utility::string_t& encoded);
    /// @}

protected:
    ModelBase() = default;
    ModelBase(const ModelBase&) = default;
    ModelBase& operator=(const ModelBase&) = default;
};

} // namespace VarnelAPI::Forms::model
