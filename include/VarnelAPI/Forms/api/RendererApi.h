#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumRenderer.h>

namespace VarnelAPI::Forms::api {

/// Renderers, which are only read. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API RendererApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Downloads the renderer's file: the content has the bytes as its data, and no name or type.
    /// GET `{location}/Plexum/Renderer/{instanceId}/$file`
    pplx::task<model::HttpContent> fILEGET_PlexumRenderer_instanceId(const utility::string_t& location,
                                                                     const utility::string_t& instanceId) const;

    /// Reads the renderer `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/Renderer/{instanceId}/`
    detail::ModelTask<model::PlexumRendererInstance>
    get_PlexumRenderer_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                  const detail::TextOption& select = boost::none) const;

    /// Lists the renderers.
    /// GET `{location}/Plexum/Renderer`
    detail::ModelTask<model::PlexumRendererInstances> select_PlexumRenderer(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
