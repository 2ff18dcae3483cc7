#include "support/Lane.h"
#include "support/ServiceTest.h"
#include "support/Sources.h"

#include <cxxabi.h>

#include <functional>

using namespace VarnelAPI::Forms::api;
using namespace VarnelAPI::Forms::model;

namespace forms_test {
namespace {

using Client = std::shared_ptr<ApiClient>;
using TextOption = boost::optional<utility::string_t>;
using NumberOption = boost::optional<int>;

/// The class's name without its namespace.
template <class T>
std::string nameOf() {
    const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(typeid(T).name(), nullptr, nullptr, nullptr),
                                                      std::free);
    return std::string(name.get()).substr(std::string("VarnelAPI::Forms::model::").size());
}

/// A body for any operation that takes one, which notes of what class it had to be.
struct NewInstance {
    std::string& type;
    std::string className = "";

    template <class Instance>
    operator boost::optional<std::shared_ptr<Instance>>() const {
        using Content = typename std::decay_t<decltype(Instance().getInstance())>::element_type;
        type = nameOf<Instance>();
        const auto instance = std::make_shared<Instance>();
        instance->setInstance(std::make_shared<Content>());
        instance->getInstance()->setInstanceId("new"_t);
        if (!className.empty()) {
            instance->getInstance()->setClassName(text(className));
        }
        return instance;
    }
};

struct Outcome {
    std::string resultType;
    std::string result;
    std::string bodyType = "";
};

template <class Result>
Outcome outcomeOf(const pplx::task<std::shared_ptr<Result>>& task) {
    return {nameOf<Result>(), utf8(task.get()->toJson().serialize())};
}
Outcome outcomeOf(const pplx::task<void>& task) {
    task.get();
    return {"void", ""};
}
Outcome outcomeOf(const pplx::task<HttpContent>& task) {
    const HttpContent file = task.get();
    EXPECT_EQ(file.getName() + file.getFileName() + file.getContentType() + file.getContentDisposition(), "");
    return {"HttpContent", bytesOf(*file.getData())};
}

/// One operation: the call, what must go over the wire, what comes back, and what must become of it.
struct Row {
    std::string name;
    std::function<Outcome(const Client&)> call;
    std::string method;
    std::string target;
    Outcome expected;
    std::string accept = "application/json";
    std::string body = "";
    std::string contentType = "";
};

const std::string repositories = "/base/sv1.2/Repositories/Varnel.Forms--";
const std::string content = R"({"instanceId":"i1","schemaName":"S","className":"C","eTag":"v1","properties":{}})";
const std::string instance = R"({"instance":)" + content + "}";
const std::string instances = R"({"instances":[)" + content + "]}";
const std::string changed = R"({"changedInstance":{"change":"Created","instanceAfterChange":)" + content + "}}";
const std::string counted = R"({"instances":[{"instanceId":"i1","schemaName":"S","className":"C","properties":)"
                            R"({"ECSchemaName":"S","ECClassName":"C","count":5000000000}}]})";
const std::string bytes("\0\r\n\xFF{", 5);

/// All options of a select, and how they go out: sorted and encoded.
const TextOption filter("Status eq 'Open'"_t), names("Name,Size"_t), order("Name desc"_t), settings("a&b"_t);
const NumberOption skip(20), top(10);
const std::string allOptions = "?$filter=Status%20eq%20'Open'&$orderby=Name%20desc&$select=Name,Size&$skip=20&$top=10"
                               "&api.filtersettings=a%26b";

/// An argument as operations take it: a literal is a text.
utility::string_t argument(const char* literal) {
    return text(literal);
}
template <class Argument>
const Argument& argument(const Argument& other) {
    return other;
}

/// An operation's name, and the operation as a function of its client and arguments.
#define OP(Api, operation)                                                                                             \
#operation, [](const Client& client,                                                                               \
                   const auto&... arguments) { return outcomeOf(Api(client).operation(argument(arguments)...)); }

/// One class of instances, and the shapes that its operations have.
struct Family {
    std::string entity;
    std::string path;

    std::string onClass() const { return repositories + "L/" + path; }
    std::string onInstance() const { return onClass() + "/i/1/"; }

    template <class Operation>
    Row count(const char* name, Operation call) const {
        return {name,
                [=](const Client& client) { return call(client, "L"); },
                "GET",
                onClass() + "/$count",
                {entity + "InstanceCount", counted}};
    }
    template <class Operation>
    Row get(const char* name, Operation call) const {
        return {name,
                [=](const Client& client) { return call(client, "L", "i/1", names); },
                "GET",
                onInstance() + "?$select=Name,Size",
                {entity + "Instance", instance}};
    }
    /// `ids` are arguments between the location and the options, `target` the path that they lead to.
    template <class Operation, class... Ids>
    Row selectAt(const std::string& target, const char* name, Operation call, Ids... ids) const {
        return {
            name,
            [=](const Client& client) { return call(client, "L", ids..., filter, names, order, settings, skip, top); },
            "GET",
            target + allOptions,
            {entity + "Instances", instances}};
    }
    template <class Operation>
    Row select(const char* name, Operation call) const {
        return selectAt(onClass(), name, call);
    }
    template <class Operation>
    Row selectAsJson(const char* name, Operation call) const {
        Row row = select(name, call);
        row.target += "&definitionFormat=json";
        return row;
    }
    template <class Operation, class... Ids>
    Row postTo(const std::string& target, const char* name, Operation call, Ids... ids) const {
        const auto post = [=](const Client& client) {
            std::string bodyType;
            Outcome outcome = call(client, "L", ids..., NewInstance{bodyType});
            outcome.bodyType = bodyType;
            return outcome;
        };
        return {name,
                post,
                "POST",
                target,
                {entity + "ChangedInstance", changed, entity + "Instance"},
                "application/json",
                R"({"instance":{"instanceId":"new"}})",
                "application/json"};
    }
    template <class Operation>
    Row insert(const char* name, Operation call) const {
        return postTo(onClass(), name, call);
    }
    template <class Operation>
    Row update(const char* name, Operation call) const {
        return postTo(onInstance(), name, call, "i/1");
    }
    template <class Operation>
    Row remove(const char* name, Operation call) const {
        return {
            name, [=](const Client& client) { return call(client, "L", "i/1"); }, "DELETE", onInstance(), {"void", ""}};
    }
    template <class Operation>
    Row download(const char* name, Operation call) const {
        return {name,
                [=](const Client& client) { return call(client, "L", "i/1"); },
                "GET",
                onInstance() + "$file",
                {"HttpContent", bytes},
                "application/octet-stream"};
    }
};

const Family attachments{"DynamicSchemaAttachment", "DynamicSchema/Attachment"};
const Family files{"DynamicSchemaFile", "DynamicSchema/File"};
const Family comments{"DynamicSchema_Comment", "DynamicSchema/_Comment"};
const Family externalFiles{"DynamicSchema_ExternalFile", "DynamicSchema/_ExternalFile"};
const Family auditRecords{"DynamicSchemaAuditRecord", "DynamicSchema/AuditRecord"};
const Family issues{"DynamicSchemaBaseClass", "DynamicSchema/BaseClass"};
const Family forms{"Forms_EC_MappingForm", "Forms_EC_Mapping/Form"};
const Family definitions{"Forms_EC_MappingFormDefinition", "Forms_EC_Mapping/FormDefinition"};
const Family styles{"Forms_EC_MappingFormStyle", "Forms_EC_Mapping/FormStyle"};
const Family members{"Forms_EC_MappingProjectMember", "Plexum/ProjectMember"};
const Family roles{"PlexumProjectRole", "Plexum/ProjectRole"};
const Family pdfs{"FormPDFGeneratedPDF", "FormPDF/GeneratedPDF"};
const Family groups{"ListsListGroup", "Lists/ListGroup"};
const Family trees{"ListsListTree", "Lists/ListTree"};
const Family values{"ListsListValue", "Lists/ListValue"};
const Family classes{"SchemasClass", "Schemas/Class"};
const Family schemas{"SchemasSchema", "Schemas/Schema"};
const Family workflows{"WorkflowDefinition", "Workflow/WorkflowDefinition"};
const Family projects{"PlexumProjectSettings", "Plexum/ProjectSettings"};
const Family renderers{"PlexumRenderer", "Plexum/Renderer"};
const Family stats{"PlexumStats", "Plexum/Stats"};
const Family templates{"PlexumTemplate", "Plexum/Template"};
const Family users{"PlexumUserSettings", "Plexum/UserSettings"};
const Family exports{"BcfExport", "Bcf/Export"};
const Family imports{"BcfImport", "Bcf/Import"};

/// Below the issue "i/1" of class "C".
const std::string belowIssue = repositories + "L/DynamicSchema/C/i/1";

Row attachmentUpload() {
    Row row{"fileInsert_DynamicSchemaAttachment_instanceId",
            [](const Client& client) {
                return outcomeOf(AttachmentApi(client).fileInsert_DynamicSchemaAttachment_instanceId(
                    "L"_t, "i/1"_t, "s3"_t, "image/png"_t, "attachment; filename=\"a\""_t, {'a', 'b'}));
            },
            "PUT",
            attachments.onInstance() + "$file",
            {"DynamicSchemaAttachmentChangedInstance", changed}};
    row.body = "true";
    row.contentType = "image/png";
    return row;
}

/// All operations but the one that never sends: FileApi::fileInsert_DynamicSchemaFile_instanceId.
std::vector<Row> allRows() {
    return {
        attachments.count(OP(AttachmentApi, count_DynamicSchemaAttachment)),
        attachments.remove(OP(AttachmentApi, delete_DynamicSchemaAttachment_instanceId)),
        attachments.download(OP(AttachmentApi, fILEGET_DynamicSchemaAttachment_instanceId)),
        attachmentUpload(),
        attachments.get(OP(AttachmentApi, get_DynamicSchemaAttachment_instanceId)),
        attachments.postTo(belowIssue + "/Attachment", OP(AttachmentApi, insert_DynamicSchemaAttachment), "C", "i/1"),
        attachments.selectAt(attachments.onClass() + "/i/1", OP(AttachmentApi, select_DynamicSchemaAttachment), "i/1"),
        attachments.selectAt(belowIssue + "/Attachment", OP(AttachmentApi, select_DynamicSchemaAttachment2), "C",
                             "i/1"),
        attachments.update(OP(AttachmentApi, update_DynamicSchemaAttachment)),

        files.count(OP(FileApi, count_DynamicSchemaFile)),
        files.remove(OP(FileApi, delete_DynamicSchemaFile_instanceId)),
        files.download(OP(FileApi, fILEGET_DynamicSchemaFile_instanceId)),
        files.get(OP(FileApi, get_DynamicSchemaFile_instanceId)),
        files.insert(OP(FileApi, insert_DynamicSchemaFile)),
        files.select(OP(FileApi, select_DynamicSchemaFile)),
        files.update(OP(FileApi, update_DynamicSchemaFile)),

        comments.count(OP(CommentApi, count_DynamicSchemaComment)),
        comments.remove(OP(CommentApi, delete_DynamicSchemaComment_instanceId)),
        comments.get(OP(CommentApi, get_DynamicSchemaComment_instanceId)),
        comments.postTo(belowIssue + "/_Comment", OP(CommentApi, insert_DynamicSchemaComment), "C", "i/1"),
        comments.select(OP(CommentApi, select_DynamicSchemaComment)),
        comments.selectAt(belowIssue + "/_Comment", OP(CommentApi, select_DynamicSchemaComment2), "C", "i/1"),
        comments.update(OP(CommentApi, update_DynamicSchemaComment)),

        externalFiles.count(OP(ExternalFileApi, count_DynamicSchemaExternalFile)),
        externalFiles.remove(OP(ExternalFileApi, delete_DynamicSchemaExternalFile_instanceId)),
        externalFiles.get(OP(ExternalFileApi, get_DynamicSchemaExternalFile_instanceId)),
        externalFiles.postTo(belowIssue + "/_ExternalFile", OP(ExternalFileApi, insert_DynamicSchemaExternalFile), "C",
                             "i/1"),
        externalFiles.select(OP(ExternalFileApi, select_DynamicSchemaExternalFile)),
        externalFiles.selectAt(belowIssue + "/_ExternalFile", OP(ExternalFileApi, select_DynamicSchemaExternalFile2),
                               "C", "i/1"),
        externalFiles.update(OP(ExternalFileApi, update_DynamicSchemaExternalFile)),

        auditRecords.count(OP(AuditRecordApi, count_DynamicSchemaAuditRecord)),
        auditRecords.get(OP(AuditRecordApi, get_DynamicSchemaAuditRecord_instanceId)),
        auditRecords.select(OP(AuditRecordApi, select_DynamicSchemaAuditRecord)),

        issues.count(OP(BaseClassApi, count_DynamicSchemaBaseClass)),
        issues.remove(OP(BaseClassApi, delete_DynamicSchemaBaseClass_instanceId)),
        issues.get(OP(BaseClassApi, get_DynamicSchemaBaseClass_instanceId)),
        issues.insert(OP(BaseClassApi, insert_DynamicSchemaBaseClass)),
        issues.selectAt(issues.onClass() + "!poly", OP(BaseClassApi, select_DynamicSchemaBaseClass)),
        issues.selectAt(belowIssue, OP(BaseClassApi, select_DynamicSchemaBaseClass2), "C", "i/1"),
        issues.update(OP(BaseClassApi, update_DynamicSchemaBaseClass)),

        forms.remove(OP(FormApi, delete_FormsECMappingForm_instanceId)),
        forms.get(OP(FormApi, get_FormsECMappingForm_instanceId)),
        forms.insert(OP(FormApi, insert_FormsECMappingForm)),
        forms.postTo(belowIssue + "/FormData-forward-Forms_EC_Mapping.Form",
                     OP(FormApi, insert_FormsECMappingFormRelatedToIssue), "C", "i/1"),
        forms.select(OP(FormApi, select_FormsECMappingForm)),
        members.select(OP(FormApi, select_ProjectMembers)),
        roles.select(OP(FormApi, select_ProjectRoles)),
        forms.update(OP(FormApi, update_FormsECMappingForm)),

        definitions.remove(OP(FormDefinitionApi, delete_FormsECMappingFormDefinition_instanceId)),
        definitions.get(OP(FormDefinitionApi, get_FormsECMappingFormDefinition_instanceId)),
        definitions.insert(OP(FormDefinitionApi, insert_FormsECMappingFormDefinition)),
        definitions.selectAsJson(OP(FormDefinitionApi, select_FormsECMappingFormDefinition)),
        definitions.update(OP(FormDefinitionApi, update_FormsECMappingFormDefinition)),

        styles.remove(OP(FormStyleApi, delete_FormsECMappingFormStyle_instanceId)),
        styles.get(OP(FormStyleApi, get_FormsECMappingFormStyle_instanceId)),
        styles.insert(OP(FormStyleApi, insert_FormsECMappingFormStyle)),
        styles.select(OP(FormStyleApi, select_FormsECMappingFormStyle)),
        styles.update(OP(FormStyleApi, update_FormsECMappingFormStyle)),

        pdfs.download(OP(GeneratedPDFApi, fILEGET_FormPDFGeneratedPDF_instanceId)),
        pdfs.get(OP(GeneratedPDFApi, get_FormPDFGeneratedPDF_instanceId)),
        pdfs.insert(OP(GeneratedPDFApi, insert_FormPDFGeneratedPDF)),
        pdfs.select(OP(GeneratedPDFApi, select_FormPDFGeneratedPDF)),

        groups.remove(OP(ListGroupApi, delete_ListsListGroup_instanceId)),
        groups.download(OP(ListGroupApi, fILEGET_ListsListGroup_instanceId)),
        groups.get(OP(ListGroupApi, get_ListsListGroup_instanceId)),
        groups.insert(OP(ListGroupApi, insert_ListsListGroup)),
        groups.select(OP(ListGroupApi, select_ListsListGroup)),
        groups.update(OP(ListGroupApi, update_ListsListGroup)),

        trees.remove(OP(ListTreeApi, delete_ListsListTree_instanceId)),
        trees.get(OP(ListTreeApi, get_ListsListTree_instanceId)),
        trees.insert(OP(ListTreeApi, insert_ListsListTree)),
        trees.select(OP(ListTreeApi, select_ListsListTree)),
        trees.update(OP(ListTreeApi, update_ListsListTree)),

        values.remove(OP(ListValueApi, delete_ListsListValue_instanceId)),
        values.get(OP(ListValueApi, get_ListsListValue_instanceId)),
        values.insert(OP(ListValueApi, insert_ListsListValue)),
        values.select(OP(ListValueApi, select_ListsListValue)),
        values.update(OP(ListValueApi, update_ListsListValue)),

        classes.remove(OP(ClassApi, delete_SchemasClass_instanceId)),
        classes.get(OP(ClassApi, get_SchemasClass_instanceId)),
        classes.insert(OP(ClassApi, insert_SchemasClass)),
        classes.select(OP(ClassApi, select_SchemasClass)),
        classes.update(OP(ClassApi, update_SchemasClass)),

        schemas.remove(OP(SchemaApi, delete_SchemasSchema_instanceId)),
        schemas.get(OP(SchemaApi, get_SchemasSchema_instanceId)),
        schemas.insert(OP(SchemaApi, insert_SchemasSchema)),
        schemas.select(OP(SchemaApi, select_SchemasSchema)),
        schemas.update(OP(SchemaApi, update_SchemasSchema)),

        workflows.remove(OP(WorkflowDefinitionApi, delete_WorkflowDefinition_instanceId)),
        workflows.get(OP(WorkflowDefinitionApi, get_WorkflowDefinition_instanceId)),
        workflows.insert(OP(WorkflowDefinitionApi, insert_WorkflowDefinition)),
        workflows.selectAsJson(OP(WorkflowDefinitionApi, select_WorkflowDefinition)),
        workflows.update(OP(WorkflowDefinitionApi, update_WorkflowDefinition)),

        projects.remove(OP(ProjectSettingsApi, delete_PlexumProjectSettings_instanceId)),
        projects.get(OP(ProjectSettingsApi, get_PlexumProjectSettings_instanceId)),
        projects.insert(OP(ProjectSettingsApi, insert_PlexumProjectSettings)),
        projects.select(OP(ProjectSettingsApi, select_PlexumProjectSettings)),
        projects.update(OP(ProjectSettingsApi, update_PlexumProjectSettings)),

        renderers.download(OP(RendererApi, fILEGET_PlexumRenderer_instanceId)),
        renderers.get(OP(RendererApi, get_PlexumRenderer_instanceId)),
        renderers.select(OP(RendererApi, select_PlexumRenderer)),
        stats.get(OP(StatsApi, get_PlexumStats_instanceId)),
        stats.select(OP(StatsApi, select_PlexumStats)),
        templates.update(OP(TemplateApi, update_PlexumTemplate)),

        users.remove(OP(UserSettingsApi, delete_PlexumUserSettings_instanceId)),
        users.get(OP(UserSettingsApi, get_PlexumUserSettings_instanceId)),
        users.insert(OP(UserSettingsApi, insert_PlexumUserSettings)),
        users.select(OP(UserSettingsApi, select_PlexumUserSettings)),
        users.update(OP(UserSettingsApi, update_PlexumUserSettings)),

        exports.insert(OP(ExportApi, insert_BcfExport)),
        imports.insert(OP(ImportApi, insert_BcfImport)),
    };
}

class OperationsTest : public ServiceTest {
protected:
    /// Makes the row's call and checks both sides of it.
    void check(const Row& row) {
        SCOPED_TRACE(row.name);
        const std::string type = row.accept + (row.accept == "application/json" ? "; charset=utf-8" : "");
        server.reply(Reply::of(200, "OK", "Content-Type: " + type + "\r\n", row.expected.result));
        const Outcome outcome = row.call(client);
        EXPECT_EQ(outcome.resultType, row.expected.resultType);
        EXPECT_EQ(outcome.result, row.expected.result);
        EXPECT_EQ(outcome.bodyType, row.expected.bodyType);
        const Request request = server.takeRequest();
        EXPECT_EQ(request.method, row.method);
        EXPECT_EQ(request.target, row.target);
        EXPECT_EQ(request.body, row.body);
        EXPECT_EQ(request.header("Content-Type"), row.contentType);
        EXPECT_EQ(request.header("Accept"), row.accept);
        EXPECT_EQ(request.header("User-Agent"), "forms-test/1");
        EXPECT_EQ(request.header("Authorization"), "Bearer t");
    }

    /// The target of the one request that `call` makes.
    template <class Call>
    std::string targetOf(Call call, const std::string& result = instances) {
        server.reply(Reply::json(result));
        call().get();
        return server.takeRequest().target;
    }

    template <class Call>
    std::string errorOf(const Reply& reply, Call call) {
        server.reply(reply);
        auto task = call();
        const std::string error = apiErrorOf([&] { task.get(); });
        server.takeRequest();
        return error;
    }

    /// A call of each kind of result, and the name in its errors.
    template <class Check>
    void forEachKindOfResult(Check check) {
        check("get_SchemasSchema_instanceId",
              [this] { return outcomeOf(schemaApi.get_SchemasSchema_instanceId("L"_t, "i"_t)); });
        check("delete_SchemasSchema_instanceId",
              [this] { return outcomeOf(schemaApi.delete_SchemasSchema_instanceId("L"_t, "i"_t)); });
        check("fILEGET_PlexumRenderer_instanceId",
              [this] { return outcomeOf(RendererApi(client).fILEGET_PlexumRenderer_instanceId("L"_t, "i"_t)); });
    }

    SchemaApi schemaApi{client};
    AttachmentApi attachmentApi{client};
};

TEST_F(OperationsTest, EachSendsItsRequestAndReadsItsResult) {
    const auto before = detail::laneCounts();
    std::size_t models = 0;
    for (const Row& row : allRows()) {
        check(row);
        models += row.expected.result.rfind("{\"", 0) == 0 ? 1 : 0;
    }
    const auto after = detail::laneCounts();
    EXPECT_EQ(after.given - before.given, models);
    EXPECT_EQ(after.left - before.left, hasLane ? 0 : models) << "ordinary answers take the fast lane";
}

TEST_F(OperationsTest, EachNamesItselfInItsFailure) {
    for (const Row& row : allRows()) {
        server.reply(Reply::json("{}", 500, "Own"));
        EXPECT_EQ(apiErrorOf([&] { row.call(client); }), "500 error calling " + row.name + ": Own|{}");
    }
}

TEST_F(OperationsTest, TableCoversWhatTheHeadersDeclare) {
    std::set<std::string> covered = {"fileInsert_DynamicSchemaFile_instanceId"};
    for (const Row& row : allRows()) {
        EXPECT_TRUE(covered.insert(row.name).second) << row.name << " is there twice";
    }
    EXPECT_EQ(covered.size(), 112U);
    EXPECT_EQ(covered, declaredIn("api", R"(\b((count|delete|fILEGET|fileInsert|get|insert|select|update)_\w+)\()"));
    EXPECT_EQ(declaredIn("api", R"(class VARNEL_FORMS_API (\w+) : public ResourceApi)").size(), 23U);
}

TEST_F(OperationsTest, FallBackToTheClassPathWhenAnIdIsEmpty) {
    const boost::optional<std::shared_ptr<DynamicSchemaAttachmentInstance>> none;
    const std::string flat = repositories + "L/DynamicSchema/Attachment";
    EXPECT_EQ(targetOf([&] { return attachmentApi.select_DynamicSchemaAttachment("L"_t, ""_t); }), flat);
    EXPECT_EQ(targetOf([&] { return attachmentApi.select_DynamicSchemaAttachment2("L"_t, ""_t, "i"_t); }), flat);
    EXPECT_EQ(targetOf([&] { return attachmentApi.select_DynamicSchemaAttachment2("L"_t, "C"_t, ""_t); }), flat);
    EXPECT_EQ(targetOf([&] { return attachmentApi.select_DynamicSchemaAttachment2(""_t, "C"_t, "i"_t); }),
              repositories + "/DynamicSchema/Attachment");
    EXPECT_EQ(targetOf([&] { return attachmentApi.insert_DynamicSchemaAttachment("L"_t, ""_t, "i"_t, none); }), flat);
    EXPECT_EQ(targetOf([&] { return attachmentApi.insert_DynamicSchemaAttachment("L"_t, "C"_t, ""_t, none); }), flat);
    EXPECT_EQ(targetOf([&] { return attachmentApi.insert_DynamicSchemaAttachment(""_t, "C"_t, "i"_t, none); }),
              repositories + "/DynamicSchema/C/i/Attachment");

    const CommentApi commentApi(client);
    EXPECT_EQ(targetOf([&] { return commentApi.select_DynamicSchemaComment2(""_t, "C"_t, "i"_t); }),
              repositories + "/DynamicSchema/_Comment");
    EXPECT_EQ(targetOf([&] { return commentApi.insert_DynamicSchemaComment("L"_t, "C"_t, ""_t, boost::none); }),
              repositories + "L/DynamicSchema/_Comment");
    const ExternalFileApi externalFileApi(client);
    EXPECT_EQ(targetOf([&] { return externalFileApi.select_DynamicSchemaExternalFile2(""_t, "C"_t, "i"_t); }),
              repositories + "/DynamicSchema/_ExternalFile");
    EXPECT_EQ(
        targetOf([&] { return externalFileApi.insert_DynamicSchemaExternalFile("L"_t, ""_t, "i"_t, boost::none); }),
        repositories + "L/DynamicSchema/_ExternalFile");
    EXPECT_EQ(targetOf([&] {
                  return FormApi(client).insert_FormsECMappingFormRelatedToIssue("L"_t, ""_t, ""_t, boost::none);
              }),
              repositories + "L/DynamicSchema///FormData-forward-Forms_EC_Mapping.Form");
}

TEST_F(OperationsTest, IssuesGoToTheClassThatTheyAreOf) {
    const BaseClassApi issueApi(client);
    const std::string schema = repositories + "L/DynamicSchema/";
    std::string type;
    EXPECT_EQ(targetOf([&] {
                  return issueApi.insert_DynamicSchemaBaseClass("L"_t, NewInstance{type, "Crack"});
              }),
              schema + "Crack");
    EXPECT_EQ(targetOf([&] { return issueApi.insert_DynamicSchemaBaseClass("L"_t, boost::none); }),
              schema + "BaseClass");
    const auto empty = std::make_shared<DynamicSchemaBaseClassInstance>();
    EXPECT_EQ(targetOf([&] { return issueApi.insert_DynamicSchemaBaseClass("L"_t, empty); }), schema + "BaseClass");
    EXPECT_EQ(targetOf([&] { return issueApi.select_DynamicSchemaBaseClass2("L"_t, "Crack"_t, ""_t); }),
              schema + "Crack");
}

TEST_F(OperationsTest, SendOnlyTheOptionsThatAreSet) {
    const std::string path = repositories + "L/Schemas/Schema";
    EXPECT_EQ(targetOf([&] { return schemaApi.select_SchemasSchema("L"_t); }), path);
    EXPECT_EQ(targetOf([&] { return schemaApi.select_SchemasSchema("L"_t, TextOption(""_t)); }), path + "?$filter=");
    EXPECT_EQ(targetOf([&] { return schemaApi.select_SchemasSchema("L"_t, {}, {}, {}, {}, 0, -1); }),
              path + "?$skip=0&$top=-1");
    EXPECT_EQ(targetOf([&] { return schemaApi.select_SchemasSchema("L"_t, TextOption("a=b+c#d%e ü"_t)); }),
              path + "?$filter=a%3Db%2Bc%23d%25e%20%C3%BC");
    EXPECT_EQ(targetOf([&] { return schemaApi.select_SchemasSchema("L"_t, TextOption("$'()*!,/:@?"_t)); }),
              path + "?$filter=$'()*!,/:@?");
    EXPECT_EQ(targetOf([&] { return schemaApi.get_SchemasSchema_instanceId("L"_t, "i"_t); }, instance), path + "/i/");
    EXPECT_EQ(targetOf([&] { return WorkflowDefinitionApi(client).select_WorkflowDefinition("L"_t); }),
              repositories + "L/Workflow/WorkflowDefinition?definitionFormat=json");
}

TEST_F(OperationsTest, SendNullForABodyThatIsNotThere) {
    for (const auto& body : {boost::optional<std::shared_ptr<SchemasSchemaInstance>>(),
                             boost::optional<std::shared_ptr<SchemasSchemaInstance>>(nullptr)}) {
        server.reply(Reply::json(changed));
        schemaApi.insert_SchemasSchema("L"_t, body).get();
        const Request request = server.takeRequest();
        EXPECT_EQ(request.body, "null");
        EXPECT_EQ(request.header("Content-Type"), "application/json");
    }
}

/// A class of the caller's own, which writes itself in its own way.
template <class Described>
struct WritesItself : Described {
    web::json::value toJson() const override {
        auto json = Described::toJson();
        json["own"_t] = web::json::value(true);
        return json;
    }
};

TEST_F(OperationsTest, SendWhatTheClassOfABodyWrites) {
    using Relations = std::vector<std::shared_ptr<RelationshipToForm>>;
    const auto issue = [](auto whole, auto inner, auto properties, Relations relations) {
        properties->setSubject("s"_t);
        properties->setModelViewDefinition(std::make_shared<WritesItself<ModelViewDefinition>>());
        inner->setProperties(properties);
        inner->setRelationshipInstances(std::move(relations));
        whole->setInstance(inner);
        return std::shared_ptr<DynamicSchemaBaseClassInstance>(whole);
    };
    const auto plain = std::make_shared<DynamicSchemaBaseClassInstance>();
    const auto inner = std::make_shared<DynamicSchemaBaseClassInstanceContent>();
    const auto properties = std::make_shared<DynamicSchemaBaseClass>();
    const auto relation = std::make_shared<RelationshipToForm>();
    for (const auto& body :
         {issue(plain, inner, properties, {relation, nullptr}),
          issue(plain, inner, properties, {std::make_shared<WritesItself<RelationshipToForm>>(), relation}),
          issue(plain, inner, std::make_shared<WritesItself<DynamicSchemaBaseClass>>(), {}),
          issue(plain, std::make_shared<WritesItself<DynamicSchemaBaseClassInstanceContent>>(), properties, {}),
          issue(std::make_shared<WritesItself<DynamicSchemaBaseClassInstance>>(), inner, properties, {})}) {
        server.reply(Reply::json(changed));
        BaseClassApi(client).insert_DynamicSchemaBaseClass("L"_t, body).get();
        const std::string sent = server.takeRequest().body;
        EXPECT_EQ(sent, utf8(body->toJson().serialize()));
        EXPECT_NE(sent.find("own"), std::string::npos);
    }
}

TEST_F(OperationsTest, FailWithTheStatusAndTheServicesPayload) {
    const std::string payload = R"({"errorId":"NoSuchInstance","errorMessage":"ü"})";
    forEachKindOfResult([&](const std::string& name, auto call) {
        server.reply(Reply::json(payload, 404, "Not Found"));
        EXPECT_EQ(apiErrorOf(call), "404 error calling " + name + ": Not Found|" + payload);
        server.reply(Reply::of(503, "Busy", "Content-Type: text/html; charset=x-unknown\r\n", "<p>"));
        EXPECT_EQ(apiErrorOf(call), "503 error calling " + name + ": Busy|<p>") << "any type of payload";
        server.reply(Reply::of(500, "Broken", "", ""));
        EXPECT_EQ(apiErrorOf(call), "500 error calling " + name + ": Broken|") << "an empty stream, not none";
    });
    server.reply(Reply::json(payload, 400, "Bad Request"));
    try {
        schemaApi.get_SchemasSchema_instanceId("L"_t, "i"_t).get();
        FAIL();
    } catch (const ApiException& error) {
        ErrorSchema read;
        auto json = web::json::value::parse(*error.getContent());
        read.fromJson(json);
        EXPECT_EQ(read.getErrorId(), "NoSuchInstance");
        EXPECT_EQ(error.error_code().category(), utility::details::platform_category());
    }
}

TEST_F(OperationsTest, RefuseAResponseOfAnotherType) {
    forEachKindOfResult([&](const std::string& name, auto call) {
        server.reply(Reply::of(200, "OK", "Content-Type: text/html\r\n", "<p>"));
        EXPECT_EQ(apiErrorOf(call), "500 error calling " + name + ": unexpected response type: text/html|<p>");
    });
}

TEST_F(OperationsTest, AcceptAResponseWithoutTypeOrWithParameters) {
    for (const std::string type :
         {"", "Content-Type: application/json; charset=utf-8; version=1\r\n",
          "Content-Type: application/json;odata\r\n", "Content-Type: application/json; charset=\"UTF-8\"\r\n",
          "Content-Type: application/json; charset=x-odd\r\n", "content-type: text/plain+application/json\r\n"}) {
        SCOPED_TRACE(type);
        server.reply(Reply::of(200, "OK", type, R"({"instance":{"className":"Tür"}})"));
        EXPECT_EQ(schemaApi.get_SchemasSchema_instanceId("L"_t, "i"_t).get()->getInstance()->getClassName(), "Tür");
    }
    server.reply(Reply::of(200, "OK", "Content-Type: application/json; charset=iso-8859-1\r\n",
                           "{\"instance\":{\"className\":\"T\xFCr\"}}"));
    EXPECT_EQ(schemaApi.get_SchemasSchema_instanceId("L"_t, "i"_t).get()->getInstance()->getClassName(), "Tür");
    server.reply(Reply::raw("HTTP/1.1 204 No Content\r\n\r\n"));
    EXPECT_NO_THROW(schemaApi.delete_SchemasSchema_instanceId("L"_t, "i"_t).get());
    server.reply(Reply::of(200, "OK", "", bytes));
    EXPECT_EQ(outcomeOf(RendererApi(client).fILEGET_PlexumRenderer_instanceId("L"_t, "i"_t)).result, bytes);
}

TEST_F(OperationsTest, PassOnWhatTheJsonLibrarySays) {
    for (const std::string text : {"", "{", "not json", "{\"instances\":[}"}) {
        server.reply(Reply::json(text));
        messageOf<web::json::json_exception>([&] { schemaApi.select_SchemasSchema("L"_t).get(); });
    }
    server.reply(Reply::json(R"({"instances":[{},{"properties":{"IsShared":"yes"}}]})"));
    EXPECT_EQ(messageOf<web::json::json_exception>([&] { ClassApi(client).select_SchemasClass("L"_t).get(); }),
              "instances[1].properties.IsShared: not a boolean");
}

TEST_F(OperationsTest, RefuseTheFileUploadInTheCall) {
    const std::string expected =
        "415 FileApi->fileInsert_DynamicSchemaFile_instanceId does not consume any supported media type|no content";
    EXPECT_EQ(apiErrorOf([&] { FileApi(client).fileInsert_DynamicSchemaFile_instanceId("L"_t, "i"_t, "d"_t, {}); }),
              expected);
    client->setConfiguration(nullptr); // Whatever else may be wrong: the upload is none.
    EXPECT_EQ(apiErrorOf(
                  [&] { FileApi(client).fileInsert_DynamicSchemaFile_instanceId("a?b"_t, "."_t, "\n"_t, {"text"_t}); }),
              expected);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(OperationsTest, SendTheHeadersOfTheAttachmentUpload) {
    check(attachmentUpload());
    EXPECT_EQ(server.requests().back().header("Content-Disposition"), "attachment; filename=\"a\"");
}

TEST_F(OperationsTest, SendTheDefaultHeadersOfTheMoment) {
    auto& headers = configuration->getDefaultHeaders();
    headers = {{"accept"_t, "text/html"_t}, {"ACCEPT"_t, "*/*"_t}, {"X-One"_t, "1"_t}, {"User-Agent"_t, "own"_t}};
    const auto request = [&] {
        server.reply(Reply::json(instances));
        schemaApi.select_SchemasSchema("L"_t).get();
        return server.takeRequest();
    };
    const Request first = request();
    EXPECT_EQ(first.header("Accept"), "application/json") << "ours replaces a default in any spelling";
    EXPECT_EQ(first.header("X-One"), "1");
    EXPECT_EQ(first.header("User-Agent"), "own");
    headers.erase("X-One"_t);
    headers["X-Two"_t] = "2"_t;
    const Request second = request();
    EXPECT_FALSE(second.has("X-One"));
    EXPECT_EQ(second.header("X-Two"), "2");
    EXPECT_EQ(headers.size(), 4U) << "a call changes only its copy";
}

TEST_F(OperationsTest, PutPathValuesInUnchanged) {
    const auto get = [&](const char* location, const char* id) {
        return targetOf([&] { return schemaApi.get_SchemasSchema_instanceId(text(location), text(id)); }, instance);
    };
    EXPECT_EQ(get("a--b", "x%20y%3F~"), repositories + "a--b/Schemas/Schema/x%20y%3F~/");
    EXPECT_EQ(get("a/b", "c//d"), repositories + "a/b/Schemas/Schema/c//d/");
    EXPECT_EQ(get("", "..."), repositories + "/Schemas/Schema/.../");
    EXPECT_EQ(get("a&b=c;d@e", "$'()*!,:+"), repositories + "a&b=c;d@e/Schemas/Schema/$'()*!,:+/");
}

TEST_F(OperationsTest, RefusePathValuesThatWouldChangeThePathInTheCall) {
    for (const std::string value : {"a?b", "a#b", ".", "..", "a/../b", "../a", "a/."}) {
        SCOPED_TRACE(value);
        const auto asId = [&] { schemaApi.get_SchemasSchema_instanceId("L"_t, text(value)); };
        EXPECT_EQ(messageOf<std::invalid_argument>(asId).rfind("SchemaApi->get_SchemasSchema_instanceId: the "
                                                               "instanceId \"" +
                                                                   value + "\"",
                                                               0),
                  0U);
        messageOf<std::invalid_argument>([&] { schemaApi.select_SchemasSchema(text(value)); });
    }
    for (const std::string value : {"a b", "ü", "a\"b", "a[b]", "a{b}", "{location}", "{instanceId}", "a\\b"}) {
        SCOPED_TRACE(value);
        messageOf<web::uri_exception>([&] { schemaApi.get_SchemasSchema_instanceId(text(value), text(value)); });
    }
    // A value that looks like a later placeholder is not taken for one.
    const auto misplaced =
        messageOf<web::uri_exception>([&] { schemaApi.get_SchemasSchema_instanceId("{instanceId}"_t, "i"_t); });
    EXPECT_NE(misplaced.find("--{instanceId}/Schemas/Schema/i/"), std::string::npos) << misplaced;
    messageOf<web::uri_exception>([&] { schemaApi.delete_SchemasSchema_instanceId("{instanceId}"_t, "i"_t); });
    messageOf<web::uri_exception>([&] { attachmentApi.select_DynamicSchemaAttachment2("L"_t, "{issueId}"_t, "i"_t); });
    messageOf<web::uri_exception>([&] { attachmentApi.select_DynamicSchemaAttachment("{instanceID}"_t, ""_t); });
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(OperationsTest, NeedAClientAndAConfiguration) {
    EXPECT_EQ(messageOf<std::invalid_argument>([] { SchemaApi api(nullptr); }),
              "the client of the API object is an empty pointer");
    const auto bare = std::make_shared<ApiClient>(nullptr);
    const SchemaApi api(bare);
    EXPECT_EQ(messageOf<std::invalid_argument>([&] { api.select_SchemasSchema("L"_t); }),
              "the configuration of the client is an empty pointer");
    bare->setConfiguration(configuration);
    EXPECT_EQ(targetOf([&] { return api.select_SchemasSchema("L"_t); }), repositories + "L/Schemas/Schema");
}

TEST_F(OperationsTest, OutliveTheirObjects) {
    server.reply(Reply{{}}.then(std::chrono::milliseconds(200), Reply::json(instances).pieces[0].bytes));
    auto task = [&] {
        const auto ownClient = std::make_shared<ApiClient>(std::make_shared<ApiConfiguration>(*configuration));
        return SchemaApi(ownClient).select_SchemasSchema("L"_t);
    }();
    EXPECT_EQ(task.get()->getInstances().size(), 1U);
}

TEST_F(OperationsTest, RunManyAtOnceOnOneClient) {
    server.replyAlways(Reply::json(instances));
    std::vector<pplx::task<std::shared_ptr<SchemasSchemaInstances>>> tasks;
    for (int i = 0; i < 100; ++i) {
        tasks.push_back(schemaApi.select_SchemasSchema("L"_t, {}, {}, {}, {}, i));
    }
    for (auto& task : tasks) {
        EXPECT_EQ(task.get()->getInstances().size(), 1U);
    }
    std::set<std::string> targets;
    for (const auto& request : server.requests()) {
        targets.insert(request.target);
    }
    EXPECT_EQ(targets.size(), 100U);
}

} // namespace
} // namespace forms_test
