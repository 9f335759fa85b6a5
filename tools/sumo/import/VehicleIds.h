#pragma once

#include "tools/sumo/reader/SumoCompanions.h"

#include <QHash>
#include <QSet>

namespace moratools {

/// The ids of vehicles and flows. Each kind has its own; but what departs of flow "f" is called "f.0", "f.1" and so
/// on, and no other vehicle may be.
class VehicleIds {
public:
    explicit VehicleIds(const std::vector<SumoVehicle> &vehicles);

    /// Why the next vehicle or flow that is taken may not have its id; empty where it may.
    QString faultOf(const SumoVehicle &vehicle);

private:
    QString flowThatHas(const QString &vehicle) const;

    QHash<QString, int> mDeparturesOf; ///< by flow
    QSet<QString> mVehicles;
    QSet<QString> mFlows;
};

} // namespace moratools
