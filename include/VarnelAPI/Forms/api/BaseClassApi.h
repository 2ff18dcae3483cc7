#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchemaBaseClass.h>

namespace VarnelAPI::Forms::api {

/// Issues of the classes that the project defines. All of them can be reached through their base class.
/// What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API BaseClassApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the issues, per class.
    /// GET `{location}/DynamicSchema/BaseClass/$count`
    ModelTask<model::DynamicSchemaBaseClassInstanceCount>
    count_DynamicSchemaBaseClass(const utility::string_t& location) const;

    /// Deletes the issue `instanceId`.
    /// DELETE `{location}/DynamicSchema/BaseClass/{instanceId}/`
    pplx::task<void> delete_DynamicSchemaBaseClass_instanceId(const utility::string_t& location,
                                                              const utility::string_t& instanceId) const;

    /// Reads the issue `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/BaseClass/{instanceId}/`
    ModelTask<model::DynamicSchemaBaseClassInstance>
    get_DynamicSchemaBaseClass_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                          const TextOption& select = boost::none) const;

    /// Creates an issue of the class that the body's content names, or, if it names none, of the base class itself;
    /// yields it as the service stored it.
    /// POST `{location}/DynamicSchema/{BaseClass}`
    ModelTask<model::DynamicSchemaBaseClassChangedInstance>
    insert_DynamicSchemaBaseClass(const utility::string_t& location,
                                  const Body<model::DynamicSchemaBaseClassInstance>& body) const;

    /// Lists the issues of the base class and of all classes derived from it.
    /// GET `{location}/DynamicSchema/BaseClass!poly`
    ModelTask<model::DynamicSchemaBaseClassInstances>
    select_DynamicSchemaBaseClass(const utility::string_t& location, const TextOption& filter = boost::none,
                                  const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                  const TextOption& filtersettings = boost::none,
                                  const NumberOption& skip = boost::none, const NumberOption& top = boost::none) const;

    /// Lists the issues of class `ClassName`, or only the issue `issueInstID` of it, if that is not empty.
    /// GET `{location}/DynamicSchema/{ClassName}/{issueInstID}` or `{location}/DynamicSchema/{ClassName}`
    ModelTask<model::DynamicSchemaBaseClassInstances>
    select_DynamicSchemaBaseClass2(const utility::string_t& location, const utility::string_t& ClassName,
                                   const utility::string_t& issueInstID, const TextOption& filter = boost::none,
                                   const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                   const TextOption& filtersettings = boost::none,
                                   const NumberOption& skip = boost::none, const NumberOption& top = boost::none) const;

    /// Changes the issue `instanceId`; yields it as the service stored it.
    /// POST `{location}/DynamicSchema/BaseClass/{instanceId}/`
    ModelTask<model::DynamicSchemaBaseClassChangedInstance>
    update_DynamicSchemaBaseClass(const utility::string_t& location, const utility::string_t& instanceId,
                                  const Body<model::DynamicSchemaBaseClassInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
