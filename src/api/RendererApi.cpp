#include <VarnelAPI/Forms/api/RendererApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource renderers("RendererApi", _XPLATSTR("Plexum/Renderer"));
} // namespace

pplx::task<model::HttpContent>
RendererApi::fILEGET_PlexumRenderer_instanceId(const utility::string_t& location,
                                               const utility::string_t& instanceId) const {
    return renderers.download(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::PlexumRendererInstance> RendererApi::get_PlexumRenderer_instanceId(const utility::string_t& location,
                                                                                    const utility::string_t& instanceId,
                                                                                    const TextOption& select) const {
    return renderers.get<model::PlexumRendererInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::PlexumRendererInstances> RendererApi::select_PlexumRenderer(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return renderers.select<model::PlexumRendererInstances>(m_ApiClient, __func__, location,
                                                            {filter, select, orderby, filtersettings, skip, top});
}

} // namespace VarnelAPI::Forms::api
