#include <VarnelAPI/Forms/model/DynamicSchemaBaseClass.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(DynamicSchemaBaseClass) {
    visit(_XPLATSTR("KeldaroServer"), m_KeldaroServer);
    visit(_XPLATSTR("KeldaroObjectId"), m_KeldaroObjectId);
    visit(_XPLATSTR("KeldaroLink"), m_KeldaroLink);
    visit(_XPLATSTR("_Subject"), m_Subject);
    visit(_XPLATSTR("_Description"), m_Description);
    visit(_XPLATSTR("_DisplayName"), m_DisplayName);
    visit(_XPLATSTR("Latitude"), m_Latitude);
    visit(_XPLATSTR("Longitude"), m_Longitude);
    visit(_XPLATSTR("GPSLocation"), m_GPSLocation);
    visit(_XPLATSTR("Status"), m_Status);
    visit(_XPLATSTR("Closed"), m_Closed);
    visit(_XPLATSTR("AssignedTo"), m_AssignedTo);
    visit(_XPLATSTR("AssignedToId"), m_AssignedToId);
    visit(_XPLATSTR("_Discipline"), m_Discipline);
    visit(_XPLATSTR("_Classification"), m_Classification);
    visit(_XPLATSTR("_Source"), m_Source);
    visit(_XPLATSTR("_ContainerId"), m_ContainerId);
    visit(_XPLATSTR("_ItemId"), m_ItemId);
    visit(_XPLATSTR("_BackContainerUrl"), m_BackContainerUrl);
    visit(_XPLATSTR("_BackItemUrl"), m_BackItemUrl);
    visit.nullable(_XPLATSTR("_CreatedDate"), m_CreatedDate);
    visit(_XPLATSTR("_CreatedBy"), m_CreatedBy);
    visit.nullable(_XPLATSTR("_ModifiedDate"), m_ModifiedDate);
    visit(_XPLATSTR("_ModifiedBy"), m_ModifiedBy);
    visit.nullable(_XPLATSTR("_DueDate"), m_DueDate);
    visit(_XPLATSTR("_IdNumber"), m_IdNumber);
    visit(_XPLATSTR("BBoxLowElement"), m_BBoxLowElement);
    visit(_XPLATSTR("BBoxHighElement"), m_BBoxHighElement);
    visit(_XPLATSTR("Priority"), m_Priority);
    visit(_XPLATSTR("Type"), m_Type);
    visit(_XPLATSTR("_ModelPinLocation"), m_ModelPinLocation);
    visit.nullable(_XPLATSTR("_ModelEventDateTime"), m_ModelEventDateTime);
    visit.asText(_XPLATSTR("_ModelViewDefinition"), m_ModelViewDefinition);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaBaseClassInstanceContent) {
    InstanceContentOf::describe(visit);
    visit(_XPLATSTR("relationshipInstances"), m_RelationshipInstances);
}

bool DynamicSchemaBaseClass::getCustomProp(utility::string_t& out, const utility::string_t& name) const {
    const auto found = m_CustomProperties.find(name);
    if (found == m_CustomProperties.end() || !found->second.is_string()) {
        return false;
    }
    out = found->second.as_string();
    return true;
}

bool DynamicSchemaBaseClass::getCustomProp(web::json::value& out, const utility::string_t& name) const {
    const auto found = m_CustomProperties.find(name);
    if (found == m_CustomProperties.end()) {
        return false;
    }
    out = found->second;
    return true;
}

void DynamicSchemaBaseClass::setCustomProp(const utility::string_t& name, const web::json::value& value) {
    if (!isKey(name)) {
        m_CustomProperties.insert_or_assign(name, value);
    }
}

void DynamicSchemaBaseClass::setCustomProp(const utility::string_t& name, const utility::string_t& value) {
    setCustomProp(name, toJson(value));
}

void DynamicSchemaBaseClass::setCustomProp(const utility::string_t& name, const utility::char_t* value) {
    setCustomProp(name, toJson(value));
}

void DynamicSchemaBaseClass::unsetCustomProp(const utility::string_t& name) {
    m_CustomProperties.erase(name);
}

detail::CustomProperties* DynamicSchemaBaseClass::customProperties() {
    return &m_CustomProperties;
}

} // namespace VarnelAPI::Forms::model
