// A tour of everything that the library reaches, on a repository whose base URL is the only argument. Each step says
// what was done and what came of it; the exit status is 0 if all of them came back as they should.

#include <VarnelAPI/Forms.h>
#include <VarnelAPI/Forms/kit.h>

#include <iostream>

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
    /// What the library offers no operation for goes through the client itself: here, the records that only the
    /// service's administrators make.
    template <class Instance>
    string_t administer(const string_t& path, const std::shared_ptr<Instance>& instance) {
        const auto answer =
            m_Client
                ->callApi(_XPLATSTR("/sv1.2/Repositories/Varnel.Forms--") + project + _XPLATSTR("/") + path,
                          _XPLATSTR("POST"), {}, std::make_shared<model::JsonBody>(instance->toJson()),
                          m_Configuration->getDefaultHeaders(), {}, {}, _XPLATSTR("application/json"))
                .then([](const web::http::http_response& response) { return response.extract_json(); })
                .get();
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
        const auto created =
            kit::stored(api.insert_DynamicSchemaBaseClass(project, kit::envelope(issue, issueClass))).get();
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
        api.insert_DynamicSchemaBaseClass(project, kit::envelope(other)).get();
        using Issue = model::DynamicSchemaBaseClass;
        const auto all = kit::all(kit::pages(api, &api::BaseClassApi::select_DynamicSchemaBaseClass, project)
                                      .orderby(kit::order(kit::descending(Issue::subject))))
                             .get();
        m_Guide.step("listed all issues across classes, last subject first: " +
                         quoted(all.front()->getProperties()->getSubject()) + " comes first",
                     all.size() == 2 && all.front()->getProperties()->getSubject() == other.getSubject());
        std::size_t urgent = 0;
        for (const auto& found :
             kit::pages(api, &api::BaseClassApi::select_DynamicSchemaBaseClass2, project, issueClass, _XPLATSTR(""))
                 .filter(Issue::priority == _XPLATSTR("High"))) {
            urgent += found->getInstanceId() == m_Issue ? 1 : 0;
        }
        m_Guide.step("listed the urgent ones of that class only", urgent == 1);
        m_Guide.step("counted " + std::to_string(kit::total(api.count_DynamicSchemaBaseClass(project)).get()),
                     kit::total(api.count_DynamicSchemaBaseClass(project)).get() == 2);

        model::DynamicSchemaBaseClass change;
        change.setStatus(_XPLATSTR("In progress"));
        const auto changed = kit::stored(api.update_DynamicSchemaBaseClass(
                                             project, m_Issue, kit::envelope(change, issueClass, read->getETag())))
                                 .get();
        m_Guide.step("changed its status to " + quoted(changed->getProperties()->getStatus()),
                     changed->getProperties()->getStatus() == change.getStatus() &&
                         changed->getETag() != read->getETag());
        refused("changing it once more on the outdated version is refused", 409, [&] {
            api.update_DynamicSchemaBaseClass(project, m_Issue, kit::envelope(change, issueClass, read->getETag()))
                .get();
        });
    }

    void attachments() {
        m_Guide.chapter("Attachments");
        api::AttachmentApi api(m_Client);

        model::DynamicSchemaAttachment photo;
        photo.setName(_XPLATSTR("rail.jpg"));
        photo.setCaption(_XPLATSTR("View from the stairs"));
        const auto created =
            kit::stored(api.insert_DynamicSchemaAttachment(project, issueClass, m_Issue, kit::envelope(photo))).get();
        const string_t id = created->getInstanceId();
        m_Guide.step("attached " + quoted(photo.getName()) + " to the issue", !id.empty());

        const std::string bytes("not really a picture\0\r\n but bytes", 34);
        kit::upload(api, project, id, kit::FileContent::ofBytes(bytes).mediaType(_XPLATSTR("image/jpeg"))).get();
        const auto downloaded = kit::bytesOf(api.fILEGET_DynamicSchemaAttachment_instanceId(project, id)).get();
        m_Guide.step("stored and downloaded its file, " + std::to_string(downloaded.size()) + " bytes",
                     downloaded == bytes);

        const auto ofIssue =
            api.select_DynamicSchemaAttachment2(project, issueClass, m_Issue, boost::none, string_t(_XPLATSTR("Name")))
                .get()
                ->getInstances();
        m_Guide.step("listed the issue's attachments by name only",
                     ofIssue.size() == 1 && ofIssue[0]->getProperties()->getName() == photo.getName() &&
                         !ofIssue[0]->getProperties()->captionIsSet());
        m_Guide.step("counted " + std::to_string(kit::total(api.count_DynamicSchemaAttachment(project)).get()),
                     kit::total(api.count_DynamicSchemaAttachment(project)).get() == 1);

        model::DynamicSchemaAttachment change;
        change.setCaption(_XPLATSTR("Sicht von der Treppe, Stra\u00dfe"));
        const auto changed = kit::stored(api.update_DynamicSchemaAttachment(project, id, kit::envelope(change))).get();
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
            kit::stored(api.insert_DynamicSchemaComment(project, issueClass, m_Issue, kit::envelope(comment))).get();
        }
        const auto page = api.select_DynamicSchemaComment2(project, issueClass, m_Issue, boost::none, boost::none,
                                                           string_t(_XPLATSTR("Text desc")), boost::none, 1, 1)
                              .get()
                              ->getInstances();
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
        const auto file = kit::stored(files.insert_DynamicSchemaFile(project, kit::envelope(plan))).get();
        m_Guide.step("recorded a file of " + std::to_string(file->getProperties()->getSize()) + " bytes",
                     file->getProperties()->getSize() == plan.getSize());
        kit::upload(files, project, file->getInstanceId(), kit::FileContent::ofBytes("(the first part of it)")).get();
        m_Guide.step("stored and downloaded its content",
                     kit::bytesOf(files.fILEGET_DynamicSchemaFile_instanceId(project, file->getInstanceId())).get() ==
                         "(the first part of it)");

        api::ExternalFileApi externalFiles(m_Client);
        model::DynamicSchema_ExternalFile link;
        link.setName(_XPLATSTR("drawing.dgn"));
        link.setBackItemUrl(_XPLATSTR("https://files.example.org/42"));
        kit::stored(externalFiles.insert_DynamicSchemaExternalFile(project, issueClass, m_Issue, kit::envelope(link)))
            .get();
        const auto links =
            externalFiles.select_DynamicSchemaExternalFile2(project, issueClass, m_Issue).get()->getInstances();
        m_Guide.step("linked " + quoted(link.getName()) + " from an outside store",
                     links.size() == 1 && links[0]->getProperties()->getBackItemUrl() == link.getBackItemUrl());
    }

    void history() {
        m_Guide.chapter("History");
        const auto records =
            api::AuditRecordApi(m_Client).select_DynamicSchemaAuditRecord(project).get()->getInstances();
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
        const auto form = kit::stored(api.insert_FormsECMappingFormRelatedToIssue(project, issueClass, m_Issue,
                                                                                  kit::envelope(checklist)))
                              .get();
        const auto issue =
            api::BaseClassApi(m_Client).get_DynamicSchemaBaseClass_instanceId(project, m_Issue).get()->getInstance();
        const auto& relationships = issue->getRelationshipInstances();
        m_Guide.step("made the form " + quoted(checklist.getName()) + " against the issue, which now lists it",
                     relationships.size() == 1 &&
                         relationships[0]->getRelatedInstance()->getInstanceId() == form->getInstanceId());
        m_Guide.step("listed the project's forms",
                     api.select_FormsECMappingForm(project).get()->getInstances().size() == 1 &&
                         form->getProperties()->getUserPermissions().size() == 2);

        model::Forms_EC_MappingFormDefinition definition;
        definition.setName(_XPLATSTR("Checklist"));
        definition.setDefinition(_XPLATSTR("{\"pages\":[]}"));
        definition.setShareType(1);
        api::FormDefinitionApi definitions(m_Client);
        definitions.insert_FormsECMappingFormDefinition(project, kit::envelope(definition)).get();
        const auto listedDefinitions = definitions.select_FormsECMappingFormDefinition(project).get()->getInstances();
        m_Guide.step("kept a form definition",
                     listedDefinitions.size() == 1 &&
                         listedDefinitions[0]->getProperties()->getDefinition() == definition.getDefinition());

        model::Forms_EC_MappingFormStyle style;
        style.setId(7);
        style.setStyleXml(_XPLATSTR("<style font=\"Sans\"/>"));
        const auto storedStyle =
            kit::stored(api::FormStyleApi(m_Client).insert_FormsECMappingFormStyle(project, kit::envelope(style)))
                .get();
        m_Guide.step("kept a style sheet", storedStyle->getProperties()->getStyleXml() == style.getStyleXml());
    }

    void lists() {
        m_Guide.chapter("Pick lists");
        api::ListGroupApi groups(m_Client);
        model::ListsListGroup group;
        group.setName(_XPLATSTR("Hazards"));
        group.setLists({_XPLATSTR("Kind"), _XPLATSTR("Severity")});
        const auto storedGroup = kit::stored(groups.insert_ListsListGroup(project, kit::envelope(group))).get();
        kit::upload(groups, project, storedGroup->getInstanceId(),
                    kit::FileContent::ofBytes("Kind;Severity\nFall;High\n"))
            .get();
        m_Guide.step("made a group of two lists, and downloaded its file",
                     storedGroup->getProperties()->getLists().size() == 2 &&
                         kit::bytesOf(groups.fILEGET_ListsListGroup_instanceId(project, storedGroup->getInstanceId()))
                                 .get()
                                 .find("Fall") != std::string::npos);

        model::ListsListTree tree;
        tree.setTree(_XPLATSTR("Fall>High|Low"));
        model::ListsListValue value;
        value.setListGroupId(storedGroup->getInstanceId());
        value.setValues(_XPLATSTR("Fall;Slip"));
        const auto storedTree =
            kit::stored(api::ListTreeApi(m_Client).insert_ListsListTree(project, kit::envelope(tree))).get();
        const auto storedValue =
            kit::stored(api::ListValueApi(m_Client).insert_ListsListValue(project, kit::envelope(value))).get();
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
        kit::stored(schemaApi.insert_SchemasSchema(project, kit::envelope(schema))).get();
        const auto storedClass = kit::stored(classApi.insert_SchemasClass(project, kit::envelope(definition))).get();
        m_Guide.step(
            "kept a schema and a class of it",
            schemaApi.select_SchemasSchema(project).get()->getInstances()[0]->getProperties()->getSchemaXml() ==
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
        kit::stored(api.insert_WorkflowDefinition(project, kit::envelope(workflow))).get();
        const auto read = api.select_WorkflowDefinition(project).get()->getInstances()[0]->getProperties();
        m_Guide.step("kept a workflow of two states, and read it back with its transition",
                     read->getStates().size() == 2 && read->getStates()[1]->isClosed() &&
                         read->getTransitions()[0]->getEnd() == std::vector<string_t>{closed->getId()});
    }

    void projectServices() {
        m_Guide.chapter("Project services");
        model::PlexumProjectSettings settings;
        settings.setPdfStorageDirectory(_XPLATSTR("/pdf"));
        const auto storedSettings = kit::stored(api::ProjectSettingsApi(m_Client).insert_PlexumProjectSettings(
                                                    project, kit::envelope(settings)))
                                        .get();
        api::UserSettingsApi userSettings(m_Client);
        const auto mine =
            kit::stored(userSettings.insert_PlexumUserSettings(project, kit::envelope(model::PlexumUserSettings())))
                .get();
        m_Guide.step("kept project settings and user settings",
                     storedSettings->getProperties()->getPdfStorageDirectory() == settings.getPdfStorageDirectory() &&
                         userSettings.get_PlexumUserSettings_instanceId(project, mine->getInstanceId())
                                 .get()
                                 ->getInstance()
                                 ->getInstanceId() == mine->getInstanceId());

        model::Forms_EC_MappingProjectMember member;
        member.setName(_XPLATSTR("Inspectors"));
        member.setIsRole(true);
        administer<model::Forms_EC_MappingProjectMemberInstance>(_XPLATSTR("Plexum/ProjectMember"),
                                                                 kit::envelope(member));
        model::PlexumProjectRole role;
        role.setRoleId(_XPLATSTR("inspector"));
        role.setUserIds({_XPLATSTR("u1"), _XPLATSTR("u2")});
        administer<model::PlexumProjectRoleInstance>(_XPLATSTR("Plexum/ProjectRole"), kit::envelope(role));
        api::FormApi people(m_Client);
        m_Guide.step(
            "listed members and roles of the project",
            people.select_ProjectMembers(project).get()->getInstances()[0]->getProperties()->isIsRole() &&
                people.select_ProjectRoles(project).get()->getInstances()[0]->getProperties()->getUserIds().size() ==
                    2);

        model::PlexumStats stats;
        stats.setCount(2);
        stats.setOpen(2);
        administer<model::PlexumStatsInstance>(_XPLATSTR("Plexum/Stats"), kit::envelope(stats));
        const auto read = api::StatsApi(m_Client).select_PlexumStats(project).get()->getInstances()[0]->getProperties();
        m_Guide.step("read the statistics: " + std::to_string(read->getOpen()) + " of " +
                         std::to_string(read->getCount()) + " issues are open",
                     read->getOpen() == 2 && !read->assignedIsSet());

        model::PlexumTemplate original;
        original.setClassName(issueClass);
        const auto templateId =
            administer<model::PlexumTemplateInstance>(_XPLATSTR("Plexum/Template"), kit::envelope(original));
        model::PlexumTemplate copy;
        copy.setCopy(true);
        const auto storedTemplate =
            kit::stored(api::TemplateApi(m_Client).update_PlexumTemplate(project, templateId, kit::envelope(copy)))
                .get();
        m_Guide.step("changed a template", storedTemplate->getProperties()->isCopy() &&
                                               storedTemplate->getProperties()->getClassName() == issueClass);

        model::PlexumRenderer renderer;
        renderer.setVersion(_XPLATSTR("4.2"));
        const auto rendererId =
            administer<model::PlexumRendererInstance>(_XPLATSTR("Plexum/Renderer"), kit::envelope(renderer));
        api::RendererApi renderers(m_Client);
        kit::upload(renderers, project, rendererId, kit::FileContent::ofBytes("(a renderer)")).get();
        m_Guide.step("read and downloaded a renderer",
                     renderers.select_PlexumRenderer(project).get()->getInstances()[0]->getProperties()->getVersion() ==
                             renderer.getVersion() &&
                         kit::bytesOf(renderers.fILEGET_PlexumRenderer_instanceId(project, rendererId)).get() ==
                             "(a renderer)");
    }

    void documentsAndJobs() {
        m_Guide.chapter("Documents and BCF jobs");
        api::GeneratedPDFApi pdfs(m_Client);
        model::FormPDFGeneratedPDF request;
        request.setFileName(_XPLATSTR("rail.pdf"));
        request.setInstanceClass(issueClass);
        request.setInstanceIds({m_Issue});
        const auto pdf = kit::stored(pdfs.insert_FormPDFGeneratedPDF(project, kit::envelope(request))).get();
        const auto bytes =
            kit::bytesOf(pdfs.fILEGET_FormPDFGeneratedPDF_instanceId(project, pdf->getInstanceId())).get();
        m_Guide.step("requested a PDF and downloaded it, " + std::to_string(bytes.size()) + " bytes",
                     bytes.compare(0, 5, "%PDF-") == 0);

        model::BcfExport exported;
        exported.setInstanceClass(issueClass);
        exported.setInstanceIds({m_Issue});
        const auto job = kit::stored(api::ExportApi(m_Client).insert_BcfExport(project, kit::envelope(exported))).get();
        model::BcfImport imported;
        imported.setInstanceClass(issueClass);
        imported.setDiscipline(_XPLATSTR("Safety"));
        const auto back =
            kit::stored(api::ImportApi(m_Client).insert_BcfImport(project, kit::envelope(imported))).get();
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
            const kit::Failure failure(error, _XPLATSTR("It"));
            m_Guide.step(what + ": " + to_utf8string(failure.sentence()),
                         failure.status() == status && failure.payload() != nullptr);
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
