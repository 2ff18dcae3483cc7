// Where text is wide, a narrow literal, array or pointer is no bool; what is a text, and what is a bool, stay so.
#include <VarnelAPI/Forms/api/ApiClient.h>
#include <VarnelAPI/Forms/model/DynamicSchemaBaseClass.h>
#include <VarnelAPI/Forms/model/DynamicSchemaClassWithCustomProps.h>

using namespace VarnelAPI::Forms;

template <class Value, class = void>
constexpr bool takenByParameterToString = false;
template <class Value>
constexpr bool
    takenByParameterToString<Value, std::void_t<decltype(api::ApiClient::parameterToString(std::declval<Value>()))>> =
        true;

template <class Value, class = void>
constexpr bool takenByToJson = false;
template <class Value>
constexpr bool takenByToJson<Value, std::void_t<decltype(model::ModelBase::toJson(std::declval<Value>()))>> = true;

template <class Value, class = void>
constexpr bool takenByToHttpContent = false;
template <class Value>
constexpr bool takenByToHttpContent<
    Value, std::void_t<decltype(model::ModelBase::toHttpContent(utility::string_t(), std::declval<Value>()))>> = true;

template <class Model, class Value, class = void>
constexpr bool takenBySetCustomProp = false;
template <class Model, class Value>
constexpr bool takenBySetCustomProp<
    Model, Value,
    std::void_t<decltype(std::declval<Model&>().setCustomProp(utility::string_t(), std::declval<Value>()))>> = true;

template <class Value>
constexpr int takers = takenByParameterToString<Value> + takenByToJson<Value> + takenByToHttpContent<Value> +
                       takenBySetCustomProp<model::DynamicSchemaBaseClass, Value> +
                       takenBySetCustomProp<model::DynamicSchemaClassWithCustomProps, Value>;

static_assert(takers<const char (&)[2]> == 0 && takers<char (&)[2]> == 0);
static_assert(takers<const char*> == 0 && takers<char*> == 0 && takers<char* const&> == 0);
static_assert(takers<const utility::char_t (&)[2]> == 5 && takers<const utility::char_t*> == 5);
static_assert(takers<utility::string_t> == 5 && takers<bool> == 5 && takers<int> == 5 && takers<double> == 5);

#ifdef NARROW_LITERAL
const auto refused = model::ModelBase::toJson("narrow");
#endif
