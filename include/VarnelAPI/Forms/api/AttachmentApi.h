#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAttachment.h>

namespace VarnelAPI::Forms::api {

/// The files attached to instances. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API AttachmentApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the attachments, per class.
    /// GET `{location}/DynamicSchema/Attachment/$count`
    ModelTask<model::DynamicSchemaAttachmentInstanceCount>
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

    /// Sends the JSON text `true` to where the attachment's file is stored, and nothing of the file: `s3` and `content`
    /// are accepted and not used. **A file that is stored there may be overwritten by those four bytes.** To store a
    /// file, there is `kit::upload`.
    /// PUT `{location}/DynamicSchema/Attachment/{instanceId}/$file`
    /// @param contentType the Content-Type header.
    /// @param contentDisposition the Content-Disposition header.
    ModelTask<model::DynamicSchemaAttachmentChangedInstance> fileInsert_DynamicSchemaAttachment_instanceId(
        const utility::string_t& location, const utility::string_t& instanceId, const utility::string_t& s3,
        const utility::string_t& contentType, const utility::string_t& contentDisposition,
        const std::vector<char>& content) const;

    /// Reads the attachment `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/Attachment/{instanceId}/`
    ModelTask<model::DynamicSchemaAttachmentInstance>
    get_DynamicSchemaAttachment_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                           const TextOption& select = boost::none) const;

    /// Creates an attachment of the issue `issueInstID` of class `formClassName`, or, if either is empty, an attachment
    /// of no issue. Yields it as the service stored it.
    /// POST `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/Attachment` or
    /// `{projInstID}/DynamicSchema/Attachment`
    ModelTask<model::DynamicSchemaAttachmentChangedInstance>
    insert_DynamicSchemaAttachment(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                   const utility::string_t& issueInstID,
                                   const Body<model::DynamicSchemaAttachmentInstance>& body) const;

    /// Lists the attachments of the instance `instanceID`, or all if it is empty.
    /// GET `{location}/DynamicSchema/Attachment/{instanceID}` or `{location}/DynamicSchema/Attachment`
    ModelTask<model::DynamicSchemaAttachmentInstances>
    select_DynamicSchemaAttachment(const utility::string_t& location, const utility::string_t& instanceID,
                                   const TextOption& filter = boost::none, const TextOption& select = boost::none,
                                   const TextOption& orderby = boost::none,
                                   const TextOption& filtersettings = boost::none,
                                   const NumberOption& skip = boost::none, const NumberOption& top = boost::none) const;

    /// Lists the attachments of the issue `issueInstID` of class `formClassName`; if any of the three texts is empty,
    /// all attachments.
    /// GET `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/Attachment` or
    /// `{projInstID}/DynamicSchema/Attachment`
    ModelTask<model::DynamicSchemaAttachmentInstances>
    select_DynamicSchemaAttachment2(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                    const utility::string_t& issueInstID, const TextOption& filter = boost::none,
                                    const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                    const TextOption& filtersettings = boost::none,
                                    const NumberOption& skip = boost::none,
                                    const NumberOption& top = boost::none) const;

    /// Changes the attachment `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/Attachment/{instanceId}/`
    ModelTask<model::DynamicSchemaAttachmentChangedInstance>
    update_DynamicSchemaAttachment(const utility::string_t& location, const utility::string_t& instanceId,
                                   const Body<model::DynamicSchemaAttachmentInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
