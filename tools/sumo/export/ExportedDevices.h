#pragma once

#include "tools/sumo/export/ExportedRoads.h"
#include "tools/sumo/export/ExportedVehicles.h"

#include <optional>
#include <vector>

namespace moratools {

/// What stands beside and on the roads, as SUMO's additional objects: stops, detectors, signs, closures. What is on a
/// connector is left out: SUMO finds places by the lanes of edges alone.
class ExportedDevices {
public:
    /// All must outlive this object. `output` is what the files are called into which SUMO writes what detectors saw.
    ExportedDevices(const ExportedRoads &roads, ExportedVehicles &vehicles, Names &names, LeftOut &leftOut,
                    QString output);

    const std::vector<MadeElement> &elements() const { return mElements; }

private:
    /// What is said of a place: a road by its number, and a lane by its serial number, or all lanes of it.
    struct Wanted {
        const char *kind;
        long number;
        const QString &name;
        long roadId;
        int lane;
        bool isOnLink;
    };
    /// A place on an edge.
    struct Place {
        const Link *link;
        std::vector<int> lanes; ///< indices, one at least

        QString lane(const ExportedRoads &roads) const { return roads.laneId(*link, lanes.front()); }
    };

    void addStops();
    void addLoops();
    void addSignalDetectors();
    void addAreaDetectors();
    void addTravelDetectors();
    void addSpeedAreas();
    void addRoadWorks();
    KeptElement closing(const RoadWorkZone &zone, const Link &link, const std::vector<int> &lanes) const;

    /// On which lanes something is; leaves it out where SUMO has no such place.
    std::optional<Place> placeOf(const Wanted &wanted);
    void leaveOut(const char *kind, long number, const QString &name, const char *why);
    void add(KeptElement element, const QString &object) {
        mElements.push_back({std::move(element), object, QString()});
    }
    QString outputFile(const char *kind) const {
        return mOutput + QLatin1String(kind) + QStringLiteral(".xml");
    }

    const ExportedRoads &mRoads;
    ExportedVehicles &mVehicles;
    Names &mNames;
    LeftOut &mLeftOut;
    QString mOutput;
    std::vector<MadeElement> mElements;
};

} // namespace moratools
