#pragma once

#include "MoraStoreExport.h"

#include <QJsonObject>
#include <QString>
#include <QVariant>

class AccidentZone;
class BusLine;
class BusStation;
class ChangeLaneModelParam;
class Configuration;
class Connector;
class DecisionPoint;
class Link;
class ReduceSpeedArea;
class RoadWorkZone;
class Routing;
class SignalGroup;
class SignalLamp;
class SimulateConfiguration;
class VehicleComposition;
class VehicleDetector;
class VehicleQueueCounter;
class VehicleTravelDetector;
class VehicleType;
struct DeparturePoint;
struct DriveFollowedModelParam;
struct GuideArrow;
struct LinkType;
struct NetRecord;
struct VehicleDrivInfoCollector;

/// An object in the fields that a store keeps of it, under their names. What belongs to it is nested: one
/// part as a QVariantMap, several as a QVariantList. Objects that it only refers to are named by their ids.
///
/// Whole numbers are qlonglong, JSON objects StoredJson (model/StoredJson.h); the others are int, double, bool and QString.
struct MORASTORE_EXPORT Description {
    long id = 0;
    QString name; ///< empty for an object without a name
    QVariantMap fields;

    /// The fields as JSON.
    QJsonObject toJson() const;
};

/// @{ Whether two fields, or all fields of two objects, are the same to the bit. Comparing QVariants is not enough:
/// numbers that are near each other are equal to them.
MORASTORE_EXPORT bool isSameField(const QVariant &a, const QVariant &b);
MORASTORE_EXPORT bool areSameFields(const QVariantMap &a, const QVariantMap &b);
/// @}

/// @{ Describes an object of a kind. The fields are those that the kind is written and read by, so that
/// comparing two objects is comparing their descriptions. The objects that it refers to must be alive; one
/// that is not there has the id 0.
MORASTORE_EXPORT Description describe(const NetRecord &record);
MORASTORE_EXPORT Description describe(const VehicleType &type);
MORASTORE_EXPORT Description describe(const VehicleComposition &composition);
MORASTORE_EXPORT Description describe(const LinkType &type);
MORASTORE_EXPORT Description describe(const Link &link);
MORASTORE_EXPORT Description describe(const Connector &connector);
MORASTORE_EXPORT Description describe(const GuideArrow &arrow);
MORASTORE_EXPORT Description describe(const SignalGroup &group);
MORASTORE_EXPORT Description describe(const SignalLamp &lamp);
MORASTORE_EXPORT Description describe(const DeparturePoint &point);
MORASTORE_EXPORT Description
describe(const DecisionPoint &point); ///< an interval without ratios leaves no row
MORASTORE_EXPORT Description describe(const Routing &route);
MORASTORE_EXPORT Description describe(const VehicleDetector &detector);
MORASTORE_EXPORT Description describe(const VehicleQueueCounter &counter);
MORASTORE_EXPORT Description describe(const VehicleTravelDetector &detector);
MORASTORE_EXPORT Description describe(const VehicleDrivInfoCollector &collector);
MORASTORE_EXPORT Description describe(const BusStation &station);
MORASTORE_EXPORT Description describe(const BusLine &line); ///< each stop once, however often a read gives it
MORASTORE_EXPORT Description describe(const AccidentZone &zone);
MORASTORE_EXPORT Description describe(const RoadWorkZone &zone);
MORASTORE_EXPORT Description describe(const ReduceSpeedArea &area);
MORASTORE_EXPORT Description describe(const DriveFollowedModelParam &set);
MORASTORE_EXPORT Description describe(const ChangeLaneModelParam &set);
MORASTORE_EXPORT Description describe(const SimulateConfiguration &configuration); ///< of id 1
MORASTORE_EXPORT Description
describe(const Configuration &configuration); ///< of id 1; the map as its size in bytes
/// @}
