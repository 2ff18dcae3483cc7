#include "support/FailingMemory.h"
#include "support/SomeIssues.h"

#include <VarnelAPI/Forms.h>

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

/// Memory runs out at each single allocation of what is done with models and bodies, once, or from there on: it ends
/// with std::bad_alloc, or with all that it should give, and then the same works.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::model;
using How = FailingMemory::How;

struct Use {
    const char* name;
    /// All that comes of what it has `within` do, where memory may fail.
    std::string (*run)(const std::function<void(const std::function<void()>&)>& within);
    /// How many allocations it makes at least.
    uint64_t points;
};

constexpr Use uses[] = {
    {"reads a model",
     [](const auto& within) {
         auto json = web::json::value::parse(text(someIssues));
         DynamicSchemaBaseClassInstances model, copy;
         within([&] {
             model.fromJson(json);
             copy = model;
         });
         return utf8(copy.toJson().serialize());
     },
     20},
    {"reads custom values",
     [](const auto& within) {
         auto json = web::json::value::parse(text(R"([{"a":"a text that is longer"},{"b":1.5,"c":true}])"));
         DynamicSchemaArrayWithCustomProps values;
         within([&] { values.fromJson(json); });
         return utf8(values.toJson().serialize());
     },
     5},
    {"writes a model",
     [](const auto& within) {
         const auto body = someIssue();
         web::json::value json;
         within([&] { json = body->toJson(); });
         return utf8(json.serialize());
     },
     15},
    {"writes a multipart body",
     [](const auto& within) {
         const auto body = someIssue();
         const std::string file(100, 'x');
         std::string written;
         within([&] {
             const auto multipart = std::make_shared<MultipartFormData>(_XPLATSTR("B"));
             body->toMultipart(multipart, _XPLATSTR("a prefix of some length"));
             multipart->add(ModelBase::toHttpContent(_XPLATSTR("a number"), 1234567890123456789));
             multipart->add(ModelBase::toHttpContent(_XPLATSTR("a file of some length"), text(file)));
             std::ostringstream stream;
             stream.exceptions(std::ios_base::badbit); // or it would keep to itself what is thrown
             multipart->writeTo(stream);
             written = stream.str();
         });
         return written;
     },
     80},
    {"makes a boundary",
     [](const auto& within) {
         std::size_t length = 0;
         within([&] { length = MultipartFormData().getBoundary().size(); });
         return std::to_string(length);
     },
     2}};

TEST(OutOfMemoryTest, LeavesModelsAndBodiesWholeOrThrows) {
    for (const Use& use : uses) {
        const auto undisturbed = [&] { return use.run([](const auto& work) { work(); }); };
        const std::string expected = undisturbed();
        for (const How how : {How::Once, How::FromThenOn}) {
            uint64_t point = 0, thrown = 0;
            do {
                try {
                    const std::string result = use.run([&](const auto& work) {
                        FailingMemory::fail(++point, how, FailingMemory::Where::Here);
                        try {
                            work();
                        } catch (...) {
                            FailingMemory::mend();
                            throw;
                        }
                        FailingMemory::mend();
                    });
                    ASSERT_EQ(result, expected) << use.name << ", " << point;
                } catch (const std::bad_alloc&) {
                    ++thrown;
                }
                ASSERT_EQ(undisturbed(), expected) << use.name << ", after " << point;
            } while (FailingMemory::failures() != 0);
            EXPECT_GE(point - 1, use.points) << use.name;
            EXPECT_GE(thrown, use.points - 2) << use.name;
        }
    }
}

} // namespace
} // namespace forms_test
