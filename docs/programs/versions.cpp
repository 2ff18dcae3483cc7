#include "Setting.h"

namespace {

// [names]
namespace api = VarnelAPI::Forms::api;
namespace model = VarnelAPI::Forms::model;

/// What stands in a signature has a public name: nothing of a namespace `detail` is needed.
api::ModelTask<model::DynamicSchemaBaseClassInstances>
urgent(const api::BaseClassApi& issues, const utility::string_t& project, const api::NumberOption& top = boost::none) {
    return issues.select_DynamicSchemaBaseClass(project, utility::string_t(_XPLATSTR("Floor eq 3")), boost::none,
                                                boost::none, boost::none, boost::none, top);
}
// [names]

} // namespace

int main() {
    Setting here;
    std::cout << urgent(api::BaseClassApi(here.client), _XPLATSTR("tower"), 1).get()->getInstances().size() << " of "
              << urgent(api::BaseClassApi(here.client), _XPLATSTR("tower")).get()->getInstances().size() << '\n';
    return here.printed("1 of 2\n");
}
