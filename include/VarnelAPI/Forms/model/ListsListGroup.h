#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A named group of pick lists. Getters return copies, of the list a reference.
class VARNEL_FORMS_API ListsListGroup : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    VARNEL_FORMS_PROPERTY(int64_t, Size, size);
    VARNEL_FORMS_PROPERTY(utility::datetime, CreatedDate, createdDate);
    VARNEL_FORMS_PROPERTY(utility::datetime, ModifiedDate, modifiedDate);
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, Lists, lists);
    /// Opaque text of the service.
    VARNEL_FORMS_PROPERTY(utility::string_t, ValueTree, valueTree);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API ListsListGroupInstanceContent : public detail::InstanceContentOf<ListsListGroup> {};
class VARNEL_FORMS_API ListsListGroupInstance : public detail::InstanceOf<ListsListGroupInstanceContent> {};
class VARNEL_FORMS_API ListsListGroupInstances : public detail::InstancesOf<ListsListGroupInstanceContent> {};
class VARNEL_FORMS_API ListsListGroupChangedInstanceContent
    : public detail::ChangedInstanceContentOf<ListsListGroupInstanceContent> {};
class VARNEL_FORMS_API ListsListGroupChangedInstance
    : public detail::ChangedInstanceOf<ListsListGroupChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedListsListGroupInstances
    : public detail::ChangedInstancesOf<ListsListGroupChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
