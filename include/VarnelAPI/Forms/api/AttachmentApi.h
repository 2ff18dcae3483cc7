#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAttachment.h>

namespace VarnelAPI::Forms::api {

/// The files attached to instances. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API AttachmentApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the attachments, per class.
    /// GET `{location}/DynamicSchema/Attachment/$count`
    detail::ModelTask<model::DynamicSchemaAttachmentInstanceCount>
    count_DynamicSchemaAttachment(const utility::string_t& location) const;

    /// Deletes the attachment `instanceId`.
    /// DELETE `{location}/DynamicSchema/Attachment/{instanceId}/`
    pplx::task<void> delete_DynamicSchemaAttachment_instanceId(const utility::string_t& location,
                                                               const utility::string_t& instanceId) const;

    /// Downloads the attached file: the content has the bytes as its data, and no name or type.
    /// GET `{location}/DynamicSchema/Attachment/{instanceId}/$file`
    pplx::task<model::HttpContent>
    fILEGET_DynamicSchemaAttachment_instanceId(const utility::string_t& location,
                                               const utility::string_t& instanceId) const;

    /// Announces the upload of an attachment's file. The file itself is deliberately not sent: the body is the JSON
    /// literal `true`, and `s3` and `content` are accepted and not used. To store bytes, call `ApiClient::callApi`. PUT
    /// `{location}/DynamicSchema/Attachment/{instanceId}/$file`
    /// @param contentType the Content-Type header.
    /// @param contentDisposition the Content-Disposition header.
    detail::ModelTask<model::DynamicSchemaAttachmentChangedInstance> fileInsert_DynamicSchemaAttachment_instanceId(
        const utility::string_t& location, const utility::string_t& instanceId, const utility::string_t& s3,
        const utility::string_t& contentType, const utility::string_t& contentDisposition,
        const std::vector<char>& content) const;

    /// Reads the attachment `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/Attachment/{instanceId}/`
    detail::ModelTask<model::DynamicSchemaAttachmentInstance>
    get_DynamicSchemaAttachment_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                           const detail::TextOption& select = boost::none) const;

    /// Creates an attachment of the issue `issueInstID` of class `formClassName`, or, if either is empty, an attachment
    /// of no issue. Yields it as the service stored it.
    /// POST `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/Attachment` or
    /// `{projInstID}/DynamicSchema/Attachment`
    detail::ModelTask<model::DynamicSchemaAttachmentChangedInstance>
    insert_DynamicSchemaAttachment(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                   const utility::string_t& issueInstID,
                                   const detail::Body<model::DynamicSchemaAttachmentInstance>& body) const;

    /// Lists the attachments of the instance `instanceID`, or all if it is empty.
    /// GET `{location}/DynamicSchema/Attachment/{instanceID}` or `{location}/DynamicSchema/Attachment`
    detail::ModelTask<model::DynamicSchemaAttachmentInstances> select_DynamicSchemaAttachment(
        const utility::string_t& location, const utility::string_t& instanceID,
        const detail::TextOption& filter = boost::none, const detail::TextOption& select = boost::none,
        const detail::TextOption& orderby = boost::none, const detail::TextOption& filtersettings = boost::none,
        const detail::NumberOption& skip = boost::none, const detail::NumberOption& top = boost::none) const;

    /// Lists the attachments of the issue `issueInstID` of class `formClassName`; if any of the three texts is empty,
    /// all attachments. GET `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/Attachment` or
    /// `{projInstID}/DynamicSchema/Attachment`
    detail::ModelTask<model::DynamicSchemaAttachmentInstances> select_DynamicSchemaAttachment2(
        const utility::string_t& projInstID, const utility::string_t& formClassName,
        const utility::string_t& issueInstID, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the attachment `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/Attachment/{instanceId}/`
    detail::ModelTask<model::DynamicSchemaAttachmentChangedInstance>
    update_DynamicSchemaAttachment(const utility::string_t& location, const utility::string_t& instanceId,
                                   const detail::Body<model::DynamicSchemaAttachmentInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
