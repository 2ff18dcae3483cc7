#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchema_ExternalFile.h>

namespace VarnelAPI::Forms::api {

/// The references of instances to files in outside stores. What holds for all operations is said at
/// `ResourceApi`.
class VARNEL_FORMS_API ExternalFileApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the external files, per class.
    /// GET `{location}/DynamicSchema/_ExternalFile/$count`
    ModelTask<model::DynamicSchema_ExternalFileInstanceCount>
    count_DynamicSchemaExternalFile(const utility::string_t& location) const;

    /// Deletes the external file `instanceId`.
    /// DELETE `{location}/DynamicSchema/_ExternalFile/{instanceId}/`
    pplx::task<void> delete_DynamicSchemaExternalFile_instanceId(const utility::string_t& location,
                                                                 const utility::string_t& instanceId) const;

    /// Reads the external file `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/_ExternalFile/{instanceId}/`
    ModelTask<model::DynamicSchema_ExternalFileInstance>
    get_DynamicSchemaExternalFile_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                             const TextOption& select = boost::none) const;

    /// Creates an external file of the issue `issueInstID` of class `issueClassName`, or, if either is empty, an
    /// external file of no issue. Yields it as the service stored it.
    /// POST `{projInstID}/DynamicSchema/{issueClassName}/{issueInstID}/_ExternalFile` or
    /// `{projInstID}/DynamicSchema/_ExternalFile`
    ModelTask<model::DynamicSchema_ExternalFileChangedInstance>
    insert_DynamicSchemaExternalFile(const utility::string_t& projInstID, const utility::string_t& issueClassName,
                                     const utility::string_t& issueInstID,
                                     const Body<model::DynamicSchema_ExternalFileInstance>& body) const;

    /// Lists the external files.
    /// GET `{location}/DynamicSchema/_ExternalFile`
    ModelTask<model::DynamicSchema_ExternalFileInstances>
    select_DynamicSchemaExternalFile(const utility::string_t& location, const TextOption& filter = boost::none,
                                     const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                     const TextOption& filtersettings = boost::none,
                                     const NumberOption& skip = boost::none,
                                     const NumberOption& top = boost::none) const;

    /// Lists the external files of the issue `issueInstID` of class `formClassName`; if any of the three texts is
    /// empty, all external files.
    /// GET `{projInstID}/DynamicSchema/{formClassName}/{issueInstID}/_ExternalFile` or
    /// `{projInstID}/DynamicSchema/_ExternalFile`
    ModelTask<model::DynamicSchema_ExternalFileInstances>
    select_DynamicSchemaExternalFile2(const utility::string_t& projInstID, const utility::string_t& formClassName,
                                      const utility::string_t& issueInstID, const TextOption& filter = boost::none,
                                      const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                      const TextOption& filtersettings = boost::none,
                                      const NumberOption& skip = boost::none,
                                      const NumberOption& top = boost::none) const;

    /// Changes the external file `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/_ExternalFile/{instanceId}/`
    ModelTask<model::DynamicSchema_ExternalFileChangedInstance>
    update_DynamicSchemaExternalFile(const utility::string_t& location, const utility::string_t& instanceId,
                                     const Body<model::DynamicSchema_ExternalFileInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
