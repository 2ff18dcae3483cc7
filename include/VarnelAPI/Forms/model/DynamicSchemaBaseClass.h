#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>
#include <VarnelAPI/Forms/model/ModelPinLocation.h>
#include <VarnelAPI/Forms/model/ModelViewDefinition.h>
#include <VarnelAPI/Forms/model/RelationshipToForm.h>

namespace VarnelAPI::Forms::model {

/// An issue of a class that the project defines: the properties that all issues have, and custom ones by name. Getters
/// return references.
///
/// Custom properties go out after the fixed ones, in no particular order. Reading adds every member that is not a fixed
/// key to those already there.
class VARNEL_FORMS_API DynamicSchemaBaseClass : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, KeldaroServer, keldaroServer);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, KeldaroObjectId, keldaroObjectId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, KeldaroLink, keldaroLink);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Subject, subject);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Description, description);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, DisplayName, displayName);
    /// Degrees.
    VARNEL_FORMS_PROPERTY_REF(double, Latitude, latitude);
    /// Degrees.
    VARNEL_FORMS_PROPERTY_REF(double, Longitude, longitude);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, GPSLocation, gPSLocation);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Status, status);
    VARNEL_FORMS_FLAG_REF(Closed, closed);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, AssignedTo, assignedTo);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, AssignedToId, assignedToId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Discipline, discipline);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Classification, classification);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Source, source);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ContainerId, containerId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ItemId, itemId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BackContainerUrl, backContainerUrl);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BackItemUrl, backItemUrl);
    /// The four dates go out as JSON null when set to the date never set.
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, CreatedDate, createdDate);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, CreatedBy, createdBy);
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, ModifiedDate, modifiedDate);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ModifiedBy, modifiedBy);
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, DueDate, dueDate);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, IdNumber, idNumber);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BBoxLowElement, bBoxLowElement);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BBoxHighElement, bBoxHighElement);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Priority, priority);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Type, type);
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ModelPinLocation>, ModelPinLocation, modelPinLocation);
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, ModelEventDateTime, modelEventDateTime);
    /// Carried as a JSON text inside a string; an object under its key is ignored.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ModelViewDefinition>, ModelViewDefinition, modelViewDefinition);

public:
    /// Whether there is a custom property `name` that holds a JSON string. `out` is left as it is if not.
    bool getCustomProp(utility::string_t& out, const utility::string_t& name) const;
    /// Whether there is a custom property `name`, of any JSON type.
    bool getCustomProp(web::json::value& out, const utility::string_t& name) const;
    /// Sets a custom property to a JSON value. Does nothing if `name` is the key of a fixed property.
    void setCustomProp(const utility::string_t& name, const web::json::value& value);
    void setCustomProp(const utility::string_t& name, const utility::string_t& value);
    /// A literal is a string.
    /// @throws std::invalid_argument if `value` is a null pointer.
    void setCustomProp(const utility::string_t& name, const utility::char_t* value);
    /// A bool is a JSON boolean, any other number a JSON number. Without this overload a bool would convert to a
    /// number, and 0 to a null pointer.
    template <class Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
    void setCustomProp(const utility::string_t& name, Number value) {
        if constexpr (std::is_same_v<Number, bool>) {
            setCustomProp(name, web::json::value::boolean(value));
        } else if constexpr (std::is_floating_point_v<Number>) {
            setCustomProp(name, web::json::value::number(static_cast<double>(value)));
        } else if constexpr (std::is_signed_v<Number>) {
            setCustomProp(name, web::json::value::number(static_cast<int64_t>(value)));
        } else {
            setCustomProp(name, web::json::value::number(static_cast<uint64_t>(value)));
        }
    }
    void unsetCustomProp(const utility::string_t& name);

private:
    detail::CustomProperties* customProperties() override;
    detail::CustomProperties m_CustomProperties;

    VARNEL_FORMS_MODEL;
};

/// An issue's identity and properties, and the forms that it is related to.
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceContent
    : public detail::InstanceContentOf<DynamicSchemaBaseClass> {
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<RelationshipToForm>>, RelationshipInstances,
                              relationshipInstances);

    VARNEL_FORMS_MODEL;
};
class VARNEL_FORMS_API DynamicSchemaBaseClassInstance
    : public detail::InstanceOf<DynamicSchemaBaseClassInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaBaseClassInstances
    : public detail::InstancesOf<DynamicSchemaBaseClassInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaBaseClassChangedInstanceContent
    : public detail::ChangedInstanceContentOf<DynamicSchemaBaseClassInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaBaseClassChangedInstance
    : public detail::ChangedInstanceOf<DynamicSchemaBaseClassChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedDynamicSchemaBaseClassInstances
    : public detail::ChangedInstancesOf<DynamicSchemaBaseClassChangedInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceCount_properties : public detail::InstanceCountProperties {};
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceCount_instances
    : public detail::CountInstanceOf<DynamicSchemaBaseClassInstanceCount_properties> {};
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceCount
    : public detail::InstancesOf<DynamicSchemaBaseClassInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
