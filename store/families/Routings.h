#pragma once

#include "model/LCStruct.h"
#include "store/core/Store.h"

#include <QList>
#include <QVariant>

class NetLoad;
class NetSave;
class Routing;
class RoutingFLowRatio;
struct RoutingFlowByInterval;

/// The routes of decision points, their shares of the traffic by time slice, and the lanes that they use on
/// connectors.
namespace routings {

bool insertRouting(const Store &store, Routing *route, bool useTransaction);
Routing *readRouting(const Store &store, long routingId);
bool listRoutingIds(const Store &store, long deciPointId, QList<long> &ids);

bool insertFlowRatios(const Store &store, long start, RoutingFlowByInterval *interval, bool useTransaction);
bool readFlowRatios(const Store &store, QList<RoutingFLowRatio *> &ratios, long routingId);
QVariantList describeFlowRatios(const QList<RoutingFLowRatio *> &ratios);

bool insertLanePair(const Store &store, long routingId, long connId, const LCStruct &lanes,
                    bool useTransaction);
QList<LCStruct *> readLanePairs(const Store &store, long routingId, long connId);

/// Loads the routes of the decision points. @return the ratios of all routes, each route's by their ends; the
/// caller owns them.
QList<RoutingFLowRatio *> loadAllRoutings(NetLoad &net);
/// The routes with their links and lanes.
void saveAllRoutings(NetSave &net);
/// A ratio's interval starts where it says, or where the one before ends.
void saveFlowRatios(NetSave &net);

} // namespace routings
