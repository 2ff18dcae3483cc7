#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/BcfExport.h>

namespace VarnelAPI::Forms::api {

/// Jobs that export issues to a BCF (BIM Collaboration Format) file.
/// What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API ExportApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Creates a BCF export; yields it as the service stored it.
    /// POST `{location}/Bcf/Export`
    ModelTask<model::BcfExportChangedInstance> insert_BcfExport(const utility::string_t& location,
                                                                const Body<model::BcfExportInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
