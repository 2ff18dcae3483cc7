#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchemaFile.h>

namespace VarnelAPI::Forms::api {

/// The stored files of instances. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API FileApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the files, per class.
    /// GET `{location}/DynamicSchema/File/$count`
    detail::ModelTask<model::DynamicSchemaFileInstanceCount>
    count_DynamicSchemaFile(const utility::string_t& location) const;

    /// Deletes the file `instanceId`.
    /// DELETE `{location}/DynamicSchema/File/{instanceId}/`
    pplx::task<void> delete_DynamicSchemaFile_instanceId(const utility::string_t& location,
                                                         const utility::string_t& instanceId) const;

    /// Downloads the stored file: the content has the bytes as its data, and no name or type.
    /// GET `{location}/DynamicSchema/File/{instanceId}/$file`
    pplx::task<model::HttpContent> fILEGET_DynamicSchemaFile_instanceId(const utility::string_t& location,
                                                                        const utility::string_t& instanceId) const;

    /// Always rejected: the service takes this upload as "text/plain" only, which can't be sent. To store bytes, call
    /// `ApiClient::callApi`.
    /// PUT `{location}/DynamicSchema/File/{instanceId}/$file`
    /// @throws ApiException 415 "FileApi->fileInsert_DynamicSchemaFile_instanceId does not consume any supported media
    ///     type", in the call; no request is made.
    detail::ModelTask<model::DynamicSchemaFileChangedInstance>
    fileInsert_DynamicSchemaFile_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                            const utility::string_t& contentDisposition,
                                            const detail::TextOption& content) const;

    /// Reads the file `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/File/{instanceId}/`
    detail::ModelTask<model::DynamicSchemaFileInstance>
    get_DynamicSchemaFile_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                     const detail::TextOption& select = boost::none) const;

    /// Creates a file; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/File`
    detail::ModelTask<model::DynamicSchemaFileChangedInstance>
    insert_DynamicSchemaFile(const utility::string_t& location,
                             const detail::Body<model::DynamicSchemaFileInstance>& body) const;

    /// Lists the files.
    /// GET `{location}/DynamicSchema/File`
    detail::ModelTask<model::DynamicSchemaFileInstances> select_DynamicSchemaFile(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the file `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/File/{instanceId}/`
    detail::ModelTask<model::DynamicSchemaFileChangedInstance>
    update_DynamicSchemaFile(const utility::string_t& location, const utility::string_t& instanceId,
                             const detail::Body<model::DynamicSchemaFileInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
