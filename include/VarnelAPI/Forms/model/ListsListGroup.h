#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A named group of pick lists. Getters return copies, of the list a reference.
class VARNEL_FORMS_API ListsListGroup : public Model {
    VARNEL_FORMS_MODEL(ListsListGroup);

    /// The group's name.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// A size, as a number; what it counts is the service's to say.
    VARNEL_FORMS_PROPERTY(int64_t, Size, size, "Size");
    /// When it was created.
    VARNEL_FORMS_PROPERTY(utility::datetime, CreatedDate, createdDate, "CreatedDate");
    /// When it was last modified.
    VARNEL_FORMS_PROPERTY(utility::datetime, ModifiedDate, modifiedDate, "ModifiedDate");
    /// The lists of the group, as texts.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, Lists, lists, "Lists");
    /// Opaque text of the service.
    VARNEL_FORMS_PROPERTY(utility::string_t, ValueTree, valueTree, "ValueTree");
};

/// The identity and properties of a list group.
class VARNEL_FORMS_API ListsListGroupInstanceContent : public InstanceContentOf<ListsListGroup> {};
/// One instance: a list group with its identity.
class VARNEL_FORMS_API ListsListGroupInstance : public InstanceOf<ListsListGroupInstanceContent> {};
/// A list of list groups.
class VARNEL_FORMS_API ListsListGroupInstances : public InstancesOf<ListsListGroupInstanceContent> {};
/// What was done to a list group, and how it is since.
class VARNEL_FORMS_API ListsListGroupChangedInstanceContent
    : public ChangedInstanceContentOf<ListsListGroupInstanceContent> {};
/// One change of list groups.
class VARNEL_FORMS_API ListsListGroupChangedInstance : public ChangedInstanceOf<ListsListGroupChangedInstanceContent> {
};
/// A list of changes of list groups.
class VARNEL_FORMS_API ChangedListsListGroupInstances
    : public ChangedInstancesOf<ListsListGroupChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
