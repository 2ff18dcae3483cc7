#pragma once

#include <VarnelAPI/Forms/model/DynamicSchemaClassWithCustomProps.h>

#include <vector>

namespace VarnelAPI::Forms::model {

/// A list of custom values of one type, which is that of its first element when it is read. Elements are added by
/// reading only; the setters replace.
///
/// The element accessors check neither index nor type: keep indices from 0 to below `size()`, and call those of the
/// type that was read. Debug builds of the library assert both.
class VARNEL_FORMS_API DynamicSchemaArrayWithCustomProps : public ModelBase {
public:
    DynamicSchemaArrayWithCustomProps();
    /// Reads `val` as `fromJson` does.
    explicit DynamicSchemaArrayWithCustomProps(web::json::value& val);

    using ModelBase::toJson;

    void validate() override;
    web::json::value toJson() const override;
    /// Takes the type from the first element of an array, and appends all elements of that type to those already
    /// there; others are skipped. A value that is no array leaves an array without a type.
    /// @throws web::json::json_exception for an integer beyond 32 bits, or a number beyond a double.
    void fromJson(web::json::value& val) override;
    /// Adds one part per element: "int[0]", "double[0]", "str[0]"; of a bool "bool[0]", which holds 1 or 0. An
    /// object's parts begin with "obj[0].".
    void toMultipart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) const override;
    /// Deliberately reads nothing: the array keeps its content.
    void fromMultiPart(std::shared_ptr<MultipartFormData> multipart, const utility::string_t& namePrefix) override;

    /// Takes the element type from the first element of an array; from anything else, none. Elements stay.
    void setTypeForArray(const web::json::value& arr);
    /// Takes the element type from a value: integer, double, boolean, string or object, else none.
    void setTypeForVal(const web::json::value& v);

    /// The number of elements of the current type.
    int size() const;
    /// Removes element `i`; does nothing if there is none.
    void remove(int i);

    int& getInt(int i);
    double& getDouble(int i);
    /// The element's byte, 1 or 0.
    uint8_t& getBool(int i);
    utility::string_t& getStr(int i);
    DynamicSchemaClassWithCustomProps& getObj(int i);

    void setInt(int i, int value);
    void setDouble(int i, double value);
    void setBool(int i, bool value);
    void setStr(int i, const utility::string_t& value);
    void setObj(int i, const DynamicSchemaClassWithCustomProps& value);

private:
    enum class Type : int32_t { None, Integer, Double, Boolean, String, Object };

    /// Calls `use` with the label and the elements of the current type, if there is one.
    template <class Self, class Use>
    static void withElements(Self& self, Use use);

    Type m_Type = Type::None;
    std::vector<int32_t> m_Integers;
    std::vector<double> m_Doubles;
    std::vector<uint8_t> m_Booleans;
    std::vector<utility::string_t> m_Strings;
    std::vector<DynamicSchemaClassWithCustomProps> m_Objects;
};

} // namespace VarnelAPI::Forms::model
