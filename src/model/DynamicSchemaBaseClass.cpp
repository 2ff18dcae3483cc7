#include <VarnelAPI/Forms/model/DynamicSchemaBaseClass.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(DynamicSchemaBaseClass) {
    visit(m_KeldaroServer);
    visit(m_KeldaroObjectId);
    visit(m_KeldaroLink);
    visit(m_Subject);
    visit(m_Description);
    visit(m_DisplayName);
    visit(m_Latitude);
    visit(m_Longitude);
    visit(m_GPSLocation);
    visit(m_Status);
    visit(m_Closed);
    visit(m_AssignedTo);
    visit(m_AssignedToId);
    visit(m_Discipline);
    visit(m_Classification);
    visit(m_Source);
    visit(m_ContainerId);
    visit(m_ItemId);
    visit(m_BackContainerUrl);
    visit(m_BackItemUrl);
    visit.nullable(m_CreatedDate);
    visit(m_CreatedBy);
    visit.nullable(m_ModifiedDate);
    visit(m_ModifiedBy);
    visit.nullable(m_DueDate);
    visit(m_IdNumber);
    visit(m_BBoxLowElement);
    visit(m_BBoxHighElement);
    visit(m_Priority);
    visit(m_Type);
    visit(m_ModelPinLocation);
    visit.nullable(m_ModelEventDateTime);
    visit.asText(m_ModelViewDefinition);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaBaseClassInstanceContent) {
    InstanceContentOf::describe(visit);
    visit(m_RelationshipInstances);
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
