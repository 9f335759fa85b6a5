#pragma once

#include "model/GeometryLine.h"
#include "tools/MoraToolsExport.h"
#include "tools/sumo/kept/JunctionInside.h"
#include "tools/sumo/kept/KeptElement.h"
#include "tools/sumo/reader/VehicleClasses.h"

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace moratools {

/// The contents of a SUMO network file as plain records, in the file's order. Lengths are metres, speeds
/// metres per second, times seconds; coordinates are metres after the location's net offset.

/// Where a record was read.
struct SumoSource {
    static constexpr int kNetwork = -1; ///< `file` of what stands in the network's own file

    int file = 0; ///< place in `SumoCompanions::files`
    qint64 line = 0;
    qint64 element = 0; ///< running number in the file (XmlInput::elementNumber())
};

/// What an element says beyond its record is kept in it as it stood: attributes by name, `param` children as
/// one object "params", other children as a list "children" of KeptElement::toJson().

struct MORATOOLS_EXPORT SumoLane {
    QString id;
    int index = 0; ///< 0 is the kerb side: rightmost, or leftmost in a left-hand network
    VehicleClasses permissions = VehicleClasses::all();
    double speed = 0;
    double length = 0; ///< authoritative; may differ from the drawn length
    double width = 0;
    GeometryLine shape; ///< centre line, two points at least
    QJsonObject kept;   ///< permissions among it; a width only where it is given and is the usual one
};

/// A road section between two junctions: an edge of the normal function.
struct SumoEdge {
    QString id;
    QString from;
    QString to;
    QString type;
    std::vector<SumoLane> lanes; ///< by index, from 0 without a gap
    QJsonObject kept;            ///< type and name among it
    qint64 line = 0;
};

/// A lane inside a junction, kept for the paths of the connections that lead over it.
struct SumoInternalLane {
    GeometryLine shape;
    QString via; ///< the internal lane that goes on from here, empty at the junction's end
    VehicleClasses permissions = VehicleClasses::all();
    double speed = 0;
    double length = 0;
    bool givesWay = false; ///< who enters it has to
};

struct SumoJunction {
    QString id;
    QString type;
    QJsonObject kept; ///< all attributes but the id and the lists of lanes
    JunctionInside inside;
};

/// A permitted movement from a lane of one edge to a lane of another.
struct SumoConnection {
    QString from;
    QString to;
    int fromLane = 0;
    int toLane = 0;
    QString via; ///< first internal lane on the way, empty for a direct one
    QString tl;  ///< signal programme that controls the movement, empty where there is none
    int linkIndex = -1;
    QJsonObject kept; ///< all attributes but those of the ends and `via`
    qint64 line = 0;
};

/// An element that is there a second time.
struct SumoRepeated {
    QString what; ///< its name, file and line
    SumoSource source;
};

struct SumoPhase {
    double duration = 0;
    QString state; ///< one letter for each link index; may be longer than the controlled links
    /// Places of the phases that may follow; without any the next one does, and the first after the last.
    std::vector<int> next;
};

struct MORATOOLS_EXPORT SumoProgramme {
    QString id;
    QString programID;
    QString type;
    double offset = 0;
    std::vector<SumoPhase> phases; ///< the states of all are equally long
    KeptElement kept;              ///< all of it
    SumoSource source;

    /// The number of signals that it controls.
    int signalCount() const {
        int count = 0;
        for (const SumoPhase &phase : phases)
            count = std::max(count, phase.state.size());
        return count;
    }
};

struct MORATOOLS_EXPORT SumoNet {
    QString path;
    bool leftHand = false;
    QJsonObject kept; ///< attributes of the root
    QJsonObject location;
    std::vector<SumoEdge> edges;
    std::vector<SumoJunction> junctions;           ///< without the internal ones
    std::vector<SumoConnection> connections;       ///< between normal edges only, each once
    std::vector<SumoRepeated> repeatedConnections; ///< those that are there a second time
    std::vector<KeptElement> elements;    ///< that have no record: types, roundabouts, prohibitions, ...
    std::vector<JunctionInside> homeless; ///< insides of junctions that the file does not have
    std::vector<SumoProgramme> programmes;
    QHash<QString, SumoInternalLane> internalLanes;
    QHash<QString, int> edgeIndex; ///< edge id to its place in `edges`

    /// The edge of that id, or null.
    const SumoEdge *edge(const QString &id) const {
        const auto found = edgeIndex.constFind(id);
        return found == edgeIndex.constEnd() ? nullptr : &edges[std::size_t(*found)];
    }
};

/// The path of a connection whose ends exist: its chain of internal lanes, or the straight line from the end
/// of its first lane to the start of its last one where it has none.
MORATOOLS_EXPORT GeometryLine connectionPath(const SumoNet &net, const SumoConnection &connection);

} // namespace moratools
