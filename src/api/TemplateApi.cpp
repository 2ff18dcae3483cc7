#include <VarnelAPI/Forms/api/TemplateApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource templates("TemplateApi", _XPLATSTR("Plexum/Template"));
} // namespace

ModelTask<model::PlexumTemplateChangedInstance>
TemplateApi::update_PlexumTemplate(const utility::string_t& location, const utility::string_t& instanceId,
                                   const Body<model::PlexumTemplateInstance>& body) const {
    return templates.update<model::PlexumTemplateChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
