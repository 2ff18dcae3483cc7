#pragma once

#include <VarnelAPI/Forms/model/Model.h>
#include <VarnelAPI/Forms/model/ModelViewDefinitionCameraInfo.h>

namespace VarnelAPI::Forms::model {

/// A saved view of the 3-D model. Getters return references.
class VARNEL_FORMS_API ModelViewDefinition : public Model {
    VARNEL_FORMS_MODEL(ModelViewDefinition);

    /// The id of the view.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ViewId, viewId, "viewId");
    /// The camera that looks at it.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<ModelViewDefinitionCameraInfo>, CameraInfo, cameraInfo, "cameraInfo");
};

} // namespace VarnelAPI::Forms::model
