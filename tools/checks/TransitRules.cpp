#include "tools/checks/Admission.h"
#include "tools/checks/Lines.h"
#include "tools/checks/LinkGraph.h"
#include "tools/checks/ObjectRules.h"
#include "tools/checks/RoadLines.h"
#include "tools/checks/RuleGroups.h"

#include <QSet>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

// A stop is set beside its road by hand: at the kerb, or in a bay.
constexpr double kBesideLink = 10.0; // metres
// Positions are rounded to the centimetre, more than once.
constexpr double kNoise = 0.1; // metres
// Two stops at one place, of which either may come first.
constexpr double kSameStop = 1.0; // metres
// The length of a line is the sum of those of its roads, with or without the junctions between.
constexpr double kSameLength = 0.2;

void findStop(Reporter &reporter, const BusStationLine &stop, const BusLine &line, const QString &what) {
    reporter.find("BusStationLine", stop.stationLineID,
                  QStringLiteral("%1 of %2 %3")
                      .arg(called(QStringLiteral("stop"), stop.stationLineID), calledObject(line), what));
}

/// Calls `use` with each stop and its line.
template <class Use>
void forEachStop(const Checked &checked, const Use &use) {
    for (const auto &line : checked.network().traffic.busLines) {
        for (const BusStationLine *stop : line->mlStationLine)
            use(*stop, *line);
    }
}

std::optional<QPointF> stationPlace(const BusStation &station) {
    return std::isfinite(station.x) && std::isfinite(station.y)
               ? std::optional<QPointF>({station.x, station.y})
               : std::nullopt;
}

void checkLane(const Checked &checked, Reporter &reporter) {
    for (const auto &station : checked.network().traffic.busStations) {
        if (station->mpLink &&
            (station->laneNumber < 0 || station->laneNumber > station->mpLink->mlLane.size()))
            findObject(reporter, *station,
                       QStringLiteral("is on lane %1 of %2, which has %3")
                           .arg(QString::number(station->laneNumber), calledObject(*station->mpLink),
                                QString::number(station->mpLink->mlLane.size())),
                       stationPlace(*station));
    }
}

void checkStationLength(const Checked &checked, Reporter &reporter) {
    for (const auto &station : checked.network().traffic.busStations) {
        if (!isAmount(station->length) ||
            (station->mpLink && station->length > station->mpLink->length + kNoise))
            findObject(reporter, *station,
                       QStringLiteral("is %1 m long, and its link is %2 m long")
                           .arg(shown(station->length), shown(station->mpLink ? station->mpLink->length : 0)),
                       stationPlace(*station));
    }
}

void checkStationPlace(const Checked &checked, Reporter &reporter) {
    const RoadLines &roads = checked.made<RoadLines>();
    for (const auto &station : checked.network().traffic.busStations) {
        const auto nearest = lines::nearest(roads.of(station->mpLink), station->x, station->y);
        if (nearest && !(nearest->away <= station->mpLink->width() / 2 + kBesideLink))
            findObject(reporter, *station,
                       QStringLiteral("stands %1 m from its %2")
                           .arg(shown(nearest->away), calledObject(*station->mpLink)),
                       stationPlace(*station));
    }
}

void checkServed(const Checked &checked, Reporter &reporter) {
    QSet<long> served;
    forEachStop(checked,
                [&](const BusStationLine &stop, const BusLine &) { served.insert(stop.busStationID); });
    for (const auto &station : checked.network().traffic.busStations) {
        if (!served.contains(station->busStationID))
            findObject(reporter, *station, QStringLiteral("is a stop of no line"), stationPlace(*station));
    }
}

void checkChain(const Checked &checked, Reporter &reporter) {
    const LinkGraph &graph = checked.made<LinkGraph>();
    for (const auto &line : checked.network().traffic.busLines) {
        for (int i = 0; i + 1 < line->mlLink.size(); ++i) {
            if (!graph.isJoined(line->mlLink[i], line->mlLink[i + 1]))
                findObject(reporter, *line,
                           QStringLiteral("goes from %1 to %2, and no connector joins them")
                               .arg(calledObject(*line->mlLink[i]), calledObject(*line->mlLink[i + 1])),
                           placeOf(*line->mlLink[i]));
        }
    }
}

void checkRoads(const Checked &checked, Reporter &reporter) {
    const Admission &admission = checked.made<Admission>();
    VehicleType anyBus; // of a store whose catalogue has none
    anyBus.vehicleTypeCode = -1;
    anyBus.width = 2.5;
    const VehicleType &bus = admission.bus() ? *admission.bus() : anyBus;
    for (const auto &line : checked.network().traffic.busLines) {
        const auto closed = std::find_if(line->mlLink.begin(), line->mlLink.end(),
                                         [&](const Link *link) { return admission.isClosed(*link, bus); });
        if (closed != line->mlLink.end())
            findObject(reporter, *line,
                       QStringLiteral("goes over %1, all lanes of which are closed to buses")
                           .arg(calledObject(**closed)),
                       placeOf(**closed));
    }
}

void checkLength(const Checked &checked, Reporter &reporter) {
    for (const auto &line : checked.network().traffic.busLines) {
        double roads = 0;
        for (const Link *link : line->mlLink)
            roads += link->length;
        if (std::isfinite(roads) && line->length != 0 &&
            !(std::abs(line->length - roads) <= kSameLength * roads + kNoise))
            findObject(reporter, *line,
                       QStringLiteral("has a length of %1 m, and its roads are %2 m long")
                           .arg(shown(line->length), shown(roads)));
    }
}

void checkTimetable(const Checked &checked, Reporter &reporter) {
    for (const auto &line : checked.network().traffic.busLines) {
        if (line->dischargeFreq <= 0)
            findObject(
                reporter, *line,
                QStringLiteral("has %1 s between departures").arg(QString::number(line->dischargeFreq)));
        else if (line->dischargeEndTime < line->dischargeStartTime)
            findObject(
                reporter, *line,
                QStringLiteral("has its last departure at %1 s, before the first at %2 s")
                    .arg(QString::number(line->dischargeEndTime), QString::number(line->dischargeStartTime)));
    }
}

void checkSpeed(const Checked &checked, Reporter &reporter) {
    for (const auto &line : checked.network().traffic.busLines) {
        if (!isPositive(line->desirSpeed) || !isAmount(line->speedSD))
            findObject(reporter, *line,
                       QStringLiteral("has a desired speed of %1 and a standard deviation of %2")
                           .arg(shown(line->desirSpeed), shown(line->speedSD)));
    }
}

void checkStops(const Checked &checked, Reporter &reporter) {
    for (const auto &line : checked.network().traffic.busLines) {
        if (line->mlStationLine.isEmpty())
            findObject(reporter, *line, QStringLiteral("has no stops"));
    }
}

/// A load leaves such stops out, so that the rows are asked.
void checkStopsOnLine(const Checked &checked, Reporter &reporter) {
    const StoreReader &rows = checked.rows();
    for (const char *table : {"BusStationLine", "BusStation", "BusLineRoad"}) {
        if (!rows.table(QLatin1String(table)))
            return;
    }
    const bool several = rows.hasSeveralNetworks();
    const QString net = QString::number(checked.net().id);
    QSqlQuery stops = rows.run(
        QStringLiteral(
            "select s.stationLineID, s.busLineID, s.busStationID from BusStationLine s where %1 exists "
            "(select 1 from BusStation b where %2 b.busStationID = s.busStationID) and not exists "
            "(select 1 from BusStation b join BusLineRoad r on r.roadID = b.linkID where %3 "
            "b.busStationID = s.busStationID and r.busLineID = s.busLineID) order by s.stationLineID")
            .arg(several ? QStringLiteral("s.NetId = %1 and").arg(net) : QString(),
                 several ? QStringLiteral("b.NetId = %1 and").arg(net) : QString(),
                 several ? QStringLiteral("b.NetId = %1 and r.NetId = %1 and").arg(net) : QString()));
    while (stops.next()) {
        const qint64 id = stops.value(0).toLongLong();
        reporter.find(
            "BusStationLine", id,
            QStringLiteral("%1 of bus line %2 is at bus station %3, which stands on no road of that line")
                .arg(called(QStringLiteral("stop"), id), stops.value(1).toString(),
                     stops.value(2).toString()));
    }
    rows.check(stops);
}

void checkOrder(const Checked &checked, Reporter &reporter) {
    const RoadLines &roads = checked.made<RoadLines>();
    QHash<long, double> along; // by station
    for (const auto &station : checked.network().traffic.busStations) {
        const auto nearest = lines::nearest(roads.of(station->mpLink), station->x, station->y);
        if (nearest)
            along.insert(station->busStationID, nearest->along);
    }
    for (const auto &line : checked.network().traffic.busLines) {
        for (int i = 0; i + 1 < line->mlStationLine.size(); ++i) {
            const BusStationLine &stop = *line->mlStationLine[i];
            const BusStationLine &next = *line->mlStationLine[i + 1];
            if (stop.linkID != next.linkID || !along.contains(stop.busStationID) ||
                !along.contains(next.busStationID))
                continue;
            const double back = along[stop.busStationID] - along[next.busStationID];
            if (back > kSameStop && stop.stationLineID != next.stationLineID)
                findStop(
                    reporter, next, *line,
                    QStringLiteral("comes after stop %1 and lies %2 m before it on link %3")
                        .arg(QString::number(stop.stationLineID), shown(back), QString::number(stop.linkID)));
        }
    }
}

void checkStopFigures(const Checked &checked, Reporter &reporter) {
    forEachStop(checked, [&](const BusStationLine &stop, const BusLine &line) {
        if (stop.parkingTime < 0 || !isAmount(stop.getOnTimePerson) || !isAmount(stop.getOutTimePerson))
            findStop(reporter, stop, line,
                     QStringLiteral("has times of %1 s to stay, %2 s to board and %3 s to alight")
                         .arg(QString::number(stop.parkingTime), shown(stop.getOnTimePerson),
                              shown(stop.getOutTimePerson)));
        else if (!isAmount(stop.leavingPercent) || stop.leavingPercent > 100)
            findStop(
                reporter, stop, line,
                QStringLiteral("lets %1 percent of the passengers alight").arg(shown(stop.leavingPercent)));
    });
}

void checkArrivals(const Checked &checked, Reporter &reporter) {
    forEachStop(checked, [&](const BusStationLine &stop, const BusLine &line) {
        for (const PassengerArriving *arriving : stop.mlPassengerArriving) {
            if (arriving->endTime < arriving->startTime || arriving->passengerCount < 0)
                findStop(reporter, stop, line,
                         QStringLiteral("has %1 passengers who arrive from %2 s to %3 s")
                             .arg(QString::number(arriving->passengerCount),
                                  QString::number(arriving->startTime), QString::number(arriving->endTime)));
        }
    });
}

} // namespace

std::vector<Rule> transitRules() {
    return {
        {"bus-station.lane-missing", "transit", Severity::Error, Scope::Objects,
         "A bus station is on a lane that its link does not have.", "Give it a lane of its link.", checkLane},
        {"bus-station.length-impossible", "transit", Severity::Warning, Scope::Objects,
         "A bus station is longer than its link, or has a length below 0.", "Set its length.",
         checkStationLength},
        {"bus-station.off-link", "transit", Severity::Warning, Scope::Objects,
         "A bus station stands more than 10 m beside its link.",
         "Move it to its link, or give it the link that it stands on.", checkStationPlace},
        {"bus-station.not-served", "transit", Severity::Note, Scope::Objects,
         "No line stops at a bus station.", "Nothing where lines are to come; else add the stop.",
         checkServed},
        {"bus-line.broken", "transit", Severity::Error, Scope::Objects,
         "A bus line goes from a road to one that no connector joins to it.",
         "Add the connector, or the roads between.", checkChain},
        {"bus-line.closed-road", "transit", Severity::Warning, Scope::Objects,
         "A bus line goes over a link all lanes of which are closed to buses.",
         "Take another way, or open a lane: its kind and its restrictions say who may use it.", checkRoads},
        {"bus-line.length-off", "transit", Severity::Warning, Scope::Objects,
         "The length of a bus line is not that of its roads.",
         "Set the length to the sum of those of its roads.", checkLength},
        {"bus-line.timetable-impossible", "transit", Severity::Error, Scope::Objects,
         "No time passes between the departures of a bus line, or the last one comes before the first.",
         "Set the timetable.", checkTimetable},
        {"bus-line.speed-impossible", "transit", Severity::Error, Scope::Objects,
         "The desired speed of a bus line is not above 0, or its deviation is below 0.", "Set the speeds.",
         checkSpeed},
        {"bus-line.without-stops", "transit", Severity::Note, Scope::Objects, "A bus line stops nowhere.",
         "Add its stops.", checkStops},
        {"stop.off-line", "transit", Severity::Error, Scope::Objects,
         "A stop of a line is at a station on none of its roads; a load leaves it out.",
         "Lead the line past the station, or remove the stop.", checkStopsOnLine},
        {"stop.out-of-order", "transit", Severity::Warning, Scope::Objects,
         "Of two stops of a line on one link, the one farther along the link comes first.",
         "Write the stops in the order in which the line reaches them.", checkOrder},
        {"stop.figures-impossible", "transit", Severity::Error, Scope::Objects,
         "A time of a stop is below 0, or the share of those who alight is not between 0 and 100 percent.",
         "Set the figure.", checkStopFigures},
        {"stop.arrivals-impossible", "transit", Severity::Error, Scope::Objects,
         "Passengers arrive at a stop until a time before they begin, or they are fewer than none.",
         "Set the times and the number.", checkArrivals},
    };
}

} // namespace moratools
