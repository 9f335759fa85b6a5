#pragma once

#include "tools/sumo/export/ExportedRoads.h"
#include "tools/sumo/kept/JunctionInside.h"
#include "tools/sumo/kept/KeptElement.h"
#include "tools/sumo/reader/SumoNet.h"

#include <QMap>
#include <QStringList>

namespace moratools {

class XmlFile;

/// Writes a network that came from SUMO as a network file (.net.xml), the insides of its junctions as they were.
///
/// What depends on nothing but its own object (edges, lanes) is written from the objects. The inside of a junction
/// depends on all that meets there, so it is written only where that is as it was when the inside was kept.
class ExactNetWriter {
public:
    /// `roads` must outlive this object.
    explicit ExactNetWriter(const ExportedRoads &roads);

    /// Whether the network keeps insides of junctions.
    bool isPossible() const { return !mJunctions.empty(); }
    /// Junctions whose inside is not kept or holds no more.
    QStringList edited() const { return mEdited.keys(); }

    /// Writes the network, the root `net` of which is `to`, with those programmes. The insides of edited junctions are those of `made`, a network
    /// that was made anew of the same objects; without it there must be none.
    void write(XmlFile &to, const std::vector<KeptElement> &programmes, const SumoNet *made = nullptr) const;

private:
    struct Junction {
        QString id;
        QJsonObject kept; ///< its attributes
        JunctionInside inside;
        int place = 0; ///< in the file
    };

    void takeJunctions();
    static void sort(std::vector<Junction> &junctions);
    std::vector<Junction> junctionsWith(const SumoNet *made) const;
    void writeConnections(XmlFile &to, const std::vector<Junction> &junctions) const;
    void writeElements(XmlFile &to, bool types) const;

    const ExportedRoads &mRoads;
    std::vector<Junction> mJunctions; ///< that hold, in the order of the file
    QMap<QString, int> mEdited;       ///< and where in the file they were
};

} // namespace moratools
