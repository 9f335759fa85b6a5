#include "tests/differential/RandomNet.h"

#include "tests/differential/FieldWalk.h"

#include <QJsonArray>

#include <algorithm>
#include <limits>
#include <numeric>

namespace differential {

/// Identifiers that no other object of the kind has, in the order of the plan.
class RandomNet::Ids {
public:
    Ids(RandomNet &net, IdOrder order, long behind = 0) : mIds(400) {
        std::iota(mIds.begin(), mIds.end(), behind + 1);
        if (order == IdOrder::Descending)
            std::reverse(mIds.begin(), mIds.end());
        else if (order == IdOrder::Shuffled)
            net.shuffle(mIds);
    }
    long next() { return mIds.at(mUsed++); }

private:
    std::vector<long> mIds;
    std::size_t mUsed = 0;
};

/// Gives every value a random one.
class RandomNet::Filler : public FieldWalk<Filler> {
public:
    explicit Filler(RandomNet &net) : mNet(net) {}

    void value(const char *, double &value) { value = mNet.number(); }
    void value(const char *, float &value) { value = float(mNet.below(2000)) / 8; }
    void value(const char *, bool &value) { value = mNet.chance(0.5); }
    void value(const char *, int &value) { value = int(whole()); }
    void value(const char *, long &value) { value = whole(); }
    void value(const char *, QString &value) { value = mNet.text(); }
    void value(const char *, StoredJson &value) { value = mNet.json(); }
    void value(const char *, QByteArray &value) {
        value.clear();
        for (int i = mNet.below(6); i > 0; --i)
            value.append(char(mNet.below(256)));
    }
    void word(const char *, QString &value) { value = mNet.word(); }

private:
    /// Identifiers, times and counts are 32 bits wide in memory.
    long whole() {
        switch (mNet.below(8)) {
        case 0:
            return 0;
        case 1:
            return std::numeric_limits<qint32>::max();
        case 2:
            return std::numeric_limits<qint32>::min();
        default:
            return mNet.below(20000) - 1000;
        }
    }

    RandomNet &mNet;
};

namespace {

/// Some of @p all, each once, at least one where there is one.
template <class T>
std::vector<T> someOf(std::vector<T> all, RandomNet &random, int atMost) {
    for (std::size_t i = all.size(); i > 1; --i)
        std::swap(all[i - 1], all[std::size_t(random.below(int(i)))]);
    all.resize(std::min<std::size_t>(all.size(), std::size_t(1 + random.below(atMost))));
    return all;
}

/// The pairs of numbers of lanes from 0 to 3.
std::vector<std::pair<int, int>> lanePairs() {
    std::vector<std::pair<int, int>> pairs;
    for (int from = 0; from < 4; ++from) {
        for (int to = -1; to < 3; ++to)
            pairs.emplace_back(from, to);
    }
    return pairs;
}

} // namespace

RandomNet::RandomNet(const NetPlan &plan) : mPlan(plan), mRandom(plan.seed) {}

int RandomNet::below(int below) {
    return int(mRandom() % unsigned(below));
}

bool RandomNet::chance(double probability) {
    return below(1000) < int(probability * 1000);
}

double RandomNet::number() {
    switch (below(8)) {
    case 0:
        return mPlan.hasNegativeZero ? -0.0 : 0;
    case 1:
        return below(1000);
    case 2:
        return 1.0 / (1 + below(1000));
    case 3:
        return -below(1000000) / 7.0;
    case 4:
        return 1e15 + below(1000);
    case 5:
        return 1e-300 * below(1000);
    default:
        return below(100000) / 100.0;
    }
}

QString RandomNet::text() {
    static const QStringList kTexts = {QString(),
                                       QStringLiteral(""),
                                       QStringLiteral("O'Brien \"quoted\""),
                                       QStringLiteral("100 %1 %2%"),
                                       QStringLiteral("路 🚦"),
                                       QStringLiteral(" blanks around "),
                                       QStringLiteral("two\nlines\tand a tab"),
                                       QStringLiteral("back\\slash"),
                                       QStringLiteral("NULL"),
                                       QStringLiteral("0012.50"),
                                       QStringLiteral("\\N")};
    return chance(0.5) ? kTexts.at(below(kTexts.size())) : QStringLiteral("text %1").arg(below(1000000));
}

QString RandomNet::word() {
    static const QStringList kWords = {
        QStringLiteral("机动车道"), QStringLiteral("自由行驶"), QStringLiteral("高速公路"),
        QStringLiteral("匝道"),     QStringLiteral("红"),       QStringLiteral("绿"),
        QStringLiteral("小客车"),   QStringLiteral("路侧式"),   QStringLiteral("标准检测器")};
    return chance(0.5) ? kWords.at(below(kWords.size())) : QStringLiteral("word %1").arg(below(1000000));
}

StoredJson RandomNet::json() {
    if (chance(0.2))
        return StoredJson();
    if (chance(0.2))
        return StoredJson(QJsonObject{{QStringLiteral("note"), text()}, {QStringLiteral("n"), number()}});
    QJsonArray points;
    for (int i = below(5); i > 0; --i)
        points.append(QJsonObject{{QStringLiteral("x"), number()},
                                  {QStringLiteral("y"), number()},
                                  {QStringLiteral("z"), number()}});
    return StoredJson(QJsonObject{{QStringLiteral("data"), points}});
}

Link *RandomNet::anyLink(const NetContents &net) {
    return net.links.at(std::size_t(below(int(net.links.size())))).get();
}

Lane *RandomNet::anyLane(const NetContents &net) {
    Link *link = anyLink(net);
    while (link->mlLane.isEmpty())
        link = anyLink(net);
    return link->mlLane.at(below(link->mlLane.size()));
}

long RandomNet::anyRoad(const NetContents &net) {
    if (!net.connectors.empty() && chance(0.3))
        return net.connectors.at(std::size_t(below(int(net.connectors.size()))))->connID;
    return anyLink(net)->linkID;
}

long RandomNet::anyTypeCode(const NetContents &net) {
    const auto &types = net.traffic.vehicleTypes;
    return types.at(std::size_t(below(int(types.size()))))->vehicleTypeCode;
}

void RandomNet::makeCatalogue(NetContents &net) {
    Ids codes(*this, mPlan.owners);
    std::vector<long> all;
    for (int i = 2 + below(4); i > 0; --i) {
        net.traffic.vehicleTypes.push_back(std::make_unique<VehicleType>());
        net.traffic.vehicleTypes.back()->vehicleTypeCode = codes.next();
        all.push_back(net.traffic.vehicleTypes.back()->vehicleTypeCode);
    }
    Ids compositionCodes(*this, mPlan.owners);
    for (int i = 1 + below(3); i > 0; --i) {
        auto composition = std::make_unique<VehicleComposition>();
        composition->vehicleConsCode = compositionCodes.next();
        for (const long code : someOf(all, *this, 4))
            composition->mlDetail.append({composition->vehicleConsCode, code, 0});
        net.traffic.compositions.push_back(std::move(composition));
    }
    // Those that every network starts with, and further ones.
    for (long id = 1; id <= 10 + below(3); ++id)
        net.linkTypes.append({id, QString(), 0, 0, 0, 0});
}

std::unique_ptr<Link> RandomNet::makeLink(Ids &vertexIds, Ids &nodeIds, Ids &laneIds) {
    auto link = std::make_unique<Link>();
    for (int i = 2 + below(3); i > 0; --i)
        link->mlVertex.append(new Vertex{vertexIds.next(), 0, 0, 0});
    link->mpStartNode = new Node{nodeIds.next(), QStringLiteral("node ") + text(), link->mlVertex.first()};
    link->mpEndNode = new Node{nodeIds.next(), QStringLiteral("node ") + text(), link->mlVertex.last()};
    for (int number = 1 + below(4); number > 0; --number) {
        auto *lane = new Lane;
        lane->laneID = laneIds.next();
        lane->serialNumber = number;
        link->mlLane.append(lane);
    }
    shuffle(link->mlLane);
    return link;
}

void RandomNet::makeLinks(NetContents &net) {
    Ids linkIds(*this, mPlan.owners);
    Ids vertexIds(*this, mPlan.children);
    Ids nodeIds(*this, mPlan.children);
    Ids laneIds(*this, mPlan.children);
    Ids arrowIds(*this, mPlan.owners);
    std::vector<long> types;
    for (const auto &type : net.traffic.vehicleTypes)
        types.push_back(type->vehicleTypeCode);
    for (int i = 2 + below(4); i > 0; --i) {
        net.links.push_back(makeLink(vertexIds, nodeIds, laneIds));
        Link &link = *net.links.back();
        link.linkID = linkIds.next();
        link.roadId = link.linkID + below(2) * 1000;
        for (Lane *lane : qAsConst(link.mlLane)) {
            lane->linkID = link.linkID;
            if (chance(0.3)) {
                for (const long code : someOf(types, *this, 3))
                    lane->mlLimitVehicle.append({code, QString()});
            }
        }
    }
    for (int i = below(4); i > 0; --i) {
        net.guideArrows.push_back(std::make_unique<GuideArrow>());
        net.guideArrows.back()->guideArrowID = arrowIds.next();
        net.guideArrows.back()->laneID = anyLane(net)->laneID;
    }
}

void RandomNet::makeConnectors(NetContents &net) {
    Ids ids(*this, mPlan.owners, mPlan.firstSharedId);
    std::vector<long> types;
    for (const auto &type : net.traffic.vehicleTypes)
        types.push_back(type->vehicleTypeCode);
    for (int i = below(5); i > 0; --i) {
        auto connector = std::make_unique<Connector>(ids.next(), anyLink(net), anyLink(net));
        std::vector<std::pair<Lane *, Lane *>> pairs;
        for (Lane *from : qAsConst(connector->mpStartLink->mlLane)) {
            for (Lane *to : qAsConst(connector->mpEndLink->mlLane))
                pairs.emplace_back(from, to);
        }
        std::vector<std::unique_ptr<LaneConnector>> lanes;
        for (const auto &[from, to] : someOf(pairs, *this, 5))
            lanes.push_back(std::make_unique<LaneConnector>(connector.get(), from, to));
        // Their ids count up as they are made.
        if (mPlan.children == IdOrder::Descending)
            std::reverse(lanes.begin(), lanes.end());
        else if (mPlan.children == IdOrder::Shuffled)
            shuffle(lanes);
        for (auto &pair : lanes)
            connector->mlLaneConnector.append(pair.release());
        if (chance(0.4)) {
            for (const long code : someOf(types, *this, 3))
                connector->mlLimitVehicle.append(code);
        }
        net.connectors.push_back(std::move(connector));
    }
}

void RandomNet::makeSignals(NetContents &net) {
    Ids groupIds(*this, mPlan.owners);
    Ids phaseIds(*this, mPlan.children);
    Ids lampIds(*this, mPlan.owners);
    std::vector<SignalPhase *> phases;
    for (int i = below(4); i > 0; --i) {
        auto group = std::make_unique<SignalGroup>();
        group->signalGroupID = groupIds.next();
        for (int j = below(5); j > 0; --j) {
            auto *phase = new SignalPhase;
            phase->signalPhaseID = phaseIds.next();
            for (int k = below(4); k > 0; --k)
                phase->mlColor.append(Online::ColorInterval(QString(), 0));
            group->mlPhase.append(phase);
            phases.push_back(phase);
        }
        net.traffic.signalGroups.push_back(std::move(group));
    }
    for (int i = phases.empty() ? 0 : below(5); i > 0; --i) {
        auto lamp = std::make_unique<SignalLamp>();
        lamp->signalLampID = lampIds.next();
        lamp->setPhase(phases.at(std::size_t(below(int(phases.size())))));
        lamp->laneID = int(anyLane(net)->laneID);
        lamp->toLaneID = int(anyLane(net)->laneID);
        net.traffic.signalLamps.push_back(std::move(lamp));
    }
}

void RandomNet::makeDemand(NetContents &net) {
    Ids pointIds(*this, mPlan.owners);
    Ids intervalIds(*this, mPlan.children);
    for (int i = below(4); i > 0; --i) {
        auto point = std::make_unique<DeparturePoint>();
        point->departurePointID = pointIds.next();
        point->linkID = anyLink(net)->linkID;
        for (int j = below(4); j > 0; --j) {
            DepartureInterval interval;
            interval.departureIntervalD = intervalIds.next();
            const auto &compositions = net.traffic.compositions;
            interval.vehiCons.vehicleConsCode =
                compositions.at(std::size_t(below(int(compositions.size()))))->vehicleConsCode;
            point->mlInterval.append(interval);
        }
        net.traffic.departurePoints.push_back(std::move(point));
    }
}

void RandomNet::makeRoutes(NetContents &net) {
    Ids pointIds(*this, mPlan.owners);
    Ids routeIds(*this, mPlan.children);
    Ids ratioIds(*this, mPlan.children);
    std::vector<Link *> links;
    for (const auto &link : net.links)
        links.push_back(link.get());
    for (int i = below(4); i > 0; --i) {
        auto point = std::make_unique<DecisionPoint>();
        point->deciPointID = pointIds.next();
        point->mpLink = anyLink(net);
        for (int j = below(4); j > 0; --j) {
            auto *route = new Routing;
            route->routingID = routeIds.next();
            route->mpDecisionPoint = point.get();
            for (int k = below(3); k > 0; --k) {
                route->mlLinkChain.append(QList<Link *>());
                for (Link *link : someOf(links, *this, 4))
                    route->mlLinkChain.last().append(link);
            }
            point->mlRouting.append(route);
        }
        long start = 1;
        for (int j = point->mlRouting.isEmpty() ? 0 : below(4); j > 0; --j) {
            auto *interval = new RoutingFlowByInterval;
            interval->endDateTime = start + 100 + below(500);
            std::vector<Routing *> routes(point->mlRouting.cbegin(), point->mlRouting.cend());
            for (const Routing *route : someOf(routes, *this, 3)) {
                auto *ratio = new RoutingFLowRatio;
                ratio->routingFLowRatioID = ratioIds.next();
                ratio->routingID = route->routingID;
                ratio->startDateTime = chance(0.2) ? 7 : start;
                ratio->endDateTime = interval->endDateTime;
                interval->mlFlowRatio.append(ratio);
            }
            start = interval->endDateTime + 1;
            point->mlFlowByInterval.append(interval);
        }
        for (const Routing *route : qAsConst(point->mlRouting)) {
            if (net.connectors.empty() || chance(0.6))
                continue;
            const Connector &connector = *net.connectors.at(std::size_t(below(int(net.connectors.size()))));
            std::vector<LaneConnector *> pairs(connector.mlLaneConnector.cbegin(),
                                               connector.mlLaneConnector.cend());
            for (const LaneConnector *pair : someOf(pairs, *this, 3))
                net.traffic.routeLanes.append({route->routingID,
                                               connector.connID,
                                               {pair->mpStartLane->laneID, pair->mpEndLane->laneID}});
        }
        net.traffic.decisionPoints.push_back(std::move(point));
    }
}

void RandomNet::makeDevices(NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    Ids detectorIds(*this, mPlan.owners);
    std::vector<long> types;
    for (const auto &type : traffic.vehicleTypes)
        types.push_back(type->vehicleTypeCode);
    for (int i = traffic.signalGroups.empty() ? 0 : below(4); i > 0; --i) {
        auto detector = std::make_unique<VehicleDetector>();
        detector->vehicleDetectorId = detectorIds.next();
        detector->signalGroupID =
            traffic.signalGroups.at(std::size_t(below(int(traffic.signalGroups.size()))))->signalGroupID;
        detector->roadId = anyRoad(net);
        if (chance(0.7)) {
            for (const long code : someOf(types, *this, 4))
                detector->mlVehiTypeCode.append(code);
        }
        traffic.vehicleDetectors.push_back(std::move(detector));
    }
    Ids counterIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        traffic.queueCounters.push_back(std::make_unique<VehicleQueueCounter>());
        traffic.queueCounters.back()->queueCounterID = counterIds.next();
        traffic.queueCounters.back()->roadID = anyRoad(net);
    }
    Ids travelIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        traffic.travelDetectors.push_back(std::make_unique<VehicleTravelDetector>());
        traffic.travelDetectors.back()->detectorId = travelIds.next();
        traffic.travelDetectors.back()->startRoadId = anyRoad(net);
        traffic.travelDetectors.back()->teminalRoadId = anyRoad(net);
    }
    Ids collectorIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        traffic.collectors.push_back(std::make_unique<VehicleDrivInfoCollector>());
        traffic.collectors.back()->collecterID = collectorIds.next();
        traffic.collectors.back()->roadID = anyRoad(net);
    }
}

void RandomNet::makeTransit(NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    Ids stationIds(*this, mPlan.owners);
    for (int i = below(6); i > 0; --i) {
        auto station = std::make_unique<BusStation>(anyLink(net));
        station->busStationID = stationIds.next();
        traffic.busStations.push_back(std::move(station));
    }
    Ids lineIds(*this, mPlan.owners);
    Ids stopIds(*this, mPlan.children);
    Ids arrivalIds(*this, mPlan.children);
    for (int i = below(4); i > 0; --i) {
        auto line = std::make_unique<BusLine>();
        line->busLineID = lineIds.next();
        for (int j = 1 + below(4); j > 0; --j)
            line->mlLink.append(anyLink(net));
        for (int j = traffic.busStations.empty() ? 0 : below(7); j > 0; --j) {
            const BusStation &station =
                *traffic.busStations.at(std::size_t(below(int(traffic.busStations.size()))));
            if (!line->mlLink.contains(station.mpLink))
                continue;
            auto *stop = new BusStationLine;
            stop->stationLineID = stopIds.next();
            stop->busStationID = station.busStationID;
            stop->busLineID = line->busLineID;
            for (int k = below(4); k > 0; --k)
                stop->mlPassengerArriving.append(new PassengerArriving(arrivalIds.next(), 0, 0, 0));
            line->mlStationLine.append(stop);
        }
        traffic.busLines.push_back(std::move(line));
    }
}

void RandomNet::makeZones(NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    Ids accidentIds(*this, mPlan.owners, mPlan.firstSharedId);
    for (int i = below(3); i > 0; --i) {
        auto zone = std::make_unique<AccidentZone>();
        zone->accidentZoneId = accidentIds.next();
        zone->roadId = anyRoad(net);
        for (const auto &[from, to] : someOf(lanePairs(), *this, 6))
            zone->mlLane.append(new ZoneLane{zone->accidentZoneId, from, to});
        traffic.accidentZones.push_back(std::move(zone));
    }
    Ids workIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        auto zone = std::make_unique<RoadWorkZone>();
        zone->roadWorkZoneId = workIds.next();
        zone->roadID = anyRoad(net);
        for (const auto &[from, to] : someOf(lanePairs(), *this, 6))
            zone->mlLane.append(new ZoneLane{zone->roadWorkZoneId, from, to});
        traffic.roadWorkZones.push_back(std::move(zone));
    }
    Ids areaIds(*this, mPlan.owners);
    Ids intervalIds(*this, mPlan.children);
    std::vector<long> types;
    for (const auto &type : traffic.vehicleTypes)
        types.push_back(type->vehicleTypeCode);
    for (int i = below(4); i > 0; --i) {
        auto area = std::make_unique<ReduceSpeedArea>();
        area->reduceSpeedAreaID = areaIds.next();
        area->roadID = anyRoad(net);
        for (int j = below(5); j > 0; --j)
            area->mlSpeedInterval.append(
                new ReduceSpeedInterval{intervalIds.next(), area->reduceSpeedAreaID, 0, 0});
        for (const long code : someOf(types, *this, 5))
            area->mlSpeedVehiType.append(new ReduceSpeedVehiType{area->reduceSpeedAreaID, code, 0, 0});
        traffic.speedAreas.push_back(std::move(area));
    }
}

void RandomNet::makeSettings(NetContents &net) {
    NetSettings &settings = net.settings;
    for (const long id : {1L, 2L}) {
        settings.carFollowing.append(DriveFollowedModelParam());
        settings.carFollowing.last().modelParamID = id;
    }
    for (int i = 1; i <= 1 + below(4); ++i) {
        settings.laneChanging.append(ChangeLaneModelParam());
        settings.laneChanging.last().modelParamID = i;
    }
    settings.simulation.emplace();
    settings.simulation->mAcceMultiples = 1 + below(20);
    settings.scene.emplace();
    const QDate day = QDate(2020, 1, 1).addDays(below(2000));
    settings.scene->saveDate =
        mPlan.severalNets ? QDateTime(day, QTime(0, 0)) : QDateTime(day, QTime(below(24), below(60), 7));
}

namespace {

/// Where the centre line has a point for each vertex, a read takes the heights from it.
void settleHeights(Link &link) {
    const QJsonArray points = link.centerLinePointsJson.value(QStringLiteral("data")).toArray();
    if (points.size() != link.mlVertex.size())
        return;
    for (int i = 0; i < points.size(); ++i)
        link.mlVertex.at(i)->z = points.at(i).toObject().value(QStringLiteral("z")).toDouble();
}

void settleLanes(Link &link, const NetContents &net) {
    for (Lane *lane : qAsConst(link.mlLane)) {
        if (lane->expectTravelDirection.isEmpty())
            lane->expectTravelDirection = QStringLiteral("直行");
        for (auto &restriction : lane->mlLimitVehicle) {
            for (const auto &type : net.traffic.vehicleTypes) {
                if (type->vehicleTypeCode == restriction.first)
                    restriction.second = type->vehicleTypeName;
            }
        }
    }
}

} // namespace

std::unique_ptr<NetContents> RandomNet::make() {
    auto net = std::make_unique<NetContents>();
    makeCatalogue(*net);
    makeLinks(*net);
    makeConnectors(*net);
    makeSignals(*net);
    makeDemand(*net);
    makeRoutes(*net);
    makeDevices(*net);
    makeTransit(*net);
    makeZones(*net);
    makeSettings(*net);
    Filler filler(*this);
    fields(filler, *net);
    for (const auto &link : net->links) {
        settleHeights(*link);
        settleLanes(*link, *net);
    }
    net->record.name = text();
    net->record.sourceUrl = text();
    net->record.sourceType = text();
    net->record.backgroundUrl = text();
    net->record.caption = text();
    net->record.otherAttrsJson = json().object();
    net->record.centerX = number();
    net->record.centerY = number();
    net->record.isDefault = chance(0.5);
    return net;
}

} // namespace differential
