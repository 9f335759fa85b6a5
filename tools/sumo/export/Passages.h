#pragma once

#include "tools/sumo/export/ExportedRoads.h"
#include "tools/sumo/reader/VehicleClasses.h"

#include <QSet>

#include <map>

namespace moratools {

/// Where vehicles of a class may go on from a link: over lane connectors between lanes that both admit it.
class Passages {
public:
    /// Vehicle classes by name. Those of an unknown class, as "ignoring", may go everywhere.
    using Classes = QSet<QString>;

    explicit Passages(const ExportedRoads &roads);

    /// The links that vehicles of all these classes get to from a link, in the order of its connectors.
    QList<const Link *> next(const Link &link, const Classes &classes) const;
    /// Whether they all can drive the links one after the other.
    bool canDrive(const QList<const Link *> &links, const Classes &classes) const;

private:
    /// What the lanes admit that a lane connector joins.
    using Path = std::pair<VehicleClasses, VehicleClasses>;

    bool leads(const Link *from, const Link *to, const Classes &classes) const;

    std::map<std::pair<const Link *, const Link *>, std::vector<Path>> mPaths;
    QHash<const Link *, QList<const Link *>> mNext;
};

} // namespace moratools
