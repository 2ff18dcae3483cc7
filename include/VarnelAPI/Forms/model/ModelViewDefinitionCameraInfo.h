#pragma once

#include <VarnelAPI/Forms/model/Model.h>

namespace VarnelAPI::Forms::model {

/// The camera of a saved view. Getters return references.
class VARNEL_FORMS_API ModelViewDefinitionCameraInfo : public Model {
    VARNEL_FORMS_MODEL(ModelViewDefinitionCameraInfo);

    /// An angle; the unit is the service's.
    VARNEL_FORMS_PROPERTY_REF(double, CameraAngle, cameraAngle, "cameraAngle");
    /// A focal length; the unit is the service's.
    VARNEL_FORMS_PROPERTY_REF(double, CameraFocalLength, cameraFocalLength, "cameraFocalLength");
    /// Where the camera is: a point's coordinates.
    VARNEL_FORMS_PROPERTY_REF(std::vector<double>, CameraPosition, cameraPosition, "cameraPosition");
    /// How far the view reaches, as coordinates.
    VARNEL_FORMS_PROPERTY_REF(std::vector<double>, Extents, extents, "extents");
    /// Whether the camera is on.
    VARNEL_FORMS_FLAG_REF(IsCameraOn, isCameraOn, "isCameraOn");
    /// Where the view begins: a point's coordinates.
    VARNEL_FORMS_PROPERTY_REF(std::vector<double>, Origin, origin, "origin");
    /// A matrix, row by row.
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::vector<double>>, Rotation, rotation, "rotation");
};

} // namespace VarnelAPI::Forms::model
