#include "store/families/Routings.h"

#include "model/DecisionPoint.h"
#include "model/Link.h"
#include "model/Routing.h"
#include "model/RoutingFlowByInterval.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"
#include "store/families/CurrentNet.h"

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

bool insertRow(const Store &store, const Routing &route) {
    Query insert(store, kInsert);
    return insert.bindNet()
        .bind(":routingID", route.routingID)
        .bind(":deciPointID", route.mpDecisionPoint ? route.mpDecisionPoint->deciPointID : 0L)
        .bind(":routingName", route.routingName)
        .bind(":proportion", route.proportion)
        .exec();
}

bool insertChains(const Store &store, const Routing &route) {
    bool written = true;
    Query insert(store, kInsertChainLink);
    int chainNumber = 0;
    for (const QList<Link *> &chain : route.mlLinkChain) {
        ++chainNumber;
        int linkNumber = 0;
        for (const Link *link : chain) {
            insert.bindNet()
                .bind(":routingID", route.routingID)
                .bind(":linkID", link ? link->linkID : 0L)
                .bind(":num1", chainNumber)
                .bind(":num2", ++linkNumber);
            written = insert.exec() && written;
        }
    }
    return written;
}

std::unique_ptr<Routing> readRow(const Store &store, long routingId) {
    Query row(store, kSelect, {routingId});
    if (!row.execAndNext())
        return nullptr;
    auto route = std::make_unique<Routing>();
    route->routingID = row.id("routingID");
    route->routingName = row.text("routingName");
    route->proportion = row.number("proportion");
    return route;
}

/// Links that gNet does not know are left out, and so are chains of nothing but such links.
void readChains(const Store &store, Routing &route, long routingId) {
    Query rows(store, kSelectChainLinks, {routingId});
    if (!rows.exec() || !isCurrentNet(store))
        return;
    QList<Link *> chain;
    int number = 0;
    const auto closeChain = [&] {
        if (!chain.isEmpty())
            route.mlLinkChain.append(chain);
        chain.clear();
    };
    while (rows.next()) {
        if (rows.integer("num1") != number)
            closeChain();
        number = rows.integer("num1");
        if (Link *link = gNet.getLinkById(rows.id("linkID")))
            chain.append(link);
    }
    closeChain();
}

} // namespace

bool insert(const Store &store, Routing *route, bool useTransaction) {
    if (!route)
        return true;
    Transaction transaction(store, useTransaction);
    bool written = insertRow(store, *route);
    written = insertChains(store, *route) && written;
    return transaction.commit(written);
}

Routing *read(const Store &store, long routingId) {
    std::unique_ptr<Routing> route = readRow(store, routingId);
    if (route)
        readChains(store, *route, routingId);
    return route.release();
}

bool listIds(const Store &store, long deciPointId, QList<long> &ids) {
    Query rows(store, kSelectIds, {deciPointId});
    rows.exec();
    while (rows.next())
        ids.append(rows.firstId());
    return true;
}

bool insertFlowRatios(const Store &store, long start, RoutingFlowByInterval *interval, bool useTransaction) {
    if (!interval)
        return true;
    Transaction transaction(store, useTransaction);
    bool written = true;
    Query insert(store, kInsertFlowRatio);
    for (const RoutingFLowRatio *ratio : qAsConst(interval->mlFlowRatio)) {
        insert.bindNet()
            .bind(":RoutingFLowRatioID", ratio->routingFLowRatioID)
            .bind(":routingID", ratio->routingID)
            .bind(":startDateTime", start)
            .bind(":endDateTime", interval->endDateTime)
            .bind(":ratio", ratio->ratio);
        written = insert.exec() && written;
    }
    return transaction.commit(written);
}

bool readFlowRatios(const Store &store, QList<RoutingFLowRatio *> &ratios, long routingId) {
    Query rows(store, kSelectFlowRatios, {routingId});
    if (!rows.exec())
        return false;
    while (rows.next()) {
        auto ratio = std::make_unique<RoutingFLowRatio>();
        ratio->routingFLowRatioID = rows.id("RoutingFLowRatioID");
        ratio->routingID = routingId;
        ratio->startDateTime = rows.id("startDateTime");
        ratio->endDateTime = rows.id("endDateTime");
        ratio->ratio = rows.number("ratio");
        ratios.append(ratio.release());
    }
    return true;
}

bool insertLanePair(const Store &store, long routingId, long connId, const LCStruct &lanes,
                    bool useTransaction) {
    Transaction transaction(store, useTransaction);
    Query insert(store, kInsertLanePair);
    insert.bindNet()
        .bind(":routingID", routingId)
        .bind(":connID", connId)
        .bind(":laneID1", lanes.laneID1)
        .bind(":laneID2", lanes.laneID2);
    return transaction.commit(insert.exec());
}

QList<LCStruct *> readLanePairs(const Store &store, long routingId, long connId) {
    QList<LCStruct *> pairs;
    Query rows(store, kSelectLanePairs, {routingId, connId});
    if (!rows.exec())
        return pairs;
    while (rows.next()) {
        auto pair = std::make_unique<LCStruct>();
        pair->laneID1 = rows.id("laneID1");
        pair->laneID2 = rows.id("laneID2");
        pairs.append(pair.release());
    }
    return pairs;
}

} // namespace routings
