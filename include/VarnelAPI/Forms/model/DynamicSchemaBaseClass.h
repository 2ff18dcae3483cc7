#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>
#include <VarnelAPI/Forms/model/ModelPinLocation.h>
#include <VarnelAPI/Forms/model/ModelViewDefinition.h>
#include <VarnelAPI/Forms/model/RelationshipToForm.h>

namespace VarnelAPI::Forms::model {

/// An issue of a class that the project defines: the properties that all issues have, and custom ones by name. Getters
/// return references.
///
/// Custom properties go out after the fixed ones, in no particular order. Reading adds every member that is not a fixed
/// key to those already there.
class VARNEL_FORMS_API DynamicSchemaBaseClass : public Model {
    VARNEL_FORMS_MODEL(DynamicSchemaBaseClass);

    /// The name or address of a server, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, KeldaroServer, keldaroServer, "KeldaroServer");
    /// The id of an object there, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, KeldaroObjectId, keldaroObjectId, "KeldaroObjectId");
    /// A link there, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, KeldaroLink, keldaroLink, "KeldaroLink");
    /// What the issue is about, in a line.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Subject, subject, "_Subject");
    /// What the issue is about, at length.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Description, description, "_Description");
    /// The name to show for the issue.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, DisplayName, displayName, "_DisplayName");
    /// A geographic latitude, as a number; the unit is the service's.
    VARNEL_FORMS_PROPERTY_REF(double, Latitude, latitude, "Latitude");
    /// A geographic longitude, as a number; the unit is the service's.
    VARNEL_FORMS_PROPERTY_REF(double, Longitude, longitude, "Longitude");
    /// A geographic place, as text of the service.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, GPSLocation, gPSLocation, "GPSLocation");
    /// The state that the issue is in, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Status, status, "Status");
    /// Whether the issue is closed.
    VARNEL_FORMS_FLAG_REF(Closed, closed, "Closed");
    /// The name of who the issue is assigned to.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, AssignedTo, assignedTo, "AssignedTo");
    /// The id that goes with `AssignedTo`.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, AssignedToId, assignedToId, "AssignedToId");
    /// A discipline, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Discipline, discipline, "_Discipline");
    /// A classification, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Classification, classification, "_Classification");
    /// Where the issue comes from, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Source, source, "_Source");
    /// The id of what contains the item that the issue is about.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ContainerId, containerId, "_ContainerId");
    /// The id of that item.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ItemId, itemId, "_ItemId");
    /// An address that leads back to the container.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BackContainerUrl, backContainerUrl, "_BackContainerUrl");
    /// An address that leads back to the item.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BackItemUrl, backItemUrl, "_BackItemUrl");
    /// When the issue was created. Set to the date never set, it goes out as JSON null.
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, CreatedDate, createdDate, "_CreatedDate");
    /// Who created the issue, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, CreatedBy, createdBy, "_CreatedBy");
    /// When the issue was last modified. Set to the date never set, it goes out as JSON null.
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, ModifiedDate, modifiedDate, "_ModifiedDate");
    /// Who last modified the issue, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ModifiedBy, modifiedBy, "_ModifiedBy");
    /// When the issue is due. Set to the date never set, it goes out as JSON null.
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, DueDate, dueDate, "_DueDate");
    /// A number for people, as text; no instance id.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, IdNumber, idNumber, "_IdNumber");
    /// The low corner of a bounding box, as text of the service.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BBoxLowElement, bBoxLowElement, "BBoxLowElement");
    /// The high corner of a bounding box, as text of the service.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, BBoxHighElement, bBoxHighElement, "BBoxHighElement");
    /// A priority, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Priority, priority, "Priority");
    /// A type, as text; no class.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Type, type, "Type");
    /// Where in the 3-D model the issue is pinned.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ModelPinLocation>, ModelPinLocation, modelPinLocation,
                              "_ModelPinLocation");
    /// The date and time of an event in the model. Set to the date never set, it goes out as JSON null.
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, ModelEventDateTime, modelEventDateTime, "_ModelEventDateTime");
    /// A view of the 3-D model. It is carried as a JSON text inside a string; an object under its key is ignored.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ModelViewDefinition>, ModelViewDefinition, modelViewDefinition,
                              "_ModelViewDefinition");

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
    template <class Narrow, typename text_is_wide_write_XPLATSTR_or_to_string_t<Narrow>::type = 0>
    void setCustomProp(const utility::string_t& name, const Narrow& value) = delete;
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
    void unsetCustomProp(const utility::string_t& name); ///< Removes it from this object.

private:
    detail::CustomProperties* customProperties() override;
    detail::CustomProperties m_CustomProperties;
};

/// An issue's identity and properties, and the forms that it is related to.
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceContent : public InstanceContentOf<DynamicSchemaBaseClass> {
    VARNEL_FORMS_MODEL(DynamicSchemaBaseClassInstanceContent);

    /// The relationships to forms.
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<RelationshipToForm>>, RelationshipInstances,
                              relationshipInstances, "relationshipInstances");
};
/// One instance: an issue with its identity.
class VARNEL_FORMS_API DynamicSchemaBaseClassInstance : public InstanceOf<DynamicSchemaBaseClassInstanceContent> {};
/// A list of issues.
class VARNEL_FORMS_API DynamicSchemaBaseClassInstances : public InstancesOf<DynamicSchemaBaseClassInstanceContent> {};
/// What was done to an issue, and how it is since.
class VARNEL_FORMS_API DynamicSchemaBaseClassChangedInstanceContent
    : public ChangedInstanceContentOf<DynamicSchemaBaseClassInstanceContent> {};
/// One change of issues.
class VARNEL_FORMS_API DynamicSchemaBaseClassChangedInstance
    : public ChangedInstanceOf<DynamicSchemaBaseClassChangedInstanceContent> {};
/// A list of changes of issues.
class VARNEL_FORMS_API ChangedDynamicSchemaBaseClassInstances
    : public ChangedInstancesOf<DynamicSchemaBaseClassChangedInstanceContent> {};
/// What a count of issues says.
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceCount_properties : public InstanceCountProperties {};
/// A count of issues, with its identity.
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceCount_instances
    : public CountInstanceOf<DynamicSchemaBaseClassInstanceCount_properties> {};
/// Counts of issues, one per class.
class VARNEL_FORMS_API DynamicSchemaBaseClassInstanceCount
    : public InstancesOf<DynamicSchemaBaseClassInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
