#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

namespace VarnelAPI::Forms::model {

/// The camera of a saved view. Getters return references.
class VARNEL_FORMS_API ModelViewDefinitionCameraInfo : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(double, CameraAngle, cameraAngle);
    VARNEL_FORMS_PROPERTY_REF(double, CameraFocalLength, cameraFocalLength);
    /// A point.
    VARNEL_FORMS_PROPERTY_REF(std::vector<double>, CameraPosition, cameraPosition);
    VARNEL_FORMS_PROPERTY_REF(std::vector<double>, Extents, extents);
    VARNEL_FORMS_FLAG_REF(IsCameraOn, isCameraOn);
    VARNEL_FORMS_PROPERTY_REF(std::vector<double>, Origin, origin);
    /// A matrix, row by row.
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::vector<double>>, Rotation, rotation);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
