#pragma once

// What the programs share and the guides do not show: a repository in the same process, with a project "tower", a
// client for it, and a look at what the shown code printed.

#include <VarnelAPI/Forms.h>
#include <VarnelAPI/Forms/kit.h>
#include <VarnelRepository/Server.h>

#include <iostream>
#include <sstream>
#include <string>

class Setting {
public:
    explicit Setting(const VarnelAPI::Forms::repository::ServerOptions& options = {}) : server(options) {
        server.seedText(R"({"instances": [
            {"location": "tower", "schemaName": "DynamicSchema", "className": "Defect", "instanceId": "crack", "properties":
                {"_Subject": "Crack in the wall", "Status": "Open", "Floor": 3, "_DueDate": "2026-12-01T00:00:00Z"}},
            {"location": "tower", "schemaName": "DynamicSchema", "className": "Defect", "instanceId": "cable", "properties":
                {"_Subject": "Loose cable", "Status": "Open", "Floor": 5, "_DueDate": "2027-01-15T00:00:00Z"}},
            {"location": "tower", "schemaName": "DynamicSchema", "className": "Defect", "instanceId": "rail", "properties":
                {"_Subject": "Guard rail missing", "Status": "Closed", "Closed": true, "Floor": 3}},
            {"location": "tower", "schemaName": "DynamicSchema", "className": "Attachment", "instanceId": "photo",
                "owner": "crack", "properties": {"Name": "crack.jpg"}, "file": "VGhlIHBpY3R1cmU="}]})");
        configuration->setBaseUrl(utility::conversions::to_string_t(server.url()));
        std::cout.rdbuf(m_Printed.rdbuf());
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;
    ~Setting() { std::cout.rdbuf(m_Terminal); }

    /// The exit code of the program: whether exactly this was printed.
    int printed(const std::string& expected) {
        const std::string text = m_Printed.str();
        std::cerr << text;
        if (text != expected) {
            std::cerr << "-- instead of --\n" << expected;
        }
        return text == expected ? 0 : 1;
    }

    VarnelAPI::Forms::repository::Server server;
    std::shared_ptr<VarnelAPI::Forms::api::ApiConfiguration> configuration =
        std::make_shared<VarnelAPI::Forms::api::ApiConfiguration>();
    std::shared_ptr<VarnelAPI::Forms::api::ApiClient> client =
        std::make_shared<VarnelAPI::Forms::api::ApiClient>(configuration);

private:
    std::ostringstream m_Printed;
    std::streambuf* const m_Terminal = std::cout.rdbuf();
};
