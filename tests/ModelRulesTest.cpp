#include "support/Seeds.h"
#include "support/ServiceTest.h"

#include <thread>

/// The rules of the models that hold for single kinds of property, values or classes. What holds for all is in the
/// walk over all classes.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::model;
using web::json::json_exception;
using web::json::value;

template <class M>
void read(M& model, const std::string& jsonText) {
    seedJson(model, jsonText);
    const auto wide = text(jsonText);
    auto json = value::parse(wide);
    model.fromJson(json);
    EXPECT_EQ(json, value::parse(wide)) << "what was read is left as it was";
}

template <class M>
M readNew(const std::string& jsonText) {
    M model;
    read(model, jsonText);
    return model;
}

std::string textOf(const ModelBase& model) {
    return utf8(model.toJson().serialize());
}

/// The names of a model's parts, each followed by a blank.
std::string partNames(const ModelBase& model, const std::string& prefix = "") {
    const auto multipart = std::make_shared<MultipartFormData>();
    model.toMultipart(multipart, text(prefix));
    std::string names;
    for (const auto& part : multipart->getContents()) {
        names += utf8(part->getName()) + " ";
    }
    return names;
}

std::shared_ptr<MultipartFormData> multipartOf(const std::map<std::string, std::string>& parts) {
    auto multipart = std::make_shared<MultipartFormData>();
    for (const auto& [name, data] : parts) {
        multipart->add(ModelBase::toHttpContent(text(name), text(data)));
    }
    return multipart;
}

template <class M>
void readParts(M& model, const std::map<std::string, std::string>& parts, const std::string& prefix = "") {
    const auto multipart = multipartOf(parts);
    seedParts(model, *multipart);
    model.fromMultiPart(multipart, text(prefix));
}

/// Steps on a model with custom properties, kept as they are taken.
template <class M>
class Steps {
public:
    explicit Steps(char letter, const std::string& json = "null") : m_Kept(1, letter) { read(json); }
    ~Steps() { seed("DynamicClasses", m_Kept); }
    Steps(const Steps&) = delete;
    Steps& operator=(const Steps&) = delete;

    void read(const std::string& json) {
        keep('j', json);
        forms_test::read(model, json);
    }
    template <class T>
    void set(const std::string& name, const T& custom) {
        const value json(custom);
        keep(json.is_string() ? 's' : 'v', name, json.is_string() ? json.as_string() : json.serialize());
        model.setCustomProp(text(name), custom);
    }
    void unset(const std::string& name) {
        keep('u', name);
        model.unsetCustomProp(text(name));
    }
    void setTypeForArray(const std::string& json) {
        keep('a', json);
        model.setTypeForArray(value::parse(text(json)));
    }
    void setTypeForVal(const std::string& json) {
        keep('v', json);
        model.setTypeForVal(value::parse(text(json)));
    }
    void readPart(const std::string& name, const std::string& data) {
        keep('m', name, data);
        readParts(model, {{name, data}}, "p");
    }
    template <class Get, class Set>
    void setLastToFirst(Get getter, Set setter) {
        keep('l', "");
        (model.*setter)(model.size() - 1, (model.*getter)(0));
    }
    void remove(int i) {
        keep('r', std::to_string(i));
        model.remove(i);
    }

    M model;

private:
    template <class... Text>
    void keep(char step, const Text&... texts) {
        m_Kept += step + fields(texts...);
    }

    std::string m_Kept;
};

TEST(Reading, KeepsWhatIsMissingOrNullAndIgnoresWhatIsUnknown) {
    auto comment = readNew<DynamicSchema_Comment>(R"({"Author":"Ann","Text":null,"Unknown":{"Text":"x"},"author":1})");
    EXPECT_TRUE(comment.authorIsSet());
    EXPECT_FALSE(comment.textIsSet());
    read(comment, R"({"Text":"hello","Author":null})");
    EXPECT_EQ(textOf(comment), R"({"Author":"Ann","Text":"hello"})");
    for (const auto* noObject : {"null", "[]", "\"Text\"", "1"}) {
        read(comment, noObject);
    }
    EXPECT_EQ(textOf(comment), R"({"Author":"Ann","Text":"hello"})");
    read(comment, R"({"Text":5})");
    EXPECT_EQ(textOf(comment), R"({"Author":"Ann","Text":""})") << "a number is no text";
    const auto stats = readNew<PlexumStats>(R"({"Count":1})");
    EXPECT_FALSE(stats.assignedIsSet());
    EXPECT_EQ(stats.getAssigned(), 0);
}

TEST(Reading, NamesThePlaceOfAValueOfTheWrongType) {
    const auto refusal = [](auto model, const std::string& text) {
        return messageOf<json_exception>([&] { read(model, text); });
    };
    EXPECT_EQ(refusal(SchemasClass(), R"({"IsShared":1})"), "IsShared: not a boolean");
    EXPECT_EQ(refusal(ListsListGroup(), R"({"Lists":"x"})"), "Lists: not an array");
    EXPECT_EQ(refusal(PlexumStats(), R"({"Open":5000000000})"),
              "Open: the number is beyond the range of a 32-bit integer");
    EXPECT_EQ(refusal(ModelViewDefinition(), R"({"cameraInfo":{"rotation":[[1],[2,"x"]]}})"),
              "cameraInfo.rotation[1][1]: not a number");
    EXPECT_EQ(refusal(ModelViewDefinitionCameraInfo(), R"({"origin":[null]})"), "origin[0]: not a number");
    EXPECT_EQ(refusal(ModelViewDefinitionCameraInfo(), R"({"rotation":[[1,null]]})"), "rotation[0][1]: not a number");

    DynamicSchemaFile file;
    messageOf<json_exception>([&] { read(file, R"({"Name":"a","Size":"b","CreatedDate":"2024-02-29T12:00:00Z"})"); });
    EXPECT_EQ(textOf(file), R"({"Name":"a"})") << "what came before stays, and nothing is half set";
    SchemasClassInstance outer;
    messageOf<json_exception>([&] { read(outer, R"({"instance":{"properties":{"IsShared":1}}})"); });
    EXPECT_FALSE(outer.instanceIsSet());
}

TEST(Reading, TakesTextsOutOfATreeThatIsGivenAway) {
    DynamicSchemaBaseClass issue;
    issue.fromJson(value::parse(R"({"Status":"open","Extra":{"a":1}})"_t));
    EXPECT_EQ(textOf(issue), R"({"Status":"open","Extra":{"a":1}})");
}

TEST(Lists, AreReplacedByEveryReading) {
    auto list = readNew<SchemasSchemaInstances>(R"({"instances":[{"eTag":"1"},null,{"eTag":"2"}]})");
    ASSERT_EQ(list.getInstances().size(), 3U);
    EXPECT_EQ(list.getInstances()[1], nullptr);
    EXPECT_EQ(textOf(list), R"({"instances":[{"eTag":"1"},null,{"eTag":"2"}]})");
    EXPECT_EQ(partNames(list), "instances ");
    for (const auto* without : {"{}", R"({"instances":null})", R"({"instances":[]})", "[]"}) {
        read(list, R"({"instances":[{}]})");
        read(list, without);
        EXPECT_TRUE(list.getInstances().empty()) << without;
    }
    list.setInstances({});
    EXPECT_TRUE(list.instancesIsSet());
    EXPECT_EQ(textOf(list), "{}") << "an empty list is not written, set or not";
    EXPECT_EQ(partNames(list), "");
    list.getInstances().push_back(nullptr);
    list.unsetInstances();
    EXPECT_EQ(textOf(list), R"({"instances":[null]})") << "any other is";

    EXPECT_EQ(textOf(readNew<ListsListTree>(R"({"Lists":["a",null,1]})")), R"({"Lists":["a","",""]})");
    auto group = readNew<ListsListGroup>(R"({"Lists":["old"]})");
    readParts(group, {{"Lists", R"(["a","b"])"}});
    EXPECT_EQ(textOf(group), R"({"Lists":["a","b"]})");
    messageOf<json_exception>([&] { readParts(group, {{"Lists", "a,b"}}); });
    group.setLists({"old"_t});
    readParts(group, {});
    EXPECT_EQ(textOf(group), "{}") << "also by its absence";
}

TEST(Nested, ModelsAreSharedByCopiesAndMayBeMissing) {
    SchemasSchemaInstance instance;
    instance.setInstance(nullptr);
    EXPECT_EQ(textOf(instance), R"({"instance":null})");
    EXPECT_EQ(partNames(instance), "");
    instance.setInstance(std::make_shared<SchemasSchemaInstanceContent>());
    const SchemasSchemaInstance copy = instance;
    instance.getInstance()->setETag("v2"_t);
    EXPECT_EQ(textOf(copy), R"({"instance":{"eTag":"v2"}})");
    EXPECT_EQ(partNames(instance, "outer"), "instance.eTag ") << "prefixes don't add up";

    readParts(instance, {{"instance", ""}, {"eTag", "bare"}, {"instance.eTag", "prefixed"}}, "outer");
    EXPECT_EQ(textOf(instance), R"({"instance":{"eTag":"bare"}})") << "a part named by its key asks for the model";
    instance.unsetInstance();
    EXPECT_EQ(textOf(instance) + partNames(instance), "{}");
    RelationshipToForm relationship = readNew<RelationshipToForm>(R"({"relatedInstance":null})");
    EXPECT_EQ(relationship.getRelatedInstance(), nullptr);
    EXPECT_FALSE(relationship.relatedInstanceIsSet());
}

TEST(Models, NeedAMultipartBody) {
    PlexumStats stats;
    messageOf<std::invalid_argument>([&] { stats.toMultipart(nullptr, ""_t); });
    messageOf<std::invalid_argument>([&] { stats.fromMultiPart(nullptr, ""_t); });
    PlexumUserSettings users = readNew<PlexumUserSettings>(R"({"Any":1})");
    EXPECT_EQ(textOf(users) + partNames(users), "{}");
}

TEST(Issue, WritesUnsetDatesAsNullAndTheViewAsText) {
    DynamicSchemaBaseClass issue;
    issue.setCreatedDate({});
    issue.setModifiedDate({});
    issue.setDueDate({});
    issue.setModelEventDateTime({});
    issue.setModelViewDefinition(nullptr);
    EXPECT_EQ(textOf(issue), R"({"_CreatedDate":null,"_ModifiedDate":null,"_DueDate":null,"_ModelEventDateTime":null,)"
                             R"("_ModelViewDefinition":null})");
    EXPECT_EQ(partNames(issue), "_CreatedDate _ModifiedDate _DueDate _ModelEventDateTime ");
    const auto ofRecord = [](auto record) {
        record.setModifiedDate({});
        return textOf(record);
    };
    for (const auto& written : {ofRecord(DynamicSchemaAttachment()), ofRecord(DynamicSchemaFile())}) {
        EXPECT_EQ(written, R"({"ModifiedDate":"1970-01-01T00:00:00Z"})");
    }

    auto viewed = readNew<DynamicSchemaBaseClass>(R"({"_ModelViewDefinition":"{\"viewId\":\"v\"}"})");
    EXPECT_EQ(viewed.getModelViewDefinition()->getViewId(), "v");
    const std::string rows = R"({"rotation":[[16777217.5,-0.25],[]]})";
    EXPECT_EQ(textOf(readNew<ModelViewDefinitionCameraInfo>(rows)), rows);
    for (const auto* ignored : {R"({"viewId":"w"})", "null", "1"}) {
        read(viewed, std::string(R"({"_ModelViewDefinition":)") + ignored + "}");
        EXPECT_EQ(textOf(viewed), R"({"_ModelViewDefinition":"{\"viewId\":\"v\"}"})") << ignored;
    }
    EXPECT_EQ(partNames(viewed, "p"), "_ModelViewDefinition ") << "without the prefix";
    viewed.unsetModelViewDefinition();
    EXPECT_EQ(partNames(viewed), "");
    messageOf<json_exception>([&] { read(viewed, R"({"_ModelViewDefinition":"{"})"); });
    DynamicSchemaBaseClass other;
    readParts(other, {{"_ModelViewDefinition", R"({"viewId":"x"})"}});
    EXPECT_EQ(other.getModelViewDefinition()->getViewId(), "x");

    const auto twice = multipartOf({{"Own", "1"}});
    twice->add(ModelBase::toHttpContent("Own"_t, "2"_t));
    issue.fromMultiPart(twice, ""_t);
    value last;
    EXPECT_TRUE(issue.getCustomProp(last, "Own"_t));
    EXPECT_EQ(last.serialize(), "2");
}

TEST(Issue, KeepsCustomPropertiesOfAnyJsonType) {
    auto issue = readNew<DynamicSchemaBaseClass>(R"({"_Subject":"a","Extra1":5,"Extra2":{"k":true},"Extra3":null})");
    EXPECT_EQ(issue.getSubject(), "a");
    utility::string_t text = "as it was"_t;
    value json;
    EXPECT_FALSE(issue.getCustomProp(text, "Extra1"_t));
    EXPECT_FALSE(issue.getCustomProp(text, "None"_t));
    EXPECT_FALSE(issue.getCustomProp(json, "_Subject"_t));
    EXPECT_EQ(text, "as it was");
    EXPECT_TRUE(issue.getCustomProp(json, "Extra2"_t));
    EXPECT_EQ(json.serialize(), R"({"k":true})");
    read(issue, R"({"Extra1":6,"":7})");
    EXPECT_TRUE(issue.getCustomProp(json, ""_t));
    EXPECT_EQ(json.serialize(), "7");
    EXPECT_EQ(issue.getKeldaroServer(), "");
    EXPECT_TRUE(issue.getCustomProp(json, "Extra3"_t)) << "reading clears no earlier one";
    EXPECT_TRUE(issue.getCustomProp(json, "Extra1"_t));
    EXPECT_EQ(json.serialize(), "6");

    Steps<DynamicSchemaBaseClass> steps('I');
    auto& own = steps.model;
    const auto writes = [&](const char* expected) {
        EXPECT_EQ(textOf(own), expected);
        steps.unset("E");
        EXPECT_EQ(textOf(own), "{}");
    };
    steps.set("_Subject", _XPLATSTR("refused"));
    steps.set("Closed", value::boolean(true));
    EXPECT_EQ(textOf(own), "{}") << "fixed keys are refused";
    steps.set("E", _XPLATSTR("literal"));
    EXPECT_TRUE(own.getCustomProp(text, "E"_t));
    EXPECT_EQ(text, "literal"_t);
    writes(R"({"E":"literal"})");
    steps.set("E", "text"_t);
    writes(R"({"E":"text"})");
    steps.set("E", true);
    writes(R"({"E":true})");
    own.setCustomProp("E"_t, 0);
    EXPECT_EQ(own.toJson().at("E"_t).serialize(), "0") << "no null pointer";
    steps.set("E", std::numeric_limits<uint64_t>::max());
    EXPECT_EQ(own.toJson().at("E"_t).serialize(), "18446744073709551615");
    own.setCustomProp("E"_t, -2.5F);
    EXPECT_EQ(own.toJson().at("E"_t).serialize(), "-2.5");
    steps.set("E", value::parse("[1,{}]"_t));
    writes(R"({"E":[1,{}]})");
    messageOf<json_exception>([&] { steps.read(R"({"B":1,"Closed":"open"})"); });
    EXPECT_EQ(textOf(own), "{}") << "custom properties are read last";
    steps.read(R"({"Status":"open"})");
    steps.set("A", _XPLATSTR("custom ones come last"));
    EXPECT_EQ(textOf(own), R"({"Status":"open","A":"custom ones come last"})");
    own.setCustomProp("A"_t, value::number(std::numeric_limits<double>::infinity()));
    messageOf<std::invalid_argument>([&] { own.toJson(); });
    messageOf<std::invalid_argument>([&] { own.toMultipart(std::make_shared<MultipartFormData>(), ""_t); });
}

TEST(Issue, CarriesCustomPropertiesInPartsAsJson) {
    DynamicSchemaBaseClass issue;
    issue.setStatus("open"_t);
    issue.setCustomProp("E"_t, "x"_t);
    const auto multipart = std::make_shared<MultipartFormData>();
    issue.toMultipart(multipart, "p"_t);
    EXPECT_EQ(partNames(issue, "p"), "p.Status p.E ");
    EXPECT_EQ(multipart->getContent("p.E"_t)->getContentType(), "application/json");
    EXPECT_EQ(bytesOf(*multipart->getContent("p.E"_t)->getData()), "\"x\"");

    DynamicSchemaBaseClass copy;
    readParts(copy, {{"Status", "closed"}, {"p.E", "[1]"}}, "p");
    EXPECT_EQ(textOf(copy), R"({"Status":"closed","p.E":[1]})") << "under their full part names";
    messageOf<json_exception>([&] { readParts(copy, {{"E", "no JSON"}}); });
}

TEST(Issue, TakesManyCustomPropertiesFromSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            DynamicSchemaBaseClass issue;
            issue.setCustomProp("_Subject"_t, "refused"_t);
            for (int i = 0; i < 10000; ++i) {
                issue.setCustomProp(text("p" + std::to_string(i)), "x"_t);
            }
            DynamicSchemaBaseClass copy;
            copy.fromJson(issue.toJson());
            utility::string_t last;
            EXPECT_TRUE(copy.getCustomProp(last, "p9999"_t));
            EXPECT_EQ(copy.toJson().size(), 10000U);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST(CustomProps, LieInOneTablePerType) {
    using Custom = DynamicSchemaClassWithCustomProps;
    const std::string all = R"({"a":1.5,"b":2,"c":null,"d":[1],"e":{},"f":"text","g":false})";
    auto json = value::parse(all);
    Custom custom(json);
    double number = 0;
    int integer = 0;
    bool flag = true;
    utility::string_t text;
    EXPECT_TRUE(custom.getCustomProp(number, "a"_t) && custom.getCustomProp(integer, "b"_t) &&
                custom.getCustomProp(text, "f"_t) && custom.getCustomProp(flag, "g"_t));
    EXPECT_EQ(number, 1.5);
    EXPECT_EQ(integer, 2);
    EXPECT_EQ(text, "text");
    EXPECT_FALSE(flag);
    EXPECT_FALSE(custom.getCustomProp(number, "b"_t) || custom.getCustomProp(integer, "a"_t) ||
                 custom.getCustomProp(text, "a"_t) || custom.getCustomProp(flag, "f"_t));
    EXPECT_EQ(utf8(text) + std::to_string(integer) + std::to_string(flag), "text20") << "as they were";
    Custom changed(json);
    changed.setCustomProp("a"_t, 2.5);
    changed.setCustomProp("b"_t, 3);
    changed.setCustomProp("f"_t, "other"_t);
    changed.setCustomProp("g"_t, true);
    EXPECT_EQ(textOf(changed), R"({"f":"other","b":3,"a":2.5,"g":true})");
    EXPECT_EQ(custom.toJson().size(), 4U) << "no objects, lists or nulls";
    json = value::parse("[1]"_t);
    custom.fromJson(json);
    EXPECT_EQ(custom.toJson().size(), 4U);

    Steps<Custom> steps('O');
    Custom& own = steps.model;
    steps.set("n", _XPLATSTR("literal"));
    EXPECT_EQ(textOf(own), R"({"n":"literal"})");
    steps.set("n", 1);
    EXPECT_EQ(textOf(own), R"({"n":1})");
    steps.set("n", 2.5);
    EXPECT_EQ(textOf(own), R"({"n":2.5})");
    steps.set("n", true);
    EXPECT_EQ(textOf(own), R"({"n":true})");
    EXPECT_TRUE(own.getCustomProp(text, "n"_t));
    EXPECT_EQ(text, "literal") << "the other tables are not touched";
    const auto multipart = std::make_shared<MultipartFormData>();
    own.toMultipart(multipart, "p"_t);
    std::string parts;
    for (const auto& part : multipart->getContents()) {
        parts += utf8(part->getName()) + "=" + bytesOf(*part->getData()) + " ";
    }
    EXPECT_EQ(parts, "p.n=1 p.n=literal p.n=2.5 p.n=1 ") << "integers, texts, doubles, bools";
    steps.unset("n");
    EXPECT_EQ(textOf(own), "{}");
    steps.readPart("p.n", "1");
    EXPECT_EQ(textOf(own), R"({"p.n":"1"})") << "parts come back as texts";
    steps.read(all);
    EXPECT_EQ(own.toJson().size(), 5U);
    for (const auto* beyond : {"2147483648", "-2147483649", "5000000000", "1e400", "-1e400"}) {
        messageOf<json_exception>([&] { steps.read(std::string(R"({"n":)") + beyond + "}"); });
    }
}

TEST(CustomArray, HasTheTypeOfItsFirstElement) {
    const std::pair<const char*, const char*> rows[] = {{"[1,\"x\",2,true,null,2.5]", "[1,2]"},
                                                        {"[1.5,2]", "[1.5]"},
                                                        {"[true,1,false]", "[true,false]"},
                                                        {"[\"a\",1,\"b\"]", "[\"a\",\"b\"]"},
                                                        {"[{\"a\":1},2]", "[{\"a\":1}]"},
                                                        {"[]", "[]"},
                                                        {"[null,1]", "[]"},
                                                        {"[[1],1]", "[]"},
                                                        {"{\"a\":1}", "[]"}};
    for (const auto& [jsonText, kept] : rows) {
        const Steps<DynamicSchemaArrayWithCustomProps> steps('A', jsonText);
        auto json = value::parse(text(jsonText));
        const DynamicSchemaArrayWithCustomProps array(json);
        EXPECT_EQ(textOf(array), kept) << jsonText;
        EXPECT_EQ(array.size(), static_cast<int>(value::parse(text(kept)).size())) << jsonText;
    }
    Steps<DynamicSchemaArrayWithCustomProps> steps('A', "[1,2,3]");
    auto& array = steps.model;
    for (const int nowhere : {5, 3, -1, std::numeric_limits<int>::min()}) {
        steps.remove(nowhere);
    }
    steps.remove(1);
    EXPECT_EQ(textOf(array), "[1,3]");
    steps.remove(0);
    EXPECT_EQ(textOf(array), "[3]");
    Steps<DynamicSchemaArrayWithCustomProps> alone('A', "[1]");
    alone.remove(0);
    EXPECT_EQ(textOf(alone.model), "[]");
    alone.read("[2]");
    alone.read("{}");
    EXPECT_EQ(alone.model.size(), 0) << "that is no list";
    steps.read("[4]");
    array.getInt(0) = 7;
    array.setInt(1, 8);
    EXPECT_EQ(textOf(array), "[7,8]");
    steps.read("[1,2,3]");
    EXPECT_EQ(textOf(array), "[7,8,1,2,3]") << "reading appends";
    steps.setTypeForArray("[\"x\"]");
    EXPECT_EQ(array.size(), 0) << "of that type";
    array.setInt(4, 4);
    EXPECT_EQ(array.getInt(4), 4) << "what was read is still there";
    steps.setTypeForVal("1");
    EXPECT_EQ(array.size(), 5);
}

TEST(CustomArray, RefusesNumbersOutOfRange) {
    for (const auto* text : {"[1,2147483648]", "[-2147483649]", "[5000000000]", "[1.5,1e400]", "[-1e400]",
                             R"([{"a":1},{"a":5000000000}])", R"([{"a":1e400}])"}) {
        SCOPED_TRACE(text);
        Steps<DynamicSchemaArrayWithCustomProps> steps('A');
        messageOf<json_exception>([&] { steps.read(text); });
    }
}

TEST(CustomArray, NamesItsPartsByTypeAndIndex) {
    const std::pair<const char*, const char*> rows[] = {{"[1,2]", "p.int[0]=1 p.int[1]=2 "},
                                                        {"[1.5]", "p.double[0]=1.5 "},
                                                        {"[true,false]", "p.bool[0]=1 p.bool[1]=0 "},
                                                        {"[\"a\"]", "p.str[0]=a "},
                                                        {"[{\"Color\":\"red\"}]", "p.obj[0].Color=red "},
                                                        {"[{},{\"Color\":\"red\"}]", "p.obj[1].Color=red "},
                                                        {"[]", ""}};
    for (const auto& [jsonText, expected] : rows) {
        auto json = value::parse(text(jsonText));
        DynamicSchemaArrayWithCustomProps array(json);
        const auto multipart = std::make_shared<MultipartFormData>();
        array.toMultipart(multipart, "p"_t);
        std::string parts;
        for (const auto& part : multipart->getContents()) {
            parts += utf8(part->getName()) + "=" + bytesOf(*part->getData()) + " ";
        }
        EXPECT_EQ(parts, expected);
        array.fromMultiPart(multipart, "p"_t);
        EXPECT_EQ(textOf(array), json.serialize()) << "nothing is read back";
    }
}

TEST(CustomArray, SetsElementsOfEachType) {
    using Array = DynamicSchemaArrayWithCustomProps;
    const auto lastSet = [](const std::string& text, auto get, auto set) {
        Steps<Array> steps('A', text);
        steps.setLastToFirst(get, set);
        return textOf(steps.model);
    };
    EXPECT_EQ(lastSet("[1,2,3]", &Array::getInt, &Array::setInt), "[1,2,1]");
    EXPECT_EQ(lastSet("[1.5,2.5]", &Array::getDouble, &Array::setDouble), "[1.5,1.5]");
    EXPECT_EQ(lastSet("[false,true]", &Array::getBool, &Array::setBool), "[false,false]");
    EXPECT_EQ(lastSet(R"(["a","b"])", &Array::getStr, &Array::setStr), R"(["a","a"])");
    EXPECT_EQ(lastSet(R"([{"a":1},{"b":2}])", &Array::getObj, &Array::setObj), R"([{"a":1},{"a":1}])");

    auto json = value::parse(R"([{"a":1}])"_t);
    Array objects(json);
    objects.getObj(0) = DynamicSchemaClassWithCustomProps();
    objects.getObj(0).setCustomProp("b"_t, 2);
    EXPECT_EQ(textOf(objects), R"([{"b":2}])");
}

} // namespace
} // namespace forms_test
