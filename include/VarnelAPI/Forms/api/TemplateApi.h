#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumTemplate.h>

namespace VarnelAPI::Forms::api {

/// Templates, which are only changed. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API TemplateApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Changes the template `instanceId`; yields it as the service stored it.
    /// POST `{location}/Plexum/Template/{instanceId}/`
    ModelTask<model::PlexumTemplateChangedInstance>
    update_PlexumTemplate(const utility::string_t& location, const utility::string_t& instanceId,
                          const Body<model::PlexumTemplateInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
