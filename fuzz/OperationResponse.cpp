#include "support/Fuzz.h"

#if defined(FORMS_FUZZ_CURL)
#include <VarnelAPI/Forms/transport/CurlTransport.h>
#endif

#include <cpprest/http_client.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <mutex>
#include <thread>

using namespace VarnelAPI::Forms;
using forms_fuzz::require;

namespace {

/// Answers every request, on a free port of 127.0.0.1, with the same bytes, and ends the connection.
class Server {
public:
    Server() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        auto* plain = reinterpret_cast<sockaddr*>(&address);
        require(m_Listener >= 0 && bind(m_Listener, plain, size) == 0 && listen(m_Listener, 16) == 0 &&
                    getsockname(m_Listener, plain, &size) == 0,
                "the server listens");
        m_Port = ntohs(address.sin_port);
        m_Thread = std::thread([this] { serve(); });
    }
    ~Server() {
        shutdown(m_Listener, SHUT_RDWR);
        m_Thread.join();
        close(m_Listener);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_Port) + "/base"; }
    void answerWith(std::string bytes) {
        const std::lock_guard<std::mutex> lock(m_Mutex);
        m_Answer = std::move(bytes);
    }

private:
    void serve() {
        for (int connection = accept(m_Listener, nullptr, nullptr); connection >= 0;
             connection = accept(m_Listener, nullptr, nullptr)) {
            answer(connection);
            close(connection);
        }
    }
    void answer(int connection) {
        // Only requests without a body are made, so this is the whole of one.
        std::string request;
        while (request.find("\r\n\r\n") == std::string::npos) {
            char block[4096];
            pollfd polled{connection, POLLIN, 0};
            const ssize_t size = poll(&polled, 1, 5000) == 1 ? recv(connection, block, sizeof(block), 0) : 0;
            if (size <= 0) {
                return;
            }
            request.append(block, static_cast<std::size_t>(size));
        }
        const std::lock_guard<std::mutex> lock(m_Mutex);
        // The bytes of an input fit into the socket's buffer: this never blocks.
        send(connection, m_Answer.data(), m_Answer.size(), MSG_NOSIGNAL);
    }

    int m_Listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_Port = 0;
    std::mutex m_Mutex;
    std::string m_Answer;
    std::thread m_Thread;
};

/// Waits for the call, which must come to an end in time, with a value or one of the failures a caller is told about.
template <class Result>
Result resultOf(const pplx::task<Result>& task) {
    const auto ended = std::make_shared<std::promise<void>>();
    task.then([ended](const pplx::task<Result>&) { ended->set_value(); });
    require(ended->get_future().wait_for(std::chrono::seconds(15)) == std::future_status::ready, "a call ends in time");
    return task.get();
}

template <class M>
void requireModel(const pplx::task<std::shared_ptr<M>>& task) {
    require(resultOf(task) != nullptr, "what succeeds has a result");
}

void call(char operation, const std::shared_ptr<api::ApiClient>& client) {
    switch (operation) {
    case 'd':
        resultOf(api::CommentApi(client).delete_DynamicSchemaComment_instanceId("l", "i"));
        break;
    case 'f':
        require(resultOf(api::AttachmentApi(client).fILEGET_DynamicSchemaAttachment_instanceId("l", "i")).getData() !=
                    nullptr,
                "a download has data");
        break;
    case 'c':
        requireModel(api::CommentApi(client).count_DynamicSchemaComment("l"));
        break;
    case 'i':
        requireModel(api::BaseClassApi(client).get_DynamicSchemaBaseClass_instanceId("l", "i"));
        break;
    case 'g':
        requireModel(api::FileApi(client).get_DynamicSchemaFile_instanceId("l", "i"));
        break;
    case 't':
        requireModel(api::FormStyleApi(client).get_FormsECMappingFormStyle_instanceId("l", "i"));
        break;
    case 'w':
        requireModel(api::WorkflowDefinitionApi(client).get_WorkflowDefinition_instanceId("l", "i"));
        break;
    default:
        requireModel(api::CommentApi(client).select_DynamicSchemaComment("l"));
    }
}

void callOver(const std::shared_ptr<transport::Transport>& way, char operation, bool decodes, const std::string& answer,
              const std::string& url) {
    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setTransport(way);
    configuration->setBaseUrl(url);
    configuration->getHttpConfig().set_timeout(std::chrono::seconds(2));
    configuration->getHttpConfig().set_request_compressed_response(decodes);
    // A redirect that names a host, which takes a "//", would leave this machine. Others come back to the server.
    configuration->getHttpConfig().set_max_redirects(answer.find("//") == std::string::npos ? 10 : 0);
    try {
        call(operation, std::make_shared<api::ApiClient>(configuration));
    } catch (const api::ApiException& error) {
        require(error.error_code().value() >= 400 && error.getContent(), "a failed call tells its status and content");
    } catch (const web::http::http_exception&) {
    } catch (const web::json::json_exception&) {
    } catch (const std::runtime_error&) {
        require(decodes, "only decompression fails in this way");
    }
}

} // namespace

/// A letter that says which operation is called, and the bytes that it gets for a response, over each transport. Before
/// it may stand "z": the client then asks for compressed responses.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static Server server;
    forms_fuzz::Input input(data, size);
    char operation = input.letter();
    const bool decodes = operation == 'z';
    operation = decodes ? input.letter() : operation;
    const std::string answer = input.rest();
    server.answerWith(answer);

    callOver(nullptr, operation, decodes, answer, server.url());
#if defined(FORMS_FUZZ_CURL)
    static const auto curl = [] {
        transport::CurlOptions options;
        options.idleConnections = 0; // The server serves one connection at a time.
        return std::make_shared<transport::CurlTransport>(options);
    }();
    callOver(curl, operation, decodes, answer, server.url());
#endif
    return 0;
}
