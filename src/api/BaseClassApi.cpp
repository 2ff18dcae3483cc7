#include <VarnelAPI/Forms/api/BaseClassApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource issues("BaseClassApi", _XPLATSTR("DynamicSchema/BaseClass"));

utility::string_t classNameOf(const Body<model::DynamicSchemaBaseClassInstance>& body) {
    const auto instance = body.value_or(nullptr);
    const auto content = instance ? instance->getInstance() : nullptr;
    return content && !content->getClassName().empty() ? content->getClassName() : _XPLATSTR("BaseClass");
}
} // namespace

ModelTask<model::DynamicSchemaBaseClassInstanceCount>
BaseClassApi::count_DynamicSchemaBaseClass(const utility::string_t& location) const {
    return issues.count<model::DynamicSchemaBaseClassInstanceCount>(m_ApiClient, __func__, location);
}

pplx::task<void> BaseClassApi::delete_DynamicSchemaBaseClass_instanceId(const utility::string_t& location,
                                                                        const utility::string_t& instanceId) const {
    return issues.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::DynamicSchemaBaseClassInstance> BaseClassApi::get_DynamicSchemaBaseClass_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return issues.get<model::DynamicSchemaBaseClassInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::DynamicSchemaBaseClassChangedInstance>
BaseClassApi::insert_DynamicSchemaBaseClass(const utility::string_t& location,
                                            const Body<model::DynamicSchemaBaseClassInstance>& body) const {
    return issues
        .onPath(m_ApiClient, __func__, web::http::methods::POST, _XPLATSTR("{location}/DynamicSchema/{BaseClass}"))
        .fill(_XPLATSTR("location"), location)
        .fill(_XPLATSTR("BaseClass"), classNameOf(body))
        .body(body)
        .yieldModel<model::DynamicSchemaBaseClassChangedInstance>();
}

ModelTask<model::DynamicSchemaBaseClassInstances> BaseClassApi::select_DynamicSchemaBaseClass(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return issues.onClass(m_ApiClient, __func__, web::http::methods::GET, location, _XPLATSTR("!poly"))
        .options({filter, select, orderby, filtersettings, skip, top})
        .yieldModel<model::DynamicSchemaBaseClassInstances>();
}

ModelTask<model::DynamicSchemaBaseClassInstances> BaseClassApi::select_DynamicSchemaBaseClass2(
    const utility::string_t& location, const utility::string_t& ClassName, const utility::string_t& issueInstID,
    const TextOption& filter, const TextOption& select, const TextOption& orderby, const TextOption& filtersettings,
    const NumberOption& skip, const NumberOption& top) const {
    auto operation =
        issues.onPath(m_ApiClient, __func__, web::http::methods::GET,
                      issueInstID.empty() ? _XPLATSTR("{location}/DynamicSchema/{ClassName}")
                                          : _XPLATSTR("{location}/DynamicSchema/{ClassName}/{issueInstID}"));
    operation.fill(_XPLATSTR("location"), location).fill(_XPLATSTR("ClassName"), ClassName);
    if (!issueInstID.empty()) {
        operation.fill(_XPLATSTR("issueInstID"), issueInstID);
    }
    return operation.options({filter, select, orderby, filtersettings, skip, top})
        .yieldModel<model::DynamicSchemaBaseClassInstances>();
}

ModelTask<model::DynamicSchemaBaseClassChangedInstance>
BaseClassApi::update_DynamicSchemaBaseClass(const utility::string_t& location, const utility::string_t& instanceId,
                                            const Body<model::DynamicSchemaBaseClassInstance>& body) const {
    return issues.update<model::DynamicSchemaBaseClassChangedInstance>(m_ApiClient, __func__, location, instanceId,
                                                                       body);
}

} // namespace VarnelAPI::Forms::api
