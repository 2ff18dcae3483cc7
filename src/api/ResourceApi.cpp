#include <VarnelAPI/Forms/api/ResourceApi.h>

#include "model/Conversion.h"

namespace VarnelAPI::Forms::api {

ResourceApi::ResourceApi(std::shared_ptr<ApiClient> client) : m_ApiClient(std::move(client)) {
    model::detail::required(m_ApiClient, "the client of the API object");
}
ResourceApi::ResourceApi(const ResourceApi&) = default;
ResourceApi& ResourceApi::operator=(const ResourceApi&) = default;
ResourceApi::~ResourceApi() = default;

} // namespace VarnelAPI::Forms::api
