#pragma once

#include "model/ChangeLaneModelParam.h"
#include "model/Configuration.h"
#include "model/Connector.h"
#include "model/DriveFollowedModelParam.h"
#include "model/GuideArrow.h"
#include "model/Link.h"
#include "model/LinkType.h"
#include "model/SimulateConfiguration.h"
#include "tools/kinds/TrafficObjects.h"

#include <QJsonObject>

/// An object in the fields that a store keeps of it, under their names; what belongs to it is nested. Objects
/// that it only refers to are named by their ids.
struct Description {
    long id = 0;
    QString name; ///< empty for an object without a name
    QJsonObject fields;
};

Description describe(const VehicleType &type);
Description describe(const VehicleComposition &composition);
Description describe(const DeparturePoint &point);
Description describe(const DecisionPoint &point); ///< an interval without ratios leaves no row
Description describe(const Routing &route);
Description describe(const SignalGroup &group);
Description describe(const SignalLamp &lamp);
Description describe(const VehicleDetector &detector);
Description describe(const VehicleQueueCounter &counter);
Description describe(const VehicleTravelDetector &detector);
Description describe(const VehicleDrivInfoCollector &collector);
Description describe(const BusStation &station);
Description describe(const BusLine &line); ///< with each stop once, however often a read gives it
Description describe(const ReduceSpeedArea &area);
Description describe(const AccidentZone &zone);
Description describe(const RoadWorkZone &zone);

Description describe(const Link &link);
Description describe(const Connector &connector);
Description describe(const GuideArrow &arrow);
Description describe(const LinkType &type);
Description describe(const DriveFollowedModelParam &set);
Description describe(const ChangeLaneModelParam &set);
Description describe(const SimulateConfiguration &configuration);
Description describe(const Configuration &configuration);
