#include <VarnelAPI/Forms.h>

#include <iostream>

namespace {

template <class Caught>
bool catches(const VarnelAPI::Forms::api::FileApi& files) {
    try {
        files.fileInsert_DynamicSchemaFile_instanceId(_XPLATSTR("L"), _XPLATSTR("i"), _XPLATSTR(""), {});
    } catch (const Caught& error) {
        return error.error_code().value() == 415;
    } catch (...) {
        std::cerr << "the exception was not recognised as " << typeid(Caught).name() << '\n';
    }
    return false;
}

} // namespace

/// Makes a model and a failing call, whose exception must keep its types across the library's boundary.
int main() {
    using namespace VarnelAPI::Forms;

    model::DynamicSchemaFile file;
    file.setName(_XPLATSTR("plan.pdf"));
    file.setSize(5000000000);
    const bool writes = file.toJson().serialize() == _XPLATSTR("{\"Name\":\"plan.pdf\",\"Size\":5000000000}");

    const auto client = std::make_shared<api::ApiClient>(std::make_shared<api::ApiConfiguration>());
    const api::FileApi files(client);
    const bool isOneVersion = version() == VARNEL_FORMS_VERSION && version() / 10000 == VARNEL_FORMS_VERSION_MAJOR;
    return isOneVersion && writes && catches<api::ApiException>(files) && catches<web::http::http_exception>(files) ? 0
                                                                                                                    : 1;
}
