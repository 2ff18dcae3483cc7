#include <gtest/gtest.h>

#include <VarnelAPI/Forms.h>
#include <VarnelRepository/Server.h>

using namespace VarnelAPI::Forms;

TEST(Comments, AreListedOnceTheServiceIsBack) {
    repository::Server server;
    server.seedText(R"({"instances": [{"location": "here", "schemaName": "DynamicSchema",
                        "className": "_Comment", "properties": {"Text": "Mind the gap"}}]})");
    repository::Fault busy;
    busy.operation = "list";
    busy.status = 503;
    const auto id = server.inject(busy);

    const auto configuration = std::make_shared<api::ApiConfiguration>();
    configuration->setBaseUrl(utility::conversions::to_string_t(server.url()));
    const api::CommentApi comments(std::make_shared<api::ApiClient>(configuration));
    EXPECT_THROW(comments.select_DynamicSchemaComment(_XPLATSTR("here")).get(), api::ApiException);
    EXPECT_EQ(server.fault(id).left, 0);
    const auto list = comments.select_DynamicSchemaComment(_XPLATSTR("here")).get();
    EXPECT_EQ(list->getInstances().at(0)->getProperties()->getText(), _XPLATSTR("Mind the gap"));
}
