#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumRenderer.h>

namespace VarnelAPI::Forms::api {

/// Renderers, which are only read. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API RendererApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Downloads the renderer's file: the content has the bytes as its data, and no name or type.
    /// GET `{location}/Plexum/Renderer/{instanceId}/$file`
    pplx::task<model::HttpContent> fILEGET_PlexumRenderer_instanceId(const utility::string_t& location,
                                                                     const utility::string_t& instanceId) const;

    /// Reads the renderer `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/Renderer/{instanceId}/`
    ModelTask<model::PlexumRendererInstance>
    get_PlexumRenderer_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                  const TextOption& select = boost::none) const;

    /// Lists the renderers.
    /// GET `{location}/Plexum/Renderer`
    ModelTask<model::PlexumRendererInstances>
    select_PlexumRenderer(const utility::string_t& location, const TextOption& filter = boost::none,
                          const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                          const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                          const NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
