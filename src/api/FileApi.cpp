#include <VarnelAPI/Forms/api/FileApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource files("FileApi", _XPLATSTR("DynamicSchema/File"));
} // namespace

ModelTask<model::DynamicSchemaFileInstanceCount>
FileApi::count_DynamicSchemaFile(const utility::string_t& location) const {
    return files.count<model::DynamicSchemaFileInstanceCount>(m_ApiClient, __func__, location);
}

pplx::task<void> FileApi::delete_DynamicSchemaFile_instanceId(const utility::string_t& location,
                                                              const utility::string_t& instanceId) const {
    return files.remove(m_ApiClient, __func__, location, instanceId);
}

pplx::task<model::HttpContent>
FileApi::fILEGET_DynamicSchemaFile_instanceId(const utility::string_t& location,
                                              const utility::string_t& instanceId) const {
    return files.download(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::DynamicSchemaFileChangedInstance>
FileApi::fileInsert_DynamicSchemaFile_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                                 const utility::string_t& contentDisposition,
                                                 const TextOption& /*content*/) const {
    // Throws, before anything else is looked at; the rest only says what would follow.
    const auto type = detail::requestType(std::string("FileApi->") + __func__, {_XPLATSTR("text/plain")});
    return files.onInstance(m_ApiClient, __func__, web::http::methods::PUT, location, instanceId, _XPLATSTR("$file"))
        .header(web::http::header_names::content_disposition, ApiClient::parameterToString(contentDisposition))
        .consumes({type})
        .yieldModel<model::DynamicSchemaFileChangedInstance>();
}

ModelTask<model::DynamicSchemaFileInstance>
FileApi::get_DynamicSchemaFile_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                          const TextOption& select) const {
    return files.get<model::DynamicSchemaFileInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::DynamicSchemaFileChangedInstance>
FileApi::insert_DynamicSchemaFile(const utility::string_t& location,
                                  const Body<model::DynamicSchemaFileInstance>& body) const {
    return files.insert<model::DynamicSchemaFileChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::DynamicSchemaFileInstances>
FileApi::select_DynamicSchemaFile(const utility::string_t& location, const TextOption& filter, const TextOption& select,
                                  const TextOption& orderby, const TextOption& filtersettings, const NumberOption& skip,
                                  const NumberOption& top) const {
    return files.select<model::DynamicSchemaFileInstances>(m_ApiClient, __func__, location,
                                                           {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::DynamicSchemaFileChangedInstance>
FileApi::update_DynamicSchemaFile(const utility::string_t& location, const utility::string_t& instanceId,
                                  const Body<model::DynamicSchemaFileInstance>& body) const {
    return files.update<model::DynamicSchemaFileChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
