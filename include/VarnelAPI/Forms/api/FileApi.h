#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchemaFile.h>

namespace VarnelAPI::Forms::api {

/// The stored files of instances. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API FileApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the files, per class.
    /// GET `{location}/DynamicSchema/File/$count`
    ModelTask<model::DynamicSchemaFileInstanceCount> count_DynamicSchemaFile(const utility::string_t& location) const;

    /// Deletes the file `instanceId`.
    /// DELETE `{location}/DynamicSchema/File/{instanceId}/`
    pplx::task<void> delete_DynamicSchemaFile_instanceId(const utility::string_t& location,
                                                         const utility::string_t& instanceId) const;

    /// Downloads the stored file: the content has the bytes as its data, and no name or type.
    /// GET `{location}/DynamicSchema/File/{instanceId}/$file`
    pplx::task<model::HttpContent> fILEGET_DynamicSchemaFile_instanceId(const utility::string_t& location,
                                                                        const utility::string_t& instanceId) const;

    /// Always rejected: its only media type is "text/plain", which operations can't send. To store a file,
    /// there is `kit::upload`.
    /// PUT `{location}/DynamicSchema/File/{instanceId}/$file`
    /// @throws ApiException 415 "FileApi->fileInsert_DynamicSchemaFile_instanceId does not consume any supported media
    ///     type", in the call, whatever the arguments are; no request is made.
    ModelTask<model::DynamicSchemaFileChangedInstance>
    fileInsert_DynamicSchemaFile_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                            const utility::string_t& contentDisposition,
                                            const TextOption& content) const;

    /// Reads the file `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/File/{instanceId}/`
    ModelTask<model::DynamicSchemaFileInstance>
    get_DynamicSchemaFile_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                     const TextOption& select = boost::none) const;

    /// Creates a file; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/File`
    ModelTask<model::DynamicSchemaFileChangedInstance>
    insert_DynamicSchemaFile(const utility::string_t& location,
                             const Body<model::DynamicSchemaFileInstance>& body) const;

    /// Lists the files.
    /// GET `{location}/DynamicSchema/File`
    ModelTask<model::DynamicSchemaFileInstances>
    select_DynamicSchemaFile(const utility::string_t& location, const TextOption& filter = boost::none,
                             const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                             const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                             const NumberOption& top = boost::none) const;

    /// Changes the file `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/File/{instanceId}/`
    ModelTask<model::DynamicSchemaFileChangedInstance>
    update_DynamicSchemaFile(const utility::string_t& location, const utility::string_t& instanceId,
                             const Body<model::DynamicSchemaFileInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
