#include <VarnelAPI/Forms/api/CommentApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource comments("CommentApi", _XPLATSTR("DynamicSchema/_Comment"));
} // namespace

ModelTask<model::DynamicSchema_CommentInstanceCount>
CommentApi::count_DynamicSchemaComment(const utility::string_t& location) const {
    return comments.count<model::DynamicSchema_CommentInstanceCount>(m_ApiClient, __func__, location);
}

pplx::task<void> CommentApi::delete_DynamicSchemaComment_instanceId(const utility::string_t& location,
                                                                    const utility::string_t& instanceId) const {
    return comments.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::DynamicSchema_CommentInstance>
CommentApi::get_DynamicSchemaComment_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                                const TextOption& select) const {
    return comments.get<model::DynamicSchema_CommentInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::DynamicSchema_CommentChangedInstance>
CommentApi::insert_DynamicSchemaComment(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                        const utility::string_t& issueInstID,
                                        const Body<model::DynamicSchema_CommentInstance>& body) const {
    return comments.belowIssue(m_ApiClient, __func__, web::http::methods::POST, projInstID, formClassName, issueInstID)
        .body(body)
        .yieldModel<model::DynamicSchema_CommentChangedInstance>();
}

ModelTask<model::DynamicSchema_CommentInstances> CommentApi::select_DynamicSchemaComment(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return comments.select<model::DynamicSchema_CommentInstances>(m_ApiClient, __func__, location,
                                                                  {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::DynamicSchema_CommentInstances> CommentApi::select_DynamicSchemaComment2(
    const utility::string_t& projInstID, const utility::string_t& formClassName, const utility::string_t& issueInstID,
    const TextOption& filter, const TextOption& select, const TextOption& orderby, const TextOption& filtersettings,
    const NumberOption& skip, const NumberOption& top) const {
    return comments.selectBelowIssue<model::DynamicSchema_CommentInstances>(
        m_ApiClient, __func__, projInstID, formClassName, issueInstID,
        {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::DynamicSchema_CommentChangedInstance>
CommentApi::update_DynamicSchemaComment(const utility::string_t& location, const utility::string_t& instanceId,
                                        const Body<model::DynamicSchema_CommentInstance>& body) const {
    return comments.update<model::DynamicSchema_CommentChangedInstance>(m_ApiClient, __func__, location, instanceId,
                                                                        body);
}

} // namespace VarnelAPI::Forms::api
