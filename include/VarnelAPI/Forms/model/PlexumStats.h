#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// Four counts. Getters return copies.
class VARNEL_FORMS_API PlexumStats : public Model {
    VARNEL_FORMS_MODEL(PlexumStats);

    /// A count.
    VARNEL_FORMS_PROPERTY(int32_t, Count, count, "Count");
    /// A count of what is open.
    VARNEL_FORMS_PROPERTY(int32_t, Open, open, "Open");
    /// A count of what is closed.
    VARNEL_FORMS_PROPERTY(int32_t, Closed, closed, "Closed");
    /// A count of what is assigned.
    VARNEL_FORMS_PROPERTY(int32_t, Assigned, assigned, "Assigned");
};

/// The identity and properties of statistics.
class VARNEL_FORMS_API PlexumStatsInstanceContent : public InstanceContentOf<PlexumStats> {};
/// One instance: statistics with its identity.
class VARNEL_FORMS_API PlexumStatsInstance : public InstanceOf<PlexumStatsInstanceContent> {};
/// A list of statistics.
class VARNEL_FORMS_API PlexumStatsInstances : public InstancesOf<PlexumStatsInstanceContent> {};

} // namespace VarnelAPI::Forms::model
