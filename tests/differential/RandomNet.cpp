#include "tests/differential/RandomNet.h"

#include "tests/differential/FieldWalk.h"
#include "tests/differential/RandomParts.h"

#include <QJsonArray>

#include <algorithm>
#include <limits>

namespace differential {

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

namespace {

/// Where the centre line has a point for each vertex, a read takes the heights from it.
void settleHeights(Link &link) {
    const QJsonArray points = link.centerLinePointsJson.value(QStringLiteral("data")).toArray();
    if (points.size() != link.mlVertex.size())
        return;
    for (int i = 0; i < points.size(); ++i)
        link.mlVertex.at(i)->z = points.at(i).toObject().value(QStringLiteral("z")).toDouble();
}

void settleLanes(NetContents &net) {
    for (const auto &link : net.links) {
        for (Lane *lane : qAsConst(link->mlLane)) {
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
}

} // namespace

template <class T>
void RandomNet::refill(T &object) {
    Filler filler(*this);
    fields(filler, object);
    if constexpr (std::is_same_v<T, Link>)
        settleHeights(object);
}
template void RandomNet::refill(VehicleType &);
template void RandomNet::refill(VehicleComposition &);
template void RandomNet::refill(Link &);
template void RandomNet::refill(GuideArrow &);
template void RandomNet::refill(Connector &);
template void RandomNet::refill(SignalGroup &);
template void RandomNet::refill(SignalLamp &);
template void RandomNet::refill(DeparturePoint &);
template void RandomNet::refill(DecisionPoint &);
template void RandomNet::refill(VehicleDetector &);
template void RandomNet::refill(VehicleQueueCounter &);
template void RandomNet::refill(VehicleTravelDetector &);
template void RandomNet::refill(VehicleDrivInfoCollector &);
template void RandomNet::refill(BusStation &);
template void RandomNet::refill(BusLine &);
template void RandomNet::refill(ReduceSpeedArea &);
template void RandomNet::refill(AccidentZone &);
template void RandomNet::refill(RoadWorkZone &);

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
    for (const auto &link : net->links)
        settleHeights(*link);
    settleLanes(*net);
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
