#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A schema of the repository. Getters return copies.
class VARNEL_FORMS_API SchemasSchema : public Model {
    VARNEL_FORMS_MODEL(SchemasSchema);

    /// The schema's name.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// The whole schema as XML text, which is passed through unread.
    VARNEL_FORMS_PROPERTY(utility::string_t, SchemaXml, schemaXml, "SchemaXml");
};

/// The identity and properties of a schema.
class VARNEL_FORMS_API SchemasSchemaInstanceContent : public InstanceContentOf<SchemasSchema> {};
/// One instance: a schema with its identity.
class VARNEL_FORMS_API SchemasSchemaInstance : public InstanceOf<SchemasSchemaInstanceContent> {};
/// A list of schemas.
class VARNEL_FORMS_API SchemasSchemaInstances : public InstancesOf<SchemasSchemaInstanceContent> {};
/// What was done to a schema, and how it is since.
class VARNEL_FORMS_API SchemasSchemaChangedInstanceContent
    : public ChangedInstanceContentOf<SchemasSchemaInstanceContent> {};
/// One change of schemas.
class VARNEL_FORMS_API SchemasSchemaChangedInstance : public ChangedInstanceOf<SchemasSchemaChangedInstanceContent> {};
/// A list of changes of schemas.
class VARNEL_FORMS_API ChangedSchemasSchemaInstances : public ChangedInstancesOf<SchemasSchemaChangedInstanceContent> {
};

} // namespace VarnelAPI::Forms::model
