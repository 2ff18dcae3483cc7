#pragma once

#include <VarnelAPI/Forms/detail/Model.h>
#include <VarnelAPI/Forms/model/ModelViewDefinitionCameraInfo.h>

namespace VarnelAPI::Forms::model {

/// A saved view of the 3-D model. Getters return references.
class VARNEL_FORMS_API ModelViewDefinition : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ViewId, viewId);
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ModelViewDefinitionCameraInfo>, CameraInfo, cameraInfo);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
