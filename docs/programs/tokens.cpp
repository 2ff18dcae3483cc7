#include "Setting.h"

#include <chrono>

using namespace VarnelAPI::Forms;

namespace {

/// What a program asks for tokens: in truth a request to who issues them.
struct Issuer {
    struct Grant {
        utility::string_t token;
        std::chrono::seconds goodFor;
    };
    pplx::task<Grant> ask() {
        ++asked;
        return pplx::task_from_result(
            Grant{asked == 1 ? _XPLATSTR("first") : _XPLATSTR("second"), std::chrono::hours(1)});
    }
    int asked = 0;
};

// [credentials]
std::shared_ptr<transport::Credentials> signedIn(const std::shared_ptr<Issuer>& issuer) {
    return std::make_shared<transport::Credentials>([issuer](transport::Credentials::Reason) {
        return issuer->ask().then([](const Issuer::Grant& grant) {
            transport::Token token;
            token.value = grant.token;
            token.ends = std::chrono::system_clock::now() + grant.goodFor;
            return token;
        });
    });
}

std::shared_ptr<api::ApiClient> authorized(const std::shared_ptr<api::ApiClient>& client,
                                           const std::shared_ptr<Issuer>& issuer) {
    return client->with(transport::CallOptions().credentials(signedIn(issuer)));
}
// [credentials]

// [fixed]
void authorizeAll(api::ApiConfiguration& configuration, const utility::string_t& token) {
    configuration.getDefaultHeaders()[_XPLATSTR("Authorization")] = _XPLATSTR("Bearer ") + token;
}
// [fixed]

} // namespace

int main() {
    repository::ServerOptions options;
    options.tokens = {{"first", 2, {}}, {"second", 0, {}}}; // the first is refused from the third call on
    Setting here(options);
    const auto issuer = std::make_shared<Issuer>();
    const api::BaseClassApi issues(authorized(here.client, issuer));
    for (int i = 0; i < 4; ++i) {
        std::cout << kit::total(issues.count_DynamicSchemaBaseClass(_XPLATSTR("tower"))).get();
    }
    std::cout << ", asked " << issuer->asked << " times\n";
    authorizeAll(*here.configuration, _XPLATSTR("second"));
    std::cout << kit::total(api::BaseClassApi(here.client).count_DynamicSchemaBaseClass(_XPLATSTR("tower"))).get()
              << '\n';
    return here.printed("3333, asked 2 times\n3\n");
}
