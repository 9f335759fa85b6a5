#pragma once

#include "tools/checks/Checked.h"

#include <QHash>
#include <QPair>
#include <QSet>

#include <memory>
#include <vector>

namespace moratools {

/// What leads where in a network: links by their connectors, lanes by their lane connectors. Links are numbered by
/// their places in the network's list.
class LinkGraph {
public:
    /// Of the network, which must outlive this.
    explicit LinkGraph(const Checked &checked);
    ~LinkGraph();

    /// The place of a link; -1 for one that is not of the network.
    int placeOf(const Link *link) const { return mPlaces.value(link, -1); }
    /// The link or the connector of that id; null when there is none.
    const Link *link(long id) const { return mLinkOf.value(id); }
    const Connector *connector(long id) const { return mConnectorOf.value(id); }

    bool isEntered(int link) const { return mEntered[std::size_t(link)]; }
    bool isLeft(int link) const { return mLeft[std::size_t(link)]; }
    /// A lane connector ends at the lane, or starts there.
    bool isEntered(const Lane *lane) const { return mEnteredLanes.contains(lane); }
    bool isLeft(const Lane *lane) const { return mLeftLanes.contains(lane); }
    /// Whether a connector joins the end of a link to the start of another one.
    bool isJoined(const Link *from, const Link *to) const { return mPairs.contains(qMakePair(from, to)); }

    enum class Direction { Forwards, Backwards };
    /// For each link whether it can be reached from one of those, themselves among them.
    std::vector<char> reachedFrom(const std::vector<int> &links, Direction direction) const;
    /// For each link the number of the part that it belongs to: no connector leads from one part to another.
    const std::vector<int> &parts() const { return mParts; }

private:
    struct Graphs;

    QHash<const Link *, int> mPlaces;
    QHash<long, const Link *> mLinkOf;
    QHash<long, const Connector *> mConnectorOf;
    std::vector<char> mEntered;
    std::vector<char> mLeft;
    QSet<const Lane *> mEnteredLanes;
    QSet<const Lane *> mLeftLanes;
    QSet<QPair<const Link *, const Link *>> mPairs;
    std::vector<int> mParts;
    std::unique_ptr<Graphs> mGraphs;
};

} // namespace moratools
