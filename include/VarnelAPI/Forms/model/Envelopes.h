#pragma once

#include <VarnelAPI/Forms/model/Model.h>

/// The envelopes in which the service wraps every entity. Each entity's header derives its named envelopes from
/// these, one line each.
namespace VarnelAPI::Forms::model {

/// Adds `describe` and the key index to a class template. The braces that follow list the properties.
#define VARNEL_FORMS_DESCRIBE_INLINE                                                                                   \
protected:                                                                                                             \
    const detail::KeyIndex& keyIndex() const override {                                                                \
        static const auto& index = makeKeyIndex(Self());                                                               \
        return index;                                                                                                  \
    }                                                                                                                  \
    void describe(detail::PropertyVisitor& visit) override

/// An instance's identity and its properties.
template <class Entity>
class InstanceContentOf : public Model {
    using Self = InstanceContentOf;

    /// The id that the service gave the instance.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, InstanceId, instanceId, "instanceId");
    /// The schema of the instance's class.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SchemaName, schemaName, "schemaName");
    /// The instance's class.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ClassName, className, "className");
    /// The version of the instance, as the service names it.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ETag, eTag, "eTag");
    /// The instance's own properties.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<Entity>, Properties, properties, "properties");

    VARNEL_FORMS_DESCRIBE_INLINE {
        visit(m_InstanceId);
        visit(m_SchemaName);
        visit(m_ClassName);
        visit(m_ETag);
        visit(m_Properties);
    }
};

/// One instance: what a get yields, and the body of an insert or update.
template <class Content>
class InstanceOf : public Model {
    using Self = InstanceOf;

    /// The instance: identity and properties.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<Content>, Instance, instance, "instance");

    VARNEL_FORMS_DESCRIBE_INLINE { visit(m_Instance); }
};

/// A list of instances (or of counts): what a select (or count) yields. An element that the service sent as null is
/// an empty pointer.
template <class Content>
class InstancesOf : public Model {
    using Self = InstancesOf;

    /// The instances, in the order of the service. The list lives as long as this object: a loop over a temporary's,
    /// as in `for (const auto& x : task.get()->getInstances())`, reads freed memory. Keep the object first:
    /// @code
    /// const auto list = task.get();
    /// for (const auto& instance : list->getInstances()) { ... }
    /// @endcode
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<Content>>, Instances, instances, "instances");

    VARNEL_FORMS_DESCRIBE_INLINE { visit(m_Instances); }
};

/// What was done to an instance, and how it looks since.
template <class Content>
class ChangedInstanceContentOf : public Model {
    using Self = ChangedInstanceContentOf;

    /// The kind of change, in the service's words.
    VARNEL_FORMS_PROPERTY(utility::string_t, Change, change, "change");
    /// The instance as it is since.
    VARNEL_FORMS_PROPERTY(std::shared_ptr<Content>, InstanceAfterChange, instanceAfterChange, "instanceAfterChange");

    VARNEL_FORMS_DESCRIBE_INLINE {
        visit(m_Change);
        visit(m_InstanceAfterChange);
    }
};

/// One change: what an insert, update or upload yields.
template <class ChangedContent>
class ChangedInstanceOf : public Model {
    using Self = ChangedInstanceOf;

    /// The change.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ChangedContent>, ChangedInstance, changedInstance, "changedInstance");

    VARNEL_FORMS_DESCRIBE_INLINE { visit(m_ChangedInstance); }
};

/// A list of changes.
template <class ChangedContent>
class ChangedInstancesOf : public Model {
    using Self = ChangedInstancesOf;

    /// The changes, in the order of the service. The list lives as long as this object, as that of `InstancesOf`.
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<ChangedContent>>, ChangedInstances, changedInstances,
                              "changedInstances");

    VARNEL_FORMS_DESCRIBE_INLINE { visit(m_ChangedInstances); }
};

/// How many instances a class has.
class VARNEL_FORMS_API InstanceCountProperties : public Model {
    VARNEL_FORMS_MODEL(InstanceCountProperties);

    /// The schema of the class that was counted.
    VARNEL_FORMS_PROPERTY(utility::string_t, ECSchemaName, eCSchemaName, "ECSchemaName");
    /// The class that was counted.
    VARNEL_FORMS_PROPERTY(utility::string_t, ECClassName, eCClassName, "ECClassName");
    /// How many instances it has.
    VARNEL_FORMS_PROPERTY(int64_t, Count, count, "count");
};

/// A count with its identity, which has no eTag.
template <class CountProperties>
class CountInstanceOf : public Model {
    using Self = CountInstanceOf;

    /// The id that the service gave the count.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, InstanceId, instanceId, "instanceId");
    /// The schema of the count's class.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SchemaName, schemaName, "schemaName");
    /// The class of the count itself: the one that was counted is in the properties.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ClassName, className, "className");
    /// What was counted, and how many there are.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<CountProperties>, Properties, properties, "properties");

    VARNEL_FORMS_DESCRIBE_INLINE {
        visit(m_InstanceId);
        visit(m_SchemaName);
        visit(m_ClassName);
        visit(m_Properties);
    }
};

} // namespace VarnelAPI::Forms::model
