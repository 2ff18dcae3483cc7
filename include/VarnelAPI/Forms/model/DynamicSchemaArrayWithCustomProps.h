#pragma once

#include <VarnelAPI/Forms/model/DynamicSchemaClassWithCustomProps.h>

#include <vector>

namespace VarnelAPI::Forms::model {

/// A list of custom values of one type, which is that of its first element when it is read. Elements are added by
/// reading only; the setters replace.
///
/// Elements of each type have a list of their own, and the element accessors give those of their type, whichever type
/// is the current one. They don't check the index: keep it from 0 to below the number of elements of that type, which
/// is `size()` for the current type. Debug builds of the library assert it.
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

    int& getInt(int i);       ///< Element `i`.
    double& getDouble(int i); ///< Element `i`.
    /// The element's byte, 1 or 0.
    uint8_t& getBool(int i);
    utility::string_t& getStr(int i);                 ///< Element `i`.
    DynamicSchemaClassWithCustomProps& getObj(int i); ///< Element `i`.

    void setInt(int i, int value);                                      ///< Changes element `i`.
    void setDouble(int i, double value);                                ///< Changes element `i`.
    void setBool(int i, bool value);                                    ///< Changes element `i`.
    void setStr(int i, const utility::string_t& value);                 ///< Changes element `i`.
    void setObj(int i, const DynamicSchemaClassWithCustomProps& value); ///< Changes element `i`.

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
