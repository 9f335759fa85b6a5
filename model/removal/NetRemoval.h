#pragma once

#include "model/NetContents.h"

#include <QSet>

#include <algorithm>
#include <functional>
#include <vector>

// Lists of pointers, in which a host may have left a null.
namespace lists {

/// Calls @p visit with each object of a list; a null that a host left there is passed over.
template <class List, class Visit>
void each(const List &objects, const Visit &visit) {
    for (const auto &object : objects) {
        if (object)
            visit(*object);
    }
}

template <class List, class Test>
bool any(const List &objects, const Test &test) {
    return std::any_of(objects.begin(), objects.end(),
                       [&test](const auto &object) { return object && test(*object); });
}

/// Takes out of a list what a test says.
template <class List, class Test>
void takeOut(List &list, const Test &test) {
    list.erase(std::remove_if(list.begin(), list.end(), test), list.end());
}

/// Deletes the objects of an owning list that a test says.
template <class T, class Test>
void destroy(OwningList<T> &objects, const Test &test) {
    for (int i = objects.size() - 1; i >= 0; --i) {
        if (objects.at(i) && test(*objects.at(i)))
            delete objects.takeAt(i);
    }
}

} // namespace lists

/// Finds what a removal reaches, in one pass over the lists: each kind is looked at behind those that it may
/// refer to.
class NetRemoval {
public:
    using Seeds = QSet<const void *>;

    /// @param seeds objects of the lists or parts of them.
    NetRemoval(const NetContents &net, const Seeds &seeds) : mNet(net), mDoomed(seeds) {
        reachCatalogue();
        reachLinks();
        reachArrows();
        reachConnectors();
        reachSignals();
        reachDemand();
        reachRoutes();
        reachRouteLanes();
        reachDevices();
        reachTransit();
        reachPlaces();
    }

    const QList<NetObject> &reached() const { return mReached; }
    /// Whether anything but parts is reached.
    bool isReferredTo() const {
        return std::any_of(mReached.begin(), mReached.end(),
                           [](const NetObject &object) { return object.fate != Fate::Part; });
    }

    /// Does it: references are cleared first, then the objects go.
    void apply(NetContents &net) const;

private:
    /// "lane 51", "signal lamp 9 \"north\"", "new link \"High Street\"".
    static QString named(const char *word, long id, const QString &name);

    bool isDoomed(const void *object) const { return mDoomed.contains(object); }
    void reach(const char *table, long id, const void *object, const QString &text, Fate fate) {
        if (fate != Fate::Loses)
            mDoomed.insert(object);
        mReached.append({QLatin1String(table), id, object, text, fate});
    }
    /// An object of a list that the removal takes along, or one that loses a reference.
    template <class T>
    void reach(const T &object, const char *reason, Fate fate = Fate::Goes) {
        using Kind = NetKind<T>;
        reachOther(Kind::table, Kind::word, Kind::idOf(object), Kind::nameOf(object), &object, reason, fate);
    }
    /// The same for an object that others own.
    void reachOther(const char *table, const char *word, long id, const QString &name, const void *object,
                    const char *reason, Fate fate = Fate::Goes) {
        reach(table, id, object, named(word, id, name) + QLatin1String(": ") + QLatin1String(reason), fate);
    }
    void reachPart(const char *table, const char *word, long id, const QString &name, const void *object) {
        reach(table, id, object, named(word, id, name), Fate::Part);
    }
    /// The parts of an owner that stays which @p reachIfGone reaches are taken out of their list.
    template <class T, class Part, class ReachIfGone>
    void reachParts(T &owner, OwningList<Part> T::*list, const ReachIfGone &reachIfGone) {
        Seeds gone;
        lists::each(owner.*list, [&](const Part &part) {
            if (!isDoomed(&part) && reachIfGone(part))
                gone.insert(&part);
        });
        if (!gone.isEmpty())
            clear(owner, [gone, list](T &changed) {
                lists::destroy(changed.*list, [&gone](const Part &part) { return gone.contains(&part); });
            });
    }
    /// Remembers how to clear references of an object that stays.
    template <class T, class Change>
    void clear(T &object, const Change &change) {
        mClear.push_back([&object, change](NetContents &net) { change(net.edit(object)); });
    }
    static void remember(QSet<long> &ids, long id) {
        if (id != 0)
            ids.insert(id);
    }
    /// @param codeOf the vehicle type that an entry of the list is for.
    template <class T, class List, class CodeOf>
    void loseTypes(T &object, const char *reason, List T::*list, const CodeOf &codeOf) {
        reach(object, reason, Fate::Loses);
        clear(object, [types = mTypes, list, codeOf](T &changed) {
            lists::takeOut(changed.*list, [&](const auto &entry) { return types.contains(codeOf(entry)); });
        });
    }
    static long itself(long code) { return code; }
    bool stands(const Node *node) const { return node && mVertices.contains(node->mpVertex); }
    static QList<long> keyOf(const RouteLanes &pair) {
        return {pair.routingID, pair.connID, pair.lanes.laneID1, pair.lanes.laneID2};
    }
    template <class T>
    void reachOnRoad(const T &object, long road, bool isConnector) {
        if (!isDoomed(&object) && isOnDoomedRoad(road, isConnector))
            reach(object, "is on a road that goes");
    }
    static bool saysConnector(const QString &roadType) {
        return !roadType.startsWith(QLatin1Char('l'), Qt::CaseInsensitive);
    }

    void reachCatalogue();
    bool isListed(const QList<long> &codes) const;
    void reachLinks();
    void reachLane(Link &link, Lane &lane);
    void moveNodes(Link &link);
    void reachArrows();
    void reachConnectors();
    void reachSignals();
    void reachDemand();
    void reachRoutes();
    bool follows(const Routing &route) const;
    bool isAnyDoomed(const QList<Link *> &links) const;
    /// The flow ratios of routes go with these. The slices stay: they say where the next ones begin.
    void loseRatios(DecisionPoint &point);
    void reachRouteLanes();
    void reachPair(const RouteLanes &pair, const char *reason, Fate fate);
    /// @param isConnector what the object says of its road, for the case that both have the number.
    bool isOnDoomedRoad(long road, bool isConnector) const;
    void reachDevices();
    void reachTransit();
    void reachPlaces();
    /// Takes arrows that go out of the lists of lanes that stay.
    void forgetArrows(NetContents &net) const;
    void eraseDoomed(NetContents &net) const;

    const NetContents &mNet;
    Seeds mDoomed; ///< everything that goes, parts included
    QList<NetObject> mReached;
    std::vector<std::function<void(NetContents &)>> mClear;
    /// @{ What objects that go are referred to by: their numbers, or where they are.
    QSet<long> mTypes;
    QSet<long> mCompositions;
    QSet<long> mLinks;
    QSet<long> mLanes;
    QSet<long> mConnectors;
    QSet<long> mGroups;
    QSet<long> mRoutes;
    QSet<long> mStations;
    Seeds mVertices;
    Seeds mArrowsOfLanes;
    /// @}
    QSet<QList<long>> mPairs; ///< the lanes of routes that go
};
