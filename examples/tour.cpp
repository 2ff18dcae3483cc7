// A tour of everything that the library reaches, on a repository whose base URL is the only argument. Each step says
// what was done and what came of it; the exit status is 0 if all of them came back as they should.

#include <VarnelAPI/Forms.h>

#include <iostream>
#include <iterator>

using namespace VarnelAPI::Forms;
using utility::string_t;
using utility::conversions::to_utf8string;

namespace {

const string_t project = _XPLATSTR("tour");
const string_t issueClass = _XPLATSTR("SafetyObservation");

/// Tells the steps, and counts those that went wrong.
class Guide {
public:
    void chapter(const char* title) const { std::cout << '\n' << title << '\n'; }

    void step(const std::string& what, bool asExpected) {
        std::cout << (asExpected ? "  ok      " : "  FAILED  ") << what << '\n';
        (asExpected ? m_Good : m_Bad) += 1;
    }

    int farewell() const {
        std::cout << '\n' << m_Good << " steps came back as they should, " << m_Bad << " did not.\n";
        return m_Bad == 0 ? 0 : 1;
    }

private:
    int m_Good = 0;
    int m_Bad = 0;
};

std::string quoted(const string_t& text) {
    return '"' + to_utf8string(text) + '"';
}

/// Puts an entity into the two envelopes that an insert or update sends.
template <class Instance, class Entity>
std::shared_ptr<Instance> envelope(const Entity& entity, const string_t& className = string_t(),
                                   const string_t& eTag = string_t()) {
    auto instance = std::make_shared<Instance>();
    auto content = std::make_shared<typename std::decay_t<decltype(instance->getInstance())>::element_type>();
    content->setProperties(std::make_shared<Entity>(entity));
    if (!className.empty()) {
        content->setClassName(className);
    }
    if (!eTag.empty()) {
        content->setETag(eTag);
    }
    instance->setInstance(content);
    return instance;
}

/// The instance as the service stored it. In a program with a window one would use `then` instead of waiting.
template <class Changed>
auto stored(const pplx::task<std::shared_ptr<Changed>>& call) {
    return call.get()->getChangedInstance()->getInstanceAfterChange();
}

template <class Instances>
auto listed(const pplx::task<std::shared_ptr<Instances>>& call) {
    return call.get()->getInstances();
}

template <class Count>
int64_t counted(const pplx::task<std::shared_ptr<Count>>& call) {
    int64_t total = 0;
    for (const auto& count : listed(call)) {
        total += count->getProperties()->getCount();
    }
    return total;
}

std::string bytesOf(const pplx::task<model::HttpContent>& download) {
    const auto data = download.get().getData();
    return {std::istreambuf_iterator<char>(*data), {}};
}

class Tour {
public:
    explicit Tour(const string_t& baseUrl) : m_Configuration(std::make_shared<api::ApiConfiguration>()) {
        m_Configuration->setBaseUrl(baseUrl);
        m_Configuration->setUserAgent(_XPLATSTR("tour/1.0"));
        m_Client = std::make_shared<api::ApiClient>(m_Configuration);
    }

    int run() {
        issues();
        attachments();
        comments();
        filesAndExternalFiles();
        history();
        forms();
        lists();
        schemas();
        workflows();
        projectServices();
        documentsAndJobs();
        return m_Guide.farewell();
    }

private:
    /// What the library offers no operation for goes through the client itself: here, storing a file's bytes and
    /// making the records that only the service's administrators make.
    string_t send(const string_t& method, const string_t& path, const std::string& bytes, const string_t& type) {
        return m_Client
            ->callApi(_XPLATSTR("/sv1.2/Repositories/Varnel.Forms--") + project + _XPLATSTR("/") + path, method, {},
                      std::make_shared<model::BinaryBody>(bytes.data(), static_cast<int64_t>(bytes.size())),
                      m_Configuration->getDefaultHeaders(), {}, {}, type)
            .then([](const web::http::http_response& response) { return response.extract_string(); })
            .get();
    }

    void storeFile(const string_t& path, const string_t& id, const std::string& bytes) {
        send(_XPLATSTR("PUT"), path + _XPLATSTR("/") + id + _XPLATSTR("/$file"), bytes,
             _XPLATSTR("application/octet-stream"));
    }

    string_t administer(const string_t& path, const std::shared_ptr<model::ModelBase>& instance) {
        const auto answer = web::json::value::parse(send(
            _XPLATSTR("POST"), path, to_utf8string(instance->toJson().serialize()), _XPLATSTR("application/json")));
        return answer.at(_XPLATSTR("changedInstance"))
            .at(_XPLATSTR("instanceAfterChange"))
            .at(_XPLATSTR("instanceId"))
            .as_string();
    }

    void issues() {
        m_Guide.chapter("Issues of a class that the project defines");
        api::BaseClassApi api(m_Client);

        model::DynamicSchemaBaseClass issue;
        issue.setSubject(_XPLATSTR("Guard rail missing on level 3"));
        issue.setPriority(_XPLATSTR("High"));
        issue.setDueDate(utility::datetime());
        issue.setCustomProp(_XPLATSTR("Crew"), _XPLATSTR("Night shift"));
        issue.setCustomProp(_XPLATSTR("PeopleAtRisk"), web::json::value::number(4));
        auto pin = std::make_shared<model::ModelPinLocation>();
        pin->setX(12.5);
        pin->setY(-3.25);
        pin->setZ(9.0);
        issue.setModelPinLocation(pin);
        auto view = std::make_shared<model::ModelViewDefinition>();
        view->setViewId(_XPLATSTR("view-7"));
        issue.setModelViewDefinition(view);
        const auto created = stored(api.insert_DynamicSchemaBaseClass(
            project, envelope<model::DynamicSchemaBaseClassInstance>(issue, issueClass)));
        m_Issue = created->getInstanceId();
        m_Guide.step("recorded " + quoted(issue.getSubject()) + " as a " + to_utf8string(created->getClassName()),
                     !m_Issue.empty() && created->getClassName() == issueClass);

        auto read = api.get_DynamicSchemaBaseClass_instanceId(project, m_Issue).get()->getInstance();
        string_t crew;
        web::json::value peopleAtRisk;
        const bool hasCustom = read->getProperties()->getCustomProp(crew, _XPLATSTR("Crew")) &&
                               read->getProperties()->getCustomProp(peopleAtRisk, _XPLATSTR("PeopleAtRisk"));
        m_Guide.step("read it back, with its custom properties: crew " + quoted(crew) + ", people at risk " +
                         to_utf8string(peopleAtRisk.serialize()),
                     hasCustom && crew == _XPLATSTR("Night shift") && peopleAtRisk.as_integer() == 4);
        m_Guide.step("its pin and its saved view came with it; its due date is open",
                     read->getProperties()->getModelPinLocation()->getX() == 12.5 &&
                         read->getProperties()->getModelViewDefinition()->getViewId() == _XPLATSTR("view-7") &&
                         !read->getProperties()->dueDateIsSet());

        model::DynamicSchemaBaseClass other;
        other.setSubject(_XPLATSTR("Loose cable"));
        other.setPriority(_XPLATSTR("Low"));
        api.insert_DynamicSchemaBaseClass(project, envelope<model::DynamicSchemaBaseClassInstance>(other)).get();
        const auto all = listed(
            api.select_DynamicSchemaBaseClass(project, boost::none, boost::none, string_t(_XPLATSTR("_Subject desc"))));
        m_Guide.step("listed all issues across classes, last subject first: " +
                         quoted(all.front()->getProperties()->getSubject()) + " comes first",
                     all.size() == 2 && all.front()->getProperties()->getSubject() == other.getSubject());
        const auto urgent = listed(api.select_DynamicSchemaBaseClass2(project, issueClass, string_t(),
                                                                      string_t(_XPLATSTR("Priority eq 'High'"))));
        m_Guide.step("listed the urgent ones of that class only", urgent.size() == 1);
        m_Guide.step("counted " + std::to_string(counted(api.count_DynamicSchemaBaseClass(project))),
                     counted(api.count_DynamicSchemaBaseClass(project)) == 2);

        model::DynamicSchemaBaseClass change;
        change.setStatus(_XPLATSTR("In progress"));
        const auto changed = stored(api.update_DynamicSchemaBaseClass(
            project, m_Issue, envelope<model::DynamicSchemaBaseClassInstance>(change, issueClass, read->getETag())));
        m_Guide.step("changed its status to " + quoted(changed->getProperties()->getStatus()),
                     changed->getProperties()->getStatus() == change.getStatus() &&
                         changed->getETag() != read->getETag());
        refused("changing it once more on the outdated version is refused", 409, [&] {
            api.update_DynamicSchemaBaseClass(
                   project, m_Issue,
                   envelope<model::DynamicSchemaBaseClassInstance>(change, issueClass, read->getETag()))
                .get();
        });
    }

    void attachments() {
        m_Guide.chapter("Attachments");
        api::AttachmentApi api(m_Client);

        model::DynamicSchemaAttachment photo;
        photo.setName(_XPLATSTR("rail.jpg"));
        photo.setCaption(_XPLATSTR("View from the stairs"));
        const auto created = stored(api.insert_DynamicSchemaAttachment(
            project, issueClass, m_Issue, envelope<model::DynamicSchemaAttachmentInstance>(photo)));
        const string_t id = created->getInstanceId();
        m_Guide.step("attached " + quoted(photo.getName()) + " to the issue", !id.empty());

        const std::string bytes("not really a picture\0\r\n but bytes", 34);
        storeFile(_XPLATSTR("DynamicSchema/Attachment"), id, bytes);
        const auto downloaded = bytesOf(api.fILEGET_DynamicSchemaAttachment_instanceId(project, id));
        m_Guide.step("stored and downloaded its file, " + std::to_string(downloaded.size()) + " bytes",
                     downloaded == bytes);

        const auto ofIssue = listed(api.select_DynamicSchemaAttachment2(project, issueClass, m_Issue, boost::none,
                                                                        string_t(_XPLATSTR("Name"))));
        m_Guide.step("listed the issue's attachments by name only",
                     ofIssue.size() == 1 && ofIssue[0]->getProperties()->getName() == photo.getName() &&
                         !ofIssue[0]->getProperties()->captionIsSet());
        m_Guide.step("counted " + std::to_string(counted(api.count_DynamicSchemaAttachment(project))),
                     counted(api.count_DynamicSchemaAttachment(project)) == 1);

        model::DynamicSchemaAttachment change;
        change.setCaption(_XPLATSTR("Sicht von der Treppe, Stra\u00dfe"));
        const auto changed = stored(
            api.update_DynamicSchemaAttachment(project, id, envelope<model::DynamicSchemaAttachmentInstance>(change)));
        m_Guide.step("changed the caption to " + quoted(changed->getProperties()->getCaption()),
                     changed->getProperties()->getCaption() == change.getCaption());

        api.delete_DynamicSchemaAttachment_instanceId(project, id).get();
        refused("deleted it, so that reading it is refused", 404,
                [&] { api.get_DynamicSchemaAttachment_instanceId(project, id).get(); });
    }

    void comments() {
        m_Guide.chapter("Comments");
        api::CommentApi api(m_Client);
        for (const auto* text : {_XPLATSTR("Fence ordered."), _XPLATSTR("Fence delivered."), _XPLATSTR("Fence up.")}) {
            model::DynamicSchema_Comment comment;
            comment.setText(text);
            comment.setAuthor(_XPLATSTR("A. Miner"));
            stored(api.insert_DynamicSchemaComment(project, issueClass, m_Issue,
                                                   envelope<model::DynamicSchema_CommentInstance>(comment)));
        }
        const auto page =
            listed(api.select_DynamicSchemaComment2(project, issueClass, m_Issue, boost::none, boost::none,
                                                    string_t(_XPLATSTR("Text desc")), boost::none, 1, 1));
        m_Guide.step("wrote three, and read the second of them in reverse order: " +
                         quoted(page.empty() ? string_t() : page[0]->getProperties()->getText()),
                     page.size() == 1 && page[0]->getProperties()->getText() == _XPLATSTR("Fence ordered."));
    }

    void filesAndExternalFiles() {
        m_Guide.chapter("Files and external files");
        api::FileApi files(m_Client);
        model::DynamicSchemaFile plan;
        plan.setName(_XPLATSTR("plan.pdf"));
        plan.setSize(5000000000);
        const auto file =
            stored(files.insert_DynamicSchemaFile(project, envelope<model::DynamicSchemaFileInstance>(plan)));
        m_Guide.step("recorded a file of " + std::to_string(file->getProperties()->getSize()) + " bytes",
                     file->getProperties()->getSize() == plan.getSize());
        storeFile(_XPLATSTR("DynamicSchema/File"), file->getInstanceId(), "(the first part of it)");
        m_Guide.step("stored and downloaded its content",
                     bytesOf(files.fILEGET_DynamicSchemaFile_instanceId(project, file->getInstanceId())) ==
                         "(the first part of it)");

        api::ExternalFileApi externalFiles(m_Client);
        model::DynamicSchema_ExternalFile link;
        link.setName(_XPLATSTR("drawing.dgn"));
        link.setBackItemUrl(_XPLATSTR("https://files.example.org/42"));
        stored(externalFiles.insert_DynamicSchemaExternalFile(
            project, issueClass, m_Issue, envelope<model::DynamicSchema_ExternalFileInstance>(link)));
        const auto links = listed(externalFiles.select_DynamicSchemaExternalFile2(project, issueClass, m_Issue));
        m_Guide.step("linked " + quoted(link.getName()) + " from an outside store",
                     links.size() == 1 && links[0]->getProperties()->getBackItemUrl() == link.getBackItemUrl());
    }

    void history() {
        m_Guide.chapter("History");
        const auto records = listed(api::AuditRecordApi(m_Client).select_DynamicSchemaAuditRecord(project));
        bool sawStatus = false;
        for (const auto& record : records) {
            for (const auto& value : record->getProperties()->getValues()) {
                sawStatus |=
                    value->getProperty() == _XPLATSTR("Status") && value->getNewValue() == _XPLATSTR("In progress");
            }
        }
        m_Guide.step("the service kept " + std::to_string(records.size()) + " audit records, the new status among them",
                     sawStatus);
    }

    void forms() {
        m_Guide.chapter("Forms, definitions and styles");
        api::FormApi api(m_Client);
        model::Forms_EC_MappingForm checklist;
        checklist.setName(_XPLATSTR("Rail checklist"));
        checklist.setUserPermissions({_XPLATSTR("read"), _XPLATSTR("write")});
        const auto form = stored(api.insert_FormsECMappingFormRelatedToIssue(
            project, issueClass, m_Issue, envelope<model::Forms_EC_MappingFormInstance>(checklist)));
        const auto issue =
            api::BaseClassApi(m_Client).get_DynamicSchemaBaseClass_instanceId(project, m_Issue).get()->getInstance();
        const auto& relationships = issue->getRelationshipInstances();
        m_Guide.step("made the form " + quoted(checklist.getName()) + " against the issue, which now lists it",
                     relationships.size() == 1 &&
                         relationships[0]->getRelatedInstance()->getInstanceId() == form->getInstanceId());
        m_Guide.step("listed the project's forms", listed(api.select_FormsECMappingForm(project)).size() == 1 &&
                                                       form->getProperties()->getUserPermissions().size() == 2);

        model::Forms_EC_MappingFormDefinition definition;
        definition.setName(_XPLATSTR("Checklist"));
        definition.setDefinition(_XPLATSTR("{\"pages\":[]}"));
        definition.setShareType(1);
        api::FormDefinitionApi definitions(m_Client);
        definitions
            .insert_FormsECMappingFormDefinition(project,
                                                 envelope<model::Forms_EC_MappingFormDefinitionInstance>(definition))
            .get();
        const auto listedDefinitions = listed(definitions.select_FormsECMappingFormDefinition(project));
        m_Guide.step("kept a form definition",
                     listedDefinitions.size() == 1 &&
                         listedDefinitions[0]->getProperties()->getDefinition() == definition.getDefinition());

        model::Forms_EC_MappingFormStyle style;
        style.setId(7);
        style.setStyleXml(_XPLATSTR("<style font=\"Sans\"/>"));
        const auto storedStyle = stored(api::FormStyleApi(m_Client).insert_FormsECMappingFormStyle(
            project, envelope<model::Forms_EC_MappingFormStyleInstance>(style)));
        m_Guide.step("kept a style sheet", storedStyle->getProperties()->getStyleXml() == style.getStyleXml());
    }

    void lists() {
        m_Guide.chapter("Pick lists");
        api::ListGroupApi groups(m_Client);
        model::ListsListGroup group;
        group.setName(_XPLATSTR("Hazards"));
        group.setLists({_XPLATSTR("Kind"), _XPLATSTR("Severity")});
        const auto storedGroup =
            stored(groups.insert_ListsListGroup(project, envelope<model::ListsListGroupInstance>(group)));
        storeFile(_XPLATSTR("Lists/ListGroup"), storedGroup->getInstanceId(), "Kind;Severity\nFall;High\n");
        m_Guide.step(
            "made a group of two lists, and downloaded its file",
            storedGroup->getProperties()->getLists().size() == 2 &&
                bytesOf(groups.fILEGET_ListsListGroup_instanceId(project, storedGroup->getInstanceId())).find("Fall") !=
                    std::string::npos);

        model::ListsListTree tree;
        tree.setTree(_XPLATSTR("Fall>High|Low"));
        model::ListsListValue value;
        value.setListGroupId(storedGroup->getInstanceId());
        value.setValues(_XPLATSTR("Fall;Slip"));
        const auto storedTree = stored(
            api::ListTreeApi(m_Client).insert_ListsListTree(project, envelope<model::ListsListTreeInstance>(tree)));
        const auto storedValue = stored(
            api::ListValueApi(m_Client).insert_ListsListValue(project, envelope<model::ListsListValueInstance>(value)));
        m_Guide.step("kept its tree and its values",
                     storedTree->getProperties()->getTree() == tree.getTree() &&
                         storedValue->getProperties()->getListGroupId() == storedGroup->getInstanceId());
    }

    void schemas() {
        m_Guide.chapter("Schemas and classes");
        model::SchemasSchema schema;
        schema.setName(_XPLATSTR("Safety"));
        schema.setSchemaXml(_XPLATSTR("<ECSchema schemaName=\"Safety\"/>"));
        model::SchemasClass definition;
        definition.setName(issueClass);
        definition.setClassXml(_XPLATSTR("<ECClass typeName=\"SafetyObservation\"/>"));
        definition.setIsShared(true);
        api::SchemaApi schemaApi(m_Client);
        api::ClassApi classApi(m_Client);
        stored(schemaApi.insert_SchemasSchema(project, envelope<model::SchemasSchemaInstance>(schema)));
        const auto storedClass =
            stored(classApi.insert_SchemasClass(project, envelope<model::SchemasClassInstance>(definition)));
        m_Guide.step("kept a schema and a class of it",
                     listed(schemaApi.select_SchemasSchema(project))[0]->getProperties()->getSchemaXml() ==
                             schema.getSchemaXml() &&
                         storedClass->getProperties()->isIsShared());
    }

    void workflows() {
        m_Guide.chapter("Workflows");
        auto open = std::make_shared<model::WorkflowState>();
        open->setId(_XPLATSTR("open"));
        auto closed = std::make_shared<model::WorkflowState>();
        closed->setId(_XPLATSTR("closed"));
        closed->setClosed(true);
        auto close = std::make_shared<model::WorkflowTransition>();
        close->setStart(open->getId());
        close->setEnd({closed->getId()});
        close->setNotifyCreator(true);
        model::WorkflowDefinition workflow;
        workflow.setStartStates({open->getId()});
        workflow.setStates({open, closed});
        workflow.setTransitions({close});
        api::WorkflowDefinitionApi api(m_Client);
        stored(api.insert_WorkflowDefinition(project, envelope<model::WorkflowDefinitionInstance>(workflow)));
        const auto read = listed(api.select_WorkflowDefinition(project))[0]->getProperties();
        m_Guide.step("kept a workflow of two states, and read it back with its transition",
                     read->getStates().size() == 2 && read->getStates()[1]->isClosed() &&
                         read->getTransitions()[0]->getEnd() == std::vector<string_t>{closed->getId()});
    }

    void projectServices() {
        m_Guide.chapter("Project services");
        model::PlexumProjectSettings settings;
        settings.setPdfStorageDirectory(_XPLATSTR("/pdf"));
        const auto storedSettings = stored(api::ProjectSettingsApi(m_Client).insert_PlexumProjectSettings(
            project, envelope<model::PlexumProjectSettingsInstance>(settings)));
        api::UserSettingsApi userSettings(m_Client);
        const auto mine = stored(userSettings.insert_PlexumUserSettings(
            project, envelope<model::PlexumUserSettingsInstance>(model::PlexumUserSettings())));
        m_Guide.step("kept project settings and user settings",
                     storedSettings->getProperties()->getPdfStorageDirectory() == settings.getPdfStorageDirectory() &&
                         userSettings.get_PlexumUserSettings_instanceId(project, mine->getInstanceId())
                                 .get()
                                 ->getInstance()
                                 ->getInstanceId() == mine->getInstanceId());

        model::Forms_EC_MappingProjectMember member;
        member.setName(_XPLATSTR("Inspectors"));
        member.setIsRole(true);
        administer(_XPLATSTR("Plexum/ProjectMember"), envelope<model::Forms_EC_MappingProjectMemberInstance>(member));
        model::PlexumProjectRole role;
        role.setRoleId(_XPLATSTR("inspector"));
        role.setUserIds({_XPLATSTR("u1"), _XPLATSTR("u2")});
        administer(_XPLATSTR("Plexum/ProjectRole"), envelope<model::PlexumProjectRoleInstance>(role));
        api::FormApi people(m_Client);
        m_Guide.step("listed members and roles of the project",
                     listed(people.select_ProjectMembers(project))[0]->getProperties()->isIsRole() &&
                         listed(people.select_ProjectRoles(project))[0]->getProperties()->getUserIds().size() == 2);

        model::PlexumStats stats;
        stats.setCount(2);
        stats.setOpen(2);
        administer(_XPLATSTR("Plexum/Stats"), envelope<model::PlexumStatsInstance>(stats));
        const auto read = listed(api::StatsApi(m_Client).select_PlexumStats(project))[0]->getProperties();
        m_Guide.step("read the statistics: " + std::to_string(read->getOpen()) + " of " +
                         std::to_string(read->getCount()) + " issues are open",
                     read->getOpen() == 2 && !read->assignedIsSet());

        model::PlexumTemplate original;
        original.setClassName(issueClass);
        const auto templateId =
            administer(_XPLATSTR("Plexum/Template"), envelope<model::PlexumTemplateInstance>(original));
        model::PlexumTemplate copy;
        copy.setCopy(true);
        const auto storedTemplate = stored(api::TemplateApi(m_Client).update_PlexumTemplate(
            project, templateId, envelope<model::PlexumTemplateInstance>(copy)));
        m_Guide.step("changed a template", storedTemplate->getProperties()->isCopy() &&
                                               storedTemplate->getProperties()->getClassName() == issueClass);

        model::PlexumRenderer renderer;
        renderer.setVersion(_XPLATSTR("4.2"));
        const auto rendererId =
            administer(_XPLATSTR("Plexum/Renderer"), envelope<model::PlexumRendererInstance>(renderer));
        storeFile(_XPLATSTR("Plexum/Renderer"), rendererId, "(a renderer)");
        api::RendererApi renderers(m_Client);
        m_Guide.step("read and downloaded a renderer",
                     listed(renderers.select_PlexumRenderer(project))[0]->getProperties()->getVersion() ==
                             renderer.getVersion() &&
                         bytesOf(renderers.fILEGET_PlexumRenderer_instanceId(project, rendererId)) == "(a renderer)");
    }

    void documentsAndJobs() {
        m_Guide.chapter("Documents and BCF jobs");
        api::GeneratedPDFApi pdfs(m_Client);
        model::FormPDFGeneratedPDF request;
        request.setFileName(_XPLATSTR("rail.pdf"));
        request.setInstanceClass(issueClass);
        request.setInstanceIds({m_Issue});
        const auto pdf =
            stored(pdfs.insert_FormPDFGeneratedPDF(project, envelope<model::FormPDFGeneratedPDFInstance>(request)));
        const auto bytes = bytesOf(pdfs.fILEGET_FormPDFGeneratedPDF_instanceId(project, pdf->getInstanceId()));
        m_Guide.step("requested a PDF and downloaded it, " + std::to_string(bytes.size()) + " bytes",
                     bytes.compare(0, 5, "%PDF-") == 0);

        model::BcfExport exported;
        exported.setInstanceClass(issueClass);
        exported.setInstanceIds({m_Issue});
        const auto job =
            stored(api::ExportApi(m_Client).insert_BcfExport(project, envelope<model::BcfExportInstance>(exported)));
        model::BcfImport imported;
        imported.setInstanceClass(issueClass);
        imported.setDiscipline(_XPLATSTR("Safety"));
        const auto back =
            stored(api::ImportApi(m_Client).insert_BcfImport(project, envelope<model::BcfImportInstance>(imported)));
        m_Guide.step("started a BCF export and a BCF import",
                     job->getProperties()->getInstanceIds() == std::vector<string_t>{m_Issue} &&
                         back->getProperties()->getDiscipline() == imported.getDiscipline());
    }

    /// Expects the service to refuse `call` with `status`, and shows its payload.
    template <class Call>
    void refused(const std::string& what, int status, Call call) {
        try {
            call();
            m_Guide.step(what + ": but it was not", false);
        } catch (const api::ApiException& error) {
            model::ErrorSchema payload;
            if (const auto body = error.getContent()) {
                payload.fromJson(web::json::value::parse(*body));
            }
            m_Guide.step(what + ": " + std::to_string(error.error_code().value()) + ", " +
                             quoted(payload.getErrorMessage()),
                         error.error_code().value() == status && payload.errorMessageIsSet());
        }
    }

    Guide m_Guide;
    std::shared_ptr<api::ApiConfiguration> m_Configuration;
    std::shared_ptr<api::ApiClient> m_Client;
    string_t m_Issue;
};

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: tour BASE-URL\n";
        return 2;
    }
    try {
        return Tour(utility::conversions::to_string_t(argv[1])).run();
    } catch (const std::exception& error) {
        std::cerr << "The tour ended early: " << error.what() << '\n';
        return 1;
    }
}
