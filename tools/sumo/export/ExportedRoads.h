#pragma once

#include "model/NetLists.h"
#include "tools/kinds/Roads.h"
#include "tools/sumo/export/Names.h"
#include "tools/sumo/import/LeftOut.h"
#include "tools/sumo/kept/JunctionInside.h"

#include <QHash>
#include <QJsonObject>

#include <vector>

namespace moratools {

/// Where links meet: the ends of those that lead there and the starts of those that lead away.
struct ExportedJunction {
    QString id;
    GeometryPoint at;
    QJsonObject kept; ///< attributes of the junction as an import found them; empty for one that is made anew
    JunctionInside inside; ///< as it was kept beside them
    std::vector<const Link *> in;
    std::vector<const Link *> out;
};

/// The roads of a network as SUMO has them: links are edges between junctions, lanes are numbered from 0 at the kerb.
///
/// A store says that links meet by a connector alone, so a junction is all ends and starts of links that connectors
/// join, directly or over others. Links that came from SUMO meet where their nodes have one name, too.
class ExportedRoads {
public:
    /// Gives links and junctions their ids. Links without a line, and what is between them, are left out. `network` must
    /// outlive this object.
    ExportedRoads(const NetLists &network, Names &names, LeftOut &leftOut);

    const NetLists &network() const { return mNetwork; }
    const Names &names() const { return mNames; }
    /// What the network's record keeps of a SUMO network; empty for any other.
    const QJsonObject &kept() const { return mKept; }
    bool isLeftHand() const { return mLeftHand; }

    /// In the order of the store.
    const std::vector<const Link *> &links() const { return mLinks; }
    /// Those between links that are exported.
    const std::vector<const Connector *> &connectors() const { return mConnectors; }
    const std::vector<ExportedJunction> &junctions() const { return mJunctions; }

    /// The link of that number; null when it is not exported.
    const Link *link(long id) const { return mLinkById.value(id); }
    const ExportedJunction &from(const Link &link) const { return mJunctions[mEnds.value(&link).first]; }
    const ExportedJunction &to(const Link &link) const { return mJunctions[mEnds.value(&link).second]; }

    /// The lanes as SUMO numbers them; empty for a link that has only a number of lanes.
    const std::vector<const Lane *> &lanes(const Link &link) const;
    /// Lanes of a link, one at least.
    int laneCount(const Link &link) const;
    /// The index of the lane of that serial number; -1 when there is none.
    int laneIndex(const Link &link, int serialNumber) const;
    int laneIndex(const Link &link, const Lane &lane) const;
    /// "EDGE_0"
    QString laneId(const Link &link, int index) const;

private:
    void takeLinks(LeftOut &leftOut);
    void takeLanes(const Link &link);
    void takeConnectors(LeftOut &leftOut);
    void findJunctions();
    void placeJunctions();

    const NetLists &mNetwork;
    Names &mNames;
    QJsonObject mKept;
    bool mLeftHand = false;
    std::vector<const Link *> mLinks;
    std::vector<const Connector *> mConnectors;
    QHash<long, const Link *> mLinkById;
    QHash<const Link *, std::vector<const Lane *>> mLanes;
    std::vector<ExportedJunction> mJunctions;
    QHash<const Link *, std::pair<std::size_t, std::size_t>> mEnds;
};

/// @{ "sumo" of the attributes of a link, a connector or a network; empty where there is none.
QJsonObject keptOf(const StoredJson &attributes);
QJsonObject keptOf(const QJsonObject &attributes);
/// @}

/// A number as SUMO's files have it, so that it reads back equal.
QString numberText(double number);
/// Points with blanks between, each with its height where that is not 0, as SUMO writes them.
QString shapeText(const GeometryLine &line);

} // namespace moratools
