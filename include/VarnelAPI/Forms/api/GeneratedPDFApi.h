#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/FormPDFGeneratedPDF.h>

namespace VarnelAPI::Forms::api {

/// PDF documents made from instances. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API GeneratedPDFApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Downloads the PDF: the content has the bytes as its data, and no name or type.
    /// GET `{location}/FormPDF/GeneratedPDF/{instanceId}/$file`
    pplx::task<model::HttpContent> fILEGET_FormPDFGeneratedPDF_instanceId(const utility::string_t& location,
                                                                          const utility::string_t& instanceId) const;

    /// Reads the generated PDF `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/FormPDF/GeneratedPDF/{instanceId}/`
    detail::ModelTask<model::FormPDFGeneratedPDFInstance>
    get_FormPDFGeneratedPDF_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                       const detail::TextOption& select = boost::none) const;

    /// Creates a generated PDF; yields it as the service stored it.
    /// POST `{location}/FormPDF/GeneratedPDF`
    detail::ModelTask<model::FormPDFGeneratedPDFChangedInstance>
    insert_FormPDFGeneratedPDF(const utility::string_t& location,
                               const detail::Body<model::FormPDFGeneratedPDFInstance>& body) const;

    /// Lists the generated PDFs.
    /// GET `{location}/FormPDF/GeneratedPDF`
    detail::ModelTask<model::FormPDFGeneratedPDFInstances> select_FormPDFGeneratedPDF(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
