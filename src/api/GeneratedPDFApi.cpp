#include <VarnelAPI/Forms/api/GeneratedPDFApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource generatedPdfs("GeneratedPDFApi", _XPLATSTR("FormPDF/GeneratedPDF"));
} // namespace

pplx::task<model::HttpContent>
GeneratedPDFApi::fILEGET_FormPDFGeneratedPDF_instanceId(const utility::string_t& location,
                                                        const utility::string_t& instanceId) const {
    return generatedPdfs.download(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::FormPDFGeneratedPDFInstance> GeneratedPDFApi::get_FormPDFGeneratedPDF_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return generatedPdfs.get<model::FormPDFGeneratedPDFInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::FormPDFGeneratedPDFChangedInstance>
GeneratedPDFApi::insert_FormPDFGeneratedPDF(const utility::string_t& location,
                                            const Body<model::FormPDFGeneratedPDFInstance>& body) const {
    return generatedPdfs.insert<model::FormPDFGeneratedPDFChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::FormPDFGeneratedPDFInstances> GeneratedPDFApi::select_FormPDFGeneratedPDF(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return generatedPdfs.select<model::FormPDFGeneratedPDFInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

} // namespace VarnelAPI::Forms::api
