#include "Support.h"

#include "VarnelRepository/Fault.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <sqlite3.h>
#include <zlib.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>

/// What a test double adds to the service's protocol: faults, a log, order in the test, credentials, and safety.
namespace repository_test {
namespace {

using VarnelAPI::Forms::repository::Fault;
using VarnelAPI::Forms::repository::FaultId;
using VarnelAPI::Forms::repository::FaultState;
using VarnelAPI::Forms::repository::LoggedRequest;
using namespace std::chrono_literals;

const std::string empty = Client::envelope(Json::object());

Fault faultOf(const std::function<void(Fault&)>& set) {
    Fault fault;
    set(fault);
    return fault;
}

/// A connection that says what it is told to, whether it is HTTP or not.
class RawConnection {
public:
    explicit RawConnection(int port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        const timeval timeout{20, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    }
    ~RawConnection() { close(m_socket); }
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    /// Whether all of it was taken.
    bool say(const std::string& text) const {
        return ::send(m_socket, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
    }
    /// What comes until the other side closes, or until the text is there; "!" at its end stands for a reset, "?" for
    /// nothing more in time.
    std::string hear(const std::string& until = "") const {
        std::string heard;
        char part[4096];
        while (until.empty() || heard.find(until) == std::string::npos) {
            const ssize_t count = recv(m_socket, part, sizeof part, 0);
            if (count <= 0) {
                return heard + (count == 0 ? "" : errno == ECONNRESET ? "!" : "?");
            }
            heard.append(part, static_cast<std::size_t>(count));
        }
        return heard;
    }

private:
    int m_socket;
};

std::string request(const std::string& method, const std::string& path, const std::string& more = "") {
    return method + " " + root + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + more + "\r\n";
}

class FaultTest : public RepositoryTest {
protected:
    /// The statuses of requests in turn; 0 for none.
    std::string statuses(const std::vector<std::string>& requests) {
        std::string result;
        for (const std::string& one : requests) {
            const std::size_t blank = one.find(' ');
            const std::string method = one.substr(0, blank);
            result +=
                std::to_string(m_client.send(method, one.substr(blank + 1), method == "POST" ? empty : "").status) +
                " ";
        }
        return result;
    }
    std::string repeated(const std::string& one, std::size_t count) {
        return statuses(std::vector<std::string>(count, one));
    }
    /// Seen, met, left.
    std::string accountOf(FaultId id) {
        const FaultState state = m_server.fault(id);
        return std::to_string(state.seen) + " " + std::to_string(state.met) + " " + std::to_string(state.left);
    }
};

TEST_F(FaultTest, IsMetByTheRequestsItIsForAsOftenAsItSays) {
    const FaultId third = m_server.inject(faultOf([](Fault& fault) {
        fault.status = 503;
        fault.first = 3;
        fault.every = 2;
        fault.times = 2;
    }));
    EXPECT_EQ(accountOf(third), "0 0 2");
    EXPECT_EQ(repeated("GET S/C", 4), "200 200 503 200 ");
    EXPECT_EQ(accountOf(third), "4 1 1");
    EXPECT_EQ(repeated("GET S/C", 4), "503 200 200 200 ");
    EXPECT_EQ(accountOf(third), "8 2 0");

    const std::string issue = m_client.insertId("DynamicSchema/Issue");
    const std::string path = "DynamicSchema/Issue/" + issue;
    m_client.send("PUT", path + "/$file", "x");
    const std::vector<std::pair<std::string, std::string>> requests{
        {"list", "GET DynamicSchema/Issue"},
        {"list", "GET DynamicSchema/Issue!poly"},
        {"list", "GET " + path},
        {"list", "GET " + path + "/Attachment"},
        {"count", "GET DynamicSchema/Issue/$count"},
        {"get", "GET " + path + "/"},
        {"download", "GET " + path + "/$file"},
        {"insert", "POST DynamicSchema/Issue"},
        {"insert", "POST " + path + "/Attachment"},
        {"relate", "POST " + path + "/R-forward-Other.Form"},
        {"update", "POST " + path + "/"},
        {"upload", "PUT " + path + "/$file"},
        {"delete", "DELETE " + path + "/"}};
    for (const auto& [operation, line] : requests) {
        m_server.clearFaults();
        for (const auto& other : requests) {
            if (other.first != operation) {
                m_server.inject(faultOf([&](Fault& fault) {
                    fault.operation = other.first;
                    fault.status = 599;
                    fault.times = 0;
                }));
            }
        }
        const bool isRecord = line.find("Attachment") != std::string::npos;
        const bool isRelated = line.find("Other") != std::string::npos;
        m_server.inject(faultOf([&](Fault& fault) {
            fault.className = isRelated ? "Issue" : "DynamicSchema.Form"; // not the class at the end of the path
            fault.status = 599;
        }));
        const FaultId id = m_server.inject(faultOf([&, operation = operation](Fault& fault) {
            fault.operation = operation;
            fault.className = isRecord && operation == "insert" ? "Attachment"
                              : isRecord                        ? "DynamicSchema.Attachment"
                              : isRelated                       ? "Other.Form"
                                                                : "DynamicSchema.Issue";
            fault.status = 418;
        }));
        EXPECT_EQ(statuses({line}), "418 ") << line;
        EXPECT_EQ(accountOf(id), "1 1 0") << line;
    }
    m_server.clearFaults();
    EXPECT_TRUE(m_server.faults().empty());
    try {
        m_server.fault(third);
        ADD_FAILURE() << "it was removed";
    } catch (const std::out_of_range& error) {
        EXPECT_EQ(error.what(), "There is no fault " + std::to_string(third));
    }

    // The one injected first is met, and the other stays due. A request that can't be understood is one of all.
    m_server.inject(faultOf([](Fault& fault) { fault.status = 501; }));
    const FaultId second = m_server.inject(faultOf([](Fault& fault) {
        fault.status = 502;
        fault.times = 0;
    }));
    const FaultId last = m_server.inject(faultOf([](Fault& fault) { fault.status = 503; }));
    EXPECT_EQ(statuses({"GET S/C", "GET S/C!all", "GET /elsewhere"}), "501 502 502 ");
    EXPECT_EQ(accountOf(second), "3 2 -1");
    EXPECT_EQ(accountOf(last), "3 0 1");
    EXPECT_THROW(m_server.fault(third), std::out_of_range) << "none of those after it";
    EXPECT_THROW(m_server.fault(last + 1), std::out_of_range);
}

TEST_F(FaultTest, ReplacesTheAnswerBeforeOrAfterTheEffect) {
    for (const bool isAfterEffect : {false, true}) {
        const std::string name = isAfterEffect ? "After" : "Before";
        m_server.inject(faultOf([&](Fault& fault) {
            fault.operation = "insert";
            fault.status = 429;
            fault.body = "{\"a\":1}";
            fault.headers = {{"Retry-After", "7"}, {"content-type", "text/plain"}, {"content-length", "7"}};
            fault.isAfterEffect = isAfterEffect;
        }));
        const Answer answer = m_client.send("POST", "S/" + name, empty);
        EXPECT_EQ(answer.status, 429);
        EXPECT_EQ(answer.body, "{\"a\":1}");
        EXPECT_EQ(answer.header("Retry-After"), "7");
        EXPECT_EQ(answer.header("Content-Type"), "text/plain");
        EXPECT_EQ(answer.headers.count("Content-Type") + answer.headers.count("Content-Length"), 2U);
        EXPECT_EQ(m_client.list("S/" + name).size(), isAfterEffect ? 1U : 0U);
        const std::vector<LoggedRequest> log = m_server.requests();
        EXPECT_EQ(log[log.size() - 2].tookEffect, isAfterEffect);
        EXPECT_EQ(log[log.size() - 2].status, 429);
        EXPECT_NE(log[log.size() - 2].fault, 0U);
        EXPECT_EQ(log.back().fault, 0U);
    }
}

TEST_F(FaultTest, SpoilsWhatIsSent) {
    const std::string path = "S/C/" + m_client.insertId("S/C") + "/$file";
    const std::string bytes(1000, 'b');
    m_client.send("PUT", path, bytes);
    const auto heard = [&](const std::function<void(Fault&)>& set) {
        m_server.inject(faultOf(set));
        const RawConnection connection(m_server.port());
        connection.say(request("GET", path, "Connection: close\r\n"));
        const std::string text = connection.hear();
        return std::pair(text.substr(0, text.find("\r\n\r\n") + 4),
                         text.substr(std::min(text.find("\r\n\r\n") + 4, text.size())));
    };
    const auto [head, body] = heard([](Fault& fault) { fault.truncateAfter = 10; });
    EXPECT_NE(head.find("Content-Length: 1000\r\n"), std::string::npos) << head;
    EXPECT_EQ(body, std::string(10, 'b'));
    EXPECT_EQ(m_server.requests().back().answerBytes, 10U);
    EXPECT_EQ(heard([](Fault& fault) { fault.truncateAfter = 0; }).second, "");
    const std::string reset = heard([](Fault& fault) {
                                  fault.isReset = true;
                                  fault.truncateAfter = 10;
                              }).second;
    EXPECT_EQ(reset.back(), '!') << reset; // what came before may be lost with it
    EXPECT_EQ(m_server.requests().back().status, 200) << "there was one to be cut";
    m_server.inject(faultOf([](Fault& fault) { fault.isReset = true; }));
    const RawConnection connection(m_server.port());
    connection.say(request("GET", path));
    EXPECT_EQ(connection.hear(), "!");
    EXPECT_EQ(m_server.requests().back().status, 0);

    EXPECT_EQ(heard([](Fault& fault) { fault.status = 304; }).first,
              "HTTP/1.1 304 Not Modified\r\nConnection: close\r\n\r\n");

    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(heard([](Fault& fault) {
                  fault.dripBytes = 300;
                  fault.dripPause = 30ms;
              }).second,
              bytes);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 120ms); // 300, 300, 300 and 100
    const auto later = std::chrono::steady_clock::now();
    EXPECT_EQ(heard([](Fault& fault) { fault.delay = 150ms; }).second, bytes);
    EXPECT_GE(std::chrono::steady_clock::now() - later, 150ms);
    EXPECT_EQ(m_client.send("GET", path).body, bytes);
}

TEST_F(FaultTest, HoldsAnAnswerUntilItIsRemovedOrTheServerStops) {
    for (const bool isStopped : {false, true}) {
        m_server.inject(faultOf([](Fault& fault) {
            fault.isStall = true;
            fault.isAfterEffect = true;
        }));
        m_server.inject(faultOf([](Fault& fault) {
            fault.delay = 1h;
            fault.times = 1;
        }));
        m_server.clearRequests();
        const auto waitForLog = [&](std::size_t count) {
            for (int i = 0; i < 2000 && m_server.requests().size() < count; ++i) {
                std::this_thread::sleep_for(5ms);
            }
        };
        const RawConnection stalled(m_server.port());
        stalled.say(request("POST", "S/C", "Content-Length: 0\r\n"));
        waitForLog(1);
        EXPECT_EQ(m_server.requests().back().answerBytes, 0U);
        EXPECT_EQ(m_server.requests().back().status, 0);
        const RawConnection delayed(m_server.port());
        delayed.say(request("GET", "S/C"));
        waitForLog(2);
        m_server.inject(faultOf([](Fault& fault) {
            fault.dripBytes = 1;
            fault.dripPause = 1h;
        }));
        const RawConnection dripped(m_server.port());
        dripped.say(request("GET", "S/C"));
        waitForLog(3);
        if (isStopped) {
            m_server.stop();
        } else {
            EXPECT_EQ(m_client.list("S/C").size(), 1U);
            m_server.clearFaults();
        }
        ASSERT_EQ(stalled.hear(), "");
        EXPECT_EQ(delayed.hear("]}").substr(0, 12), "HTTP/1.1 200");
        EXPECT_NE(dripped.hear("]}").find("{\"instances\":["), std::string::npos);
        if (!isStopped) { // The next answer of a connection is held, too.
            m_server.inject(faultOf([](Fault& fault) {
                fault.delay = 150ms;
                fault.times = 1;
            }));
            const auto later = std::chrono::steady_clock::now();
            delayed.say(request("GET", "S/C"));
            EXPECT_EQ(delayed.hear("]}").substr(0, 12), "HTTP/1.1 200");
            EXPECT_GE(std::chrono::steady_clock::now() - later, 150ms);
        }
    }
}

TEST(FaultRulesTest, WhatContradictsItselfIsRefused) {
    ServerOptions options;
    options.hasControl = true;
    Server server(options);
    for (const auto& [fault, reason] : std::vector<std::pair<std::string, std::string>>{
             {"{}", "nothing goes wrong"},
             {R"({"operation":"select","status":500})", "no such operation"},
             {R"({"status":100})", "200 to 599"},
             {R"({"status":600})", "200 to 599"},
             {R"({"body":"x","isReset":true})", "without a status"},
             {R"({"status":500,"first":0})", "counted from 1"},
             {R"({"status":500,"every":0})", "counted from 1"},
             {R"({"delay":-1})", "negative"},
             {R"({"status":500,"times":-1})", "negative"},
             {R"({"status":500,"headers":[["A","b\rC: d"]]})", "header"},
             {R"({"status":500,"headers":[["A","b\nC: d"]]})", "header"},
             {R"({"status":500,"headers":[["A","b\u0000"]]})", "header"},
             {R"({"status":500,"headers":[["","b"]]})", "header"},
             {R"({"status":500,"headers":[["A:","b"]]})", "header"},
             {R"({"status":500,"headers":[["A\nB","b"]]})", "header"},
             {R"({"delay":1,"headers":[["A","b"]]})", "without a status"},
             {R"({"isStall":true,"status":500})", "withheld"},
             {R"({"isStall":true,"truncateAfter":0})", "withheld"},
             {R"({"dripBytes":1,"dripPause":-1})", "negative"},
             {R"({"dripPause":1,"status":500})", "drip"},
             {R"({"isStall":true,"isReset":true})", "withheld"},
             {R"({"status":500,"isReset":true})", "replaced or reset"},
             {R"({"dripBytes":-1,"dripPause":1})", "-1 is not a whole number"},
             {R"({"truncateAfter":1.5})", "1.5 is not a whole number"},
             {R"({"status":4294967796})", "4294967796 is not a whole number"},
             {R"({"dripBytes":1})", "drip"}}) {
        const Answer answer = Client(server).send("POST", "/_control/faults", fault);
        EXPECT_EQ(answer.status, 400) << fault;
        EXPECT_NE(answer.body.find(reason), std::string::npos) << answer.body;
    }
    EXPECT_THROW(server.inject({}), std::invalid_argument);
    EXPECT_TRUE(server.faults().empty());
    for (const char* fault : {R"({"status":200})", R"({"status":599})", R"({"delay":1})", R"({"truncateAfter":0})",
                              R"({"status":500,"isReset":true,"dripBytes":1,"dripPause":1})"}) {
        EXPECT_EQ(Client(server).send("POST", "/_control/faults", fault).status, 201) << fault;
    }
}

TEST(LogTest, KeepsWhatWasServedLast) {
    ServerOptions options;
    options.loggedRequests = 3;
    Server server(options);
    Client client(server);
    client.send("POST", "S/C?x=%20y", empty, {{"X-Id", "7"}, {"X-Id", "8"}});
    client.send("POST", "S/C/" + noId + "/", empty);
    client.send("HEAD", "S/C");
    std::vector<LoggedRequest> log = server.requests();
    ASSERT_EQ(log.size(), 3U);
    EXPECT_EQ(log[0].method, "POST");
    EXPECT_EQ(log[0].path, root + "S/C");
    EXPECT_EQ(log[0].query, "x=%20y");
    EXPECT_EQ(
        std::count(log[0].headers.begin(), log[0].headers.end(), std::pair<std::string, std::string>("X-Id", "8")), 1);
    EXPECT_EQ(log[0].requestBytes, empty.size());
    EXPECT_EQ(log[0].status, 201);
    EXPECT_GT(log[0].answerBytes, 100U);
    EXPECT_TRUE(log[0].tookEffect);
    EXPECT_EQ(log[1].status, 404);
    EXPECT_FALSE(log[1].tookEffect);
    EXPECT_FALSE(log[2].tookEffect);
    EXPECT_EQ(log[2].answerBytes, 0U);
    EXPECT_EQ(log[2].number, 3U);
    const auto age = std::chrono::system_clock::now() - log[2].time;
    EXPECT_TRUE(age >= 0s && age < 60s);
    client.get("S/C");
    log = server.requests();
    EXPECT_EQ(log.size(), 3U);
    EXPECT_EQ(log[0].number, 2U);
    server.clearRequests();
    EXPECT_TRUE(server.requests().empty());

    Server busy;
    Client shouting(busy);
    const httplib::Headers loud{{"X", std::string(60'000, 'x')}};
    for (int i = 0; i < 150; ++i) {
        shouting.send("GET", "S/C", "", loud);
    }
    EXPECT_EQ(busy.requests().size(), 138U) << "as many as fit into 8 MiB";
    busy.clearRequests();
    shouting.send("GET", "S/C", "", loud);
    ASSERT_EQ(busy.requests().size(), 1U);
    EXPECT_EQ(busy.requests()[0].number, 1U);
}

/// Some of everything that can be stored.
std::string fill(Client& client) {
    const std::string issue = client.insertId("DynamicSchema/Issue",
                                              {{"_Subject", "<é\n\"雪>"}, {"n", 1.5}, {"deep", {{"a", {1, nullptr}}}}});
    const std::string path = "DynamicSchema/Issue/" + issue;
    client.insertId(path + "/R-forward-Forms_EC_Mapping.Form", {{"Name", "f"}});
    client.insertId(path + "/B-backward-Forms_EC_Mapping.Form", {{"Name", "g"}});
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    for (std::size_t length = 254; length <= 256; ++length) {
        const std::string attachment = client.insertId(path + "/Attachment", {{"Name", "a"}});
        client.send("PUT", "DynamicSchema/Attachment/" + attachment + "/$file", bytes.substr(0, length));
    }
    client.send("PUT", path + "/$file", bytes);
    // As deep as a body may be: in a dump it lies one level deeper.
    const std::string deep = std::string(97, '[') + std::string(97, ']');
    EXPECT_EQ(client.send("POST", "S/Deep", R"({"instance":{"properties":{"p":)" + deep + "}}}").status, 201);
    const std::string gone = client.insertId("Other/Thing");
    client.send("DELETE", "Other/Thing/" + gone + "/");
    client.insertId("/sv1.2/Repositories/Varnel.Forms--else/S/C", {{"n", 18446744073709551615ULL}});
    return path;
}

TEST(OrderTest, SeedOfADumpIsTheSameAgain) {
    Server server;
    Client client(server);
    const std::string path = fill(client);
    const Json before = client.get("DynamicSchema/BaseClass!poly");
    const std::string dump = server.dump();
    const std::string file = client.send("GET", path + "/$file").body;

    server.inject(faultOf([](Fault& fault) {
        fault.status = 500;
        fault.first = 100;
    }));
    const std::string blank = Server().dump();
    server.reset();
    EXPECT_EQ(server.dump(), blank);
    EXPECT_TRUE(server.faults().empty());
    EXPECT_TRUE(server.requests().empty());
    EXPECT_EQ(client.list("DynamicSchema/BaseClass!poly"), Json::array());

    const TemporaryFolder folder;
    std::ofstream(folder.file("seed"), std::ios::binary) << dump;
    server.seed(folder.file("seed"));
    EXPECT_EQ(server.dump(), dump);
    EXPECT_EQ(client.get("DynamicSchema/BaseClass!poly"), before);
    EXPECT_EQ(client.send("GET", path + "/$file").body, file);
    EXPECT_EQ(client.list("DynamicSchema/Issue?$filter=n+eq+1.5").size(), 1U);
    EXPECT_EQ(client.list(path + "/AuditRecord").size(), 1U);

    // What is there already is no seed's; and then nothing of it is taken.
    EXPECT_THROW(server.seedText(dump), std::runtime_error);
    EXPECT_EQ(server.dump(), dump);
}

TEST(OrderTest, SeedsAreWrittenByHandAndRefusedAsAWhole) {
    Server server;
    Client client(server);
    server.seedText(R"({
        "recordClasses": [{"schemaName": "S", "className": "Note"}],
        "classes": [{"location": "here", "schemaName": "S", "className": "Small", "base": "Big"}],
        "instances": [
            {"location": "here", "schemaName": "S", "className": "Big", "instanceId": "b", "properties": {"n": 1, "x": null}},
            {"location": "here", "schemaName": "S", "className": "Small", "properties": {"n": 2}, "file": "aGFsbG8=",
             "owner": null, "eTag": null, "instanceId": null},
            {"location": "here", "schemaName": "S", "className": "Note", "owner": "b"}],
        "relationships": [{"location": "here", "schemaName": "S", "className": "R", "source": "b", "target": "b"}]})");
    EXPECT_EQ(client.listed("S/Big!poly", "n"), Json({1, 2}));
    EXPECT_EQ(client.list("S/Big/b/Note").size(), 1U);
    EXPECT_EQ(client.get("S/Big/b/")["instance"]["properties"].dump(), R"({"n":1})");
    EXPECT_EQ(client.get("S/Big/b/")["instance"]["relationshipInstances"].size(), 2U);
    EXPECT_EQ(
        client.send("GET", "S/Small/" + client.list("S/Small")[0]["instanceId"].get<std::string>() + "/$file").body,
        "hallo");

    const std::string dump = server.dump();
    const std::string good = R"({"location":"here","schemaName":"S","className":"C"})";
    const std::string start = R"({"instances":[)" + good + ",";
    for (
        const auto& [text, reason] : std::vector<std::pair<std::string, std::string>>{
            {"{", "not JSON"},
            {"[]", "not an object"},
            {R"({"instance":[]})", "\"instance\""},
            {R"({"instances":{}})", "not a list"},
            {start + "1]}", "instances[1] is not an object"},
            {start + R"({"location":"here","schemaName":"S"}]})", "instances[1]: \"className\" is missing"},
            {start + R"({"location":1}]})", "\"location\" is not a text"},
            {start + R"({"location":"here","schemaName":"S","className":"C","id":"x"}]})", "unknown member \"id\""},
            {start + R"({"location":"here","schemaName":"S","className":"C","properties":[]}]})", "not an object"},
            {start + R"({"location":"here","schemaName":"S","className":"C","instanceId":"b"}]})", "already"},
            {start + R"({"location":"here","schemaName":"S","className":"C","file":"a=b"}]})",
             "instances[1]: \"file\" is not Base64"},
            {start + R"({"location":"here","schemaName":"S","className":"C","file":"a*bc"}]})", "Base64"},
            {R"({"instances":[)" + good +
                 R"(],"relationships":[{"location":"here","schemaName":"S","className":"R","source":"b","target":"c"}]})",
             "relationships[0]: there is no instance \"c\""}}) {
        try {
            server.seedText(text);
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
        }
        EXPECT_EQ(server.dump(), dump) << text;
    }
    EXPECT_THROW(server.seed("/missing/seed"), std::runtime_error);
}

TEST(OrderTest, ResetIsWholeUnderLoad) {
    Server server;
    std::atomic<bool> isDone{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            Client client(server);
            while (!isDone) {
                const std::string path = "S/C/" + client.insertId("S/C");
                const int update = client.send("POST", path + "/", empty).status;
                const int file = client.send("PUT", path + "/$file", "x").status;
                EXPECT_TRUE((update == 200 || update == 404) && (file == 200 || file == 404)) << update << file;
                client.get("S/C?$filter=a+eq+null&$orderby=b&$top=5");
            }
        });
    }
    const std::string seed = R"({"instances":[{"location":"seeded","schemaName":"S","className":"C"}]})";
    for (int i = 0; i < 20; ++i) {
        server.reset();
        server.seedText(seed);
        server.clearRequests();
        EXPECT_EQ(Client(server).list("/sv1.2/Repositories/Varnel.Forms--seeded/S/C").size(), 1U);
        EXPECT_FALSE(server.dump().empty());
        server.requests();
    }
    isDone = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    server.reset();
    EXPECT_EQ(server.dump(), Server().dump());
}

TEST(TokenTest, IsGoodForSoManyCallsOrSoLong) {
    ServerOptions options;
    options.tokens = {{"first", 2}, {"second", 0, 300ms}};
    Server server(options);
    Client client(server);
    const auto status = [&](const std::string& authorization) {
        return client.send("GET", "S/C", "", {{"Authorization", authorization}}).status;
    };
    EXPECT_EQ(status("Bearer second"), 200);
    EXPECT_EQ(status("bearer first"), 200);
    EXPECT_EQ(status("Bearer first"), 200);
    EXPECT_EQ(status("Bearer first"), 401);
    EXPECT_EQ(status("Basic first"), 401);
    EXPECT_EQ(status("Bearer firs"), 401);
    std::this_thread::sleep_for(350ms);
    EXPECT_EQ(status("Bearer second"), 401);
    server.addToken({"first"});
    server.addToken({"later"});
    EXPECT_EQ(status("Bearer first"), 200);
    server.reset();
    EXPECT_EQ(status("Bearer later"), 401);
    EXPECT_EQ(status("Bearer second"), 200);

    const Answer none = client.send("POST", "S/C", empty);
    EXPECT_EQ(none.status, 401);
    EXPECT_EQ(none.header("WWW-Authenticate"), "Bearer realm=\"repository\"");
    EXPECT_EQ(none.json()["errorId"], "Unauthorized");
    // What was read whole is refused on a connection that goes on.
    const RawConnection raw(server.port());
    raw.say(request("GET", "S/C") + request("POST", "S/C", "Content-Length: 4\r\n"));
    const std::string refused = raw.hear();
    EXPECT_NE(refused.find("HTTP/1.1 401", 12), std::string::npos) << refused;
    EXPECT_EQ(refused.find("Connection: close"), refused.rfind("Connection: close")) << refused;
    const Answer bad = client.send("POST", "S/C", empty, {{"Authorization", "Bearer third"}});
    EXPECT_EQ(bad.header("WWW-Authenticate"), "Bearer realm=\"repository\", error=\"invalid_token\"");
    EXPECT_EQ(server.requests().back().status, 401);
    EXPECT_EQ(server.requests().back().answerBytes, bad.body.size());
    EXPECT_EQ(client.send("GET", "S/C", "", {{"Authorization", "Bearer first"}}).json()["instances"], Json::array());
    EXPECT_THROW(server.addToken({"a b"}), std::invalid_argument);
    EXPECT_THROW(server.addToken({""}), std::invalid_argument);
    EXPECT_THROW(server.addToken({"a\x7F"}), std::invalid_argument);
    EXPECT_THROW(server.addToken({"a", 0, -1ms}), std::invalid_argument);
}

TEST(TlsServerTest, ServesHttpsAndNothingElse) {
    const TemporaryFolder folder;
    ServerOptions options;
    options.certificate = folder.file("certificate");
    options.key = folder.file("key");
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"), EVP_PKEY_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_sign(certificate.get(), key.get(), EVP_sha256());
    const auto write = [](const std::string& path, const auto& put) {
        std::FILE* file = std::fopen(path.c_str(), "w");
        put(file);
        std::fclose(file);
    };
    write(options.certificate, [&](std::FILE* file) { PEM_write_X509(file, certificate.get()); });
    write(options.key,
          [&](std::FILE* file) { PEM_write_PrivateKey(file, key.get(), nullptr, nullptr, 0, nullptr, nullptr); });
    Server server(options);
    EXPECT_EQ(server.url().substr(0, 8), "https://");
    httplib::SSLClient client("127.0.0.1", server.port());
    client.enable_server_certificate_verification(false);
    client.set_keep_alive(true);
    for (int i = 0; i < 3; ++i) {
        const httplib::Result result =
            client.Post(root + "S/C", std::string(100'000, ' ') + "null", "application/json");
        ASSERT_TRUE(result) << httplib::to_string(result.error());
        EXPECT_EQ(result->status, 201);
    }
    server.inject(faultOf([](Fault& fault) { fault.truncateAfter = 5; }));
    EXPECT_FALSE(client.Get(root + "S/C"));
    EXPECT_TRUE(client.Get(root + "S/C"));
    const RawConnection plain(server.port());
    plain.say(request("GET", "S/C"));
    EXPECT_EQ(plain.hear().find("HTTP/1.1 2"), std::string::npos);
    options.requestTimeout = 150ms;
    const Server hasty(options);
    EXPECT_EQ(RawConnection(hasty.port()).hear(), "") << "who says nothing does not keep its connection";

    for (const auto& [certificateFile, keyFile, reason] :
         std::vector<std::tuple<std::string, std::string, std::string>>{
             {options.certificate, "", "both"},
             {options.key, options.key, "certificate"},
             {options.certificate, folder.file("missing"), "key"}}) {
        ServerOptions wrong;
        wrong.certificate = certificateFile;
        wrong.key = keyFile;
        try {
            const Server none(wrong);
            ADD_FAILURE() << reason;
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
        }
    }
}

TEST(ControlTest, DoesWhatTheInterfaceDoesWhenItIsSwitchedOn) {
    ServerOptions options;
    options.basePath = "/b";
    EXPECT_EQ(Client(Server(options)).send("GET", "/b/_control/faults").status, 404);
    options.hasControl = true;
    const Server server(options);
    Client client(server);
    const std::string path = "/b" + root + "S/C";
    const auto control = [&](const std::string& method, const std::string& below, const std::string& body = "") {
        return client.send(method, "/b/_control" + below, body);
    };
    const Answer made = control("POST", "/faults",
                                R"({"operation":"list","className":"C","first":2,"every":3,"times":4,"status":503,)"
                                R"("body":"x","headers":[["Retry-After","1"]],"delay":5,"isAfterEffect":true})");
    EXPECT_EQ(made.status, 201);
    EXPECT_EQ(made.json()["id"], 1);
    EXPECT_EQ(client.send("GET", path).status, 200);
    const Answer faulty = client.send("GET", path);
    EXPECT_EQ(faulty.status, 503);
    EXPECT_EQ(faulty.header("Retry-After"), "1");
    EXPECT_EQ(control("POST", "/faults", R"({"truncateAfter":1,"dripBytes":2,"dripPause":3,"isReset":true})").status,
              201);
    EXPECT_EQ(control("POST", "/faults", R"({"isStall":true,"truncateAfter":null})").status, 201);
    const Json faults = control("GET", "/faults").json()["faults"];
    ASSERT_EQ(faults.size(), 3U);
    EXPECT_EQ(faults[0]["seen"], 2);
    EXPECT_EQ(faults[0]["met"], 1);
    EXPECT_EQ(faults[0]["left"], 3);
    EXPECT_EQ(faults[0]["fault"].dump(),
              R"({"operation":"list","className":"C","first":2,"every":3,"times":4,"delay":5,"status":503,"body":"x",)"
              R"("headers":[["Retry-After","1"]],"isReset":false,"isStall":false,"truncateAfter":null,"dripBytes":0,)"
              R"("dripPause":0,"isAfterEffect":true})");
    EXPECT_EQ(
        faults[1]["fault"].dump(),
        R"({"operation":"","className":"","first":1,"every":1,"times":1,"delay":0,"status":0,"body":"","headers":[],)"
        R"("isReset":true,"isStall":false,"truncateAfter":1,"dripBytes":2,"dripPause":3,"isAfterEffect":false})");
    EXPECT_EQ(faults[2]["fault"]["isStall"], true);
    EXPECT_EQ(control("DELETE", "/faults").status, 204);

    const Json requests = control("GET", "/requests").json()["requests"];
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[1]["status"], 503);
    EXPECT_EQ(requests[1]["fault"], 1);
    Json second = requests[1];
    EXPECT_NE(second["headers"].dump().find(R"(["Host",")"), std::string::npos);
    second.erase("headers");
    second.erase("time");
    EXPECT_EQ(second.dump(),
              R"({"number":2,"method":"GET","path":")" + path +
                  R"(","query":"","requestBytes":0,"status":503,"answerBytes":1,"tookEffect":false,"fault":1})");
    const std::chrono::milliseconds time(requests[1]["time"].get<std::int64_t>());
    EXPECT_LT(std::chrono::system_clock::now().time_since_epoch() - time, 60s);
    EXPECT_EQ(control("DELETE", "/requests").status, 204);
    client.send("POST", path, empty);
    const std::string dump = control("GET", "/dump").body;
    EXPECT_EQ(control("POST", "/reset").status, 204);
    EXPECT_EQ(server.dump(), Server().dump());
    EXPECT_EQ(control("POST", "/seed", dump).status, 204);
    EXPECT_EQ(server.dump(), dump);
    EXPECT_TRUE(server.requests().empty());
    EXPECT_EQ(control("POST", "/tokens", R"({"value":"t","calls":1})").status, 204);
    EXPECT_EQ(client.send("GET", path).status, 401);
    EXPECT_EQ(client.send("GET", path, "", {{"Authorization", "Bearer t"}}).status, 200);
    EXPECT_EQ(client.send("GET", "/b/_controls").status, 401);
    EXPECT_EQ(control("POST", "/tokens", R"({"value":"brief","lifetime":30})").status, 204);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(client.send("GET", path, "", {{"Authorization", "Bearer brief"}}).status, 401);

    for (const auto& [request, body, status, reason] :
         std::vector<std::tuple<std::string, std::string, int, std::string>>{
             {"POST /faults", "{", 400, "not JSON"},
             {"POST /faults", R"({"status":"x"})", 400, "is not a whole number"},
             {"POST /faults", R"({"stat":500})", 400, "no member"},
             {"POST /faults", "{}", 400, "nothing goes wrong"},
             {"POST /tokens", "{}", 400, "value"},
             {"POST /tokens", R"({"value":"t","calls":-1})", 400, "less than nothing"},
             {"POST /seed", dump, 400, "already"},
             {"PUT /faults", "", 404, "PUT /faults"},
             {"GET ", "", 404, "GET "}}) {
        const std::size_t blank = request.find(' ');
        const Answer refused = control(request.substr(0, blank), request.substr(blank + 1), body);
        EXPECT_EQ(refused.status, status) << request << body;
        EXPECT_NE(refused.json()["errorDescription"].get<std::string>().find(reason), std::string::npos)
            << refused.body;
    }
    const std::size_t served = server.requests().size();
    EXPECT_EQ(client.send("POST", "/b/_control/reset", "x", {{"Content-Encoding", "br"}}).status, 415);
    EXPECT_EQ(server.requests().size(), served) << "of these nothing is noted";
    // A page of another host, by whatever name it reaches this one.
    EXPECT_EQ(client.send("POST", "/b/_control/reset", "", {{"Origin", "http://elsewhere"}}).status, 403);
    EXPECT_EQ(client.send("POST", "/b/_control/reset", "", {{"Host", "elsewhere.example:80"}}).status, 403);
    EXPECT_EQ(client.send("GET", "/b/_control/dump", "", {{"Host", "localhost:80"}}).status, 200);
}

/// A connection of one's own to a database file.
class Sqlite {
public:
    explicit Sqlite(const std::string& file) { sqlite3_open(file.c_str(), &m_handle); }
    ~Sqlite() { sqlite3_close(m_handle); }
    Sqlite(const Sqlite&) = delete;
    Sqlite& operator=(const Sqlite&) = delete;
    /// The first value of the result, if any.
    std::string run(const char* sql) const {
        std::string result;
        const auto take = [](void* text, int /*count*/, char** values, char** /*names*/) {
            *static_cast<std::string*>(text) += values[0] == nullptr ? "" : values[0];
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(m_handle, sql, take, &result, nullptr), SQLITE_OK) << sqlite3_errmsg(m_handle);
        return result;
    }

private:
    sqlite3* m_handle = nullptr;
};

TEST(ReaderTest, DoesNotWaitForAWriter) {
    const TemporaryFolder folder;
    ServerOptions options;
    options.database = folder.file("db");
    const Server server(options);
    Client client(server);
    client.insertId("S/C", {{"n", 1}});
    const Sqlite other(options.database);
    other.run("BEGIN IMMEDIATE");
    std::vector<std::thread> writers;
    std::atomic<int> inserted{0};
    for (int i = 0; i < 12; ++i) { // more than there are threads
        writers.emplace_back([&] { inserted += Client(server).send("POST", "S/C", empty).status == 201 ? 1 : 0; });
    }
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(client.listed("S/C?$filter=n+ge+0&$orderby=n", "n"), Json({1}));
    }
    EXPECT_EQ(inserted, 0);
    other.run("COMMIT");
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(inserted, 12);
    EXPECT_EQ(client.list("S/C").size(), 13U);
}

TEST(ReaderTest, PagesInStoredOrderStayRightWhileOthersInsertAndDelete) {
    Server server;
    Client client(server);
    std::string seed;
    constexpr int count = 500;
    for (int i = 0; i < count; ++i) {
        seed += std::string(i == 0 ? "" : ",") + R"({"location":"here","schemaName":"S","className":")" +
                (i % 3 == 0 ? "C" : "BaseClass") + R"(","properties":{"n":)" + std::to_string(i) + "}}";
    }
    server.seedText("{\"instances\":[" + seed + "]}");
    std::atomic<bool> isDone{false};
    std::thread writer([&] {
        Client other(server);
        while (!isDone) {
            // Comes after all that are there, and goes again.
            other.send("DELETE", "S/C/" + other.insertId("S/C", {{"n", count}}) + "/");
        }
    });
    for (int round = 0; round < 3; ++round) {
        int next = 0;
        for (int skip = 0; skip < count; skip += 50) {
            for (const Json& value : client.listed("S/BaseClass!poly?$top=50&$skip=" + std::to_string(skip), "n")) {
                EXPECT_EQ(value, next++);
            }
        }
        EXPECT_EQ(next, count);
    }
    isDone = true;
    writer.join();
}

TEST(ReaderTest, LatePagesAreThoseOfTheWholeList) {
    Server server;
    Client client(server);
    std::string seed;
    for (int i = 0; i < 1700; ++i) {
        seed += std::string(i == 0 ? "" : ",") + R"({"location":")" + (i % 17 == 0 ? "there" : "here") +
                R"(","schemaName":"S","className":")" + (i % 3 == 0 ? "C" : "BaseClass") + R"(","properties":{"n":)" +
                std::to_string(i) + "}}";
    }
    seed = "{\"instances\":[" + seed + "]}";
    server.seedText(seed);
    const auto expectPages = [&] {
        for (const std::string type : {"S/C?", "S/BaseClass?", "S/BaseClass!poly?", "S/C?$filter=n+ge+800&"}) {
            const Json all = client.listed(type, "n");
            for (std::size_t skip = 0; skip < all.size() + 200; skip += 97) {
                Json page = Json::array();
                for (std::size_t i = skip; i < std::min(skip + 2, all.size()); ++i) {
                    page.push_back(all[i]);
                }
                EXPECT_EQ(client.listed(type + "$top=2&$skip=" + std::to_string(skip), "n"), page)
                    << type << " " << skip;
            }
        }
    };
    expectPages();
    for (const Json& instance : client.list("S/C?$top=400")) { // more than a block of them
        client.send("DELETE", "S/C/" + instance["instanceId"].get<std::string>() + "/");
    }
    client.insertId("S/C", {{"n", -1}});
    expectPages();
    EXPECT_EQ(client.listed("S/C?$top=9&$skip=133", "n"), Json({-1}));
    server.reset();
    server.seedText(seed);
    expectPages();
    EXPECT_EQ(client.listed("S/C", "n").size(), 533U);
}

/// What clients were told is stored, as they remember it: paths of instances with their last text, and of files.
struct Acknowledged {
    std::mutex mutex;
    std::map<std::string, std::string> texts;
    /// Those whose last change was not acknowledged may have the new text.
    std::map<std::string, std::string> tried;
    std::map<std::string, std::size_t> files;
};

void work(int port, int seed, Acknowledged& known) {
    httplib::Client client("127.0.0.1", port);
    client.set_keep_alive(true);
    const auto post = [&](const std::string& path, const std::string& text) -> std::optional<std::string> {
        const httplib::Result result = client.Post(root + path, Client::envelope({{"t", text}}), "application/json");
        return result && result->status / 100 == 2 ? std::optional(result->body) : std::nullopt;
    };
    for (int i = 0;; ++i) {
        const std::string text = std::to_string(seed) + " " + std::to_string(i);
        const auto inserted = post("S/C", text);
        if (!inserted) {
            return;
        }
        const Json content = Json::parse(*inserted)["changedInstance"]["instanceAfterChange"];
        const std::string path = "S/C/" + content["instanceId"].get<std::string>() + "/";
        {
            const std::lock_guard lock(known.mutex);
            known.texts[path] = text;
            known.tried[path] = text + " later";
        }
        if (!post(path, text + " later")) {
            return;
        }
        const std::size_t size = 1 + static_cast<std::size_t>(i % 7) * 50'000;
        const httplib::Result put = client.Put(root + path + "$file", std::string(size, 'f'), "text/plain");
        const std::lock_guard lock(known.mutex);
        known.texts[path] = text + " later";
        if (!put || put->status != 200) {
            return;
        }
        known.files[path] = size;
    }
}

int portOf(const Process& process) {
    const std::string url = process.firstLine();
    return std::stoi("0" + url.substr(std::min(url.rfind(':') + 1, url.size())));
}

TEST(KeptTest, EverythingAcknowledgedIsThereAfterSigkill) {
    const TemporaryFolder folder;
    const std::string database = folder.file("db");
    Acknowledged known;
    for (int round = 0; round < 10; ++round) {
        Process process(folder, {"--database", database});
        const int port = portOf(process);
        ASSERT_GT(port, 0) << process.error();
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&, i] { work(port, round * 10 + i, known); });
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(60 + round * 17));
        process.signal(SIGKILL);
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    const Sqlite sqlite(database);
    EXPECT_EQ(sqlite.run("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(sqlite.run("PRAGMA foreign_key_check"), "");
    // Every instance is whole: with its history, and with what queries look at.
    EXPECT_EQ(sqlite.run("SELECT count(*) FROM instances i WHERE class = 'C' AND (NOT EXISTS (SELECT 1 FROM instances a"
                         " WHERE a.owner = i.id AND a.class = 'AuditRecord') OR NOT EXISTS (SELECT 1 FROM"
                         " property_values v WHERE v.instance = i.number AND v.value = i.properties ->> 't'))"),
              "0");
    ServerOptions options;
    options.database = database;
    const Server server(options);
    Client client(server);
    EXPECT_GT(known.texts.size(), 10U);
    for (const auto& [path, text] : known.texts) {
        const std::string stored = client.get(path)["instance"]["properties"]["t"];
        EXPECT_TRUE(stored == text || stored == known.tried[path]) << stored << " is neither " << text;
        const Answer file = client.send("GET", path + "$file");
        if (known.files.count(path) != 0) {
            EXPECT_EQ(file.body, std::string(known.files[path], 'f')) << path;
        } else {
            EXPECT_TRUE(file.status == 404 || file.body.size() % 50'000 == 1) << file.body.size();
        }
    }
}

TEST(KeptTest, AFullDiskIsAnErrorOfTheRequest) {
    const TemporaryFolder folder;
    const std::vector<std::string> arguments{"--database", folder.file("db")};
    std::vector<std::string> stored;
    {
        // A file that may not grow looks like a full disk to the server that is started.
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{400'000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        Process process(folder, arguments);
        setrlimit(RLIMIT_FSIZE, &before);
        Client client(portOf(process));
        Answer answer;
        while (stored.size() < 1000) {
            answer = client.send("POST", "S/C", Client::envelope({{"t", std::string(5000, 't')}}));
            if (answer.status != 201) {
                break;
            }
            stored.push_back(answer.json()["changedInstance"]["instanceAfterChange"]["instanceId"]);
        }
        EXPECT_EQ(answer.status, 500);
        EXPECT_EQ(answer.json()["errorId"], "InternalError");
        EXPECT_GT(stored.size(), 5U);
        EXPECT_EQ(client.list("S/C?$select=x").size(), stored.size());
        EXPECT_EQ(client.send("PUT", "S/C/" + stored[0] + "/$file", std::string(500'000, 'f')).status, 500);
        EXPECT_EQ(client.send("GET", "S/C/" + stored[0] + "/$file").status, 404);
        process.signal(SIGTERM);
        EXPECT_EQ(process.exitCode(), 0);
    }
    Process process(folder, arguments);
    Client client(portOf(process));
    Json ids = Json::array();
    for (const Json& instance : client.list("S/C")) {
        ids.push_back(instance["instanceId"]);
    }
    EXPECT_EQ(ids, Json(stored));
    EXPECT_EQ(client.send("POST", "S/C", empty).status, 201);
}

TEST(KeptTest, ADatabaseThatCantBeWrittenIsAnErrorAtOnce) {
    const TemporaryFolder folder;
    ServerOptions options;
    options.database = folder.file("db");
    {
        const Server server(options);
        Client client(server);
        const std::string kept = client.insertId("S/C");
        const auto refused = [&](const std::string& reason) {
            const Answer answer = Client(server).send("POST", "S/C/" + kept + "/", empty);
            EXPECT_EQ(answer.status, 500);
            EXPECT_NE(answer.body.find(reason), std::string::npos) << answer.body;
        };
        // Whoever waits for another program does so once for all that wait behind.
        const Sqlite other(options.database);
        other.run("BEGIN IMMEDIATE");
        const auto begin = std::chrono::steady_clock::now();
        std::vector<std::thread> writers;
        for (int i = 0; i < 12; ++i) {
            writers.emplace_back(refused, "locked");
        }
        std::for_each(writers.begin(), writers.end(), [](std::thread& writer) { writer.join(); });
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 15s);
        other.run("COMMIT");
        EXPECT_EQ(client.send("POST", "S/C", empty).status, 201);
        other.run("CREATE TRIGGER no BEFORE UPDATE ON instances BEGIN SELECT RAISE(ABORT, 'not now'); END");
        refused("not now");
        other.run("DROP TRIGGER no");
        // Where its file is not, what is written is lost.
        fs::rename(options.database, folder.file("elsewhere"));
        refused("moved or removed");
        EXPECT_EQ(client.list("S/C").size(), 2U);
        fs::rename(folder.file("elsewhere"), options.database);
        EXPECT_EQ(client.send("POST", "S/C", empty).status, 201);
    }
    // Root may write everything, and so becomes somebody else.
    fs::permissions(folder.file(""), fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    for (const auto& [name, isLocked] : {std::pair(options.database, "file"), std::pair(folder.file(""), "folder")}) {
        const fs::perms before = fs::status(name).permissions();
        const auto write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
        fs::permissions(name, write, fs::perm_options::remove);
        const bool wasRoot = geteuid() == 0 && seteuid(65534) == 0;
        EXPECT_THROW(const Server server(options), std::runtime_error) << isLocked;
        EXPECT_TRUE(!wasRoot || seteuid(0) == 0);
        fs::permissions(name, before);
    }
    EXPECT_EQ(Client(Server(options)).list("S/C").size(), 3U);
}

TEST(HostileTest, MalformedRequestsAreRefusedAtOnce) {
    ServerOptions options;
    options.maxBodyBytes = 5000;
    options.requestTimeout = 300s; // so that nothing ends by it
    const Server server(options);
    const std::string long9000(9000, 'x');
    const std::string zeros(1'000'000, '\0');
    std::string bomb(2000, '\0');
    uLongf bombSize = bomb.size();
    compress(reinterpret_cast<Bytef*>(bomb.data()), &bombSize, reinterpret_cast<const Bytef*>(zeros.data()),
             zeros.size());
    bomb.resize(bombSize);
    for (const auto& [said, expected] : std::vector<std::pair<std::string, std::string>>{
             {request("GET", long9000), "414"},
             {"GET " + std::string(100'000, 'x'), "414"},
             {request("GET", "S/C", "X: " + std::string(100'000, 'x') + "\r\n"), "431"},
             {request("GET", "S/C", "no colon\r\n"), "400"},
             {request("GET", "S/C", "Content-Length: x\r\n"), "400"},
             {request("POST", "S/C", "Content-Length: -1\r\n"), "400"},
             {request("POST", "S/C", "Content-Length: 99999999999999999999999\r\n"), "400"},
             {request("POST", "S/C", "Content-Length: 5001\r\n"), "413"},
             {request("POST", "S/C", "Expect: 100-continue\r\nContent-Length: 5001\r\n"), "413"},
             {request("POST", "S/C", "Content-Length: 30000000\r\n") + std::string(30000000, 'x'), "413"},
             {request("POST", "S/C", "Transfer-Encoding: chunked\r\nContent-Length: 3\r\n"), "400"},
             {request("POST", "S/C", "Transfer-Encoding: chunked\r\n") + "zz\r\n", "400"},
             {request("POST", "S/C", "Transfer-Encoding: chunked\r\n") + "1389\r\n" + std::string(5001, 'x'), "413"},
             {request("POST", "S/C", "Content-Encoding: br\r\nContent-Length: 1\r\n") + "x", "415"},
             {request("POST", "S/C", "Content-Encoding: gzip\r\nContent-Length: 1\r\n") + "x", "400"},
             {request("POST", "S/C",
                      "Content-Encoding: deflate\r\nContent-Length: " + std::to_string(bomb.size()) + "\r\n") +
                  bomb,
              "413"},
             {"NONSENSE\r\n\r\n", "400"},
             {"GET  / HTTP/1.1\r\n\r\n", "400"},
             {"GET / HTTP/3.0\r\n\r\n", "400"},
             {"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", "400"},
             {std::string("\0\1\2\3\r\n\r\n", 8), "400"},
             {"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03 hello over TLS\r\n\r\n", "400"},
             {"GET " + root + "../../etc/passwd HTTP/1.1\r\nConnection: close\r\n\r\n", "400"},
             {"GET /../../../etc/passwd HTTP/1.1\r\nConnection: close\r\n\r\n", "404"},
             {"GET * HTTP/1.1\r\nConnection: close\r\n\r\n", "404"},
             {"GET " + root + "S/C HTTP/1.0\r\n\r\n", "200"},
             {request("BREW", "S/C", "Connection: close\r\n"), "405"}}) {
        const RawConnection connection(server.port());
        EXPECT_TRUE(connection.say(said)) << "who still sends is heard out";
        std::string heard = connection.hear("\r\n\r\n");
        EXPECT_EQ(heard.substr(0, 12), "HTTP/1.1 " + expected) << said.substr(0, 100) << heard;
        if (expected == "413") {
            heard += heard.find('}') == std::string::npos ? connection.hear("}") : "";
            EXPECT_NE(heard.find("At most 5000 bytes are accepted"), std::string::npos) << heard;
        }
        EXPECT_TRUE(expected == "200" || heard.find("Content-Type: application/json") != std::string::npos) << heard;
    }
    // Two at once, and a body that waits to be asked for.
    const RawConnection connection(server.port());
    connection.say(request("GET", "S/C") + request("POST", "S/C", "Content-Length: 4\r\nExpect: 100-continue\r\n"));
    EXPECT_NE(connection.hear("100 Continue\r\n\r\n").find("HTTP/1.1 200"), std::string::npos);
    connection.say("null");
    EXPECT_EQ(connection.hear("\r\n\r\n").substr(0, 12), "HTTP/1.1 201");
    const std::string gone = request("DELETE", "S/C/" + Client(server).insertId("S/C") + "/");
    const RawConnection brief(server.port());
    brief.say(gone + request("HEAD", "S/C", "Connection: close\r\n"));
    const std::string two = brief.hear();
    EXPECT_EQ(two.substr(0, 27), "HTTP/1.1 204 No Content\r\n\r\n") << "without a length, and it goes on";
    EXPECT_NE(two.find("Connection: close\r\n\r\n"), std::string::npos) << two;
    EXPECT_EQ(two.substr(two.size() - 4), "\r\n\r\n") << "the head only";
}

TEST(HostileTest, SlowSendersAreEndedWithAReason) {
    ServerOptions options;
    options.requestTimeout = 150ms;
    const Server server(options);
    for (const auto& [said, expected] : std::vector<std::pair<std::string, std::string>>{
             {"GET /", "The head of the request did not come in time"},
             {request("POST", "S/C", "Content-Length: 10\r\n") + "x", "The body of the request did not come in time"},
             {"", ""}}) {
        const RawConnection connection(server.port());
        connection.say(said);
        const std::string heard = connection.hear();
        EXPECT_EQ(heard.substr(0, 12), expected.empty() ? "" : "HTTP/1.1 408") << said;
        EXPECT_NE(heard.find(expected), std::string::npos) << heard;
    }
}

TEST(HostileTest, SlowSendersHaveMoreTimeForMore) {
    ServerOptions options;
    options.requestTimeout = 1s;
    const Server server(options);
    const std::string path = "S/C/" + Client(server).insertId("S/C") + "/$file", part(100'000, 'x');
    const RawConnection slow(server.port());
    slow.say(request("PUT", path, "Connection: close\r\nContent-Length: 500000\r\n"));
    for (int i = 0; i < 5; ++i) {
        std::this_thread::sleep_for(300ms);
        slow.say(part);
    }
    EXPECT_EQ(slow.hear().substr(0, 12), "HTTP/1.1 200");
}

TEST(HostileTest, SlowReadersHaveMoreTimeForMore) {
    const TemporaryFolder folder;
    ServerOptions options;
    options.database = folder.file("slow.db");
    std::string path;
    const std::string large(30'000'000, 'x'); // more than lies between two sockets
    {
        const Server storing(options);
        Client client(storing);
        path = "S/C/" + client.insertId("S/C") + "/$file";
        EXPECT_EQ(client.send("PUT", path, large).status, 200);
    }
    options.requestTimeout = 500ms;
    const Server server(options);
    const RawConnection slow(server.port());
    slow.say(request("GET", path, "Connection: close\r\n"));
    std::this_thread::sleep_for(1500ms);
    EXPECT_GT(slow.hear().size(), large.size());
}

TEST(HostileTest, LettingGoOfAnswersLeavesIdleConnectionsTheirLimit) {
    ServerOptions options;
    options.requestTimeout = 300ms;
    Server server(options);
    server.inject(faultOf([](Fault& fault) { fault.delay = 5ms; }));
    const RawConnection held(server.port());
    held.say(request("GET", "S/C"));
    EXPECT_EQ(held.hear("]}").substr(0, 12), "HTTP/1.1 200");
    Client(server).list("S/C"); // meanwhile the other waits for its next request
    server.clearFaults();
    EXPECT_EQ(held.hear(), "");
}

void allowDescriptors() {
    rlimit descriptors{};
    getrlimit(RLIMIT_NOFILE, &descriptors);
    descriptors.rlim_cur = std::min<rlim_t>(descriptors.rlim_max, 4096);
    setrlimit(RLIMIT_NOFILE, &descriptors);
}

TEST(HostileTest, MemoryIsBounded) {
    allowDescriptors();
    const TemporaryFolder folder;
    const Process process(folder, {});
    const int port = portOf(process);
    Client client(port);
    std::vector<std::unique_ptr<RawConnection>> slow;
    for (int i = 0; i < 900; ++i) {
        slow.push_back(std::make_unique<RawConnection>(port));
        slow.back()->say(i % 2 == 0 ? "GET / HTTP/1.1\r\nX: " + std::string(60'000, 'x')
                                    : request("POST", "S/C", "Content-Length: 100000\r\n") + std::string(60'000, 'x'));
    }
    for (int i = 0; i < 300; ++i) {
        client.send("GET", "S/C", "", {{"X", std::string(60'000, 'x')}});
    }
    const auto many = [](std::size_t count) {
        std::string text = R"({"instance":{"properties":{"a":[0)";
        for (std::size_t i = 0; i < count; ++i) {
            text += i % 2 == 0 ? ",[]" : ",0";
        }
        return text + "]}}}";
    };
    EXPECT_EQ(client.send("POST", "S/C", many(199'995)).status, 201);
    for (const std::string& body : {many(199'996), many(5'000'000), std::string(17'000'000, ' ')}) {
        EXPECT_EQ(client.send("POST", "S/C", body).json()["errorId"], "PayloadTooLarge");
    }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which have memory of their own
    EXPECT_LT(process.peakMemory(), 256);
#endif
}

TEST(HostileTest, BodiesUnderWayAreBoundedTogether) {
    ServerOptions options;
    options.maxBodyBytes = std::size_t{16} * 1024 * 1024;
    const Server server(options);
    const std::string large(15'000'000, ' ');
    Client client(server);
    const auto answerOnce = [&](bool isRefused) {
        Answer answer;
        for (int i = 0; i < 100; ++i) { // until the service has read, or noticed, what the others do
            answer = client.send("POST", "S/C", large + "null");
            if ((answer.status == 503) == isRefused) {
                break;
            }
        }
        return answer;
    };
    std::vector<std::unique_ptr<RawConnection>> slow;
    for (int i = 0; i < 4; ++i) {
        slow.push_back(std::make_unique<RawConnection>(server.port()));
        slow.back()->say(request("POST", "S/C", "Content-Length: 15000001\r\n") + large);
    }
    EXPECT_NE(answerOnce(true).body.find("The requests under way take too much memory"), std::string::npos);
    slow.clear();
    EXPECT_EQ(answerOnce(false).status, 201) << "what broke off holds nothing any more";
    const std::string path = "S/C/" + client.insertId("S/C") + "/$file";
    EXPECT_EQ(client.send("PUT", path, large).status, 200);
    std::vector<std::unique_ptr<Client>> kept;
    for (int i = 0; i < 5; ++i) {
        kept.push_back(std::make_unique<Client>(server));
        EXPECT_EQ(kept.back()->send("GET", path).body.size(), large.size());
    }
    EXPECT_EQ(client.send("POST", "S/C", large + "null").status, 201) << "nor does what was sent";
}

TEST(HostileTest, ItGoesOnWhenDescriptorsAreThereAgain) {
    const TemporaryFolder folder;
    const Process process(folder, {});
    const int port = portOf(process);
    EXPECT_EQ(Client(port).list("S/C").size(), 0U);
    process.allowDescriptors(30);
    std::vector<std::unique_ptr<RawConnection>> many;
    for (int i = 0; i < 60; ++i) {
        many.push_back(std::make_unique<RawConnection>(port));
    }
    std::this_thread::sleep_for(100ms); // in which it fails to accept one
    many.clear();
    EXPECT_EQ(Client(port).send("GET", "S/C").status, 200);
}

TEST(HostileTest, FiveHundredSlowSendersHoldUpNobody) {
    allowDescriptors();
    ServerOptions options;
    options.requestTimeout = 300s;
    const Server server(options);
    std::vector<std::unique_ptr<RawConnection>> slow;
    const std::vector<std::string> beginnings{"", "GET /", request("POST", "S/C", "Content-Length: 100\r\n") + "x"};
    const auto add = [&](std::size_t count) {
        for (; slow.size() < count; slow.back()->say(beginnings[slow.size() % beginnings.size()])) {
            slow.push_back(std::make_unique<RawConnection>(server.port()));
        }
    };
    add(500);
    auto best = std::chrono::steady_clock::duration::max();
    for (int i = 0; i < 5; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(Client(server).send("POST", "S/C", empty).status, 201);
        EXPECT_EQ(Client(server).list("S/C").size(), static_cast<std::size_t>(i + 1));
        best = std::min(best, std::chrono::steady_clock::now() - begin);
    }
    EXPECT_LT(best, 1s);
    // Beyond a thousand the one that has waited the longest is closed.
    add(1010);
    EXPECT_EQ(Client(server).list("S/C").size(), 5U);
    EXPECT_EQ(slow[0]->hear().substr(0, 1), "");
}

TEST(PageTest, ShowsWhatIsStoredAndRunsNothingOfIt) {
    ServerOptions options;
    options.basePath = "/b";
    options.tokens = {{"t"}};
    Server server(options);
    Client client(server);
    std::string snow;
    for (int i = 0; i < 40; ++i) {
        snow += "雪";
    }
    std::string seed =
        R"({"instances":[{"location":"<L>","schemaName":"S","className":"C","instanceId":"i","properties":)"
        R"({"<b>&\"'":"<script>alert(1)</script>","long":")" +
        snow +
        R"("},"file":"iVBORw0KGgo="},)"
        R"({"location":"<L>","schemaName":"S","className":"C","instanceId":"t","file":"PHNjcmlwdD4="},)"
        R"({"location":"<L>","schemaName":"DynamicSchema","className":"_Comment","owner":"i","properties":{"Text":"hm"}},)"
        R"({"location":"<L>","schemaName":"DynamicSchema","className":"_Comment","owner":"i","properties":{"Text":"so"}})";
    for (int i = 0; i < 120; ++i) {
        seed += R"(,{"location":"many","schemaName":"S","className":"C","properties":{"n":"number )" +
                std::to_string(i) + "\"}}";
    }
    for (const std::string more : {"Five", "Six\",\"eTag\":\"f"}) {
        seed += R"(,{"location":"<L>","schemaName":"S","className":")" + more +
                R"(","properties":{"a":1,"b":2,"c":3,"d":4,"e":5)" + (more == "Five" ? "}}" : R"(,"f":6}})");
    }
    server.seedText(
        seed + R"(],"relationships":[{"location":"<L>","schemaName":"S","className":"R","source":"i","target":"t"}]})");
    const auto page = [&](const std::string& query) {
        const Answer answer = client.send("GET", "/b/" + query);
        EXPECT_EQ(answer.status, 200) << query;
        EXPECT_EQ(answer.header("X-Content-Type-Options"), "nosniff");
        EXPECT_NE(answer.header("Content-Security-Policy").find("default-src 'none'"), std::string::npos);
        EXPECT_EQ(answer.body.find("<script"), query.find("file") == std::string::npos ? std::string::npos : 0U)
            << query;
        return answer.body;
    };
    const auto has = [](const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    };
    EXPECT_TRUE(has(Client(Server()).send("GET", "/").body, "Nothing is stored yet"));
    EXPECT_TRUE(has(page("?requests=1"), "None yet"));
    EXPECT_TRUE(has(page("?location=%3CL%3E&id=t"), "<td>S.R<td>backward<td>S.C<td>"));
    EXPECT_TRUE(has(page(""), "<a href=\"?location=%3CL%3E\">&lt;L&gt;</a>"));
    EXPECT_TRUE(has(client.send("GET", "/b").body, "&lt;L&gt;"));
    EXPECT_EQ(client.send("GET", "/b").header("Content-Type"), "text/html; charset=utf-8");
    EXPECT_TRUE(has(page("?location=%3CL%3E"), "?location=%3CL%3E&amp;class=S%2EC\">S.C</a><td>2"));
    EXPECT_TRUE(has(page("?location=%3CL%3E&class=S.C"),
                    "&lt;script&gt;alert(1)&lt;/script&gt;\n<b>long</b> " + snow.substr(0, 78) + "…"));
    EXPECT_TRUE(has(page("?location=%3CL%3E&class=S.Five"), "<b>d</b> 4\n<b>e</b> 5</table>"));
    EXPECT_TRUE(has(page("?location=%3CL%3E&class=S.Six"), "<b>d</b> 4\n<b>e</b> 5 …</table>"));
    const std::string instance = page("?location=%3CL%3E&id=i");
    for (const char* part : {"<td>&lt;b&gt;&amp;&quot;&#39;<td>&lt;script&gt;", "<img", "file=1", "<h2>_Comment (2)",
                             "<td>S.R<td>forward<td>S.C<td>", "</b> hm"}) {
        EXPECT_TRUE(has(instance, part)) << part << "\n" << instance;
    }
    EXPECT_LT(instance.find("</b> hm"), instance.find("</b> so"));
    EXPECT_FALSE(has(page("?location=%3CL%3E&id=t"), "<img"));
    EXPECT_EQ(client.send("GET", "/b/?location=%3CL%3E&id=i&file=1").header("Content-Type"), "image/png");
    for (const auto& [type, bytes] : std::vector<std::pair<std::string, std::string>>{
             {"gif", "R0lGODdh"}, {"gif", "R0lGODlh"}, {"jpeg", "/9j/"}, {"webp", "UklGRgAAAABXRUJQ"}}) {
        server.seedText(R"({"instances":[{"location":"pictures","schemaName":"S","className":"C","instanceId":")" +
                        bytes.substr(0, 7) + R"(","file":")" + bytes + "\"}]}");
        EXPECT_EQ(client.send("GET", "/b/?location=pictures&file=1&id=" + bytes.substr(0, 7)).header("Content-Type"),
                  "image/" + type);
    }
    const Answer text = client.send("GET", "/b/?location=%3CL%3E&id=t&file=1");
    EXPECT_EQ(text.header("Content-Type") + text.header("Content-Disposition"), "application/octet-streamattachment");

    const std::string first = page("?location=many&class=S.C");
    EXPECT_TRUE(has(first, "Page 1 of 3, 120 instances") && has(first, "number 49<") && !has(first, "number 50<") &&
                has(first, "page=2") && !has(first, "Previous"));
    const std::string second = page("?location=many&class=S.C&page=2");
    for (const char* part : {"page=1\">First", "page=1\">Previous", "Page 2 of 3", "page=3\">Next", "page=3\">Last",
                             "number 50<", "number 99<"}) {
        EXPECT_TRUE(has(second, part)) << part;
    }
    const std::string last = page("?location=many&class=S.C&page=99");
    EXPECT_TRUE(has(last, "Page 3 of 3") && has(last, "number 119") && has(last, "page=2") && !has(last, "Next"));
    EXPECT_TRUE(has(page("?location=many&class=S.C&page=-1"), "Page 1 of 3"));

    server.inject(faultOf([](Fault& fault) { fault.status = 418; }));
    const httplib::Headers token{{"Authorization", "Bearer t"}};
    client.send("GET", "/b" + root + "S/C?<x>", "", token);
    const Json inserted = client.send("POST", "/b" + root + "S/C", Client::envelope({{"v", "w"}}), token).json();
    const std::string id = inserted["changedInstance"]["instanceAfterChange"]["instanceId"];
    client.send("GET", "/b" + root + "S/C!", "", token);
    const std::string requests = page("?requests=1");
    EXPECT_TRUE(has(requests, "<span class=bad>400</span>"));
    for (const LoggedRequest& one : server.requests()) {
        const auto milliseconds = std::chrono::time_point_cast<std::chrono::milliseconds>(one.time).time_since_epoch();
        EXPECT_TRUE(has(requests, "." + std::to_string(1000 + milliseconds.count() % 1000).substr(1) + "</span>"));
    }
    EXPECT_TRUE(has(requests, "<tr class=fault>") && has(requests, "S/C?&lt;x&gt;") && has(requests, "418") &&
                has(requests, "changed") && !has(requests, "Bearer") &&
                has(requests, "all operations of all classes: status 418<td>3<td>1<td>0"))
        << requests;
    EXPECT_LT(requests.find("S/C!"), requests.find("S/C?&lt;x&gt;")) << "the last one first";
    server.clearFaults();
    server.inject(faultOf([](Fault& fault) {
        fault.operation = "list";
        fault.className = "C";
        fault.delay = 5ms;
        fault.isReset = fault.isAfterEffect = true;
        fault.truncateAfter = 3;
        fault.dripBytes = 1;
        fault.dripPause = 1ms;
        fault.times = 0;
    }));
    server.inject(faultOf([](Fault& fault) { fault.isStall = true; }));
    const std::string faulty = page("?requests=1");
    EXPECT_TRUE(has(faulty, "list of C: 5 ms late reset cut after 3 bytes dripping after the effect<td>0<td>0<td>all"));
    EXPECT_TRUE(has(faulty, "all classes: no answer<td>0<td>0<td>1")) << faulty;
    server.clearFaults();
    client.send("POST", "/b" + root + "S/C/" + id + "/", Client::envelope({{"v", "x"}}), token);
    const std::string changed = page("?location=here&id=" + id);
    EXPECT_TRUE(has(changed, "v:  → w") && changed.find("v: w → x") < changed.find("v:  → w")) << "the last one first";
    client.send("DELETE", "/b" + root + "S/C/" + id + "/", "", token);
    EXPECT_TRUE(has(page("?location=here&id=" + id), "was deleted"));

    EXPECT_EQ(client.send("GET", "/b/?location=none&id=none").status, 404);
    EXPECT_EQ(client.send("POST", "/b/", "x").status, 405);
    EXPECT_EQ(client.send("GET", "/b/?location=%FF").status, 400);
    EXPECT_EQ(client.send("GET", "/b/", "", {{"Host", "elsewhere.example"}, {"Authorization", "Bearer t"}}).status,
              404);
}

} // namespace
} // namespace repository_test
