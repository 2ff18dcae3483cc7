#include <VarnelAPI/Forms/api/AttachmentApi.h>

#include <VarnelAPI/Forms/model/JsonBody.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource attachments("AttachmentApi", _XPLATSTR("DynamicSchema/Attachment"));
} // namespace

ModelTask<model::DynamicSchemaAttachmentInstanceCount>
AttachmentApi::count_DynamicSchemaAttachment(const utility::string_t& location) const {
    return attachments.count<model::DynamicSchemaAttachmentInstanceCount>(m_ApiClient, __func__, location);
}

pplx::task<void> AttachmentApi::delete_DynamicSchemaAttachment_instanceId(const utility::string_t& location,
                                                                          const utility::string_t& instanceId) const {
    return attachments.remove(m_ApiClient, __func__, location, instanceId);
}

pplx::task<model::HttpContent>
AttachmentApi::fILEGET_DynamicSchemaAttachment_instanceId(const utility::string_t& location,
                                                          const utility::string_t& instanceId) const {
    return attachments.download(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::DynamicSchemaAttachmentChangedInstance> AttachmentApi::fileInsert_DynamicSchemaAttachment_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const utility::string_t& /*s3*/,
    const utility::string_t& contentType, const utility::string_t& contentDisposition,
    const std::vector<char>& /*content*/) const {
    return attachments
        .onInstance(m_ApiClient, __func__, web::http::methods::PUT, location, instanceId, _XPLATSTR("$file"))
        .header(web::http::header_names::content_type, ApiClient::parameterToString(contentType))
        .header(web::http::header_names::content_disposition, ApiClient::parameterToString(contentDisposition))
        // The service takes this literal in place of the bytes; see the header.
        .body(std::make_shared<model::JsonBody>(web::json::value::boolean(true)), contentType)
        .yieldModel<model::DynamicSchemaAttachmentChangedInstance>();
}

ModelTask<model::DynamicSchemaAttachmentInstance> AttachmentApi::get_DynamicSchemaAttachment_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return attachments.get<model::DynamicSchemaAttachmentInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::DynamicSchemaAttachmentChangedInstance> AttachmentApi::insert_DynamicSchemaAttachment(
    const utility::string_t& projInstID, const utility::string_t& formClassName, const utility::string_t& issueInstID,
    const Body<model::DynamicSchemaAttachmentInstance>& body) const {
    return attachments
        .belowIssue(m_ApiClient, __func__, web::http::methods::POST, projInstID, formClassName, issueInstID)
        .body(body)
        .yieldModel<model::DynamicSchemaAttachmentChangedInstance>();
}

ModelTask<model::DynamicSchemaAttachmentInstances>
AttachmentApi::select_DynamicSchemaAttachment(const utility::string_t& location, const utility::string_t& instanceID,
                                              const TextOption& filter, const TextOption& select,
                                              const TextOption& orderby, const TextOption& filtersettings,
                                              const NumberOption& skip, const NumberOption& top) const {
    const detail::SelectOptions options{filter, select, orderby, filtersettings, skip, top};
    if (instanceID.empty()) {
        return attachments.select<model::DynamicSchemaAttachmentInstances>(m_ApiClient, __func__, location, options);
    }
    return attachments.onClass(m_ApiClient, __func__, web::http::methods::GET, location, _XPLATSTR("/{instanceID}"))
        .fill(_XPLATSTR("instanceID"), instanceID)
        .options(options)
        .yieldModel<model::DynamicSchemaAttachmentInstances>();
}

ModelTask<model::DynamicSchemaAttachmentInstances> AttachmentApi::select_DynamicSchemaAttachment2(
    const utility::string_t& projInstID, const utility::string_t& formClassName, const utility::string_t& issueInstID,
    const TextOption& filter, const TextOption& select, const TextOption& orderby, const TextOption& filtersettings,
    const NumberOption& skip, const NumberOption& top) const {
    return attachments.selectBelowIssue<model::DynamicSchemaAttachmentInstances>(
        m_ApiClient, __func__, projInstID, formClassName, issueInstID,
        {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::DynamicSchemaAttachmentChangedInstance>
AttachmentApi::update_DynamicSchemaAttachment(const utility::string_t& location, const utility::string_t& instanceId,
                                              const Body<model::DynamicSchemaAttachmentInstance>& body) const {
    return attachments.update<model::DynamicSchemaAttachmentChangedInstance>(m_ApiClient, __func__, location,
                                                                             instanceId, body);
}

} // namespace VarnelAPI::Forms::api
