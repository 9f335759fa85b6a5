#pragma once

#include "model/ChangeLaneModelParam.h"
#include "model/Configuration.h"
#include "model/Connector.h"
#include "model/DriveFollowedModelParam.h"
#include "model/GuideArrow.h"
#include "model/Link.h"
#include "model/LinkType.h"
#include "model/SimulateConfiguration.h"
#include "tools/MoraToolsExport.h"
#include "tools/kinds/TrafficObjects.h"

#include <QJsonObject>

namespace moratools {

/// An object in the fields that a store keeps of it, under their names; what belongs to it is nested. Objects
/// that it only refers to are named by their ids.
struct Description {
    long id = 0;
    QString name; ///< empty for an object without a name
    QJsonObject fields;
};

MORATOOLS_EXPORT Description describe(const VehicleType &type);
MORATOOLS_EXPORT Description describe(const VehicleComposition &composition);
MORATOOLS_EXPORT Description describe(const DeparturePoint &point);
MORATOOLS_EXPORT Description
describe(const DecisionPoint &point); ///< an interval without ratios leaves no row
MORATOOLS_EXPORT Description describe(const Routing &route);
MORATOOLS_EXPORT Description describe(const SignalGroup &group);
MORATOOLS_EXPORT Description describe(const SignalLamp &lamp);
MORATOOLS_EXPORT Description describe(const VehicleDetector &detector);
MORATOOLS_EXPORT Description describe(const VehicleQueueCounter &counter);
MORATOOLS_EXPORT Description describe(const VehicleTravelDetector &detector);
MORATOOLS_EXPORT Description describe(const VehicleDrivInfoCollector &collector);
MORATOOLS_EXPORT Description describe(const BusStation &station);
MORATOOLS_EXPORT Description
describe(const BusLine &line); ///< with each stop once, however often a read gives it
MORATOOLS_EXPORT Description describe(const ReduceSpeedArea &area);
MORATOOLS_EXPORT Description describe(const AccidentZone &zone);
MORATOOLS_EXPORT Description describe(const RoadWorkZone &zone);

MORATOOLS_EXPORT Description describe(const Link &link);
MORATOOLS_EXPORT Description describe(const Connector &connector);
MORATOOLS_EXPORT Description describe(const GuideArrow &arrow);
MORATOOLS_EXPORT Description describe(const LinkType &type);
MORATOOLS_EXPORT Description describe(const DriveFollowedModelParam &set);
MORATOOLS_EXPORT Description describe(const ChangeLaneModelParam &set);
MORATOOLS_EXPORT Description describe(const SimulateConfiguration &configuration);
MORATOOLS_EXPORT Description describe(const Configuration &configuration);

} // namespace moratools
