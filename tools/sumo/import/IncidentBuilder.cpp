#include "tools/sumo/import/IncidentBuilder.h"

#include "tools/session/StoreSession.h"
#include "tools/sumo/kept/SumoUnits.h"
#include <QSet>

#include <algorithm>
#include <cmath>
#include <map>

namespace moratools {

namespace {

constexpr long kEndOfDay = 86400;
constexpr int kOnLink = -1; // toLaneNumber of a lane that is not on a connector

struct Period {
    long start;
    long end;
};

/// When a sign shows each speed (m/s). Times count from 1: a speed shown from second t on holds for t + 1 and
/// later.
std::map<double, std::vector<Period>> periodsBySpeed(const SumoSpeedSign &sign) {
    std::vector<SumoSpeedStep> steps = sign.steps;
    std::stable_sort(steps.begin(), steps.end(),
                     [](const SumoSpeedStep &a, const SumoSpeedStep &b) { return a.time < b.time; });
    std::map<double, std::vector<Period>> periods;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const long start = std::lround(steps[i].time) + 1;
        const long end = i + 1 < steps.size() ? std::lround(steps[i + 1].time) : std::max(start, kEndOfDay);
        if (steps[i].speed >= 0 && start <= end)
            periods[steps[i].speed].push_back({start, end});
    }
    return periods;
}

QList<long> typesOf(const SumoSpeedSign &sign, const DemandBuilder &demand, const TrafficObjects &traffic) {
    QList<long> codes;
    for (const QString &type : sign.vehicleTypes) {
        const QList<long> more = demand.typeCodes(type);
        std::copy_if(more.begin(), more.end(), std::back_inserter(codes),
                     [&codes](long code) { return !codes.contains(code); });
    }
    if (sign.vehicleTypes.isEmpty()) {
        for (const auto &type : traffic.vehicleTypes)
            codes.append(type->vehicleTypeCode);
    }
    return codes;
}

std::unique_ptr<ReduceSpeedArea> buildArea(const LanePlace &place, double speed,
                                           const std::vector<Period> &periods, const QList<long> &types,
                                           IdSource &ids) {
    auto area = std::make_unique<ReduceSpeedArea>();
    area->reduceSpeedAreaID = ids.next("ReduceSpeedArea");
    area->areaLength = place.source->length;
    area->roadID = place.link->linkID;
    area->laneNumber = place.lane->serialNumber;
    for (const Period &period : periods)
        area->mlSpeedInterval.append(new ReduceSpeedInterval{
            ids.next("ReduceSpeedInterval"), area->reduceSpeedAreaID, period.start, period.end});
    for (const long code : types)
        area->mlSpeedVehiType.append(
            new ReduceSpeedVehiType{area->reduceSpeedAreaID, code, speed * kKmhPerMs, 0});
    return area;
}

std::unique_ptr<AccidentZone> buildAccident(const Obstacle &obstacle, const NetworkMap &network,
                                            IdSource &ids) {
    const LanePlace place = network.lane(obstacle.lane);
    const double start = place.along(obstacle.startPos);
    auto zone = std::make_unique<AccidentZone>();
    zone->accidentZoneId = ids.next("AccidentZone");
    zone->name = obstacle.name;
    zone->location = float(start);
    zone->zoneLength = float(std::max(0.0, place.along(obstacle.endPos) - start));
    zone->roadId = place.link->linkID;
    zone->mlLane.append(new ZoneLane{zone->accidentZoneId, place.lane->serialNumber, kOnLink});
    return zone;
}

std::unique_ptr<RoadWorkZone> buildRoadWork(const SumoClosure &closure, const NetworkMap &network,
                                            IdSource &ids) {
    const bool wholeLink = closure.lane.isEmpty();
    const Link &link = wholeLink ? *network.link(closure.edge) : *network.lane(closure.lane).link;
    auto zone = std::make_unique<RoadWorkZone>(ids.store().net());
    zone->roadWorkZoneId = ids.next("RoadWorkZone");
    zone->name = closure.id;
    zone->zoneLength = link.length;
    zone->limitSpeed = 0;
    zone->roadID = link.linkID;
    zone->roadName = link.linkName;
    for (const Lane *lane : link.mlLane) {
        if (wholeLink || lane == network.lane(closure.lane).lane)
            zone->mlLane.append(new ZoneLane{zone->roadWorkZoneId, lane->serialNumber, kOnLink});
    }
    return zone;
}

} // namespace

void buildSpeedAreas(const SumoCompanions &companions, const DemandBuilder &demand, const NetworkMap &network,
                     IdSource &ids, TrafficObjects &into) {
    for (const SumoSpeedSign &sign : companions.speedSigns) {
        const auto periods = periodsBySpeed(sign);
        const QList<long> types = typesOf(sign, demand, into);
        for (const QString &lane : sign.lanes) {
            for (const auto &shown : periods) {
                auto area = buildArea(network.lane(lane), shown.first, shown.second, types, ids);
                area->name = sign.id;
                if (sign.lanes.size() * int(periods.size()) > 1)
                    area->name +=
                        QStringLiteral(" %1 %2 km/h").arg(lane, QString::number(shown.first * kKmhPerMs));
                into.speedAreas.push_back(std::move(area));
            }
        }
    }
}

void buildZones(const SumoCompanions &companions, const std::vector<Obstacle> &obstacles,
                const NetworkMap &network, IdSource &ids, TrafficObjects &into) {
    for (const Obstacle &obstacle : obstacles)
        into.accidentZones.push_back(buildAccident(obstacle, network, ids));
    QSet<QPair<QString, QString>> closed;
    for (const SumoClosure &closure : companions.closures) {
        if (closed.contains({closure.edge, closure.lane}))
            continue;
        closed.insert({closure.edge, closure.lane});
        into.roadWorkZones.push_back(buildRoadWork(closure, network, ids));
    }
}

} // namespace moratools
