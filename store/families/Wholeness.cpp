#include "store/families/Wholeness.h"

#include "model/NetContents.h"

#include <algorithm>
#include <optional>

namespace wholeness {

namespace {

/// What a record calls an object: by its id, or by its name as long as it has no id.
struct Named {
    const char *kind;
    std::optional<long> id;
    QString name;

    QString text() const {
        QString first = QLatin1String(kind);
        if (!id)
            return first;
        const bool byName = *id == 0 && !name.isEmpty();
        return first + QLatin1Char(' ') +
               (byName ? QLatin1Char('"') + name + QLatin1Char('"') : QString::number(*id));
    }
};

/// @param lack what the object has or has not, and what to do.
bool refuse(const Store &store, const Named &object, const QString &lack) {
    return store.fail(
        {}, object.text() + QStringLiteral(" has ") + lack + QStringLiteral(" before it is stored."),
        object.id.value_or(0));
}

/// @param where the name of the list, and what else tells which one it is.
template <class List>
bool isFull(const Store &store, const Named &object, const List &list, const QString &where) {
    const auto isNull = [](const auto &entry) { return !entry; };
    return std::none_of(list.begin(), list.end(), isNull) ||
           refuse(store, object, QStringLiteral("a null entry in %1: take the entry out").arg(where));
}

template <class List>
bool isFull(const Store &store, const Named &object, const List &list, const char *where) {
    return isFull(store, object, list, QString::fromLatin1(where));
}

bool isFull(const Store &store, const Named &owner, const RoutingFlowByInterval &interval) {
    return isFull(store, owner, interval.mlFlowRatio,
                  QStringLiteral("mlFlowRatio until %1").arg(interval.endDateTime));
}

/// The objects of a list, which are whole each for itself.
template <class T>
bool areWhole(const Store &store, const Objects<T> &objects) {
    return std::all_of(objects.begin(), objects.end(),
                       [&store](const auto &object) { return isWhole(store, *object); });
}

bool hasNoNull(const Store &store, const NetContents &contents) {
    const Named network = {"Network", store.netId(), {}};
    bool isGood = isFull(store, network, contents.links, "links") &&
                  isFull(store, network, contents.guideArrows, "guideArrows") &&
                  isFull(store, network, contents.connectors, "connectors");
    TrafficObjects::forEachKind([&](const char *, const char *name, auto list) {
        isGood = isGood && isFull(store, network, contents.traffic.*list, name);
    });
    return isGood;
}

} // namespace

bool isWhole(const Store &store, const Link &link) {
    const Named object = {"Link", link.linkID, link.linkName};
    return isFull(store, object, link.mlVertex, "mlVertex") && isFull(store, object, link.mlLane, "mlLane");
}

bool isWhole(const Store &store, const Connector &connector) {
    const Named object = {"Connector", connector.connID, connector.connName};
    if (!connector.mpStartLink || !connector.mpEndLink)
        return refuse(store, object, QStringLiteral("no link at an end: set mpStartLink and mpEndLink"));
    if (!isFull(store, object, connector.mlLaneConnector, "mlLaneConnector"))
        return false;
    const bool hasLanes =
        std::all_of(connector.mlLaneConnector.cbegin(), connector.mlLaneConnector.cend(),
                    [](const LaneConnector *lanes) { return lanes->mpStartLane && lanes->mpEndLane; });
    return hasLanes || refuse(store, object,
                              QStringLiteral("a lane connector without a lane at an end: set mpStartLane "
                                             "and mpEndLane"));
}

bool isWhole(const Store &store, const SignalGroup &group) {
    return isFull(store, {"Signal group", group.signalGroupID, group.name}, group.mlPhase, "mlPhase");
}

// A lamp without a phase could be stored where keys are not enforced, and would never be read again.
bool isWhole(const Store &store, const SignalLamp &lamp) {
    return lamp.mpPhase || refuse(store, {"Signal lamp", lamp.signalLampID, lamp.name},
                                  QStringLiteral("no phase: set it with setPhase()"));
}

bool isWhole(const Store &store, const DecisionPoint &point) {
    const Named object = {"Decision point", point.deciPointID, point.deciPointName};
    if (!point.mpLink)
        return refuse(store, object, QStringLiteral("no link: set mpLink"));
    return isFull(store, object, point.mlRouting, "mlRouting") &&
           isFull(store, object, point.mlFlowByInterval, "mlFlowByInterval") &&
           std::all_of(point.mlRouting.cbegin(), point.mlRouting.cend(),
                       [&](const Routing *route) { return isWhole(store, *route); }) &&
           std::all_of(
               point.mlFlowByInterval.cbegin(), point.mlFlowByInterval.cend(),
               [&](const RoutingFlowByInterval *interval) { return isFull(store, object, *interval); });
}

// A route that names no decision point is whole: single routes are read without theirs.
bool isWhole(const Store &store, const Routing &route) {
    const Named object = {"Route", route.routingID, route.routingName};
    return std::all_of(route.mlLinkChain.cbegin(), route.mlLinkChain.cend(), [&](const QList<Link *> &chain) {
        return isFull(store, object, chain, "mlLinkChain");
    });
}

bool isWhole(const Store &store, const RoutingFlowByInterval &interval) {
    return isFull(store, {"A flow interval", {}, {}}, interval);
}

// A station without a link could be stored where keys are not enforced, and would never be listed again.
bool isWhole(const Store &store, const BusStation &station) {
    return station.mpLink || refuse(store, {"Bus station", station.busStationID, station.name},
                                    QStringLiteral("no link: set mpLink"));
}

bool isWhole(const Store &store, const BusLine &line) {
    const Named object = {"Bus line", line.busLineID, line.name};
    return isFull(store, object, line.mlLink, "mlLink") &&
           isFull(store, object, line.mlStationLine, "mlStationLine") &&
           std::all_of(
               line.mlStationLine.cbegin(), line.mlStationLine.cend(), [&](const BusStationLine *stop) {
                   return isFull(store, object, stop->mlPassengerArriving,
                                 QStringLiteral("mlPassengerArriving of stop %1").arg(stop->stationLineID));
               });
}

bool isWhole(const Store &store, const ReduceSpeedArea &area) {
    const Named object = {"Speed reduction area", area.reduceSpeedAreaID, area.name};
    return isFull(store, object, area.mlSpeedInterval, "mlSpeedInterval") &&
           isFull(store, object, area.mlSpeedVehiType, "mlSpeedVehiType");
}

bool isWhole(const Store &store, const AccidentZone &zone) {
    return isFull(store, {"Accident zone", zone.accidentZoneId, zone.name}, zone.mlLane, "mlLane");
}

bool isWhole(const Store &store, const RoadWorkZone &zone) {
    return isFull(store, {"Road-work zone", zone.roadWorkZoneId, zone.name}, zone.mlLane, "mlLane");
}

bool isWhole(const Store &store, const NetContents &contents) {
    const TrafficObjects &traffic = contents.traffic;
    return hasNoNull(store, contents) && areWhole(store, contents.links) &&
           areWhole(store, contents.connectors) && areWhole(store, traffic.signalGroups) &&
           areWhole(store, traffic.signalLamps) && areWhole(store, traffic.decisionPoints) &&
           areWhole(store, traffic.busStations) && areWhole(store, traffic.busLines) &&
           areWhole(store, traffic.speedAreas) && areWhole(store, traffic.accidentZones) &&
           areWhole(store, traffic.roadWorkZones);
}

bool hasNoNull(const Store &store, const QList<Link *> &links) {
    return isFull(store, {"The list of links", {}, {}}, links, "it");
}

bool hasNoNull(const Store &store, const QList<Connector *> &connectors) {
    return isFull(store, {"The list of connectors", {}, {}}, connectors, "it");
}

} // namespace wholeness
