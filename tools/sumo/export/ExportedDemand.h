#pragma once

#include "tools/sumo/export/ExportedDevices.h"
#include "tools/sumo/export/Passages.h"

#include <QHash>
#include <QPair>

#include <map>

namespace moratools {

/// Who drives, as SUMO has it: of each interval of a departure point a `<flow>` for each route, by the shares of the
/// decision point on its link; bus lines; passengers who wait.
///
/// A store gives routes to all who depart on a link alike. Where not all may drive all of them, those who may not take
/// the others, and who may drive more take over, so that as many drive each route as the shares say.
///
/// Where no decision point stands on the link of a departure point, vehicles drive on, by every way alike, until they meet
/// one or there is no further road.
class ExportedDemand {
public:
    /// How vehicles depart and arrive, as attributes of each.
    using Manner = std::vector<std::pair<QString, QString>>;

    ExportedDemand(const ExportedRoads &roads, ExportedVehicles &vehicles, Names &names, LeftOut &leftOut,
                   Manner manner, QString busType);

    /// Routes, and flows by their begin.
    std::vector<KeptElement> elements();

private:
    struct Way {
        QList<const Link *> links;
        double share = 1;
    };
    /// Vehicles of one composition in a slice of time.
    struct Departing {
        long composition = 0;
        int vehicles = 0;
        Passages::Classes classes;
    };
    struct Slice {
        long begin = 0;
        long end = 0;
        std::vector<Departing> departing;
    };

    void addDepartures(const DeparturePoint &point);
    std::vector<Slice> slicesOf(const DeparturePoint &point, const Link &link);
    void addFlows(const Slice &slice, const Departing &departing, const std::vector<Way> &ways);
    /// How many take each way: as many in all as depart.
    std::vector<int> countsOf(const Departing &departing, const std::vector<Way> &ways);
    /// The ways of each of those who depart, such as they may drive.
    std::vector<std::vector<Way>> waysFrom(const Link &link, const Slice &slice);
    std::vector<Way> walkFrom(const Link &link, long second, const Passages::Classes &classes);
    std::vector<Way> waysOf(const DecisionPoint &point, long second) const;
    QString routeId(const QList<const Link *> &links);
    void addBusLine(const BusLine &line);
    /// `stops` are the ids of the line's stops.
    void addPassengers(const BusLine &line, const QStringList &stops);
    void addAccident(const AccidentZone &zone);
    void add(KeptElement vehicles, double begin);

    const ExportedRoads &mRoads;
    /// Made when first asked for: without demand nobody drives.
    const Passages &passages();

    std::optional<Passages> mPassages;
    ExportedVehicles &mVehicles;
    Names &mNames;
    LeftOut &mLeftOut;
    Manner mManner;
    QString mBusType;
    QHash<const Link *, const DecisionPoint *> mDecisionAt;
    QSet<const DecisionPoint *> mReached;
    QHash<QString, QString> mRouteIds;         ///< by the edges
    QHash<QPair<long, QString>, double> mOwed; ///< vehicles, by composition and edges
    int mFlowCount = 0;
    std::vector<KeptElement> mRoutes;
    std::multimap<double, KeptElement> mFlows;
};

} // namespace moratools
