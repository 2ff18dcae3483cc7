#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// The values of a pick list. Getters return copies.
class VARNEL_FORMS_API ListsListValue : public detail::Model {
    /// The list group that owns the values.
    VARNEL_FORMS_PROPERTY(utility::string_t, ListGroupId, listGroupId);
    VARNEL_FORMS_PROPERTY(utility::string_t, Dependencies, dependencies);
    /// The values as one opaque text of the service, not as a list.
    VARNEL_FORMS_PROPERTY(utility::string_t, Values, values);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API ListsListValueInstanceContent : public detail::InstanceContentOf<ListsListValue> {};
class VARNEL_FORMS_API ListsListValueInstance : public detail::InstanceOf<ListsListValueInstanceContent> {};
class VARNEL_FORMS_API ListsListValueInstances : public detail::InstancesOf<ListsListValueInstanceContent> {};
class VARNEL_FORMS_API ListsListValueChangedInstanceContent
    : public detail::ChangedInstanceContentOf<ListsListValueInstanceContent> {};
class VARNEL_FORMS_API ListsListValueChangedInstance
    : public detail::ChangedInstanceOf<ListsListValueChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedListsListValueInstances
    : public detail::ChangedInstancesOf<ListsListValueChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
