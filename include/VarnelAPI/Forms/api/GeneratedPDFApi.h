#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/FormPDFGeneratedPDF.h>

namespace VarnelAPI::Forms::api {

/// PDF documents made from instances. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API GeneratedPDFApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Downloads the PDF: the content has the bytes as its data, and no name or type.
    /// GET `{location}/FormPDF/GeneratedPDF/{instanceId}/$file`
    pplx::task<model::HttpContent> fILEGET_FormPDFGeneratedPDF_instanceId(const utility::string_t& location,
                                                                          const utility::string_t& instanceId) const;

    /// Reads the generated PDF `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/FormPDF/GeneratedPDF/{instanceId}/`
    ModelTask<model::FormPDFGeneratedPDFInstance>
    get_FormPDFGeneratedPDF_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                       const TextOption& select = boost::none) const;

    /// Creates a generated PDF; yields it as the service stored it.
    /// POST `{location}/FormPDF/GeneratedPDF`
    ModelTask<model::FormPDFGeneratedPDFChangedInstance>
    insert_FormPDFGeneratedPDF(const utility::string_t& location,
                               const Body<model::FormPDFGeneratedPDFInstance>& body) const;

    /// Lists the generated PDFs.
    /// GET `{location}/FormPDF/GeneratedPDF`
    ModelTask<model::FormPDFGeneratedPDFInstances>
    select_FormPDFGeneratedPDF(const utility::string_t& location, const TextOption& filter = boost::none,
                               const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                               const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                               const NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
