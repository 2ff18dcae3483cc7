#include "support/ServiceTest.h"

#include <VarnelAPI/Forms/kit.h>

namespace forms_test {
namespace {

namespace kit = VarnelAPI::Forms::kit;
using Issue = model::DynamicSchemaBaseClass;

class InstancesTest : public ServiceTest {
protected:
    /// Updates the issue "i" by `change`.
    template <class Change, class... Attempts>
    auto update(Change change, Attempts... attempts) {
        return kit::update(api::BaseClassApi(client), &api::BaseClassApi::get_DynamicSchemaBaseClass_instanceId,
                           &api::BaseClassApi::update_DynamicSchemaBaseClass, "L", "i", change, attempts...);
    }
    void replyInstance(const std::string& eTag, const std::string& properties) {
        server.reply(Reply::json(R"({"instance":{"instanceId":"i","className":"C","eTag":")" + eTag +
                                 R"(","properties":)" + properties + "}}"));
    }
    void replyStored() {
        server.reply(Reply::json(R"({"changedInstance":{"instanceAfterChange":{"instanceId":"new","eTag":"9"}}})"));
    }
    std::vector<std::string> bodies() const {
        std::vector<std::string> all;
        for (const Request& request : server.requests()) {
            if (!request.body.empty()) {
                all.push_back(request.body);
            }
        }
        return all;
    }
};

TEST_F(InstancesTest, AreWrappedForAnyOperationAndTakenOutOfTheAnswer) {
    Issue issue;
    issue.setStatus("Open");
    replyStored();
    const auto stored =
        kit::stored(api::BaseClassApi(client).insert_DynamicSchemaBaseClass("L", kit::envelope(issue, "C"))).get();
    EXPECT_EQ(stored->getInstanceId(), "new");
    EXPECT_TRUE(server.requests().back().target.find("/DynamicSchema/C") != std::string::npos);
    model::ListsListTree tree;
    tree.setTree("a>b");
    replyStored();
    const auto answer =
        api::ListTreeApi(client).update_ListsListTree("L", "i", kit::envelope(std::move(tree), "", "7")).get();
    EXPECT_EQ(kit::stored(answer)->getETag(), "9");
    const std::shared_ptr<model::SchemasSchemaInstance> none = kit::envelope(model::SchemasSchema());
    EXPECT_EQ(none->toJson().serialize(), R"({"instance":{"properties":{}}})");
    EXPECT_EQ(bodies(), (std::vector<std::string>{R"({"instance":{"className":"C","properties":{"Status":"Open"}}})",
                                                  R"({"instance":{"eTag":"7","properties":{"Tree":"a>b"}}})"}));
    replyInstance("1", "{}");
    EXPECT_EQ(kit::stored(api::BaseClassApi(client).get_DynamicSchemaBaseClass_instanceId("L", "i")).get()->getETag(),
              "1");
}

TEST_F(InstancesTest, ThatAnAnswerLacksAreAClearError) {
    const auto lack = [](const std::string& json) {
        const auto answer = std::make_shared<model::DynamicSchemaBaseClassChangedInstance>();
        auto value = web::json::value::parse(json);
        answer->fromJson(value);
        return messageOf<std::runtime_error>([&] { kit::stored(answer); });
    };
    EXPECT_EQ(lack("{}"), "the service's answer has no changedInstance");
    EXPECT_EQ(messageOf<std::runtime_error>(
                  [] { kit::stored(std::shared_ptr<model::DynamicSchemaBaseClassChangedInstance>()); }),
              "the service's answer has no changedInstance");
    EXPECT_EQ(messageOf<std::runtime_error>([] { kit::stored(std::shared_ptr<model::DynamicSchemaFileInstance>()); }),
              "the service's answer has no instance");
    EXPECT_EQ(lack(R"({"changedInstance":{}})"), "the service's answer has no instanceAfterChange");
    EXPECT_THROW(kit::stored(std::make_shared<model::DynamicSchemaFileInstance>()), std::runtime_error);
    server.reply(Reply::json("{}"));
    kit::stored(api::BaseClassApi(client).get_DynamicSchemaBaseClass_instanceId("L", "dropped"));
    server.waitForReplies(1);
}

TEST_F(InstancesTest, AreCountedOverAllClasses) {
    server.reply(
        Reply::json(R"({"instances":[{"properties":{"count":3}},null,{},{"properties":{"count":5000000000}}]})"));
    EXPECT_EQ(kit::total(api::FileApi(client).count_DynamicSchemaFile("L")).get(), 5000000003);
    EXPECT_EQ(kit::total(std::make_shared<model::DynamicSchemaFileInstanceCount>()), 0);
    EXPECT_EQ(
        messageOf<std::runtime_error>([] { kit::total(std::shared_ptr<model::DynamicSchemaFileInstanceCount>()); }),
        "the service's answer has no instances");
}

TEST_F(InstancesTest, AreUpdatedWithWhatChangedOnly) {
    replyInstance("1",
                  R"({"_Subject":"s","Status":"Open","Latitude":1.5,"Crew":"a","Old":1,"_ModelPinLocation":{"x":1}})");
    replyStored();
    const auto stored = update([](Issue& issue) {
                            issue.setStatus(issue.getStatus() + "ed");
                            issue.unsetCustomProp("Old");
                            issue.setCustomProp("Crew", 2);
                            issue.getModelPinLocation()->setX(2);
                        }).get();
    EXPECT_EQ(stored->getInstanceId(), "new");
    for (const Request& request : server.requests()) {
        EXPECT_EQ(request.target.substr(0, request.target.find('?')),
                  "/base/sv1.2/Repositories/Varnel.Forms--L/DynamicSchema/BaseClass/i/");
    }
    const auto sent = web::json::value::parse(bodies().at(0)).at("instance");
    EXPECT_EQ(sent.at("eTag").as_string() + sent.at("className").as_string(), "1C");
    const auto properties = sent.at("properties");
    EXPECT_EQ(properties.size(), 4U) << properties.serialize();
    EXPECT_EQ(properties.at("Status").as_string(), "Opened");
    EXPECT_EQ(properties.at("Crew").as_integer(), 2);
    EXPECT_TRUE(properties.at("Old").is_null());
    EXPECT_EQ(properties.at("_ModelPinLocation").at("x").as_double(), 2);
    // Nothing to change, nothing to send.
    replyInstance("1", R"({"Status":"Open"})");
    EXPECT_EQ(update([](Issue& issue) { issue.setStatus("Open"); }).get()->getETag(), "1");
    EXPECT_EQ(bodies().size(), 1U);
}

TEST_F(InstancesTest, AreUpdatedAgainAfterAConflict) {
    const auto close = [](Issue& issue) { issue.setDescription(issue.getDescription() + "+"); };
    const Reply conflict = Reply::json("{}", 409, "Conflict");
    for (const char* eTag : {"1", "2"}) {
        replyInstance(eTag, R"({"_Description":")" + std::string(eTag) + "\"}");
        server.reply(conflict);
    }
    replyInstance("3", R"({"_Description":"3"})");
    replyStored();
    EXPECT_EQ(update(close, 3).get()->getInstanceId(), "new");
    EXPECT_EQ(bodies().at(2), R"({"instance":{"className":"C","eTag":"3","properties":{"_Description":"3+"}}})");
    replyInstance("1", "{}");
    server.reply(conflict);
    replyInstance("2", "{}");
    server.reply(conflict);
    const auto before = server.requests().size();
    EXPECT_EQ(apiErrorOf([&] { update(close, 2).get(); }),
              "409 error calling update_DynamicSchemaBaseClass: Conflict|{}");
    EXPECT_EQ(server.requests().size(), before + 4);
    for (int i = 0; i < 5; ++i) { // as often as it is tried unless said otherwise
        replyInstance("1", "{}");
        server.reply(conflict);
    }
    EXPECT_THROW(update(close).get(), api::ApiException);
    EXPECT_EQ(server.requests().size(), before + 14);
    replyInstance("1", "{}");
    server.reply(conflict);
    EXPECT_THROW(update(close, 1).get(), api::ApiException);
    EXPECT_EQ(server.requests().size(), before + 16);
}

TEST_F(InstancesTest, AreUpdatedOnceIfAnythingElseFails) {
    const auto close = [](Issue& issue) { issue.setStatus("Closed"); };
    replyInstance("1", "{}");
    server.reply(Reply::json("{}", 500, "Broken"));
    EXPECT_THROW(update(close).get(), api::ApiException);
    server.reply(Reply::json("{}", 404, "None"));
    EXPECT_THROW(update(close).get(), api::ApiException);
    replyInstance("1", "{}");
    EXPECT_EQ(messageOf<std::domain_error>([&] { update([](Issue&) { throw std::domain_error("no"); }).get(); }), "no");
    replyInstance("", "{}");
    EXPECT_EQ(messageOf<std::runtime_error>([&] { update(close).get(); }), "the service's answer has no eTag");
    EXPECT_EQ(messageOf<std::invalid_argument>([&] { update(close, 0); }), "an update takes at least one attempt");
    EXPECT_THROW(kit::update(api::BaseClassApi(client), &api::BaseClassApi::get_DynamicSchemaBaseClass_instanceId,
                             &api::BaseClassApi::update_DynamicSchemaBaseClass, "L", "..", close),
                 std::invalid_argument);
    EXPECT_EQ(server.requests().size(), 5U);
    replyInstance("", "{}");
    update(close);
    server.waitForReplies(6);
    replyInstance("1", "{}");
    server.reply(Reply::raw("").endingWith(Reply::Ending::Reset));
    EXPECT_THROW(update(close).get(), web::http::http_exception);
    EXPECT_EQ(server.requests().size(), 8U) << "that is no conflict";
    server.reply(Reply::json(R"({"instance":{"instanceId":"i","className":"C","eTag":"1"}})"));
    replyStored();
    update(close).get();
    EXPECT_EQ(bodies().back(), R"({"instance":{"className":"C","eTag":"1","properties":{"Status":"Closed"}}})");
}

} // namespace
} // namespace forms_test
