#pragma once

// What the tests of the local repository share: they drive it over HTTP only, as any client would.

#include "VarnelRepository/Server.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace repository_test {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using VarnelAPI::Forms::repository::Server;
using VarnelAPI::Forms::repository::ServerOptions;

inline const std::string root = "/sv1.2/Repositories/Varnel.Forms--here/";
inline const std::string noId = "00000000-0000-4000-8000-000000000000";

struct Answer {
    int status = 0;
    std::string body;
    httplib::Headers headers;

    Json json() const { return Json::parse(body); }
    std::string header(const std::string& name) const {
        const auto found = headers.find(name);
        return found == headers.end() ? "" : found->second;
    }
};

/// One client of a server; paths are below the location "here" unless they start with a slash.
class Client {
public:
    explicit Client(const Server& server) : Client(server.port()) {}
    explicit Client(int port) : m_client("127.0.0.1", port) {
        m_client.set_keep_alive(true);
        m_client.set_url_encode(false);
        m_client.set_tcp_nodelay(true);
        m_client.set_read_timeout(30);
    }

    Answer send(const std::string& method, const std::string& path, const std::string& body = "",
                const httplib::Headers& headers = {}) {
        httplib::Request request;
        request.method = method;
        request.path = path.front() == '/' ? path : root + path;
        request.headers = headers;
        request.body = body;
        keepSeed(method + " " + request.path);
        const httplib::Result result = m_client.send(request);
        if (!result) {
            ADD_FAILURE() << method << " " << path << ": " << httplib::to_string(result.error());
            return {};
        }
        return {result->status, result->body, result->headers};
    }

    Json get(const std::string& path) { return expect(200, send("GET", path)); }
    /// Inserts and returns the new instance's content.
    Json insert(const std::string& path, const Json& properties) {
        return expect(201, send("POST", path, envelope(properties)))["changedInstance"]["instanceAfterChange"];
    }
    std::string insertId(const std::string& path, const Json& properties = Json::object()) {
        return insert(path, properties)["instanceId"];
    }
    Json list(const std::string& path) { return get(path)["instances"]; }
    /// The values of one property in the order of the list.
    Json listed(const std::string& path, const std::string& property) {
        Json values = Json::array();
        for (const Json& instance : list(path)) {
            values.push_back(instance["properties"].value(property, Json()));
        }
        return values;
    }

    static std::string envelope(const Json& properties, const std::string& eTag = "") {
        return Json{{"instance", {{"eTag", eTag}, {"properties", properties}}}}.dump();
    }

private:
    /// The fuzz target of requests starts from what the tests try.
    static void keepSeed(const std::string& text) {
        const char* directory = std::getenv("FORMS_TEST_SEEDS");
        if (directory != nullptr && text.size() <= 4096) {
            const fs::path folder = fs::path(directory) / "RepositoryRequest";
            fs::create_directories(folder);
            std::ofstream(folder / std::to_string(std::hash<std::string>()(text)), std::ios::binary) << text;
        }
    }
    static Json expect(int status, const Answer& answer) {
        EXPECT_EQ(answer.status, status) << answer.body;
        EXPECT_EQ(answer.header("Content-Type"), "application/json");
        return answer.json();
    }

    httplib::Client m_client;
};

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (fs::temp_directory_path() / "repository-test-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    ~TemporaryFolder() { fs::remove_all(m_path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    std::string file(const std::string& name) const { return (m_path / name).string(); }

private:
    fs::path m_path;
};

/// A program, with its standard output and error as files. It is ended with its Process, or with a test that is ended.
class Process {
public:
    Process(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
            const char* program = VARNEL_FORMS_REPOSITORY_EXECUTABLE)
        : m_out(folder.file("out")), m_error(folder.file("error")) {
        std::vector<const char*> words{"setpriv", "--pdeathsig", "KILL", program};
        for (const std::string& argument : arguments) {
            words.push_back(argument.c_str());
        }
        words.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, m_out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&actions, 2, m_error.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        EXPECT_EQ(posix_spawnp(&m_pid, words[0], &actions, nullptr, const_cast<char**>(words.data()), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
    }

    ~Process() {
        if (!m_hasEnded) {
            signal(SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void signal(int number) const { kill(m_pid, number); }
    void allowDescriptors(rlim_t count) const {
        const rlimit limit{count, count};
        EXPECT_EQ(prlimit(m_pid, RLIMIT_NOFILE, &limit, nullptr), 0);
    }
    /// -1 when a signal ended it, or when it goes on.
    int exitCode() {
        int status = 0;
        for (int i = 0; i < 1000 && !m_hasEnded; ++i) {
            m_hasEnded = waitpid(m_pid, &status, WNOHANG) == m_pid;
            std::this_thread::sleep_for(std::chrono::milliseconds(m_hasEnded ? 0 : 10));
        }
        EXPECT_TRUE(m_hasEnded) << "the program goes on: " << output() << error();
        return m_hasEnded && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string output() const { return read(m_out); }
    std::string error() const { return read(m_error); }
    /// The most memory that it had at once, in megabytes.
    int peakMemory() const {
        const std::string status = read("/proc/" + std::to_string(m_pid) + "/status");
        return std::stoi("0" + status.substr(status.find_first_of("123456789", status.find("VmHWM:")))) / 1024;
    }
    /// The first line of standard output, once it is there.
    std::string firstLine() const {
        for (int i = 0; i < 1000; ++i) {
            const std::string text = read(m_out);
            if (const std::size_t end = text.find('\n'); end != std::string::npos) {
                return text.substr(0, end);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return "";
    }

private:
    static std::string read(const std::string& file) {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::string m_out;
    std::string m_error;
    pid_t m_pid = -1;
    bool m_hasEnded = false;
};

class RepositoryTest : public testing::Test {
protected:
    Server m_server;
    Client m_client{m_server};
};

} // namespace repository_test
