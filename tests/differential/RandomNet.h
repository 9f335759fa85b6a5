#pragma once

#include "model/NetContents.h"

#include <random>

namespace differential {

/// In which order of ids the objects of a list, and the children of an owner, are made (and so written).
enum class IdOrder { Ascending, Descending, Shuffled };

/// What a generated network is like.
struct NetPlan {
    quint32 seed = 0;
    IdOrder owners = IdOrder::Ascending;
    IdOrder children = IdOrder::Ascending;
    bool severalNets = false;
    /// Ids of connectors and accident zones start behind it: single operations of generation 6 do not always
    /// keep those of the networks of a store apart.
    long firstSharedId = 0;
    bool hasNegativeZero = false; ///< SQLite has none
};

/// A sound network: every reference leads somewhere, every id is given, every object can be read again.
/// Texts, numbers, JSON and the numbers of children vary.
class RandomNet {
public:
    explicit RandomNet(const NetPlan &plan);

    std::unique_ptr<NetContents> make();
    /// New values for an object of the network and for its parts; ids, and what it names, stay.
    template <class T>
    void refill(T &object);

    /// A number from 0 to @p below - 1.
    int below(int below);
    bool chance(double probability);
    QString text();
    QString word();
    double number();
    StoredJson json();

private:
    class Ids;
    class Filler;

    void makeCatalogue(NetContents &net);
    void makeLinks(NetContents &net);
    std::unique_ptr<Link> makeLink(Ids &vertexIds, Ids &nodeIds, Ids &laneIds);
    void makeConnectors(NetContents &net);
    void makeSignals(NetContents &net);
    void makeDemand(NetContents &net);
    void makeRoutes(NetContents &net);
    void makeDevices(NetContents &net);
    void makeTransit(NetContents &net);
    void makeZones(NetContents &net);
    void makeSettings(NetContents &net);

    long anyTypeCode(const NetContents &net);
    Link *anyLink(const NetContents &net);
    long anyRoad(const NetContents &net);
    Lane *anyLane(const NetContents &net);
    template <class T>
    void shuffle(T &list) {
        std::shuffle(list.begin(), list.end(), mRandom);
    }

    NetPlan mPlan;
    std::mt19937 mRandom;
};

} // namespace differential
