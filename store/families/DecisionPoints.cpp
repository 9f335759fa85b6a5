#include "store/families/DecisionPoints.h"

#include "model/DecisionPoint.h"
#include "model/Description.h"
#include "model/Link.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/CurrentNet.h"
#include "store/families/Routings.h"
#include "store/families/Wholeness.h"

#include <QSet>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace decisionpoints {

namespace {

constexpr Sql kInsert = {
    "insert into DecisionPoint(deciPointID, deciPointName, linkID, x, y, z) values(:deciPointID, :deciPointName, :linkID, :x, :y, :z)",
    "insert into DecisionPoint(NetId, deciPointID, deciPointName, linkID, x, y, z) values(:NetId, :deciPointID, :deciPointName, :linkID, :x, :y, :z)"};
constexpr Sql kSelect = {"select * from DecisionPoint where deciPointID = %1",
                         "select * from DecisionPoint where NetId = %0 and deciPointID = %1"};
constexpr Sql kSelectIds = {"select deciPointID from DecisionPoint order by deciPointID",
                            "select deciPointID from DecisionPoint where NetId = %0 order by deciPointID"};

constexpr std::tuple kColumns = {
    Column{":deciPointID", &DecisionPoint::deciPointID},
    Column{":deciPointName", &DecisionPoint::deciPointName},
    Reference{":linkID", &DecisionPoint::mpLink, &Link::linkID},
    Column{":x", &DecisionPoint::x},
    Column{":y", &DecisionPoint::y},
    Column{":z", &DecisionPoint::z},
};

bool insertRow(const Store &store, const DecisionPoint &point) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, point).exec();
}

bool insertRoutes(const Store &store, DecisionPoint &point) {
    bool written = true;
    for (Routing *route : qAsConst(point.mlRouting)) {
        if (!route->mpDecisionPoint)
            route->mpDecisionPoint = &point;
        written = routings::insertRouting(store, route, false) && written;
    }
    return written;
}

/// Destroys the records of @p interval that belong to none of @p routeIds.
void dropForeignRatios(RoutingFlowByInterval &interval, const QSet<long> &routeIds) {
    for (int i = interval.mlFlowRatio.size() - 1; i >= 0; --i) {
        if (!routeIds.contains(interval.mlFlowRatio.at(i)->routingID))
            delete interval.mlFlowRatio.takeAt(i);
    }
}

QSet<long> routeIdsOf(const DecisionPoint &point) {
    QSet<long> ids;
    for (const Routing *route : point.mlRouting)
        ids.insert(route->routingID);
    return ids;
}

bool insertFlows(const Store &store, const DecisionPoint &point) {
    if (!store.isUsable())
        return false;
    const QSet<long> routeIds = routeIdsOf(point);
    bool written = true;
    long start = 1;
    for (RoutingFlowByInterval *interval : point.mlFlowByInterval) {
        dropForeignRatios(*interval, routeIds);
        written = routings::insertFlowRatios(store, start, interval, false) && written;
        start = interval->endDateTime + 1;
    }
    return written;
}

/// The same for a save: the records come back unless it is kept.
void takeOutForeignRatios(NetSave &net, RoutingFlowByInterval &interval, const QSet<long> &routeIds) {
    QList<RoutingFLowRatio *> &ratios = interval.mlFlowRatio;
    const QList<RoutingFLowRatio *> before = ratios;
    const auto own = std::stable_partition(ratios.begin(), ratios.end(), [&](const RoutingFLowRatio *ratio) {
        return routeIds.contains(ratio->routingID);
    });
    const auto kept = int(own - ratios.begin());
    if (kept == ratios.size())
        return;
    const auto foreign = std::make_shared<OwningList<RoutingFLowRatio>>();
    while (ratios.size() > kept)
        foreign->append(ratios.takeLast());
    net.onUndo([&ratios, before, foreign] {
        foreign->clear();
        ratios = before;
    });
}

/// The route of a point that has no id yet; null when there is none or more than one.
const Routing *newRouteOf(const DecisionPoint &point) {
    const auto isNew = [](const Routing *route) { return route->routingID == 0; };
    const QList<Routing *> &routes = point.mlRouting;
    const auto first = std::find_if(routes.cbegin(), routes.cend(), isNew);
    return first != routes.cend() && std::none_of(first + 1, routes.cend(), isNew) ? *first : nullptr;
}

/// Flow ratios that name no route are those of the route that had no id, either.
void nameNewRoute(NetSave &net, const DecisionPoint &point, const Routing &route) {
    for (const RoutingFlowByInterval *interval : point.mlFlowByInterval) {
        for (RoutingFLowRatio *ratio : interval->mlFlowRatio)
            net.setIfUnset(ratio->routingID, route.routingID);
    }
}

template <class Row>
std::unique_ptr<DecisionPoint> readRow(Row &row, bool isCurrent) {
    auto point = std::make_unique<DecisionPoint>();
    readAll(row, kColumns, *point);
    if (isCurrent)
        point->mpLink = row.store().net().getLinkById(row.id("linkID"));
    return point;
}

void readRoutes(const Store &store, DecisionPoint &point, long id) {
    QList<long> routeIds;
    routings::listRoutingIds(store, id, routeIds);
    for (const long routeId : qAsConst(routeIds)) {
        if (Routing *route = routings::readRouting(store, routeId)) {
            route->mpDecisionPoint = &point;
            point.mlRouting.append(route);
        }
    }
}

/// Groups the ratio records of all routes of a point by their ends; in each group the first record of a route
/// counts. Takes the records.
/// @param leaveOut hears of each record that does not count.
template <class LeaveOut>
void groupFlows(DecisionPoint &point, const QList<RoutingFLowRatio *> &ratios, const LeaveOut &leaveOut) {
    std::map<long, std::map<long, std::unique_ptr<RoutingFLowRatio>>> firstByEndAndRoute;
    for (RoutingFLowRatio *ratio : ratios) {
        std::unique_ptr<RoutingFLowRatio> record(ratio);
        std::unique_ptr<RoutingFLowRatio> &first = firstByEndAndRoute[ratio->endDateTime][ratio->routingID];
        if (first)
            leaveOut(*record);
        else
            first = std::move(record);
    }
    for (auto &[end, firstByRoute] : firstByEndAndRoute) {
        auto interval = std::make_unique<RoutingFlowByInterval>();
        interval->endDateTime = end;
        for (auto &[routeId, ratio] : firstByRoute)
            interval->mlFlowRatio.append(ratio.release());
        point.mlFlowByInterval.append(interval.release());
    }
}

void readFlows(const Store &store, DecisionPoint &point) {
    QList<RoutingFLowRatio *> ratios;
    for (const Routing *route : qAsConst(point.mlRouting))
        routings::readFlowRatios(store, ratios, route->routingID);
    groupFlows(point, ratios, [](const RoutingFLowRatio &) {});
}

} // namespace

bool insertDecisionPoint(const Store &store, DecisionPoint *point, bool useTransaction) {
    if (!point)
        return true;
    if (!wholeness::isWhole(store, *point))
        return false;
    OperationTransaction transaction(store, useTransaction);
    bool written = insertRow(store, *point);
    written = insertRoutes(store, *point) && written;
    written = insertFlows(store, *point) && written;
    return transaction.commit(written);
}

DecisionPoint *readDecisionPoint(const Store &store, long id) {
    Query row(store, kSelect, {id});
    if (!row.execAndNext())
        return nullptr;
    std::unique_ptr<DecisionPoint> point = readRow(row, isCurrentNet(store));
    row.finish();
    readRoutes(store, *point, id);
    readFlows(store, *point);
    return store.whole(std::move(point));
}

bool listDecisionPointIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllDecisionPoints(NetLoad &net) {
    Objects<DecisionPoint> &points = net.contents.traffic.decisionPoints;
    net.forEachObject("DecisionPoint", "deciPointID", [&](Rows &row) {
        // A point without its link reads on its own, and could not be saved again.
        if (auto point = readRow(row, true); point->mpLink)
            points.push_back(std::move(point));
        else
            net.skip("DecisionPoint", point->deciPointID, "stands on a link that is missing");
    });
    QHash<long, QList<RoutingFLowRatio *>> ratiosOf;
    const QList<RoutingFLowRatio *> ratios = routings::loadAllRoutings(net);
    for (RoutingFLowRatio *ratio : ratios)
        ratiosOf[ratio->routingID].append(ratio);
    for (const auto &point : points) {
        QList<RoutingFLowRatio *> ofPoint;
        for (const Routing *route : qAsConst(point->mlRouting))
            ofPoint.append(ratiosOf.take(route->routingID));
        groupFlows(*point, ofPoint, [&net](const RoutingFLowRatio &ratio) {
            net.skip("RoutingFLowRatio", ratio.routingFLowRatioID,
                     "ends with an earlier ratio of the same route");
        });
    }
}

void saveAllDecisionPoints(NetSave &net) {
    const Objects<DecisionPoint> &points = net.contents.traffic.decisionPoints;
    net.giveIds("DecisionPoint", points, &DecisionPoint::deciPointID);
    net.writeEach("DecisionPoint", points,
                  [](RowWriter &row, const DecisionPoint &point) { bindAll(row, kColumns, point); });
    std::vector<const Routing *> newRoutes;
    for (const auto &point : points)
        newRoutes.push_back(newRouteOf(*point));
    routings::saveAllRoutings(net);
    if (!net.isGood())
        return;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto &point = points[i];
        if (newRoutes[i])
            nameNewRoute(net, *point, *newRoutes[i]);
        const QSet<long> routeIds = routeIdsOf(*point);
        for (RoutingFlowByInterval *interval : qAsConst(point->mlFlowByInterval))
            takeOutForeignRatios(net, *interval, routeIds);
    }
    routings::saveFlowRatios(net);
}

} // namespace decisionpoints

Description describe(const DecisionPoint &point) {
    QVariantMap fields = describeAll(decisionpoints::kColumns, point);
    fields.insert(QStringLiteral("routes"),
                  describeEach(point.mlRouting, [](const Routing &route) { return describe(route).fields; }));
    QVariantList intervals;
    for (const RoutingFlowByInterval *interval : point.mlFlowByInterval) {
        if (!interval->mlFlowRatio.isEmpty())
            intervals.append(QVariantMap{
                {QStringLiteral("endDateTime"), qlonglong(interval->endDateTime)},
                {QStringLiteral("flowRatios"), routings::describeFlowRatios(interval->mlFlowRatio)}});
    }
    fields.insert(QStringLiteral("flowIntervals"), intervals);
    return {point.deciPointID, point.deciPointName, fields};
}
