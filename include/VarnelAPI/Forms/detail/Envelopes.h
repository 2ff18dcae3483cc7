#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

/// The envelopes in which the service wraps every entity. Each entity's header derives its named envelopes from
/// these, one line each.
namespace VarnelAPI::Forms::model::detail {

/// Adds `describe` and the key index to a class template. The braces that follow list the properties.
#define VARNEL_FORMS_DESCRIBE_INLINE(Class)                                                                            \
protected:                                                                                                             \
    const KeyIndex& keyIndex() const override {                                                                        \
        static const auto& index = makeKeyIndex(Class());                                                              \
        return index;                                                                                                  \
    }                                                                                                                  \
    void describe(PropertyVisitor& visit) override

/// An instance's identity and its properties.
template <class Entity>
class InstanceContentOf : public Model {
    /// The id that the service gave the instance.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, InstanceId, instanceId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SchemaName, schemaName);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ClassName, className);
    /// The version of the instance: the service refuses an update that carries an outdated one.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ETag, eTag);
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<Entity>, Properties, properties);

    VARNEL_FORMS_DESCRIBE_INLINE(InstanceContentOf) {
        visit(_XPLATSTR("instanceId"), m_InstanceId);
        visit(_XPLATSTR("schemaName"), m_SchemaName);
        visit(_XPLATSTR("className"), m_ClassName);
        visit(_XPLATSTR("eTag"), m_ETag);
        visit(_XPLATSTR("properties"), m_Properties);
    }
};

/// One instance: what a get yields, and the body of an insert or update.
template <class Content>
class InstanceOf : public Model {
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<Content>, Instance, instance);

    VARNEL_FORMS_DESCRIBE_INLINE(InstanceOf) { visit(_XPLATSTR("instance"), m_Instance); }
};

/// A list of instances (or of counts): what a select (or count) yields. An element that the service sent as null is
/// an empty pointer.
template <class Content>
class InstancesOf : public Model {
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<Content>>, Instances, instances);

    VARNEL_FORMS_DESCRIBE_INLINE(InstancesOf) { visit(_XPLATSTR("instances"), m_Instances); }
};

/// What was done to an instance, and how it looks since.
template <class Content>
class ChangedInstanceContentOf : public Model {
    /// The kind of change, in the service's words.
    VARNEL_FORMS_PROPERTY(utility::string_t, Change, change);
    VARNEL_FORMS_PROPERTY(std::shared_ptr<Content>, InstanceAfterChange, instanceAfterChange);

    VARNEL_FORMS_DESCRIBE_INLINE(ChangedInstanceContentOf) {
        visit(_XPLATSTR("change"), m_Change);
        visit(_XPLATSTR("instanceAfterChange"), m_InstanceAfterChange);
    }
};

/// One change: what an insert, update or upload yields.
template <class ChangedContent>
class ChangedInstanceOf : public Model {
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ChangedContent>, ChangedInstance, changedInstance);

    VARNEL_FORMS_DESCRIBE_INLINE(ChangedInstanceOf) { visit(_XPLATSTR("changedInstance"), m_ChangedInstance); }
};

/// A list of changes.
template <class ChangedContent>
class ChangedInstancesOf : public Model {
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<ChangedContent>>, ChangedInstances, changedInstances);

    VARNEL_FORMS_DESCRIBE_INLINE(ChangedInstancesOf) { visit(_XPLATSTR("changedInstances"), m_ChangedInstances); }
};

/// How many instances a class has.
class VARNEL_FORMS_API InstanceCountProperties : public Model {
    /// The schema and class that were counted.
    VARNEL_FORMS_PROPERTY(utility::string_t, ECSchemaName, eCSchemaName);
    VARNEL_FORMS_PROPERTY(utility::string_t, ECClassName, eCClassName);
    VARNEL_FORMS_PROPERTY(int64_t, Count, count);

    VARNEL_FORMS_MODEL;
};

/// A count with its identity, which has no eTag.
template <class CountProperties>
class CountInstanceOf : public Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, InstanceId, instanceId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SchemaName, schemaName);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ClassName, className);
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<CountProperties>, Properties, properties);

    VARNEL_FORMS_DESCRIBE_INLINE(CountInstanceOf) {
        visit(_XPLATSTR("instanceId"), m_InstanceId);
        visit(_XPLATSTR("schemaName"), m_SchemaName);
        visit(_XPLATSTR("className"), m_ClassName);
        visit(_XPLATSTR("properties"), m_Properties);
    }
};

} // namespace VarnelAPI::Forms::model::detail
