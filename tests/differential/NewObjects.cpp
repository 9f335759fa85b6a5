#include "tests/differential/NewObjects.h"

#include "tests/differential/FieldWalk.h"

#include <QSet>

namespace differential {

namespace {

/// Sets identifiers to 0, by the names of their members.
class Forgetting : public FieldWalk<Forgetting> {
public:
    template <class Value>
    void value(const char *, const Value &) {}
    void word(const char *, const QString &) {}
    using FieldWalk::id;
    void id(const char *name, long &id) {
        static const QSet<QByteArray> kUnknownToOthers = {"vertexID",
                                                          "nodeID",
                                                          "guideArrowID",
                                                          "signalPhaseID",
                                                          "signalLampID",
                                                          "deciPointID",
                                                          "routingFLowRatioID",
                                                          "vehicleDetectorId",
                                                          "queueCounterID",
                                                          "detectorId",
                                                          "collecterID",
                                                          "departurePointID",
                                                          "busLineID",
                                                          "stationLineID",
                                                          "passengerArrivingID",
                                                          "departureIntervalD",
                                                          "reduceSpeedAreaID",
                                                          "intervalID",
                                                          "zoneId",
                                                          "roadWorkZoneId",
                                                          "accidentZoneId"};
        if (kUnknownToOthers.contains(name))
            id = 0;
    }
};

template <class T>
T &addInFront(Objects<T> &objects, std::unique_ptr<T> object) {
    return **objects.insert(objects.begin(), std::move(object));
}

/// Behind all that a random network uses: of objects that others may know by their ids.
constexpr long kOwnId = 5000000;

std::unique_ptr<Link> newLink() {
    auto link = std::make_unique<Link>();
    link->linkID = kOwnId;
    for (const double x : {1.0, 2.0})
        link->mlVertex.append(new Vertex{0, x, 0, 0});
    link->mpStartNode = new Node{0, QString(), link->mlVertex.first()};
    link->mpEndNode = new Node{0, QString(), link->mlVertex.last()};
    link->mlLane.append(new Lane);
    link->mlLane.first()->laneID = kOwnId;
    link->mlLane.first()->serialNumber = 1;
    return link;
}

void addDecisionPoint(NetContents &net, Link *link) {
    DecisionPoint &point = addInFront(net.traffic.decisionPoints, std::make_unique<DecisionPoint>());
    point.mpLink = link;
    point.mlRouting.append(new Routing);
    point.mlRouting.first()->routingID = kOwnId;
    point.mlRouting.first()->mlLinkChain = {{link}};
    point.mlFlowByInterval.append(new RoutingFlowByInterval);
    point.mlFlowByInterval.first()->endDateTime = 300;
    point.mlFlowByInterval.first()->mlFlowRatio.append(new RoutingFLowRatio);
    point.mlFlowByInterval.first()->mlFlowRatio.first()->routingID = kOwnId;
}

} // namespace

void forgetIds(NetContents &net) {
    Forgetting forgetting;
    fields(forgetting, net);
    for (const auto &link : net.links) {
        link->roadId = 0;
        for (Node *node : {link->mpStartNode, link->mpEndNode})
            node->nodeName.clear();
        for (Lane *lane : qAsConst(link->mlLane))
            lane->linkID = 0;
    }
    for (const auto &connector : net.connectors)
        connector->roadId = 0;
    for (const auto &point : net.traffic.decisionPoints) {
        for (Routing *route : qAsConst(point->mlRouting))
            route->mpDecisionPoint = nullptr;
    }
}

void putOthersInFront(NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    Link *link = net.links.front().get();
    Lane *lane = link->mlLane.first();
    addInFront(net.links, newLink());
    addInFront(net.guideArrows, std::make_unique<GuideArrow>()).laneID = lane->laneID;
    Connector &connector = addInFront(net.connectors, std::make_unique<Connector>(kOwnId, link, link));
    connector.mlLaneConnector.append(new LaneConnector(&connector, lane, lane));
    SignalGroup &group = addInFront(traffic.signalGroups, std::make_unique<SignalGroup>());
    group.signalGroupID = kOwnId;
    group.mlPhase.append(new SignalPhase);
    group.mlPhase.first()->mlColor.append(Online::ColorInterval(QStringLiteral("红"), 5));
    SignalLamp &lamp = addInFront(traffic.signalLamps, std::make_unique<SignalLamp>());
    lamp.laneID = int(lane->laneID);
    lamp.setPhase(group.mlPhase.first());
    DeparturePoint &departure = addInFront(traffic.departurePoints, std::make_unique<DeparturePoint>());
    departure.linkID = link->linkID;
    departure.mlInterval.append(DepartureInterval());
    departure.mlInterval.first().vehiCons = *traffic.compositions.front();
    addDecisionPoint(net, link);
    BusLine &line = addInFront(traffic.busLines, std::make_unique<BusLine>());
    line.mlLink.append(link);
    line.desirSpeed = 5; // its default depends on the current network's scale
    ReduceSpeedArea &area = addInFront(traffic.speedAreas, std::make_unique<ReduceSpeedArea>());
    area.roadID = link->linkID;
    area.mlSpeedInterval.append(new ReduceSpeedInterval{0, 0, 1, 2});
    area.mlSpeedVehiType.append(
        new ReduceSpeedVehiType{0, traffic.vehicleTypes.front()->vehicleTypeCode, 3, 4});
}

} // namespace differential
