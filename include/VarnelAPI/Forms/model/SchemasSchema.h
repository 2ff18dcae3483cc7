#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A schema of the repository. Getters return copies.
class VARNEL_FORMS_API SchemasSchema : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    /// The whole schema as XML text, which is passed through unread.
    VARNEL_FORMS_PROPERTY(utility::string_t, SchemaXml, schemaXml);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API SchemasSchemaInstanceContent : public detail::InstanceContentOf<SchemasSchema> {};
class VARNEL_FORMS_API SchemasSchemaInstance : public detail::InstanceOf<SchemasSchemaInstanceContent> {};
class VARNEL_FORMS_API SchemasSchemaInstances : public detail::InstancesOf<SchemasSchemaInstanceContent> {};
class VARNEL_FORMS_API SchemasSchemaChangedInstanceContent
    : public detail::ChangedInstanceContentOf<SchemasSchemaInstanceContent> {};
class VARNEL_FORMS_API SchemasSchemaChangedInstance
    : public detail::ChangedInstanceOf<SchemasSchemaChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedSchemasSchemaInstances
    : public detail::ChangedInstancesOf<SchemasSchemaChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
