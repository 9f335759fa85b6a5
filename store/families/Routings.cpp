#include "store/families/Routings.h"

#include "model/DecisionPoint.h"
#include "model/Description.h"
#include "model/Link.h"
#include "model/Routing.h"
#include "model/RoutingFlowByInterval.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/CurrentNet.h"
#include "store/families/Wholeness.h"

#include <memory>

namespace routings {

namespace {

constexpr Sql kInsert = {
    "insert into Routing(routingID, deciPointID, routingName, proportion) values(:routingID, :deciPointID, :routingName, :proportion)",
    "insert into Routing(NetId, routingID, deciPointID, routingName, proportion) values(:NetId, :routingID, :deciPointID, :routingName, :proportion)"};
constexpr Sql kInsertChainLink = {
    "insert into RoutingLink(routingID, linkID, num1, num2) values(:routingID, :linkID, :num1, :num2)",
    "insert into RoutingLink(NetId, routingID, linkID, num1, num2) values(:NetId, :routingID, :linkID, :num1, :num2)"};
constexpr Sql kInsertFlowRatio = {
    "insert into RoutingFLowRatio(RoutingFLowRatioID, routingID, startDateTime, endDateTime, ratio) values(:RoutingFLowRatioID, :routingID, :startDateTime, :endDateTime, :ratio)",
    "insert into RoutingFLowRatio(NetId, RoutingFLowRatioID, routingID, startDateTime, endDateTime, ratio) values(:NetId, :RoutingFLowRatioID, :routingID, :startDateTime, :endDateTime, :ratio)"};
constexpr Sql kInsertLanePair = {
    "insert into RoutingLaneConnector(routingID, connID, laneID1, laneID2) values(:routingID, :connID, :laneID1, :laneID2)",
    "insert into RoutingLaneConnector(NetId, routingID, connID, laneID1, laneID2) values(:NetId, :routingID, :connID, :laneID1, :laneID2)"};

constexpr Sql kSelect = {"select * from Routing where routingID = %1",
                         "select * from Routing where NetId = %0 and routingID = %1"};
constexpr Sql kSelectIds = {
    "select routingID from Routing where deciPointID = %1 order by routingID",
    "select routingID from Routing where NetId = %0 and deciPointID = %1 order by routingID"};
constexpr Sql kSelectChainLinks = {
    "select * from RoutingLink where routingID = %1 order by num1, num2",
    "select * from RoutingLink where NetId = %0 and routingID = %1 order by num1, num2"};
constexpr Sql kSelectFlowRatios = {
    "select * from RoutingFlowRatio where routingID = %1 order by endDateTime",
    "select * from RoutingFlowRatio where NetId = %0 and routingID = %1 order by endDateTime"};
constexpr Sql kSelectLanePairs = {
    "select laneID1, laneID2 from RoutingLaneConnector where routingID = %1 and connID = %2 order by laneID1, laneID2",
    "select laneID1, laneID2 from RoutingLaneConnector where NetId = %0 and routingID = %1 and connID = %2 order by laneID1, laneID2"};

constexpr std::tuple kColumns = {
    Column{":routingID", &Routing::routingID},
    Reference{":deciPointID", &Routing::mpDecisionPoint, &DecisionPoint::deciPointID},
    Column{":routingName", &Routing::routingName},
    Column{":proportion", &Routing::proportion},
};
constexpr std::tuple kRatioColumns = {
    Column{":RoutingFLowRatioID", &RoutingFLowRatio::routingFLowRatioID},
    Column{":routingID", &RoutingFLowRatio::routingID},
    Column{":startDateTime", &RoutingFLowRatio::startDateTime},
    Column{":endDateTime", &RoutingFLowRatio::endDateTime},
    Column{":ratio", &RoutingFLowRatio::ratio},
};

template <class Row>
Row &bindChainLink(Row &row, const Routing &route, const Link &link, int chainNumber, int linkNumber) {
    return row.bind(":routingID", route.routingID)
        .bind(":linkID", link.linkID)
        .bind(":num1", chainNumber)
        .bind(":num2", linkNumber);
}

/// The times are those of the interval that the ratio is in.
template <class Row>
Row &bindRatio(Row &row, RoutingFLowRatio ratio, long start, long end) {
    ratio.startDateTime = start;
    ratio.endDateTime = end;
    return bindAll(row, kRatioColumns, ratio);
}

template <class Row>
Row &bindLanePair(Row &row, long routingId, long connId, const LCStruct &lanes) {
    return row.bind(":routingID", routingId)
        .bind(":connID", connId)
        .bind(":laneID1", lanes.laneID1)
        .bind(":laneID2", lanes.laneID2);
}

bool insertRow(const Store &store, const Routing &route) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, route).exec();
}

bool insertChains(const Store &store, const Routing &route) {
    bool written = true;
    Query insert(store, kInsertChainLink);
    int chainNumber = 0;
    for (const QList<Link *> &chain : route.mlLinkChain) {
        ++chainNumber;
        int linkNumber = 0;
        for (const Link *link : chain) {
            bindChainLink(insert.bindNet(), route, *link, chainNumber, ++linkNumber);
            written = insert.exec() && written;
        }
    }
    return written;
}

template <class Row>
std::unique_ptr<Routing> readRow(Row &row) {
    auto route = std::make_unique<Routing>();
    readAll(row, kColumns, *route);
    return route;
}

template <class Row>
std::unique_ptr<RoutingFLowRatio> readRatio(Row &row, long routingId) {
    auto ratio = std::make_unique<RoutingFLowRatio>();
    readAll(row, kRatioColumns, *ratio);
    ratio->routingID = routingId;
    return ratio;
}

template <class Row>
LCStruct readLanePair(Row &row) {
    return {row.id("laneID1"), row.id("laneID2")};
}

/// Puts the links of chains into their routes, row by row. Links that the current network does not know are left
/// out, and so are chains of nothing but such links.
class ChainReader {
public:
    /// False for a link that is left out.
    template <class Row>
    bool read(Row &row, Routing &route) {
        const int number = row.integer("num1");
        if (&route != mRoute || number != mNumber)
            mOpen = false;
        mRoute = &route;
        mNumber = number;
        Link *link = row.store().net().getLinkById(row.id("linkID"));
        if (!link)
            return false;
        if (!mOpen)
            route.mlLinkChain.append(QList<Link *>());
        mOpen = true;
        route.mlLinkChain.last().append(link);
        return true;
    }

private:
    const Routing *mRoute = nullptr;
    int mNumber = 0;
    bool mOpen = false; ///< the route's last chain goes on
};

void readChains(const Store &store, Routing &route, long routingId) {
    Query rows(store, kSelectChainLinks, {routingId});
    if (!rows.execPart() || !isCurrentNet(store))
        return;
    ChainReader reader;
    while (rows.next())
        reader.read(rows, route);
}

} // namespace

bool insertRouting(const Store &store, Routing *route, bool useTransaction) {
    if (!route)
        return true;
    if (!wholeness::isWhole(store, *route))
        return false;
    OperationTransaction transaction(store, useTransaction);
    bool written = insertRow(store, *route);
    written = insertChains(store, *route) && written;
    return transaction.commit(written);
}

Routing *readRouting(const Store &store, long routingId) {
    Query row(store, kSelect, {routingId});
    if (!row.execAndNext())
        return nullptr;
    std::unique_ptr<Routing> route = readRow(row);
    row.finish();
    readChains(store, *route, routingId);
    return store.whole(std::move(route));
}

bool listRoutingIds(const Store &store, long deciPointId, QList<long> &ids) {
    Query rows(store, kSelectIds, {deciPointId});
    rows.execPart();
    while (rows.next())
        ids.append(rows.firstId());
    return true;
}

bool insertFlowRatios(const Store &store, long start, RoutingFlowByInterval *interval, bool useTransaction) {
    if (!interval)
        return true;
    if (!wholeness::isWhole(store, *interval))
        return false;
    OperationTransaction transaction(store, useTransaction);
    bool written = true;
    Query insert(store, kInsertFlowRatio);
    for (const RoutingFLowRatio *ratio : qAsConst(interval->mlFlowRatio)) {
        bindRatio(insert.bindNet(), *ratio, start, interval->endDateTime);
        written = insert.exec() && written;
    }
    return transaction.commit(written);
}

bool readFlowRatios(const Store &store, QList<RoutingFLowRatio *> &ratios, long routingId) {
    Query rows(store, kSelectFlowRatios, {routingId});
    if (!rows.execPart())
        return false;
    while (rows.next())
        ratios.append(readRatio(rows, routingId).release());
    return rows.isComplete();
}

QVariantList describeFlowRatios(const QList<RoutingFLowRatio *> &ratios) {
    return describeEach(ratios, kRatioColumns);
}

bool insertLanePair(const Store &store, long routingId, long connId, const LCStruct &lanes,
                    bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    Query insert(store, kInsertLanePair);
    return transaction.commit(bindLanePair(insert.bindNet(), routingId, connId, lanes).exec());
}

QList<LCStruct *> readLanePairs(const Store &store, long routingId, long connId) {
    QList<LCStruct *> pairs;
    Query rows(store, kSelectLanePairs, {routingId, connId});
    if (!rows.exec())
        return pairs;
    while (rows.next())
        pairs.append(new LCStruct(readLanePair(rows)));
    return pairs;
}

QList<RoutingFLowRatio *> loadAllRoutings(NetLoad &net) {
    Objects<DecisionPoint> &points = net.contents.traffic.decisionPoints;
    std::vector<Routing *> routes;
    Owners pointOf(net, points, &DecisionPoint::deciPointID, "Routing", "belongs to no decision point");
    net.forEachRow("Routing", "deciPointID, routingID", [&](Rows &row) {
        if (DecisionPoint *point = pointOf.of(row, "deciPointID")) {
            routes.push_back(readRow(row).release());
            routes.back()->mpDecisionPoint = point;
            point->mlRouting.append(routes.back());
        }
    });
    Owners routeOf(net, routes, &Routing::routingID, "RoutingLink", "belongs to no route");
    ChainReader chains;
    net.forEachRow("RoutingLink", "routingID, num1, num2, linkID", [&](Rows &row) {
        Routing *route = routeOf.of(row, "routingID");
        if (route && !chains.read(row, *route))
            net.skip("RoutingLink", route->routingID, "names a link that is missing");
    });
    Owners routeOfLanes(net, routes, &Routing::routingID, "RoutingLaneConnector", "belongs to no route");
    net.forEachRow("RoutingLaneConnector", "routingID, connID, laneID1, laneID2", [&](Rows &row) {
        const Routing *route = routeOfLanes.of(row, "routingID");
        const long connId = row.id("connID");
        if (route && !net.store.net().getConnectorById(connId))
            net.skip("RoutingLaneConnector", route->routingID, "names a connector that is missing");
        else if (route)
            net.contents.traffic.routeLanes.append({route->routingID, connId, readLanePair(row)});
    });
    Owners routeOfRatio(net, routes, &Routing::routingID, "RoutingFLowRatio", "belongs to no route");
    QList<RoutingFLowRatio *> ratios;
    net.forEachRowAsWritten("RoutingFLowRatio", "routingID, endDateTime", [&](Rows &row) {
        if (const Routing *route = routeOfRatio.of(row, "routingID"))
            ratios.append(readRatio(row, route->routingID).release());
    });
    return ratios;
}

void saveAllRoutings(NetSave &net) {
    const TrafficObjects &traffic = net.contents.traffic;
    net.giveIds("Routing", traffic.decisionPoints, &DecisionPoint::mlRouting, &Routing::routingID);
    std::vector<const Routing *> routes;
    net.writeOwned("Routing", traffic.decisionPoints, &DecisionPoint::mlRouting,
                   [&](RowWriter &row, DecisionPoint &point, Routing *route) {
                       net.setIfUnset(route->mpDecisionPoint, &point);
                       bindAll(row, kColumns, *route);
                       routes.push_back(route);
                   });
    qint64 links = 0;
    for (const Routing *route : routes) {
        for (const QList<Link *> &chain : route->mlLinkChain)
            links += chain.size();
    }
    net.write("RoutingLink", links, [&routes](RowWriter &row) {
        for (const Routing *route : routes) {
            for (int chain = 0; chain < route->mlLinkChain.size(); ++chain) {
                int number = 0;
                for (const Link *link : route->mlLinkChain.at(chain))
                    bindChainLink(row.bindNet(), *route, *link, chain + 1, ++number).exec();
            }
        }
    });
    net.write("RoutingLaneConnector", traffic.routeLanes.size(), [&traffic](RowWriter &row) {
        for (const RouteLanes &pair : traffic.routeLanes)
            bindLanePair(row.bindNet(), pair.routingID, pair.connID, pair.lanes).exec();
    });
}

void saveFlowRatios(NetSave &net) {
    const Objects<DecisionPoint> &points = net.contents.traffic.decisionPoints;
    std::vector<long *> ids;
    for (const auto &point : points) {
        for (const RoutingFlowByInterval *interval : qAsConst(point->mlFlowByInterval)) {
            for (RoutingFLowRatio *ratio : interval->mlFlowRatio)
                ids.push_back(&ratio->routingFLowRatioID);
        }
    }
    net.giveIds("RoutingFLowRatio", ids);
    net.write("RoutingFLowRatio", qint64(ids.size()), [&points](RowWriter &row) {
        for (const auto &point : points) {
            long start = 1;
            for (const RoutingFlowByInterval *interval : qAsConst(point->mlFlowByInterval)) {
                for (const RoutingFLowRatio *ratio : interval->mlFlowRatio)
                    bindRatio(row.bindNet(), *ratio, start, interval->endDateTime).exec();
                start = interval->endDateTime + 1;
            }
        }
    });
}

} // namespace routings

Description describe(const Routing &route) {
    QVariantMap fields = describeAll(routings::kColumns, route);
    fields.remove(QStringLiteral("deciPointID"));
    fields.insert(QStringLiteral("linkChains"),
                  describeEach(route.mlLinkChain, [](const QList<Link *> &chain) {
                      return describeEach(chain, [](const Link &link) { return qlonglong(link.linkID); });
                  }));
    return {route.routingID, route.routingName, fields};
}
