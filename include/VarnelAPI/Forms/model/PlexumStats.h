#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// Four counts. Getters return copies.
class VARNEL_FORMS_API PlexumStats : public detail::Model {
    VARNEL_FORMS_PROPERTY(int32_t, Count, count);
    VARNEL_FORMS_PROPERTY(int32_t, Open, open);
    VARNEL_FORMS_PROPERTY(int32_t, Closed, closed);
    VARNEL_FORMS_PROPERTY(int32_t, Assigned, assigned);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API PlexumStatsInstanceContent : public detail::InstanceContentOf<PlexumStats> {};
class VARNEL_FORMS_API PlexumStatsInstance : public detail::InstanceOf<PlexumStatsInstanceContent> {};
class VARNEL_FORMS_API PlexumStatsInstances : public detail::InstancesOf<PlexumStatsInstanceContent> {};

} // namespace VarnelAPI::Forms::model
