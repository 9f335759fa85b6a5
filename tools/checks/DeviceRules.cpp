#include "tools/checks/Lines.h"
#include "tools/checks/LinkGraph.h"
#include "tools/checks/ObjectRules.h"
#include "tools/checks/Placed.h"
#include "tools/checks/RoadLines.h"
#include "tools/checks/RuleGroups.h"

#include <QHash>
#include <QPair>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

// The lanes of a link differ in length, and the link's is that of one of them: in a bend by what the lanes are apart.
constexpr double kNoise = 1.0;          // metres
constexpr double kNoisePerMetre = 0.02; // of the road's length
// A device is set beside its road by hand.
constexpr double kBesideLink = 10.0; // metres

void find(Reporter &reporter, const Placed &placed, const QString &what) {
    reporter.find(Finding{0, QLatin1String(placed.table), placed.id, placed.called + QLatin1Char(' ') + what,
                          placed.mark()});
}

void checkBeyond(const Checked &checked, Reporter &reporter) {
    for (const Placed &placed : checked.made<Places>().placed()) {
        const auto road = placed.roadLength();
        if (!road || !std::isfinite(*road))
            continue;
        const double noise = kNoise + kNoisePerMetre * *road;
        if (placed.start >= -noise && placed.start <= *road + noise && placed.end <= *road + noise)
            continue;
        const QString where =
            placed.start == placed.end
                ? QStringLiteral("is at %1 m").arg(shown(placed.start))
                : QStringLiteral("goes from %1 m to %2 m").arg(shown(placed.start), shown(placed.end));
        find(reporter, placed,
             QStringLiteral("%1 of %2, which is %3 m long").arg(where, placed.calledRoad(), shown(*road)));
    }
}

using Paths = QSet<QPair<int, int>>;

/// The numbers of the lanes that a connector joins.
Paths pathsOf(const Connector &connector) {
    Paths paths;
    for (const LaneConnector *path : connector.mlLaneConnector)
        paths.insert({path->mpStartLane->serialNumber, path->mpEndLane->serialNumber});
    return paths;
}

void checkLane(const Checked &checked, Reporter &reporter) {
    QHash<const Connector *, Paths> known;
    for (const Placed &placed : checked.made<Places>().placed()) {
        if (placed.lane < 1)
            continue;
        if (placed.connector && !known.contains(placed.connector))
            known.insert(placed.connector, pathsOf(*placed.connector));
        if (placed.link && placed.lane > placed.link->mlLane.size())
            find(reporter, placed,
                 QStringLiteral("is on lane %1 of %2, which has %3")
                     .arg(QString::number(placed.lane), placed.calledRoad(),
                          QString::number(placed.link->mlLane.size())));
        else if (placed.connector && placed.toLane > 0 &&
                 !known[placed.connector].contains(qMakePair(placed.lane, placed.toLane)))
            find(reporter, placed,
                 QStringLiteral("is on the path from lane %1 to lane %2 of %3, which has none")
                     .arg(QString::number(placed.lane), QString::number(placed.toLane), placed.calledRoad()));
    }
}

void checkPlace(const Checked &checked, Reporter &reporter) {
    const RoadLines &roads = checked.made<RoadLines>();
    for (const Placed &placed : checked.made<Places>().placed()) {
        if (!placed.link || !placed.at)
            continue;
        const auto nearest = lines::nearest(roads.of(placed.link), placed.at->x(), placed.at->y());
        if (nearest && !(nearest->away <= placed.link->width() / 2 + kBesideLink))
            find(reporter, placed,
                 QStringLiteral("stands %1 m from its %2").arg(shown(nearest->away), placed.calledRoad()));
    }
}

void checkTimes(const Checked &checked, Reporter &reporter) {
    for (const Period &period : checked.made<Places>().periods()) {
        if (period.end < period.start)
            reporter.find(
                period.table, period.id,
                QStringLiteral("%1 ends at %2 s, before it begins at %3 s")
                    .arg(period.called, QString::number(period.end), QString::number(period.start)));
    }
}

void checkInterval(const Checked &checked, Reporter &reporter) {
    for (const Period &period : checked.made<Places>().periods()) {
        if (period.interval <= 0)
            reporter.find(
                period.table, period.id,
                QStringLiteral("%1 adds up over %2 s").arg(period.called, QString::number(period.interval)));
    }
}

void checkCounter(const Checked &checked, Reporter &reporter) {
    for (const auto &counter : checked.network().traffic.queueCounters) {
        if (counter->speedLowLimit > counter->speedUpLimit)
            findObject(reporter, *counter,
                       QStringLiteral("takes vehicles into the queue below %1 and out of it above %2")
                           .arg(shown(counter->speedLowLimit), shown(counter->speedUpLimit)));
    }
}

void checkPhase(const Checked &checked, Reporter &reporter) {
    const TrafficObjects &traffic = checked.network().traffic;
    QHash<long, const SignalGroup *> groups;
    for (const auto &group : traffic.signalGroups)
        groups.insert(group->signalGroupID, group.get());
    for (const auto &detector : traffic.vehicleDetectors) {
        const SignalGroup *group = groups.value(detector->signalGroupID);
        if (!group || detector->phaseNumber == 0)
            continue;
        if (std::none_of(group->mlPhase.begin(), group->mlPhase.end(), [&detector](const SignalPhase *phase) {
                return phase->serialNumber == detector->phaseNumber;
            }))
            findObject(reporter, *detector,
                       QStringLiteral("serves phase %1 of %2, which has none of that number")
                           .arg(QString::number(detector->phaseNumber), calledObject(*group)));
    }
}

void checkWay(const Checked &checked, Reporter &reporter) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    const auto partOf = [&graph](long road) {
        const Connector *connector = graph.connector(road);
        const int link = graph.placeOf(graph.link(road) ? graph.link(road)
                                       : connector      ? connector->mpStartLink
                                                        : nullptr);
        return link < 0 ? -1 : graph.parts()[std::size_t(link)];
    };
    for (const auto &detector : checked.network().traffic.travelDetectors) {
        const int start = partOf(detector->startRoadId);
        const int end = partOf(detector->teminalRoadId);
        if (start >= 0 && end >= 0 && start != end)
            findObject(
                reporter, *detector,
                QStringLiteral("measures from road %1 to road %2, and no way leads from one to the other")
                    .arg(QString::number(detector->startRoadId), QString::number(detector->teminalRoadId)));
    }
}

void checkAreaIntervals(const Checked &checked, Reporter &reporter) {
    for (const auto &area : checked.network().traffic.speedAreas) {
        for (const ReduceSpeedInterval *interval : area->mlSpeedInterval) {
            if (interval->endTime < interval->startTime)
                findObject(reporter, *area,
                           QStringLiteral("has an interval %1 that ends at %2 s, before it begins at %3 s")
                               .arg(QString::number(interval->intervalID), QString::number(interval->endTime),
                                    QString::number(interval->startTime)));
        }
    }
}

void checkAreaOverlap(const Checked &checked, Reporter &reporter) {
    for (const auto &area : checked.network().traffic.speedAreas) {
        QList<ReduceSpeedInterval *> intervals = area->mlSpeedInterval;
        std::sort(intervals.begin(), intervals.end(),
                  [](const ReduceSpeedInterval *a, const ReduceSpeedInterval *b) {
                      return a->startTime < b->startTime;
                  });
        for (int i = 0; i + 1 < intervals.size(); ++i) {
            if (intervals[i + 1]->startTime < intervals[i]->endTime)
                findObject(
                    reporter, *area,
                    QStringLiteral("has an interval %1 that begins at %2 s, before interval %3 ends at %4 s")
                        .arg(QString::number(intervals[i + 1]->intervalID),
                             QString::number(intervals[i + 1]->startTime),
                             QString::number(intervals[i]->intervalID),
                             QString::number(intervals[i]->endTime)));
        }
    }
}

void checkAreaSpeeds(const Checked &checked, Reporter &reporter) {
    for (const auto &area : checked.network().traffic.speedAreas) {
        for (const ReduceSpeedVehiType *type : area->mlSpeedVehiType) {
            if (!isAmount(type->avgSpeed) || !isAmount(type->speedSD))
                findObject(
                    reporter, *area,
                    QStringLiteral("has a speed of %1 with a standard deviation of %2 for vehicle type %3")
                        .arg(shown(type->avgSpeed), shown(type->speedSD),
                             QString::number(type->vehicleTypeCode)));
        }
    }
}

void checkAreaContents(const Checked &checked, Reporter &reporter) {
    for (const auto &area : checked.network().traffic.speedAreas) {
        if (area->mlSpeedInterval.isEmpty() || area->mlSpeedVehiType.isEmpty())
            findObject(reporter, *area,
                       area->mlSpeedInterval.isEmpty()
                           ? QStringLiteral("has no intervals, so it is never in force")
                           : QStringLiteral("has no vehicle types, so it holds for none"));
    }
}

/// Calls `use` with each accident zone and each road-work zone.
template <class Use>
void forEachZone(const Checked &checked, const Use &use) {
    for (const auto &zone : checked.network().traffic.accidentZones)
        use(*zone);
    for (const auto &zone : checked.network().traffic.roadWorkZones)
        use(*zone);
}

void checkZoneLanes(const Checked &checked, Reporter &reporter) {
    forEachZone(checked, [&reporter](const auto &zone) {
        if (zone.mlLane.isEmpty())
            findObject(reporter, zone, QStringLiteral("is on no lane, so it blocks none"));
    });
}

void checkExtents(const Checked &checked, Reporter &reporter) {
    forEachZone(checked, [&reporter](const auto &zone) {
        if (!isAmount(double(zone.zoneLength)))
            findObject(reporter, zone, QStringLiteral("is %1 m long").arg(shown(double(zone.zoneLength))));
    });
    for (const auto &area : checked.network().traffic.speedAreas) {
        if (!isAmount(area->areaLength))
            findObject(reporter, *area, QStringLiteral("is %1 m long").arg(shown(area->areaLength)));
    }
}

void checkArrows(const Checked &checked, Reporter &reporter) {
    QHash<long, const Link *> linkOf; // by lane
    for (const auto &link : checked.network().links) {
        for (const Lane *lane : link->mlLane)
            linkOf.insert(lane->laneID, link.get());
    }
    for (const auto &arrow : checked.network().guideArrows) {
        const Link *link = linkOf.value(arrow->laneID);
        if (!link || !isPositive(link->length))
            continue;
        if (!isAmount(arrow->distToTerminal) ||
            arrow->distToTerminal > link->length * (1 + kNoisePerMetre) + kNoise)
            findObject(reporter, *arrow,
                       QStringLiteral("is %1 m before the end of lane %2, which is one of %3 of %4 m")
                           .arg(shown(arrow->distToTerminal), QString::number(arrow->laneID),
                                calledObject(*link), shown(link->length)),
                       placeOf(*link));
    }
}

} // namespace

std::vector<Rule> deviceRules() {
    return {
        {"device.beyond-road", "devices", Severity::Error, Scope::Objects,
         "A detector, counter, collector, area or zone lies before the start of its road or beyond its end.",
         "Move it onto its road.", checkBeyond},
        {"device.lane-missing", "devices", Severity::Error, Scope::Objects,
         "A detector, counter, collector, area or zone is on a lane that its road does not have.",
         "Give it a lane of its road.", checkLane},
        {"device.off-road", "devices", Severity::Warning, Scope::Objects,
         "A device stands more than 10 m beside the link that it says it is on.",
         "Set its place, or give it the road that it stands on.", checkPlace},
        {"device.ends-before-begin", "devices", Severity::Error, Scope::Objects,
         "A device ends its work before it begins.", "Set its times.", checkTimes},
        {"device.interval-not-positive", "devices", Severity::Error, Scope::Objects,
         "The time over which a device adds up is not above 0.", "Set its interval.", checkInterval},
        {"queue-counter.limits-contradict", "devices", Severity::Warning, Scope::Objects,
         "A vehicle that enters a counter's queue leaves it at a lower speed.", "Set the limits.",
         checkCounter},
        {"vehicle-detector.phase-missing", "devices", Severity::Warning, Scope::Objects,
         "A vehicle detector serves a phase that its signal group does not have.",
         "Give it the number of a phase of its group.", checkPhase},
        {"travel-detector.ends-apart", "devices", Severity::Warning, Scope::Objects,
         "The two ends of a travel-time detector are in parts of the network that nothing joins.",
         "Move an end; no vehicle can pass both.", checkWay},
        {"guide-arrow.beyond-lane", "devices", Severity::Warning, Scope::Objects,
         "A guide arrow lies before the start or beyond the end of its lane.", "Move it onto its lane.",
         checkArrows},
        {"speed-area.ends-before-begin", "devices", Severity::Error, Scope::Objects,
         "An interval of a speed reduction area ends before it begins.", "Set its times.",
         checkAreaIntervals},
        {"speed-area.overlaps", "devices", Severity::Warning, Scope::Objects,
         "Two intervals of a speed reduction area overlap.",
         "Join them, or let one end before the other begins.", checkAreaOverlap},
        {"speed-area.speed-negative", "devices", Severity::Error, Scope::Objects,
         "A speed of a speed reduction area or its deviation is below 0 or no finite number.",
         "Set the speed.", checkAreaSpeeds},
        {"speed-area.without-effect", "devices", Severity::Note, Scope::Objects,
         "A speed reduction area has no intervals or no vehicle types, so it changes nothing.",
         "Add what is missing, or remove it.", checkAreaContents},
        {"zone.without-lanes", "devices", Severity::Warning, Scope::Objects,
         "An accident zone or a road-work zone has no lanes.", "Add the lanes that it blocks, or remove it.",
         checkZoneLanes},
        {"zone.length-negative", "devices", Severity::Error, Scope::Objects,
         "The length of a zone or a speed reduction area is below 0 or no finite number.", "Set its length.",
         checkExtents},
    };
}

} // namespace moratools
