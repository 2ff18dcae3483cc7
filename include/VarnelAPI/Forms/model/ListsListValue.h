#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// The values of a pick list. Getters return copies.
class VARNEL_FORMS_API ListsListValue : public Model {
    VARNEL_FORMS_MODEL(ListsListValue);

    /// The id of the list group that owns the values.
    VARNEL_FORMS_PROPERTY(utility::string_t, ListGroupId, listGroupId, "ListGroupId");
    /// Opaque text of the service.
    VARNEL_FORMS_PROPERTY(utility::string_t, Dependencies, dependencies, "Dependencies");
    /// The values as one opaque text of the service, not as a list.
    VARNEL_FORMS_PROPERTY(utility::string_t, Values, values, "Values");
};

/// The identity and properties of a list value.
class VARNEL_FORMS_API ListsListValueInstanceContent : public InstanceContentOf<ListsListValue> {};
/// One instance: a list value with its identity.
class VARNEL_FORMS_API ListsListValueInstance : public InstanceOf<ListsListValueInstanceContent> {};
/// A list of list values.
class VARNEL_FORMS_API ListsListValueInstances : public InstancesOf<ListsListValueInstanceContent> {};
/// What was done to a list value, and how it is since.
class VARNEL_FORMS_API ListsListValueChangedInstanceContent
    : public ChangedInstanceContentOf<ListsListValueInstanceContent> {};
/// One change of list values.
class VARNEL_FORMS_API ListsListValueChangedInstance : public ChangedInstanceOf<ListsListValueChangedInstanceContent> {
};
/// A list of changes of list values.
class VARNEL_FORMS_API ChangedListsListValueInstances
    : public ChangedInstancesOf<ListsListValueChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
