#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// Pick lists that depend on each other. Getters return copies, of the list a reference.
class VARNEL_FORMS_API ListsListTree : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, Lists, lists);
    /// The whole tree, as opaque text of the service.
    VARNEL_FORMS_PROPERTY(utility::string_t, Tree, tree);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API ListsListTreeInstanceContent : public detail::InstanceContentOf<ListsListTree> {};
class VARNEL_FORMS_API ListsListTreeInstance : public detail::InstanceOf<ListsListTreeInstanceContent> {};
class VARNEL_FORMS_API ListsListTreeInstances : public detail::InstancesOf<ListsListTreeInstanceContent> {};
class VARNEL_FORMS_API ListsListTreeChangedInstanceContent
    : public detail::ChangedInstanceContentOf<ListsListTreeInstanceContent> {};
class VARNEL_FORMS_API ListsListTreeChangedInstance
    : public detail::ChangedInstanceOf<ListsListTreeChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
