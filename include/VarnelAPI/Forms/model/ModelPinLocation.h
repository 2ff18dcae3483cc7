#pragma once

#include <VarnelAPI/Forms/model/Model.h>

namespace VarnelAPI::Forms::model {

/// A point in model coordinates, at which an issue is pinned. Getters return references. The flags are `XIsSet` and
/// `unsetx`: these names follow no rule, but the interface is fixed.
class VARNEL_FORMS_API ModelPinLocation : public Model {
    VARNEL_FORMS_MODEL(ModelPinLocation);

    /// The first coordinate, in the model's unit.
    VARNEL_FORMS_PROPERTY_NAMED(double, X, x, "x", XIsSet, unsetx);
    /// The second coordinate, in the model's unit.
    VARNEL_FORMS_PROPERTY_NAMED(double, Y, y, "y", YIsSet, unsety);
    /// The third coordinate, in the model's unit.
    VARNEL_FORMS_PROPERTY_NAMED(double, Z, z, "z", ZIsSet, unsetz);
};

} // namespace VarnelAPI::Forms::model
