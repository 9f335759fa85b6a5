#pragma once

#include "store/core/Store.h"

#include <QList>

class AccidentZone;
class BusLine;
class BusStation;
class Connector;
class DecisionPoint;
class Link;
class ReduceSpeedArea;
class RoadWorkZone;
class Routing;
class SignalGroup;
class SignalLamp;
struct NetContents;
struct RoutingFlowByInterval;

/// Objects are stored whole or not at all: every operation asks here before it writes anything of one.
namespace wholeness {

/// @{ Whether all that the rows of an object are made of is there: no null in its lists, no null where a row
/// names a link, a lane or a phase. Otherwise false, with a record that names the object and what it lacks.
bool isWhole(const Store &store, const Link &link);
bool isWhole(const Store &store, const Connector &connector);
bool isWhole(const Store &store, const SignalGroup &group);
bool isWhole(const Store &store, const SignalLamp &lamp);
bool isWhole(const Store &store, const DecisionPoint &point);
bool isWhole(const Store &store, const Routing &route);
bool isWhole(const Store &store, const RoutingFlowByInterval &interval);
bool isWhole(const Store &store, const BusStation &station);
bool isWhole(const Store &store, const BusLine &line);
bool isWhole(const Store &store, const ReduceSpeedArea &area);
bool isWhole(const Store &store, const AccidentZone &zone);
bool isWhole(const Store &store, const RoadWorkZone &zone);
/// All objects of a network.
bool isWhole(const Store &store, const NetContents &contents);
/// @}

/// @{ Whether a list of objects to be written has no null entry. The objects themselves are asked one by one.
bool hasNoNull(const Store &store, const QList<Link *> &links);
bool hasNoNull(const Store &store, const QList<Connector *> &connectors);
/// @}

} // namespace wholeness
