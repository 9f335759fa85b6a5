#include "tools/sumo/export/ExportedDemand.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

namespace moratools {

namespace {

constexpr int kEndOfDay = 86400;
// Where nobody says the way, so many ways from one link are followed; beyond these the first one at each junction.
constexpr std::size_t kMostWays = 32;
constexpr double kLeastShare = 1e-6;
constexpr double kShortestStop = 0.1; // metres; SUMO takes none that is shorter

/// Scales the rows and columns of a table in turn until its rows add up to `rows`, and its columns as nearly as zeros let
/// them to `columns`: iterative proportional fitting (Deming and Stephan 1940). Both have one sum.
void fitProportions(std::vector<std::vector<double>> &table, const std::vector<double> &rows,
                    const std::vector<double> &columns) {
    constexpr int rounds = 100;
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t j = 0; j < columns.size(); ++j) {
            double sum = 0;
            for (const auto &row : table)
                sum += row[j];
            for (auto &row : table)
                row[j] *= sum > 0 ? columns[j] / sum : 0;
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const double sum = std::accumulate(table[i].begin(), table[i].end(), 0.0);
            for (double &cell : table[i])
                cell *= sum > 0 ? rows[i] / sum : 0;
        }
    }
}

QString join(const Names &names, const QList<const Link *> &links) {
    QStringList edges;
    for (const Link *link : links)
        edges.append(names.of(link));
    return edges.join(QLatin1Char(' '));
}

} // namespace

const Passages &ExportedDemand::passages() {
    if (!mPassages)
        mPassages.emplace(mRoads);
    return *mPassages;
}

ExportedDemand::ExportedDemand(const ExportedRoads &roads, ExportedVehicles &vehicles, Names &names,
                               LeftOut &leftOut, Manner manner, QString busType)
    : mRoads(roads),
      mVehicles(vehicles),
      mNames(names),
      mLeftOut(leftOut),
      mManner(std::move(manner)),
      mBusType(std::move(busType)) {
    for (const auto &point : roads.network().traffic.decisionPoints) {
        if (point->mpLink && !point->mlRouting.isEmpty() && !mDecisionAt.contains(point->mpLink))
            mDecisionAt.insert(point->mpLink, point.get());
    }
}

std::vector<KeptElement> ExportedDemand::elements() {
    const TrafficObjects &traffic = mRoads.network().traffic;
    std::vector<Names::Named> named;
    for (const auto &line : traffic.busLines)
        named.push_back({line.get(), line->name, line->busLineID, true});
    for (const auto &zone : traffic.accidentZones)
        named.push_back({zone.get(), zone->name, zone->accidentZoneId, true});
    mNames.give(QStringLiteral("vehicles"), QStringLiteral("flow"), named);
    for (const auto &point : traffic.departurePoints)
        addDepartures(*point);
    for (const auto &line : traffic.busLines)
        addBusLine(*line);
    for (const auto &zone : traffic.accidentZones)
        addAccident(*zone);
    for (const auto &point : traffic.decisionPoints) {
        if (!mReached.contains(point.get()))
            mLeftOut.add(QStringLiteral("decision points"),
                         QStringLiteral("decision point %1 (%2: nobody who departs comes by without a route)")
                             .arg(QString::number(point->deciPointID), point->deciPointName));
    }
    std::vector<KeptElement> elements = std::move(mRoutes);
    for (auto &flow : mFlows)
        elements.push_back(std::move(flow.second));
    return elements;
}

void ExportedDemand::addDepartures(const DeparturePoint &point) {
    const Link *link = mRoads.link(point.linkID);
    if (!link) {
        mLeftOut.add(QStringLiteral("departure points"),
                     QStringLiteral("departure point %1 (%2: its link is not exported)")
                         .arg(QString::number(point.departurePointID), point.name));
        return;
    }
    mOwed.clear();
    for (const Slice &slice : slicesOf(point, *link)) {
        const std::vector<std::vector<Way>> ways = waysFrom(*link, slice);
        for (std::size_t i = 0; i < slice.departing.size(); ++i)
            addFlows(slice, slice.departing[i], ways[i]);
    }
}

std::vector<ExportedDemand::Slice> ExportedDemand::slicesOf(const DeparturePoint &point, const Link &link) {
    std::map<long, Slice> slices; // by their ends
    long begin = 0;
    long end = 0;
    for (const DepartureInterval &interval : point.mlInterval) {
        if (interval.interval != end) {
            begin = end;
            end = interval.interval;
        }
        if (interval.vehiCount <= 0 || end <= begin)
            continue;
        const long code = interval.vehiCons.vehicleConsCode;
        if (mVehicles.compositionId(code).isEmpty()) {
            mLeftOut.add(QStringLiteral("departure intervals"),
                         QStringLiteral("until second %1 at departure point %2 (%3: it has no composition)")
                             .arg(QString::number(end), QString::number(point.departurePointID), point.name));
            continue;
        }
        // The shares of routes may change within it.
        std::set<long> bounds{begin, end};
        if (const DecisionPoint *decision = mDecisionAt.value(&link)) {
            for (const RoutingFlowByInterval *shares : decision->mlFlowByInterval) {
                if (shares->endDateTime > begin && shares->endDateTime < end)
                    bounds.insert(shares->endDateTime);
            }
        }
        int departed = 0;
        for (auto from = bounds.begin(); std::next(from) != bounds.end(); ++from) {
            const long to = *std::next(from);
            const int until =
                int(std::lround(double(interval.vehiCount) * double(to - begin) / double(end - begin)));
            Slice &slice = slices[to];
            slice.begin = *from;
            slice.end = to;
            if (until > departed)
                slice.departing.push_back({code, until - departed, mVehicles.classesIn(code)});
            departed = until;
        }
    }
    std::vector<Slice> list;
    list.reserve(slices.size());
    for (auto &slice : slices)
        list.push_back(std::move(slice.second));
    return list;
}

void ExportedDemand::addFlows(const Slice &slice, const Departing &departing, const std::vector<Way> &ways) {
    const std::vector<int> counts = countsOf(departing, ways);
    for (std::size_t i = 0; i < ways.size(); ++i) {
        if (counts[i] == 0)
            continue;
        const QString route = routeId(ways[i].links);
        const QString wanted = QStringLiteral("%1_%2").arg(route, QString::number(slice.begin));
        // All flows of a slice would depart together at its begin; multiples of the golden ratio lie evenly.
        constexpr double goldenRatio = 0.6180339887498949;
        const double step = double(slice.end - slice.begin) / counts[i];
        const double late = step * std::fmod(goldenRatio * double(++mFlowCount), 1.0);
        KeptElement flow =
            makeElement("flow", {{"id", mNames.unused(QStringLiteral("vehicles"), wanted)},
                                 {"type", mVehicles.compositionId(departing.composition)},
                                 {"route", route},
                                 {"begin", QString::number(double(slice.begin) + late, 'f', 2)},
                                 {"end", QString::number(double(slice.end) + late, 'f', 2)},
                                 {"number", QString::number(counts[i])}});
        for (const auto &attribute : mManner)
            flow.setAttribute(attribute.first, attribute.second);
        add(std::move(flow), double(slice.begin) + late);
    }
}

std::vector<int> ExportedDemand::countsOf(const Departing &departing, const std::vector<Way> &ways) {
    // What is rounded off is owed to the route in the next slice.
    std::vector<double> due;
    std::vector<int> counts;
    int left = departing.vehicles;
    for (const Way &way : ways) {
        due.push_back(way.share * departing.vehicles +
                      mOwed.value({departing.composition, join(mNames, way.links)}));
        counts.push_back(std::clamp(int(std::floor(due.back())), 0, left));
        left -= counts.back();
    }
    for (; left > 0; --left) {
        std::size_t most = 0;
        for (std::size_t i = 1; i < due.size(); ++i) {
            if (due[i] - counts[i] > due[most] - counts[most])
                most = i;
        }
        ++counts[most];
    }
    for (std::size_t i = 0; i < ways.size(); ++i)
        mOwed[{departing.composition, join(mNames, ways[i].links)}] = due[i] - counts[i];
    return counts;
}

std::vector<std::vector<ExportedDemand::Way>> ExportedDemand::waysFrom(const Link &link, const Slice &slice) {
    std::vector<std::vector<Way>> result;
    const DecisionPoint *decision = mDecisionAt.value(&link);
    if (!decision) {
        for (const Departing &departing : slice.departing)
            result.push_back(walkFrom(link, slice.begin, departing.classes));
        return result;
    }
    mReached.insert(decision);
    const std::vector<Way> ways = waysOf(*decision, slice.begin);
    std::vector<std::vector<double>> vehicles; // by composition and way; as many in all as depart
    double all = 0;
    for (const Departing &departing : slice.departing) {
        vehicles.emplace_back();
        for (const Way &way : ways)
            vehicles.back().push_back(passages().canDrive(way.links, departing.classes) ? way.share : 0);
        // Who may drive none of the routes is given them all the same.
        if (std::all_of(vehicles.back().begin(), vehicles.back().end(),
                        [](double share) { return share == 0; })) {
            for (std::size_t i = 0; i < ways.size(); ++i)
                vehicles.back()[i] = ways[i].share;
        }
        all += departing.vehicles;
    }
    std::vector<double> wanted;
    std::transform(ways.begin(), ways.end(), std::back_inserter(wanted),
                   [all](const Way &way) { return way.share * all; });
    std::vector<double> given;
    std::transform(slice.departing.begin(), slice.departing.end(), std::back_inserter(given),
                   [](const Departing &departing) { return double(departing.vehicles); });
    fitProportions(vehicles, given, wanted);
    for (const std::vector<double> &row : vehicles) {
        result.emplace_back();
        const double sum = std::accumulate(row.begin(), row.end(), 0.0);
        for (std::size_t i = 0; i < ways.size(); ++i) {
            if (row[i] > sum * kLeastShare)
                result.back().push_back({ways[i].links, row[i] / sum});
        }
    }
    return result;
}

std::vector<ExportedDemand::Way> ExportedDemand::walkFrom(const Link &link, long second,
                                                          const Passages::Classes &classes) {
    std::deque<Way> open{{{&link}, 1}};
    std::vector<Way> done;
    while (!open.empty()) {
        const Way way = open.front();
        open.pop_front();
        if (const DecisionPoint *decision = mDecisionAt.value(way.links.last())) {
            mReached.insert(decision);
            for (const Way &on : waysOf(*decision, second))
                done.push_back({way.links + on.links.mid(1), way.share * on.share});
            continue;
        }
        QList<const Link *> next;
        for (const Link *candidate : passages().next(*way.links.last(), classes)) {
            if (!way.links.contains(candidate))
                next.append(candidate);
        }
        if (open.size() + done.size() + std::size_t(next.size()) > kMostWays)
            next = next.mid(0, 1);
        for (const Link *onto : qAsConst(next))
            open.push_back({way.links + QList<const Link *>{onto}, way.share / next.size()});
        if (next.isEmpty())
            done.push_back(way);
    }
    return done;
}

std::vector<ExportedDemand::Way> ExportedDemand::waysOf(const DecisionPoint &point, long second) const {
    const auto &slices = point.mlFlowByInterval;
    const auto slice =
        std::find_if(slices.begin(), slices.end(),
                     [second](const RoutingFlowByInterval *each) { return each->endDateTime > second; });
    QHash<long, double> ratios;
    if (slice != slices.end()) {
        for (const RoutingFLowRatio *ratio : (*slice)->mlFlowRatio)
            ratios.insert(ratio->routingID, ratio->ratio);
    }
    std::vector<Way> ways;
    double sum = 0;
    for (const Routing *route : point.mlRouting) {
        Way way{{}, ratios.isEmpty() ? route->proportion : ratios.value(route->routingID)};
        for (const QList<Link *> &chain : route->mlLinkChain) {
            for (const Link *link : chain)
                way.links.append(link);
        }
        if (way.links.isEmpty() || way.links.first() != point.mpLink)
            way.links.prepend(point.mpLink);
        if (way.share > 0) {
            sum += way.share;
            ways.push_back(std::move(way));
        }
    }
    if (ways.empty())
        return {{{point.mpLink}, 1}};
    for (Way &way : ways)
        way.share /= sum;
    return ways;
}

QString ExportedDemand::routeId(const QList<const Link *> &links) {
    const QString edges = join(mNames, links);
    QString &id = mRouteIds[edges];
    if (id.isEmpty()) {
        id = mNames.unused(QStringLiteral("routes"),
                           QStringLiteral("%1_to_%2").arg(mNames.of(links.first()), mNames.of(links.last())));
        mRoutes.push_back(makeElement("route", {{"id", id}, {"edges", edges}}));
    }
    return id;
}

void ExportedDemand::addBusLine(const BusLine &line) {
    QList<const Link *> links;
    for (const Link *link : line.mlLink) {
        if (mRoads.link(link->linkID) == link)
            links.append(link);
    }
    if (links.isEmpty() || links.size() != line.mlLink.size()) {
        mLeftOut.add(QStringLiteral("bus lines"),
                     QStringLiteral("bus line %1 (%2: a link of its route is not exported)")
                         .arg(QString::number(line.busLineID), line.name));
        return;
    }
    const QString id = mNames.of(&line);
    KeptElement route = makeElement(
        "route", {{"id", mNames.unused(QStringLiteral("routes"), id)}, {"edges", join(mNames, links)}});
    QHash<long, const BusStation *> stations;
    for (const auto &station : mRoads.network().traffic.busStations)
        stations.insert(station->busStationID, station.get());
    QStringList stops;
    for (const BusStationLine *stop : line.mlStationLine) {
        stops.append(mNames.of(stations.value(stop->busStationID)));
        if (!stops.last().isEmpty())
            route.children.push_back(makeElement(
                "stop", {{"busStop", stops.last()}, {"duration", QString::number(stop->parkingTime)}}));
    }
    KeptElement flow = makeElement("flow", {{"id", id},
                                            {"line", line.name},
                                            {"type", mVehicles.busTypeId(mBusType)},
                                            {"route", *route.attribute(QStringLiteral("id"))},
                                            {"begin", QString::number(line.dischargeStartTime)},
                                            // The last departure is at the end.
                                            {"end", QString::number(line.dischargeEndTime + 1)},
                                            {"period", QString::number(std::max(1, line.dischargeFreq))}});
    for (const auto &attribute : mManner)
        flow.setAttribute(attribute.first, attribute.second);
    mRoutes.push_back(std::move(route));
    add(std::move(flow), line.dischargeStartTime);
    addPassengers(line, stops);
}

void ExportedDemand::addPassengers(const BusLine &line, const QStringList &stops) {
    for (int i = 0; i < line.mlStationLine.size(); ++i) {
        for (const PassengerArriving *arriving : line.mlStationLine[i]->mlPassengerArriving) {
            if (i + 1 >= stops.size() || stops[i].isEmpty() || stops.last().isEmpty()) {
                mLeftOut.add(QStringLiteral("arrivals of passengers"),
                             QStringLiteral("arrival %1 (line %2: nothing leads on from the stop)")
                                 .arg(QString::number(arriving->passengerArrivingID), line.name));
                continue;
            }
            const long begin = std::max(0L, arriving->startTime - 1);
            KeptElement persons = makeElement(
                "personFlow", {{"id", mNames.unused(QStringLiteral("persons"),
                                                    QStringLiteral("%1_%2").arg(mNames.of(&line), stops[i]))},
                               {"begin", QString::number(begin)},
                               {"end", QString::number(std::max(begin + 1, arriving->endTime))},
                               {"number", QString::number(arriving->passengerCount)}});
            persons.children.push_back(
                makeElement("stop", {{"busStop", stops[i]}, {"duration", QStringLiteral("0")}}));
            persons.children.push_back(
                makeElement("ride", {{"busStop", stops.last()}, {"lines", line.name}}));
            add(std::move(persons), double(begin));
        }
    }
}

void ExportedDemand::addAccident(const AccidentZone &zone) {
    const Link *link = mRoads.link(zone.roadId);
    if (!link || !zone.isOnLink()) {
        mLeftOut.add(QStringLiteral("accident zones"),
                     QStringLiteral("accident zone %1 (%2: SUMO has no places within junctions)")
                         .arg(QString::number(zone.accidentZoneId), zone.name));
        return;
    }
    for (const ZoneLane *lane : zone.mlLane) {
        const int index = mRoads.laneIndex(*link, lane->laneNumber);
        if (index < 0)
            continue;
        QString id = mNames.of(&zone);
        if (zone.mlLane.size() > 1)
            id = mNames.unused(QStringLiteral("vehicles"),
                               QStringLiteral("%1_%2").arg(id, QString::number(index)));
        const double end =
            std::min(link->length, std::max(kShortestStop, double(zone.location) + double(zone.zoneLength)));
        const double start = std::min(double(zone.location), end - kShortestStop);
        KeptElement vehicle = makeElement("vehicle", {{"id", id},
                                                      {"depart", QStringLiteral("0")},
                                                      {"departLane", QString::number(index)},
                                                      {"departPos", QString::number(start, 'f', 2)}});
        vehicle.children.push_back(makeElement("route", {{"edges", mNames.of(link)}}));
        vehicle.children.push_back(makeElement("stop", {{"lane", mRoads.laneId(*link, index)},
                                                        {"startPos", QString::number(start, 'f', 2)},
                                                        {"endPos", QString::number(end, 'f', 2)},
                                                        {"duration", QString::number(kEndOfDay)},
                                                        {"friendlyPos", QStringLiteral("true")}}));
        add(std::move(vehicle), 0);
    }
}

void ExportedDemand::add(KeptElement vehicles, double begin) {
    mFlows.emplace(begin, std::move(vehicles));
}

} // namespace moratools
