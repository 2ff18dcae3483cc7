#include <VarnelAPI/Forms/api/ExportApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource bcfExports("ExportApi", _XPLATSTR("Bcf/Export"));
} // namespace

ModelTask<model::BcfExportChangedInstance>
ExportApi::insert_BcfExport(const utility::string_t& location, const Body<model::BcfExportInstance>& body) const {
    return bcfExports.insert<model::BcfExportChangedInstance>(m_ApiClient, __func__, location, body);
}

} // namespace VarnelAPI::Forms::api
