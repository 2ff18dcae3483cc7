#include <VarnelAPI/Forms.h>

#include <iostream>

using namespace VarnelAPI::Forms;

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::cerr << "usage: first BASE-URL\n";
        return 2;
    }
    auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(utility::conversions::to_string_t(argv[1]));
    configuration->setUserAgent(_XPLATSTR("first/1.0"));

    api::CommentApi comments(std::make_shared<api::ApiClient>(configuration));
    try {
        const auto list = comments.select_DynamicSchemaComment(_XPLATSTR("my-project")).get();
        for (const auto& comment : list->getInstances()) {
            ucout << comment->getProperties()->getText() << std::endl;
        }
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
