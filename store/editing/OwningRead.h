#pragma once

#include "model/NetContents.h"
#include "model/Owned.h"
#include "store/core/Store.h"

/// Reads an object of the store's network under its id, by the statements of the single read of its kind, and
/// what that leaves out: the vehicle types that lanes and connectors are closed to. What it refers to by
/// pointer is read with it and kept with it: both links of a connector, the group of a lamp's phase, the links
/// of decision points, stations, routes and lines. Nothing of the open store's current network, or of its
/// registries, is answered or changed.
///
/// T is a kind of object of NetContents. Null when there is none, or when it cannot be read, which is recorded.
template <class T>
Owned<T> readOwned(const Store &store, long id);

/// @{ Every kind.
template <>
Owned<Link> readOwned(const Store &store, long id);
template <>
Owned<Connector> readOwned(const Store &store, long id);
template <>
Owned<GuideArrow> readOwned(const Store &store, long id);
template <>
Owned<SignalGroup> readOwned(const Store &store, long id);
template <>
Owned<SignalLamp> readOwned(const Store &store, long id);
template <>
Owned<VehicleType> readOwned(const Store &store, long id);
template <>
Owned<VehicleComposition> readOwned(const Store &store, long id);
template <>
Owned<DeparturePoint> readOwned(const Store &store, long id);
template <>
Owned<DecisionPoint> readOwned(const Store &store, long id);
template <>
Owned<VehicleDetector> readOwned(const Store &store, long id);
template <>
Owned<VehicleQueueCounter> readOwned(const Store &store, long id);
template <>
Owned<VehicleTravelDetector> readOwned(const Store &store, long id);
template <>
Owned<VehicleDrivInfoCollector> readOwned(const Store &store, long id);
template <>
Owned<BusStation> readOwned(const Store &store, long id);
template <>
Owned<BusLine> readOwned(const Store &store, long id);
template <>
Owned<ReduceSpeedArea> readOwned(const Store &store, long id);
template <>
Owned<AccidentZone> readOwned(const Store &store, long id);
template <>
Owned<RoadWorkZone> readOwned(const Store &store, long id);
/// @}
