#pragma once

#include <VarnelAPI/Forms/model/ModelBase.h>

#include <unordered_map>

namespace VarnelAPI::Forms::model {

/// An object made of custom properties only: texts, 32-bit integers, doubles and bools, each kind in a table of its
/// own. One name may be in several tables at once. Entries are written in no particular order.
class VARNEL_FORMS_API DynamicSchemaClassWithCustomProps : public ModelBase {
public:
    DynamicSchemaClassWithCustomProps();
    /// Reads `val` as `fromJson` does.
    explicit DynamicSchemaClassWithCustomProps(web::json::value& val);

    using ModelBase::toJson;

    void validate() override;
    /// An object of all entries. Of a name that is in several tables one entry is written: a bool before a double
    /// before an integer before a text.
    web::json::value toJson() const override;
    /// Adds the members of an object to the tables. Objects, arrays and nulls are skipped; a value that is no object
    /// is ignored.
    /// @throws web::json::json_exception for an integer beyond 32 bits, or a number beyond a double.
    void fromJson(web::json::value& val) override;
    /// Adds one part per entry: integers, texts, doubles, bools.
    void toMultipart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) const override;
    /// Reads every part as a text: what went out as a number or bool comes back as a text, under its full part name.
    void fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) override;

    /// @name Access to the table of one type
    /// A getter says whether the table of that type has `name`, and leaves `out` as it is if not. A setter leaves the
    /// other tables as they are.
    /// @{
    bool getCustomProp(int& out, const utility::string_t& name) const;
    bool getCustomProp(double& out, const utility::string_t& name) const;
    bool getCustomProp(utility::string_t& out, const utility::string_t& name) const;
    bool getCustomProp(bool& out, const utility::string_t& name) const;
    void setCustomProp(const utility::string_t& name, const utility::string_t& value);
    /// A literal is a text. Without this overload it would convert to bool.
    void setCustomProp(const utility::string_t& name, const utility::char_t* value);
    template <class Narrow, typename text_is_wide_write_XPLATSTR_or_to_string_t<Narrow>::type = 0>
    void setCustomProp(const utility::string_t& name, const Narrow& value) = delete;
    void setCustomProp(const utility::string_t& name, int value);
    void setCustomProp(const utility::string_t& name, double value);
    void setCustomProp(const utility::string_t& name, bool value);
    /// @}

    /// Removes `name` from all tables.
    void unsetCustomProp(const utility::string_t& name);

private:
    std::unordered_map<utility::string_t, utility::string_t> m_Strings;
    std::unordered_map<utility::string_t, int32_t> m_Integers;
    std::unordered_map<utility::string_t, double> m_Doubles;
    std::unordered_map<utility::string_t, bool> m_Booleans;
};

} // namespace VarnelAPI::Forms::model
