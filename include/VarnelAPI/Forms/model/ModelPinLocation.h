#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

namespace VarnelAPI::Forms::model {

/// A point in model coordinates, at which an issue is pinned. Getters return references. The flags are `XIsSet` and
/// `unsetx`: these names follow no rule, and are kept as published.
class VARNEL_FORMS_API ModelPinLocation : public detail::Model {
    VARNEL_FORMS_PROPERTY_NAMED(double, X, XIsSet, unsetx);
    VARNEL_FORMS_PROPERTY_NAMED(double, Y, YIsSet, unsety);
    VARNEL_FORMS_PROPERTY_NAMED(double, Z, ZIsSet, unsetz);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
