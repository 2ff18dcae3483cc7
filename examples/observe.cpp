#include <VarnelAPI/Forms.h>

#include <iostream>

using namespace VarnelAPI::Forms;

/// Reads the comments of a project, repeats what fails for a while, and prints a line for each call.
int main(int argc, char* argv[]) {
    if (argc < 3) {
        std::cerr << "usage: observe BASE-URL PROJECT\n";
        return 2;
    }
    auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(utility::conversions::to_string_t(argv[1]));

    // Events come after the call, in another thread.
    pplx::task_completion_event<void> printed;
    const auto observer = std::make_shared<transport::Observer>([printed](const transport::CallEvent& event) {
        if (event.kind == transport::CallEvent::Kind::Ended) {
            ucout << event.method << _XPLATSTR(' ') << event.path << _XPLATSTR(' ') << event.status
                  << _XPLATSTR(" after ") << event.attempt << _XPLATSTR(" attempts, ") << event.bytesReceived
                  << _XPLATSTR(" bytes, ") << event.took.count() / 1000 << _XPLATSTR(" ms") << std::endl;
            printed.set();
        }
    });
    const auto client =
        std::make_shared<api::ApiClient>(configuration)->with(transport::CallOptions().retry({}).observer(observer));
    int result = 0;
    try {
        api::CommentApi(client).select_DynamicSchemaComment(utility::conversions::to_string_t(argv[2])).get();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        result = 1;
    }
    pplx::create_task(printed).wait();
    return result;
}
