#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// Pick lists that depend on each other. Getters return copies, of the list a reference.
class VARNEL_FORMS_API ListsListTree : public Model {
    VARNEL_FORMS_MODEL(ListsListTree);

    /// The lists of the tree, as texts.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, Lists, lists, "Lists");
    /// The whole tree, as opaque text of the service.
    VARNEL_FORMS_PROPERTY(utility::string_t, Tree, tree, "Tree");
};

/// The identity and properties of a list tree.
class VARNEL_FORMS_API ListsListTreeInstanceContent : public InstanceContentOf<ListsListTree> {};
/// One instance: a list tree with its identity.
class VARNEL_FORMS_API ListsListTreeInstance : public InstanceOf<ListsListTreeInstanceContent> {};
/// A list of list trees.
class VARNEL_FORMS_API ListsListTreeInstances : public InstancesOf<ListsListTreeInstanceContent> {};
/// What was done to a list tree, and how it is since.
class VARNEL_FORMS_API ListsListTreeChangedInstanceContent
    : public ChangedInstanceContentOf<ListsListTreeInstanceContent> {};
/// One change of list trees.
class VARNEL_FORMS_API ListsListTreeChangedInstance : public ChangedInstanceOf<ListsListTreeChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
