#pragma once

#include "MoraStoreExport.h"
#include "NetChanges.h"
#include "NetKinds.h"
#include "NetLists.h"
#include "NetReferences.h"

#include <QSet>

#include <algorithm>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

/// Rows that a whole load left out, or took only in part, for one reason.
///
/// Left out is what no single read gives: rows that belong to nothing, or that refer to what is not there;
/// second rows of settings; stops off the route of their line; ratios that end with an earlier one of the
/// same route. Left out, too, is what a single read gives and a save could not keep: decision points whose
/// link is gone, arrows and lamps on a lane that belongs to no link of the network, and in stores of one
/// network devices on a connector that lacks a link. Taken in part are objects with JSON that does not parse,
/// links with a node that is missing, and references to vehicle types and compositions that the catalogue
/// does not have.
struct SkippedRows {
    QString table;
    QString reason; ///< a clause that follows the id, "belongs to no link"
    qint64 count = 0;
    QList<long> ids; ///< of the first of them
};

/// A number of an object that is to name another one and matches none: which kind of reference it is, the
/// object's id, the number.
struct UnmatchedNumber {
    int reference = 0;
    long id = 0;
    long number = 0;

    friend bool operator<(const UnmatchedNumber &a, const UnmatchedNumber &b) {
        return std::tie(a.reference, a.id, a.number) < std::tie(b.reference, b.id, b.number);
    }
};

/// The objects of a network, owned, for a host to look up and to edit:
///
///     Link *link = net.find<Link>(17);
///     net.edit(*link).limitSpeed = 30;
///     Connector &connector = net.add(std::make_unique<Connector>(0, link, other));
///     for (const NetObject &user : net.whatRefersTo(*link))
///         qInfo() << user.text;
///     net.remove(*link, Cascade::Take);
///
/// Every kind of pointer list can be edited so, from links to zones. Lists of values (link types, the sets of
/// driver models, lanes of routes) and the record are edited as they are: a save of the changes compares them
/// with what was loaded. A host may also change the lists past these functions. DBTools::saveNet() writes them
/// as they are then; what changed() is to know it says with NetChanges::markAll().
///
/// The functions take references to objects of these lists. Pointers to other objects stay valid until those
/// are removed; references to entries of QLists of values as long as the list is not changed.
struct MORASTORE_EXPORT NetContents : NetLists {
    NetContents() = default;
    NetContents(NetContents &&other) noexcept : NetContents() { *this = std::move(other); }
    NetContents &operator=(NetContents &&) = default;

    /// @{ The object of that id, by binary search; null when there is none, and for 0, which every new object
    /// has. In a list that a host has brought out of order, and for an id that none has, it passes over the
    /// list.
    template <class T>
    const T *find(long id) const;
    template <class T>
    T *find(long id) {
        return const_cast<T *>(std::as_const(*this).template find<T>(id));
    }
    /// @}
    /// @{ Of the objects with exactly that name the one with the lowest id, or else the first new one; null
    /// when there is none.
    template <class T>
    const T *findByName(const QString &name) const;
    template <class T>
    T *findByName(const QString &name) {
        return const_cast<T *>(std::as_const(*this).template findByName<T>(name));
    }
    /// @}

    /// Marks an object as changed. Of a part (a lane, a phase, a route, a stop) the owner is edited. An object
    /// keeps its id: for another one take it out and add it.
    /// @return the object.
    template <class T>
    T &edit(T &object) {
        changes.markEdited(NetKind<T>::table, &object);
        return object;
    }
    /// Takes an object over, which is not null, and marks it as new. It stands in ascending order; one whose
    /// id is 0 stands at the end and gets its id when it is saved. An id that another object of the list has
    /// is refused by the store.
    /// @return the object.
    template <class T>
    T &add(std::unique_ptr<T> object);

    /// @{ What a removal with Cascade::Take would take along or clear, each object once, in the order of kinds;
    /// NetReferences.h has the table. Those whose fate is not Fate::Part are what Cascade::Refuse refuses for.
    template <class T>
    QList<NetObject> whatRefersTo(const T &object) const {
        static_cast<void>(NetKind<T>::table);
        return reachedFrom({&object});
    }
    QList<NetObject> whatRefersTo(const Lane &lane) const;
    QList<NetObject> whatRefersTo(const SignalPhase &phase) const;
    QList<NetObject> whatRefersTo(const Routing &route) const;
    QList<NetObject> whatRefersTo(const BusStationLine &stop) const;
    /// @}

    /// @{ Destroys objects of a list, with Cascade::Take also what refers to them.
    /// @return false when something refers to one of them that may not go, or one is not in the list; then
    ///         nothing has changed.
    template <class T>
    bool remove(T &object, Cascade cascade) {
        return removeAll(QList<T *>{&object}, cascade);
    }
    template <class T>
    bool removeAll(const QList<T *> &objects, Cascade cascade) {
        const QSet<const void *> seeds(objects.cbegin(), objects.cend());
        return isHere<T>(seeds) && removeFrom(seeds, cascade);
    }
    /// @}
    /// Hands an object over to the caller, unless something refers to it or to its parts, or it is not in the
    /// list: then it stays, and the result is null.
    template <class T>
    std::unique_ptr<T> take(T &object);

    /// @{ The same as remove() for a part of @p owner, which counts as changed. The lanes beyond a lane that
    /// goes move up by one serial number, and so does the link's number of lanes when it was that of its lanes;
    /// lane numbers of detectors, stations and zones stay.
    bool removeLane(Link &owner, Lane &lane, Cascade cascade);
    bool removePhase(SignalGroup &owner, SignalPhase &phase, Cascade cascade);
    bool removeRoute(DecisionPoint &owner, Routing &route, Cascade cascade);
    bool removeStop(BusLine &owner, BusStationLine &stop, Cascade cascade);
    /// @}

    /// The store has all of it as it is now: changes is empty, and stored tells the values. Loads and saves end
    /// with it.
    void setStored();

    QList<SkippedRows> skipped; ///< what a load found damaged; empty for a sound network
    /// What a load took as it stands though it is none of the vocabulary (model/Words.h): the colours of
    /// signals. Names of link types and vehicle types are free.
    QList<SkippedRows> unknownWords;
    NetChanges changes{*this};

    /// What is edited without marks, as the store has it.
    struct Stored {
        NetRecord record;
        NetSettings settings;
        QList<LinkType> linkTypes;
        QList<RouteLanes> routeLanes;
        /// Numbers that name nothing. They come from the store, and a save lets them be as they are.
        std::vector<UnmatchedNumber> unmatched;
    };
    Stored stored;

private:
    friend class NetRemoval;

    QList<NetObject> reachedFrom(const QSet<const void *> &seeds) const;
    bool removeFrom(const QSet<const void *> &seeds, Cascade cascade);
    template <class Owner, class Part>
    bool removePart(Owner &owner, QList<Part *> &parts, Part &part, Cascade cascade);

    /// What ids are sorted by: new objects come last.
    static unsigned long placeOf(long id) {
        return id != 0 ? static_cast<unsigned long>(id) -
                             static_cast<unsigned long>(std::numeric_limits<long>::min())
                       : std::numeric_limits<unsigned long>::max();
    }
    template <class T>
    bool isHere(const QSet<const void *> &objects) const {
        const Objects<T> &list = NetKind<T>::list(*this);
        return std::count_if(list.begin(), list.end(), [&](const auto &object) {
                   return object && objects.contains(object.get());
               }) == objects.size();
    }
    /// The first place of a list whose object does not come before an id.
    template <class T>
    static auto lowerBound(const Objects<T> &list, long id) {
        return std::lower_bound(list.begin(), list.end(), id, [](const auto &object, long sought) {
            return object && placeOf(NetKind<T>::idOf(*object)) < placeOf(sought);
        });
    }
};

template <class T>
const T *NetContents::find(long id) const {
    if (id == 0)
        return nullptr;
    const Objects<T> &list = NetKind<T>::list(*this);
    const auto hasId = [id](const auto &object) { return object && NetKind<T>::idOf(*object) == id; };
    auto found = lowerBound<T>(list, id);
    if (found == list.end() || !hasId(*found))
        found = std::find_if(list.begin(), list.end(), hasId);
    return found != list.end() ? found->get() : nullptr;
}

template <class T>
const T *NetContents::findByName(const QString &name) const {
    const T *first = nullptr;
    for (const auto &object : NetKind<T>::list(*this)) {
        if (!object || NetKind<T>::nameOf(*object) != name)
            continue;
        if (!first || placeOf(NetKind<T>::idOf(*object)) < placeOf(NetKind<T>::idOf(*first)))
            first = object.get();
    }
    return first;
}

template <class T>
T &NetContents::add(std::unique_ptr<T> object) {
    T &added = *object;
    Objects<T> &list = NetKind<T>::list(*this);
    const long id = NetKind<T>::idOf(added);
    const auto place = id != 0 ? lowerBound<T>(list, id) : list.cend();
    list.insert(place, std::move(object));
    changes.markAdded(NetKind<T>::table, &added, id);
    return added;
}

template <class T>
std::unique_ptr<T> NetContents::take(T &object) {
    Objects<T> &list = NetKind<T>::list(*this);
    const auto found =
        std::find_if(list.begin(), list.end(), [&object](const auto &held) { return held.get() == &object; });
    if (found == list.end())
        return nullptr;
    const QList<NetObject> users = reachedFrom({&object});
    const bool isFree = std::all_of(users.begin(), users.end(),
                                    [](const NetObject &user) { return user.fate == Fate::Part; });
    if (!isFree)
        return nullptr;
    std::unique_ptr<T> taken = std::move(*found);
    list.erase(found);
    changes.markRemoved(NetKind<T>::table, taken.get(), NetKind<T>::idOf(*taken));
    return taken;
}
