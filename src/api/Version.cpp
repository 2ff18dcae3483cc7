#include <VarnelAPI/Forms/Version.h>

namespace VarnelAPI::Forms {

int version() noexcept {
    return VARNEL_FORMS_VERSION;
}

} // namespace VarnelAPI::Forms
