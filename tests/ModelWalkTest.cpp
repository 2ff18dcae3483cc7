#include "support/Lane.h"
#include "support/Seeds.h"
#include "support/ServiceTest.h"
#include "support/Sources.h"

#include <functional>
#include <map>

/// Every model class, with its properties as users and the service know them, and one walk over all of them.
namespace forms_test {
namespace {

using namespace VarnelAPI::Forms::model;

using s = utility::string_t;
using i = int32_t;
using l = int64_t;
using f = double;
using b = bool;
using d = utility::datetime;
template <class T>
using list = std::vector<T>;
template <class M>
using one = std::shared_ptr<M>;
/// A model that travels as a text that holds its JSON.
template <class M>
struct AsText {};

/// What a getter returns: a reference, a copy, or a copy of anything but a list.
enum Getters { references, copies, copiesButLists };

/// One property: its key, its value, and its accessors with their class erased.
struct Row {
    enum Kind { scalar, nested, nestedAsText, array };
    std::string key;
    Kind kind;
    /// A JSON text for a value; `n` counts up, so that no two values are alike.
    std::string (*sample)(int& n);
    const std::vector<Row>* (*rowsOfNested)();
    void (*copy)(ModelBase& to, const ModelBase& from);
    bool (*equal)(const ModelBase& a, const ModelBase& b);
    bool (*isSet)(const ModelBase& model);
    void (*unset)(ModelBase& model);
    bool returnsReference;
    /// The key and the types of the constant beside the accessors.
    s nameKey;
    bool namesOwnerAndValue;
};
using Rows = std::vector<Row>;

/// A model class: specialised below for each.
template <class M>
struct Model;

struct Class {
    std::function<std::shared_ptr<ModelBase>()> create;
    const Rows* rows;
    Getters getters;
};
std::map<std::string, Class>& allClasses() {
    static std::map<std::string, Class> classes;
    return classes;
}
template <class M>
bool enter(const char* name, Getters getters) {
    return allClasses().emplace(name, Class{std::make_shared<M>, &Model<M>::rows, getters}).second;
}

std::string objectText(const Rows& rows, int& n, bool withNested = true) {
    std::string text;
    for (const Row& row : rows) {
        const std::string value = row.sample(n);
        if (withNested || row.kind != Row::nested) {
            text += (text.empty() ? "\"" : ",\"") + row.key + "\":" + value;
        }
    }
    return "{" + text + "}";
}

/// The samples, one function object per type of property.
template <class T>
struct Sample {
    using Value = T;
    static constexpr Row::Kind kind = Row::scalar;
    static const Rows* rows() { return nullptr; }
    static std::string text(int& n) {
        const std::string number = std::to_string(++n);
        if constexpr (std::is_same_v<T, s>) {
            return "\"tëxt " + number + "\"";
        } else if constexpr (std::is_same_v<T, d>) {
            return "\"2024-02-29T12:" + std::to_string(10 + n / 50) + ":" + std::to_string(10 + n % 50) + ".5Z\"";
        } else if constexpr (std::is_same_v<T, b>) {
            return "true";
        } else if constexpr (std::is_same_v<T, l>) {
            return std::to_string(5000000000 + n);
        } else {
            static_assert(std::is_same_v<T, i> || std::is_same_v<T, f>);
            return std::is_same_v<T, f> ? number + ".5" : number;
        }
    }
};
template <class M>
struct Sample<one<M>> {
    using Value = one<M>;
    static constexpr Row::Kind kind = Row::nested;
    static const Rows* rows() { return &Model<M>::rows; }
    static std::string text(int& n) { return objectText(Model<M>::rows, n); }
};
template <class M>
struct Sample<AsText<M>> : Sample<one<M>> {
    static constexpr Row::Kind kind = Row::nestedAsText;
    static std::string text(int& n) {
        return utf8(web::json::value::string(forms_test::text(Sample<one<M>>::text(n))).serialize());
    }
};
template <class T>
struct Sample<list<T>> {
    using Value = list<T>;
    static constexpr Row::Kind kind = Row::array;
    static const Rows* rows() { return nullptr; }
    static std::string text(int& n) {
        const std::string first = Sample<T>::text(n);
        return "[" + first + "," + Sample<T>::text(n) + "]";
    }
};

#define PROPERTY(Type, wire, name, get, set, isSet, unset)                                                             \
    Row {                                                                                                              \
        wire, Sample<Type>::kind, Sample<Type>::text, Sample<Type>::rows,                                              \
            [](ModelBase& to, const ModelBase& from) { static_cast<M&>(to).set(static_cast<const M&>(from).get()); },  \
            [](const ModelBase& x, const ModelBase& y) {                                                               \
                return static_cast<const M&>(x).get() == static_cast<const M&>(y).get();                               \
            },                                                                                                         \
            [](const ModelBase& model) { return static_cast<const M&>(model).isSet(); },                               \
            [](ModelBase& model) { static_cast<M&>(model).unset(); },                                                  \
            std::is_same_v<decltype(std::declval<M&>().get()), Sample<Type>::Value&>, s(M::name.key()),                \
            isNameOf<M, Sample<Type>::Value>(M::name)                                                                  \
    }
/// Whether `name` is that of a property of `M`, or of a class that `M` derives from, whose value is a `T`.
template <class M, class T, class Owner, class Value>
constexpr bool isNameOf(const PropertyName<Owner, Value>&) {
    return std::is_base_of_v<Owner, M> && std::is_same_v<Value, T>;
}

/// A key that begins like the accessors' stem; like the flag's; a key of its own. The same for bools.
#define P(Type, Stem, stem) PROPERTY(Type, #Stem, stem, get##Stem, set##Stem, stem##IsSet, unset##Stem)
#define p(Type, Stem, stem) PROPERTY(Type, #stem, stem, get##Stem, set##Stem, stem##IsSet, unset##Stem)
#define K(Type, key, Stem, stem) PROPERTY(Type, #key, stem, get##Stem, set##Stem, stem##IsSet, unset##Stem)
#define B(Stem, stem) PROPERTY(b, #Stem, stem, is##Stem, set##Stem, stem##IsSet, unset##Stem)

#define MODEL(Class, getters)                                                                                          \
    template <>                                                                                                        \
    struct Model<Class> {                                                                                              \
        using M = Class;                                                                                               \
        static const Rows rows;                                                                                        \
    };                                                                                                                 \
    const bool entered##Class = enter<Class>(#Class, getters);                                                         \
    const Rows Model<Class>::rows =

/// The envelopes that a class may have.
#define INSTANCE(X) INSTANCE_WITH(X, )
#define INSTANCE_WITH(X, ...)                                                                                          \
    MODEL(X##InstanceContent, references){p(s, InstanceId, instanceId),      p(s, SchemaName, schemaName),             \
                                          p(s, ClassName, className),        p(s, ETag, eTag),                         \
                                          p(one<X>, Properties, properties), __VA_ARGS__};                             \
    MODEL(X##Instance, references){p(one<X##InstanceContent>, Instance, instance)};
#define LIST(X) MODEL(X##Instances, references){p(list<one<X##InstanceContent>>, Instances, instances)};
#define CHANGED(X)                                                                                                     \
    MODEL(X##ChangedInstanceContent, copies){p(s, Change, change),                                                     \
                                             p(one<X##InstanceContent>, InstanceAfterChange, instanceAfterChange)};    \
    MODEL(X##ChangedInstance, references){p(one<X##ChangedInstanceContent>, ChangedInstance, changedInstance)};
#define CHANGES(X)                                                                                                     \
    MODEL(Changed##X##Instances,                                                                                       \
          references){p(list<one<X##ChangedInstanceContent>>, ChangedInstances, changedInstances)};
#define COUNT(X)                                                                                                       \
    MODEL(X##InstanceCount_properties, copies){P(s, ECSchemaName, eCSchemaName), P(s, ECClassName, eCClassName),       \
                                               p(l, Count, count)};                                                    \
    MODEL(X##InstanceCount_instances, references){p(s, InstanceId, instanceId), p(s, SchemaName, schemaName),          \
                                                  p(s, ClassName, className),                                          \
                                                  p(one<X##InstanceCount_properties>, Properties, properties)};        \
    MODEL(X##InstanceCount, references){p(list<one<X##InstanceCount_instances>>, Instances, instances)};

// clang-format off
MODEL(ErrorSchema, copies) {p(s, ErrorId, errorId), p(s, ErrorMessage, errorMessage),
    p(s, ErrorDescription, errorDescription)};
MODEL(VarnelApiException, references) {p(s, ErrorId, errorId), p(s, ErrorMessage, errorMessage),
    p(s, ErrorDescription, errorDescription)};

MODEL(DynamicSchemaAttachment, references) {P(s, Name, name), P(s, Size, size), P(d, CreatedDate, createdDate),
    P(d, ModifiedDate, modifiedDate), P(s, Caption, caption), P(s, Binding, binding), P(s, SasUrl, sasUrl)};
INSTANCE(DynamicSchemaAttachment) LIST(DynamicSchemaAttachment) CHANGED(DynamicSchemaAttachment)
CHANGES(DynamicSchemaAttachment) COUNT(DynamicSchemaAttachment)

MODEL(DynamicSchemaAuditValue, copiesButLists) {P(s, Property, property), P(s, OldValue, oldValue),
    P(s, NewValue, newValue)};
MODEL(DynamicSchemaAuditRecord, copies) {P(s, RecordBy, recordBy), P(s, RecordById, recordById),
    P(d, RecordDate, recordDate), P(s, Action, action), P(list<one<DynamicSchemaAuditValue>>, Values, values)};
INSTANCE(DynamicSchemaAuditRecord) LIST(DynamicSchemaAuditRecord) COUNT(DynamicSchemaAuditRecord)

MODEL(DynamicSchemaFile, copies) {P(s, Name, name), P(l, Size, size), P(d, CreatedDate, createdDate),
    P(d, ModifiedDate, modifiedDate)};
INSTANCE(DynamicSchemaFile) LIST(DynamicSchemaFile) CHANGED(DynamicSchemaFile) COUNT(DynamicSchemaFile)

MODEL(DynamicSchema_Comment, copies) {P(s, Author, author), P(s, AuthorId, authorId), P(d, CreatedDate, createdDate),
    P(d, ModifiedDate, modifiedDate), P(s, Text, text)};
INSTANCE(DynamicSchema_Comment) LIST(DynamicSchema_Comment) CHANGED(DynamicSchema_Comment)
CHANGES(DynamicSchema_Comment) COUNT(DynamicSchema_Comment)

MODEL(DynamicSchema_ExternalFile, copiesButLists) {P(s, ItemId, itemId), P(s, BackItemUrl, backItemUrl),
    P(s, DataItemUrl, dataItemUrl), P(s, Name, name)};
INSTANCE(DynamicSchema_ExternalFile) LIST(DynamicSchema_ExternalFile) CHANGED(DynamicSchema_ExternalFile)
CHANGES(DynamicSchema_ExternalFile) COUNT(DynamicSchema_ExternalFile)

MODEL(Forms_EC_MappingForm, copiesButLists) {P(s, Name, name), P(s, ClassDisplayLabel, classDisplayLabel),
    P(s, ClassName, className), P(s, ClassId, classId), P(s, ClassSchema, classSchema), B(IsShared, isShared),
    P(s, FormDisplayLabel, formDisplayLabel), P(s, Discipline, discipline), P(s, Classification, classification),
    P(s, ErrorStatus, errorStatus), P(list<s>, UserPermissions, userPermissions)};
INSTANCE(Forms_EC_MappingForm) LIST(Forms_EC_MappingForm) CHANGED(Forms_EC_MappingForm) CHANGES(Forms_EC_MappingForm)

MODEL(Forms_EC_MappingFormDefinition, copiesButLists) {P(s, ClassDisplayLabel, classDisplayLabel),
    P(s, ClassName, className), P(s, ClassId, classId), P(s, Definition, definition), P(s, Name, name),
    P(s, ClassSchema, classSchema), B(IsShared, isShared), P(s, FormId, formId), P(s, Type, type),
    P(s, Status, status), P(s, ProjectId, projectId), P(i, ShareType, shareType), P(s, ProjectNumber, projectNumber),
    P(s, ProjectName, projectName), P(s, Discipline, discipline), P(s, Classification, classification),
    P(s, ErrorStatus, errorStatus)};
INSTANCE(Forms_EC_MappingFormDefinition) LIST(Forms_EC_MappingFormDefinition) CHANGED(Forms_EC_MappingFormDefinition)
CHANGES(Forms_EC_MappingFormDefinition)

MODEL(Forms_EC_MappingFormStyle, copiesButLists) {P(i, Id, id), P(s, Name, name), P(s, StyleXml, styleXml),
    B(IsShared, isShared)};
INSTANCE(Forms_EC_MappingFormStyle) LIST(Forms_EC_MappingFormStyle) CHANGED(Forms_EC_MappingFormStyle)

MODEL(Forms_EC_MappingProjectMember, copiesButLists) {P(s, UserId, userId), P(s, Name, name), B(IsRole, isRole),
    P(s, ProjectId, projectId), P(s, Email, email), P(s, OrganizationGUID, organizationGUID),
    P(s, OrganizationName, organizationName)};
INSTANCE(Forms_EC_MappingProjectMember) LIST(Forms_EC_MappingProjectMember)

MODEL(FormPDFGeneratedPDF, copiesButLists) {P(s, FileName, fileName), P(s, FolderId, folderId),
    P(s, InstanceClass, instanceClass), P(s, InstanceSchema, instanceSchema), P(s, ProjectId, projectId),
    P(list<s>, InstanceIds, instanceIds)};
INSTANCE(FormPDFGeneratedPDF) LIST(FormPDFGeneratedPDF) CHANGED(FormPDFGeneratedPDF)

MODEL(ModelPinLocation, references) {PROPERTY(f, "x", x, getX, setX, XIsSet, unsetx),
    PROPERTY(f, "y", y, getY, setY, YIsSet, unsety), PROPERTY(f, "z", z, getZ, setZ, ZIsSet, unsetz)};
MODEL(ModelViewDefinitionCameraInfo, references) {p(f, CameraAngle, cameraAngle),
    p(f, CameraFocalLength, cameraFocalLength), p(list<f>, CameraPosition, cameraPosition), p(list<f>, Extents, extents),
    PROPERTY(b, "isCameraOn", isCameraOn, isIsCameraOn, setIsCameraOn, isCameraOnIsSet, unsetIsCameraOn),
    p(list<f>, Origin, origin), p(list<list<f>>, Rotation, rotation)};
MODEL(ModelViewDefinition, references) {p(s, ViewId, viewId),
    p(one<ModelViewDefinitionCameraInfo>, CameraInfo, cameraInfo)};
MODEL(RelationshipToForm, references) {p(s, InstanceId, instanceId), p(s, SchemaName, schemaName),
    p(s, ClassName, className), p(s, Direction, direction),
    p(one<Forms_EC_MappingFormInstanceContent>, RelatedInstance, relatedInstance)};

MODEL(DynamicSchemaBaseClass, references) {P(s, KeldaroServer, keldaroServer), P(s, KeldaroObjectId, keldaroObjectId),
    P(s, KeldaroLink, keldaroLink), K(s, _Subject, Subject, subject), K(s, _Description, Description, description),
    K(s, _DisplayName, DisplayName, displayName), P(f, Latitude, latitude), P(f, Longitude, longitude),
    P(s, GPSLocation, gPSLocation), P(s, Status, status), B(Closed, closed), P(s, AssignedTo, assignedTo),
    P(s, AssignedToId, assignedToId), K(s, _Discipline, Discipline, discipline),
    K(s, _Classification, Classification, classification), K(s, _Source, Source, source),
    K(s, _ContainerId, ContainerId, containerId), K(s, _ItemId, ItemId, itemId),
    K(s, _BackContainerUrl, BackContainerUrl, backContainerUrl), K(s, _BackItemUrl, BackItemUrl, backItemUrl),
    K(d, _CreatedDate, CreatedDate, createdDate), K(s, _CreatedBy, CreatedBy, createdBy),
    K(d, _ModifiedDate, ModifiedDate, modifiedDate), K(s, _ModifiedBy, ModifiedBy, modifiedBy),
    K(d, _DueDate, DueDate, dueDate), K(s, _IdNumber, IdNumber, idNumber), P(s, BBoxLowElement, bBoxLowElement),
    P(s, BBoxHighElement, bBoxHighElement), P(s, Priority, priority), P(s, Type, type),
    K(one<ModelPinLocation>, _ModelPinLocation, ModelPinLocation, modelPinLocation),
    K(d, _ModelEventDateTime, ModelEventDateTime, modelEventDateTime),
    K(AsText<ModelViewDefinition>, _ModelViewDefinition, ModelViewDefinition, modelViewDefinition)};
INSTANCE_WITH(DynamicSchemaBaseClass, p(list<one<RelationshipToForm>>, RelationshipInstances, relationshipInstances))
LIST(DynamicSchemaBaseClass) CHANGED(DynamicSchemaBaseClass) CHANGES(DynamicSchemaBaseClass)
COUNT(DynamicSchemaBaseClass)

MODEL(ListsListGroup, copiesButLists) {P(s, Name, name), P(l, Size, size), P(d, CreatedDate, createdDate),
    P(d, ModifiedDate, modifiedDate), P(list<s>, Lists, lists), P(s, ValueTree, valueTree)};
INSTANCE(ListsListGroup) LIST(ListsListGroup) CHANGED(ListsListGroup) CHANGES(ListsListGroup)
MODEL(ListsListTree, copiesButLists) {P(list<s>, Lists, lists), P(s, Tree, tree)};
INSTANCE(ListsListTree) LIST(ListsListTree) CHANGED(ListsListTree)
MODEL(ListsListValue, copiesButLists) {P(s, ListGroupId, listGroupId), P(s, Dependencies, dependencies),
    P(s, Values, values)};
INSTANCE(ListsListValue) LIST(ListsListValue) CHANGED(ListsListValue) CHANGES(ListsListValue)

MODEL(SchemasClass, copiesButLists) {P(s, Name, name), P(s, DisplayLabel, displayLabel), P(s, ClassXml, classXml),
    B(IsShared, isShared), B(IsStruct, isStruct)};
INSTANCE(SchemasClass) LIST(SchemasClass) CHANGED(SchemasClass) CHANGES(SchemasClass)
MODEL(SchemasSchema, copiesButLists) {P(s, Name, name), P(s, SchemaXml, schemaXml)};
INSTANCE(SchemasSchema) LIST(SchemasSchema) CHANGED(SchemasSchema) CHANGES(SchemasSchema)

MODEL(WorkflowState, references) {P(s, Id, id), P(s, Name, name), P(s, Color, color),
    P(list<s>, EditableProperties, editableProperties), B(Closed, closed)};
MODEL(WorkflowTransition, references) {P(s, Start, start), P(list<s>, End, end), P(list<s>, Permissions, permissions),
    P(s, Conditions, conditions), B(AssignedUser, assignedUser), P(s, SubmitDisplay, submitDisplay),
    P(s, ButtonColor, buttonColor), P(i, Notes, notes), B(NotifyCreator, notifyCreator)};
MODEL(WorkflowDefinition, references) {P(list<s>, StartStates, startStates), P(s, Discipline, discipline),
    P(s, Classification, classification), P(list<one<WorkflowState>>, States, states),
    P(list<one<WorkflowTransition>>, Transitions, transitions),
    P(list<one<WorkflowTransition>>, StartingTransitions, startingTransitions),
    P(one<WorkflowState>, UninitializedState, uninitializedState)};
INSTANCE(WorkflowDefinition) LIST(WorkflowDefinition) CHANGED(WorkflowDefinition)

MODEL(PlexumProjectRole, references) {P(s, RoleId, roleId), P(list<s>, UserIds, userIds)};
INSTANCE(PlexumProjectRole) LIST(PlexumProjectRole)
MODEL(PlexumProjectSettings, copiesButLists) {P(s, PdfStorageDirectory, pdfStorageDirectory)};
INSTANCE(PlexumProjectSettings) LIST(PlexumProjectSettings) CHANGED(PlexumProjectSettings)
MODEL(PlexumRenderer, copiesButLists) {P(s, Version, version)};
INSTANCE(PlexumRenderer) LIST(PlexumRenderer) CHANGED(PlexumRenderer)
MODEL(PlexumStats, copiesButLists) {P(i, Count, count), P(i, Open, open), P(i, Closed, closed),
    P(i, Assigned, assigned)};
INSTANCE(PlexumStats) LIST(PlexumStats)
MODEL(PlexumTemplate, copiesButLists) {B(Copy, copy), B(OnlyIfUnique, onlyIfUnique), P(s, ClassName, className)};
INSTANCE(PlexumTemplate) CHANGED(PlexumTemplate)
MODEL(PlexumUserSettings, copiesButLists) {};
INSTANCE(PlexumUserSettings) LIST(PlexumUserSettings) CHANGED(PlexumUserSettings)

MODEL(BcfExport, copiesButLists) {P(s, InstanceClass, instanceClass), P(s, InstanceSchema, instanceSchema),
    P(s, SassAccessUrl, sassAccessUrl), P(list<s>, InstanceIds, instanceIds)};
INSTANCE(BcfExport) CHANGED(BcfExport)
MODEL(BcfImport, copiesButLists) {P(s, InstanceClass, instanceClass), P(s, InstanceSchema, instanceSchema),
    P(s, Discipline, discipline), P(s, AssignedTo, assignedTo), P(s, AssignedToId, assignedToId), P(s, FormId, formId),
    P(s, Result, result)};
INSTANCE(BcfImport) CHANGED(BcfImport)
    // clang-format on

    std::string textOf(const ModelBase& model) {
    return utf8(model.toJson().serialize());
}

void read(ModelBase& model, const std::string& jsonText) {
    auto json = web::json::value::parse(text(jsonText));
    model.fromJson(json);
}

/// The parts of a body, one line each: name, type and data.
std::string partsOf(const MultipartFormData& multipart) {
    std::string lines;
    for (const auto& part : multipart.getContents()) {
        EXPECT_EQ(part->getContentDisposition() + part->getFileName(), "form-data");
        lines += utf8(part->getName()) + " (" + utf8(part->getContentType()) + ") " + bytesOf(*part->getData()) + "\n";
    }
    return lines;
}

/// The parts that a model of these rows must write.
std::string expectedParts(const Rows& rows, const std::string& prefix, int& n) {
    std::string lines;
    for (const Row& row : rows) {
        if (row.kind == Row::nested) {
            lines += expectedParts(*row.rowsOfNested(), row.key + ".", n);
            continue;
        }
        const std::string sample = row.sample(n);
        const bool quoted = sample.front() == '"';
        const std::string data = sample == "true" ? "1"
                                 : quoted         ? utf8(web::json::value::parse(text(sample)).as_string())
                                                  : sample;
        lines += (row.kind == Row::nestedAsText ? "" : prefix) + row.key +
                 (row.kind == Row::array ? " (application/json) " : " () ") + data + "\n";
    }
    return lines;
}

/// What an object of the class with all its properties writes.
std::string fullText(const Class& its, bool withNested = true) {
    int n = 0;
    return objectText(*its.rows, n, withNested);
}
std::string fullParts(const Class& its, const std::string& prefix) {
    int n = 0;
    return expectedParts(*its.rows, prefix, n);
}

std::shared_ptr<ModelBase> full(const Class& its) {
    auto model = its.create();
    read(*model, fullText(its));
    return model;
}

std::shared_ptr<MultipartFormData> multipartOf(const ModelBase& model, const std::string& prefix) {
    auto multipart = std::make_shared<MultipartFormData>("B"_t);
    model.toMultipart(multipart, text(prefix));
    return multipart;
}

TEST(ModelWalk, StartsEmpty) {
    for (const auto& [name, its] : allClasses()) {
        SCOPED_TRACE(name);
        const auto model = its.create();
        EXPECT_EQ(textOf(*model), "{}");
        EXPECT_EQ(partsOf(*multipartOf(*model, "a")), "");
        for (const Row& row : *its.rows) {
            EXPECT_FALSE(row.isSet(*model)) << row.key;
        }
        EXPECT_NO_THROW(model->validate());
    }
}

TEST(ModelWalk, ReadsAndWritesEveryKeyInOrder) {
    for (const auto& [name, its] : allClasses()) {
        SCOPED_TRACE(name);
        const auto model = full(its);
        seedJson(*model, fullText(its));
        EXPECT_EQ(textOf(*model), fullText(its));
        for (const Row& row : *its.rows) {
            EXPECT_EQ(row.isSet(*model), row.kind != Row::array) << row.key << ": reading a list leaves its flag";
        }
    }
}

TEST(ModelWalk, NeedsNoTree) {
    for (const auto& [name, its] : allClasses()) {
        SCOPED_TRACE(name);
        const auto made = its.create();
        auto& model = dynamic_cast<VarnelAPI::Forms::model::Model&>(*made);
        EXPECT_EQ(detail::readFast(model, fullText(its)), hasLane);
        EXPECT_EQ(detail::writeText(hasLane ? model : dynamic_cast<const VarnelAPI::Forms::model::Model&>(*full(its))),
                  fullText(its));
    }
}

TEST(ModelWalk, WritesOnePartPerPropertyAndReadsItByItsBareKey) {
    for (const auto& [name, its] : allClasses()) {
        SCOPED_TRACE(name);
        const auto model = full(its);
        EXPECT_EQ(partsOf(*multipartOf(*model, "a")), fullParts(its, "a."));
        EXPECT_EQ(partsOf(*multipartOf(*model, "a.")), fullParts(its, "a."));
        const auto multipart = multipartOf(*model, "");
        EXPECT_EQ(partsOf(*multipart), fullParts(its, ""));
        seedParts(*model, *multipart);

        const auto copy = its.create();
        copy->fromMultiPart(multipart, "not looked at"_t);
        std::string text = textOf(*copy);
        std::string expected = fullText(its, false);
        if (name == "DynamicSchemaBaseClass") {
            // The parts of the nested pin, which it can't read back, are custom properties to it: they come last.
            expected.pop_back();
            text.resize(expected.size());
        }
        EXPECT_EQ(text, expected) << "nested models don't come back";
    }
}

TEST(ModelWalk, AccessesEachPropertyByItself) {
    for (const auto& [name, its] : allClasses()) {
        for (const Row& row : *its.rows) {
            int n = 0;
            SCOPED_TRACE(name + "." + row.key);
            const auto source = its.create();
            const auto model = its.create();
            const std::string text = "{\"" + row.key + "\":" + row.sample(n) + "}";
            read(*source, text);
            row.copy(*model, *source);
            EXPECT_TRUE(row.isSet(*model));
            EXPECT_TRUE(row.equal(*model, *source));
            EXPECT_EQ(textOf(*model), text);
            row.unset(*model);
            EXPECT_FALSE(row.isSet(*model));
            EXPECT_TRUE(row.equal(*model, *source)) << "the value stays";
            EXPECT_EQ(textOf(*model), row.kind == Row::array ? text : "{}");
            read(*model, "{\"" + row.key + "\":null}");
            EXPECT_FALSE(row.isSet(*model));
            EXPECT_EQ(row.nameKey, row.key);
            EXPECT_TRUE(row.namesOwnerAndValue);
            EXPECT_EQ(row.returnsReference,
                      its.getters == references || (its.getters == copiesButLists && row.kind == Row::array));
        }
    }
}

TEST(ModelClasses, AllAreInTheWalk) {
    std::set<std::string> walked = {"Model",
                                    "ModelBase",
                                    "InstanceCountProperties",
                                    "PropertyVisitor",
                                    "Object",
                                    "HttpContent",
                                    "IHttpBody",
                                    "JsonBody",
                                    "BinaryBody",
                                    "StreamBody",
                                    "MultipartFormData",
                                    "DynamicSchemaClassWithCustomProps",
                                    "DynamicSchemaArrayWithCustomProps"};
    std::size_t envelopes = 0;
    for (const auto& [name, itsClass] : allClasses()) {
        walked.insert(name);
        envelopes += name.find("Instance") != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(walked, declaredIn("model", R"(class VARNEL_FORMS_API (\w+))"));
    EXPECT_EQ(envelopes, 142U);
    EXPECT_EQ(allClasses().size() - envelopes, 34U);
}

TEST(UmbrellaHeader, IncludesEveryPublicHeader) {
    const std::string umbrella = textOfFile(FORMS_TEST_HEADERS ".h");
    for (const std::string folder : {"api", "model"}) {
        for (const auto& header : std::filesystem::directory_iterator(FORMS_TEST_HEADERS + ("/" + folder))) {
            const std::string name = "<VarnelAPI/Forms/" + folder + "/" + header.path().filename().string() + ">";
            EXPECT_NE(umbrella.find(name), std::string::npos) << name;
        }
    }
}

} // namespace
} // namespace forms_test
