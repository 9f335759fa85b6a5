#include "model/DecisionPoint.h"
#include "model/LCStruct.h"
#include "tests/support/Builders.h"
#include "tests/support/StatementList.h"

namespace {

constexpr long kNet = StatementList::kNet;

Routing *addRoute(DecisionPoint &point, long id) {
    auto *route = new Routing;
    route->routingID = id;
    route->mlLinkChain = {{point.mpLink}, {point.mpLink}};
    point.mlRouting.append(route);
    return route;
}

RoutingFlowByInterval *addInterval(DecisionPoint &point, long end, long ratioId) {
    auto *interval = new RoutingFlowByInterval;
    interval->endDateTime = end;
    auto *ratio = new RoutingFLowRatio;
    ratio->routingFLowRatioID = ratioId;
    ratio->routingID = 51;
    interval->mlFlowRatio.append(ratio);
    point.mlFlowByInterval.append(interval);
    return interval;
}

template <class Tools>
void recordRoutes(StatementList &list, Link *link) {
    DecisionPoint point;
    point.deciPointID = 5;
    point.mpLink = link;
    Routing *route = addRoute(point, 52);
    route->mpDecisionPoint = &point;
    route->mlLinkChain.removeLast();
    list.addWrite("insertRouting", [&](bool flag) { Tools::insertRouting(gDB, kNet, route, flag); });
    list.add("selectRoutingByID", [] { std::unique_ptr<Routing>(Tools::selectRoutingByID(gDB, kNet, 52)); });
    list.add("selectRoutingIDs", [] {
        QList<long> ids;
        Tools::selectRoutingIDs(gDB, kNet, 5, ids);
    });
    RoutingFlowByInterval *interval = addInterval(point, 900, 503);
    list.addWrite("insertRoutingFlowRatio",
                  [&](bool flag) { Tools::insertRoutingFlowRatio(gDB, kNet, 601, interval, flag); });
    QList<RoutingFLowRatio *> ratios;
    list.add("selectRoutingPartitionByID", [&] { Tools::selectRoutingPartitionByID(gDB, kNet, ratios, 51); });
    qDeleteAll(ratios);
    list.addWrite("insertRoutingLaneConnector",
                  [](bool flag) { Tools::insertRoutingLaneConnector(gDB, kNet, 51, 3, 71, 72, flag); });
    list.add("selectRoutingLaneConnector",
             [] { qDeleteAll(Tools::selectRoutingLaneConnector(gDB, kNet, 51, 3)); });
}

template <class Tools>
void record(StatementList &list) {
    const auto link = sampleLink(7);
    DecisionPoint point;
    point.deciPointID = 5;
    point.mpLink = link.get();
    addRoute(point, 51);
    addInterval(point, 300, 501);
    addInterval(point, 600, 502);
    list.addWrite("insertDecisionPoint",
                  [&](bool flag) { Tools::insertDecisionPoint(gDB, kNet, &point, flag); });
    list.add("selectDecisionPointByID",
             [] { std::unique_ptr<DecisionPoint>(Tools::selectDecisionPointByID(gDB, kNet, 5)); });
    list.add("selectDecisionPointIDs", [] {
        QList<long> ids;
        Tools::selectDecisionPointIDs(gDB, kNet, ids);
    });
    recordRoutes<Tools>(list, link.get());
}

const StatementFamily kRouting("Routing", record<DBTools>, record<DBTools_V6>);

} // namespace
