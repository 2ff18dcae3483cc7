#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/BcfImport.h>

namespace VarnelAPI::Forms::api {

/// Jobs that import a BCF (BIM Collaboration Format) file as issues.
/// What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API ImportApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Creates a BCF import; yields it as the service stored it.
    /// POST `{location}/Bcf/Import`
    ModelTask<model::BcfImportChangedInstance> insert_BcfImport(const utility::string_t& location,
                                                                const Body<model::BcfImportInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
