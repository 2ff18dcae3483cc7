#include "Families.h"

#include "Failures.h"

#include <VarnelAPI/Forms.h>
#include <VarnelAPI/Forms/kit/Instances.h>

#include <algorithm>

namespace VarnelAPI::Forms::cli {
namespace {

constexpr int pageSize = 100;

using namespace api;
using utility::string_t;

/// Reads the pages of a list; `call` asks for one. All instances are fetched a page ahead; some, until they are there,
/// since the service may give fewer at once than it was asked for.
template <class Instances, class Call>
NextPage pagesOf(Call call, const ListQuery& query) {
    const auto texts = [](const auto& instances) {
        std::vector<Json> page;
        for (const auto& instance : instances) {
            if (instance) {
                page.push_back(instance->toJson());
            }
        }
        return page;
    };
    if (query.top == 0) {
        const kit::PageCursor<Instances> cursor(
            [call, begin = query.skip](const kit::PageQuery& options, int skip, int top) {
                return call(options, begin + skip, top);
            },
            query.options, pageSize);
        return [cursor, texts] {
            std::vector<Json> page;
            while (page.empty()) {
                const auto instances = cursor.next().get();
                if (!instances) {
                    break;
                }
                page = texts(*instances);
            }
            return page;
        };
    }
    return [call, texts, options = query.options, skip = query.skip, left = query.top]() mutable {
        std::vector<Json> page;
        while (page.empty() && left > 0) {
            const auto answer = call(options, skip, std::min(left, pageSize)).get();
            const auto got = static_cast<int>(answer->getInstances().size());
            page = texts(answer->getInstances());
            left = got == 0 ? 0 : left - got;
            skip += got;
        }
        return page;
    };
}

/// The model that `content` describes. What the model has no place for must not get lost on the way.
template <class Instance>
std::shared_ptr<Instance> read(const Json& content) {
    const auto filled = [](const Json& from) {
        auto instance = std::make_shared<Instance>();
        Json wrapped = object({{"instance", from}});
        try {
            instance->fromJson(wrapped);
        } catch (const web::json::json_exception& wrong) {
            throw Usage(std::string("a property is of another type: ") + wrong.what());
        }
        return instance;
    };
    auto instance = filled(content);
    const Json* given = member(content, "properties");
    if (given == nullptr) {
        return instance;
    }
    const auto lostOf = [&](const std::shared_ptr<Instance>& made) {
        const Json json = made->getInstance()->toJson();
        const Json* properties = member(json, "properties");
        return lost(*given, properties == nullptr ? Json::object() : *properties);
    };
    std::string missing = lostOf(instance);
    if (const Json* value = member(*given, missing); value != nullptr && value->is_null()) {
        // Models leave out null, but for dates that were set to no date.
        Json emptied = content;
        emptied[string_t("properties")][missing] = Json::string(string_t());
        instance = filled(emptied);
        missing = lostOf(instance);
        if (!missing.empty()) {
            throw Usage(missing + " can't be removed");
        }
    }
    if (!missing.empty()) {
        const Json value = column(object({{"properties", *given}}), missing); // but for elements of lists
        throw Usage("there is no property " + missing + ", or it is of another type" +
                    (value.is_null() ? "" : " than " + toText(value)));
    }
    return instance;
}

/// An operation takes its place in the row according to what it takes and gives.
/// @{
using ListOptions = const TextOption&;
using Text = const string_t&;

template <class Api, class Instances>
void bind(Family& row, ModelTask<Instances> (Api::*select)(Text, ListOptions, ListOptions, ListOptions, ListOptions,
                                                           const NumberOption&, const NumberOption&) const) {
    row.list = [select](const Client& client, const Place& place, const ListQuery& query) {
        return pagesOf<Instances>(
            [=, api = Api(client)](const kit::PageQuery& options, int skip, int top) {
                return (api.*select)(place.location, options.filter, options.select, options.orderby,
                                     options.filtersettings, skip, top);
            },
            query);
    };
}
template <class Api, class Instances>
void bind(Family& row,
          ModelTask<Instances> (Api::*select)(Text, Text, Text, ListOptions, ListOptions, ListOptions, ListOptions,
                                              const NumberOption&, const NumberOption&) const) {
    row.listWithin = [select](const Client& client, const Place& place, const ListQuery& query) {
        return pagesOf<Instances>(
            [=, api = Api(client)](const kit::PageQuery& options, int skip, int top) {
                return (api.*select)(place.location, place.className, place.owner, options.filter, options.select,
                                     options.orderby, options.filtersettings, skip, top);
            },
            query);
    };
}
template <class Api, class Count>
void bind(Family& row, ModelTask<Count> (Api::*count)(Text) const) {
    row.count = [count](const Client& client, const Place& place) {
        const auto answer = (Api(client).*count)(place.location).get();
        std::vector<Json> rows;
        for (const auto& instance : answer->getInstances()) {
            if (instance && instance->getProperties()) {
                rows.push_back(instance->getProperties()->toJson());
            }
        }
        return rows;
    };
}
template <class Api, class Instance>
void bind(Family& row, ModelTask<Instance> (Api::*get)(Text, Text, const TextOption&) const) {
    row.get = [get](const Client& client, const Place& place, const std::string& id, const TextOption& select) {
        return kit::stored((Api(client).*get)(place.location, id, select).get())->toJson();
    };
}
template <class Api, class Instance, class Changed>
void bind(Family& row, ModelTask<Changed> (Api::*insert)(Text, const Body<Instance>&) const) {
    row.create = [insert](const Client& client, const Place& place, const Json& content) {
        return kit::stored((Api(client).*insert)(place.location, read<Instance>(content)).get())->toJson();
    };
}
template <class Api, class Instance, class Changed>
void bind(Family& row, ModelTask<Changed> (Api::*insert)(Text, Text, Text, const Body<Instance>&) const) {
    row.createWithin = [insert](const Client& client, const Place& place, const Json& content) {
        return kit::stored(
                   (Api(client).*insert)(place.location, place.className, place.owner, read<Instance>(content)).get())
            ->toJson();
    };
}
template <class Api, class Instance, class Changed>
void bind(Family& row, ModelTask<Changed> (Api::*update)(Text, Text, const Body<Instance>&) const) {
    row.update = [update](const Client& client, const Place& place, const std::string& id, const Json& content) {
        return kit::stored((Api(client).*update)(place.location, id, read<Instance>(content)).get())->toJson();
    };
}
template <class Api>
void bind(Family& row, pplx::task<void> (Api::*remove)(Text, Text) const) {
    row.remove = [remove](const Client& client, const Place& place, const std::string& id) {
        (Api(client).*remove)(place.location, id).get();
    };
}
template <class Api>
void bind(Family& row, pplx::task<model::HttpContent> (Api::*download)(Text, Text) const) {
    row.download = [download](const Client& client, const Place& place, const std::string& id) {
        (Api(client).*download)(place.location, id).get();
    };
}
/// The operations of uploads send none of the bytes: that there is one says that its path takes them.
template <class Api, class Changed>
void bind(Family& row, ModelTask<Changed> (Api::*)(Text, Text, Text, Text, Text, const std::vector<char>&) const) {
    row.takesFiles = true;
}
template <class Api, class Changed>
void bind(Family& row, ModelTask<Changed> (Api::*)(Text, Text, Text, const TextOption&) const) {
    row.takesFiles = true;
}
/// @}

struct Names {
    const char* name;
    const char* one;
    const char* about;
    const char* path;
    const char* columns;
    const char* owner = "";
};

template <class... Operations>
Family row(const Names& names, Operations... operations) {
    Family family;
    family.name = names.name;
    family.one = names.one;
    family.about = names.about;
    family.path = names.path;
    family.columns = names.columns;
    family.owner = names.owner;
    (bind(family, operations), ...);
    return family;
}

} // namespace

const std::vector<Family>& families() {
    static const std::vector<Family> all{
        row({"attachments", "attachment", "Files attached to issues", "DynamicSchema/Attachment",
             "id,Name,Size,Caption,CreatedDate", "issues"},
            &AttachmentApi::select_DynamicSchemaAttachment2, &AttachmentApi::get_DynamicSchemaAttachment_instanceId,
            &AttachmentApi::count_DynamicSchemaAttachment, &AttachmentApi::insert_DynamicSchemaAttachment,
            &AttachmentApi::update_DynamicSchemaAttachment, &AttachmentApi::delete_DynamicSchemaAttachment_instanceId,
            &AttachmentApi::fILEGET_DynamicSchemaAttachment_instanceId,
            &AttachmentApi::fileInsert_DynamicSchemaAttachment_instanceId),
        row({"audit-records", "audit-record", "What was done to instances, and by whom", "DynamicSchema/AuditRecord",
             "id,RecordDate,RecordBy,Action,Values"},
            &AuditRecordApi::select_DynamicSchemaAuditRecord, &AuditRecordApi::get_DynamicSchemaAuditRecord_instanceId,
            &AuditRecordApi::count_DynamicSchemaAuditRecord),
        row({"classes", "class", "Classes that schemas define", "Schemas/Class", ""}, &ClassApi::select_SchemasClass,
            &ClassApi::get_SchemasClass_instanceId, &ClassApi::insert_SchemasClass, &ClassApi::update_SchemasClass,
            &ClassApi::delete_SchemasClass_instanceId),
        row({"comments", "comment", "Comments on issues", "DynamicSchema/_Comment", "id,Text,Author,CreatedDate",
             "issues"},
            &CommentApi::select_DynamicSchemaComment, &CommentApi::select_DynamicSchemaComment2,
            &CommentApi::get_DynamicSchemaComment_instanceId, &CommentApi::count_DynamicSchemaComment,
            &CommentApi::insert_DynamicSchemaComment, &CommentApi::update_DynamicSchemaComment,
            &CommentApi::delete_DynamicSchemaComment_instanceId),
        row({"exports", "export", "Jobs that export BCF", "Bcf/Export", ""}, &ExportApi::insert_BcfExport),
        row({"external-files", "external-file", "Files of issues in other stores", "DynamicSchema/_ExternalFile",
             "id,Name,ItemId,BackItemUrl", "issues"},
            &ExternalFileApi::select_DynamicSchemaExternalFile, &ExternalFileApi::select_DynamicSchemaExternalFile2,
            &ExternalFileApi::get_DynamicSchemaExternalFile_instanceId,
            &ExternalFileApi::count_DynamicSchemaExternalFile, &ExternalFileApi::insert_DynamicSchemaExternalFile,
            &ExternalFileApi::update_DynamicSchemaExternalFile,
            &ExternalFileApi::delete_DynamicSchemaExternalFile_instanceId),
        row({"files", "file", "Stored files of instances", "DynamicSchema/File", "id,Name,Size,CreatedDate"},
            &FileApi::select_DynamicSchemaFile, &FileApi::get_DynamicSchemaFile_instanceId,
            &FileApi::count_DynamicSchemaFile, &FileApi::insert_DynamicSchemaFile, &FileApi::update_DynamicSchemaFile,
            &FileApi::delete_DynamicSchemaFile_instanceId, &FileApi::fILEGET_DynamicSchemaFile_instanceId,
            &FileApi::fileInsert_DynamicSchemaFile_instanceId),
        row({"form-definitions", "form-definition", "Templates of forms", "Forms_EC_Mapping/FormDefinition", ""},
            &FormDefinitionApi::select_FormsECMappingFormDefinition,
            &FormDefinitionApi::get_FormsECMappingFormDefinition_instanceId,
            &FormDefinitionApi::insert_FormsECMappingFormDefinition,
            &FormDefinitionApi::update_FormsECMappingFormDefinition,
            &FormDefinitionApi::delete_FormsECMappingFormDefinition_instanceId),
        row({"form-styles", "form-style", "Style sheets of forms", "Forms_EC_Mapping/FormStyle", ""},
            &FormStyleApi::select_FormsECMappingFormStyle, &FormStyleApi::get_FormsECMappingFormStyle_instanceId,
            &FormStyleApi::insert_FormsECMappingFormStyle, &FormStyleApi::update_FormsECMappingFormStyle,
            &FormStyleApi::delete_FormsECMappingFormStyle_instanceId),
        row({"forms", "form", "Forms, perhaps related to issues", "Forms_EC_Mapping/Form", "", "issues"},
            &FormApi::select_FormsECMappingForm, &FormApi::get_FormsECMappingForm_instanceId,
            &FormApi::insert_FormsECMappingForm, &FormApi::insert_FormsECMappingFormRelatedToIssue,
            &FormApi::update_FormsECMappingForm, &FormApi::delete_FormsECMappingForm_instanceId),
        row({"imports", "import", "Jobs that import BCF", "Bcf/Import", ""}, &ImportApi::insert_BcfImport),
        row({"issues", "issue", "Issues of the classes that the project defines", "DynamicSchema/BaseClass",
             "id,class,_Subject,Status,AssignedTo,_DueDate"},
            &BaseClassApi::select_DynamicSchemaBaseClass, &BaseClassApi::select_DynamicSchemaBaseClass2,
            &BaseClassApi::get_DynamicSchemaBaseClass_instanceId, &BaseClassApi::count_DynamicSchemaBaseClass,
            &BaseClassApi::insert_DynamicSchemaBaseClass, &BaseClassApi::update_DynamicSchemaBaseClass,
            &BaseClassApi::delete_DynamicSchemaBaseClass_instanceId),
        row({"list-groups", "list-group", "Groups of pick lists", "Lists/ListGroup", "id,Name,Lists,ModifiedDate"},
            &ListGroupApi::select_ListsListGroup, &ListGroupApi::get_ListsListGroup_instanceId,
            &ListGroupApi::insert_ListsListGroup, &ListGroupApi::update_ListsListGroup,
            &ListGroupApi::delete_ListsListGroup_instanceId, &ListGroupApi::fILEGET_ListsListGroup_instanceId),
        row({"list-trees", "list-tree", "Trees of pick lists", "Lists/ListTree", ""},
            &ListTreeApi::select_ListsListTree, &ListTreeApi::get_ListsListTree_instanceId,
            &ListTreeApi::insert_ListsListTree, &ListTreeApi::update_ListsListTree,
            &ListTreeApi::delete_ListsListTree_instanceId),
        row({"list-values", "list-value", "Values of pick lists", "Lists/ListValue", ""},
            &ListValueApi::select_ListsListValue, &ListValueApi::get_ListsListValue_instanceId,
            &ListValueApi::insert_ListsListValue, &ListValueApi::update_ListsListValue,
            &ListValueApi::delete_ListsListValue_instanceId),
        row({"members", "member", "Members of the project", "Plexum/ProjectMember", ""},
            &FormApi::select_ProjectMembers),
        row({"pdfs", "pdf", "PDF documents made of instances", "FormPDF/GeneratedPDF", ""},
            &GeneratedPDFApi::select_FormPDFGeneratedPDF, &GeneratedPDFApi::get_FormPDFGeneratedPDF_instanceId,
            &GeneratedPDFApi::insert_FormPDFGeneratedPDF, &GeneratedPDFApi::fILEGET_FormPDFGeneratedPDF_instanceId),
        row({"renderers", "renderer", "What draws forms", "Plexum/Renderer", ""}, &RendererApi::select_PlexumRenderer,
            &RendererApi::get_PlexumRenderer_instanceId, &RendererApi::fILEGET_PlexumRenderer_instanceId),
        row({"roles", "role", "Roles of the project", "Plexum/ProjectRole", ""}, &FormApi::select_ProjectRoles),
        row({"schemas", "schema", "Schemas of the project", "Schemas/Schema", ""}, &SchemaApi::select_SchemasSchema,
            &SchemaApi::get_SchemasSchema_instanceId, &SchemaApi::insert_SchemasSchema,
            &SchemaApi::update_SchemasSchema, &SchemaApi::delete_SchemasSchema_instanceId),
        row({"settings", "setting", "Settings of the project", "Plexum/ProjectSettings", ""},
            &ProjectSettingsApi::select_PlexumProjectSettings,
            &ProjectSettingsApi::get_PlexumProjectSettings_instanceId,
            &ProjectSettingsApi::insert_PlexumProjectSettings, &ProjectSettingsApi::update_PlexumProjectSettings,
            &ProjectSettingsApi::delete_PlexumProjectSettings_instanceId),
        row({"stats", "stat", "Statistics of the project", "Plexum/Stats", ""}, &StatsApi::select_PlexumStats,
            &StatsApi::get_PlexumStats_instanceId),
        row({"templates", "template", "Templates of the project", "Plexum/Template", ""},
            &TemplateApi::update_PlexumTemplate),
        row({"user-settings", "user-setting", "Settings of a user", "Plexum/UserSettings", ""},
            &UserSettingsApi::select_PlexumUserSettings, &UserSettingsApi::get_PlexumUserSettings_instanceId,
            &UserSettingsApi::insert_PlexumUserSettings, &UserSettingsApi::update_PlexumUserSettings,
            &UserSettingsApi::delete_PlexumUserSettings_instanceId),
        row({"workflows", "workflow", "Definitions of workflows", "Workflow/WorkflowDefinition", ""},
            &WorkflowDefinitionApi::select_WorkflowDefinition,
            &WorkflowDefinitionApi::get_WorkflowDefinition_instanceId,
            &WorkflowDefinitionApi::insert_WorkflowDefinition, &WorkflowDefinitionApi::update_WorkflowDefinition,
            &WorkflowDefinitionApi::delete_WorkflowDefinition_instanceId),
    };
    return all;
}

const Family& family(const std::string& name) {
    std::string names;
    for (const Family& each : families()) {
        if (name == each.name || name == each.one) {
            return each;
        }
        names += (names.empty() ? "" : ", ") + each.name;
    }
    throw Usage("there is no family \"" + name + "\": there are " + names);
}

} // namespace VarnelAPI::Forms::cli
