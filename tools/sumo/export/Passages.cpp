#include "tools/sumo/export/Passages.h"

#include "tools/sumo/export/EdgeElements.h"

#include <algorithm>
#include <iterator>

namespace moratools {

namespace {

bool admits(VehicleClasses classes, const QString &name) {
    // A class that is none of the known ones restricts nobody.
    return classes.admits(name.toLatin1().constData()) ||
           VehicleClasses::of(name, {}) == VehicleClasses::none();
}

} // namespace

Passages::Passages(const ExportedRoads &roads) {
    for (const Connector *connector : roads.connectors()) {
        const std::pair<const Link *, const Link *> ends{connector->mpStartLink, connector->mpEndLink};
        for (const LaneConnector *path : connector->mlLaneConnector) {
            if (!path->mpStartLane || !path->mpEndLane)
                continue;
            if (!mPaths.count(ends))
                mNext[ends.first].append(ends.second);
            mPaths[ends].emplace_back(permittedOn(*ends.first, *path->mpStartLane),
                                      permittedOn(*ends.second, *path->mpEndLane));
        }
    }
}

QList<const Link *> Passages::next(const Link &link, const Classes &classes) const {
    QList<const Link *> links;
    for (const Link *candidate : mNext.value(&link)) {
        if (leads(&link, candidate, classes))
            links.append(candidate);
    }
    return links;
}

bool Passages::canDrive(const QList<const Link *> &links, const Classes &classes) const {
    for (int i = 0; i + 1 < links.size(); ++i) {
        if (!leads(links[i], links[i + 1], classes))
            return false;
    }
    return true;
}

bool Passages::leads(const Link *from, const Link *to, const Classes &classes) const {
    const auto paths = mPaths.find({from, to});
    return paths != mPaths.end() &&
           std::all_of(classes.begin(), classes.end(), [&paths](const QString &name) {
               return std::any_of(paths->second.begin(), paths->second.end(), [&name](const Path &path) {
                   return admits(path.first, name) && admits(path.second, name);
               });
           });
}

} // namespace moratools
