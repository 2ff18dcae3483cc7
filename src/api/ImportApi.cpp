#include <VarnelAPI/Forms/api/ImportApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource bcfImports("ImportApi", _XPLATSTR("Bcf/Import"));
} // namespace

ModelTask<model::BcfImportChangedInstance>
ImportApi::insert_BcfImport(const utility::string_t& location, const Body<model::BcfImportInstance>& body) const {
    return bcfImports.insert<model::BcfImportChangedInstance>(m_ApiClient, __func__, location, body);
}

} // namespace VarnelAPI::Forms::api
