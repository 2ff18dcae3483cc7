#include <VarnelAPI/Forms.h>

#include <iostream>

using namespace VarnelAPI::Forms;

int main(int argc, char* argv[]) {
    if (argc < 3) {
        std::cerr << "usage: first BASE-URL PROJECT\n";
        return 2;
    }
    auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(utility::conversions::to_string_t(argv[1]));
    configuration->setUserAgent(_XPLATSTR("first/1.0"));

    api::CommentApi comments(std::make_shared<api::ApiClient>(configuration));
    try {
        const auto list = comments.select_DynamicSchemaComment(utility::conversions::to_string_t(argv[2])).get();
        for (const auto& comment : list->getInstances()) {
            if (comment && comment->getProperties()) { // A service may leave out anything.
                ucout << comment->getProperties()->getText() << std::endl;
            }
        }
        ucout << list->getInstances().size() << _XPLATSTR(" comments") << std::endl;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
