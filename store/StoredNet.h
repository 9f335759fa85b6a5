#pragma once

#include "model/MoraStoreExport.h"
#include "model/NetProgress.h"
#include "model/NetReferences.h"
#include "model/Owned.h"
#include "store/NetIds.h"

#include <QList>
#include <QSqlDatabase>
#include <QStringList>

#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

class Store;
struct NetContents;

/// One network of an open store, whose objects are inserted, changed and removed one by one, many at once, or
/// as the differences of a whole.
///
///     StoredNet net(gDB, 1);
///     link->limitSpeed = 50;
///     if (!net.update(*link))
///         // why: see FailureScope; the store is as it was
///
/// Serves stores of both generations, on SQLite and PostgreSQL. Each function writes all of what it is asked for,
/// or nothing and records why: inside a transaction of the caller by a savepoint, outside one in a transaction
/// of its own.
///
/// Objects: Link, Connector, GuideArrow, SignalGroup, SignalLamp, VehicleType, VehicleComposition,
/// DeparturePoint, DecisionPoint, VehicleDetector, VehicleQueueCounter, VehicleTravelDetector,
/// VehicleDrivInfoCollector, BusStation, BusLine, ReduceSpeedArea, AccidentZone, RoadWorkZone. With an object go
/// its parts: lanes with their restrictions and attributes, vertices, nodes, lane connectors, phases, routes with
/// their ratios, stops with their arrivals. Objects stay the caller's. Identifiers that are 0 are drawn, also
/// those of parts, and are set on the objects once they are in the store.
class MORASTORE_EXPORT StoredNet {
    /// Lists of objects have functions of their own.
    template <class T, class = void>
    struct IsList : std::false_type {};
    template <class T>
    struct IsList<T, std::void_t<typename T::value_type>> : std::true_type {};
    template <class T>
    using IsObject = std::enable_if_t<!IsList<T>::value, bool>;

public:
    /// @param db an open connection: gDB, or OpenStore::db(). It must outlive this object.
    StoredNet(QSqlDatabase &db, long netId);

    /// The object of that id, made anew for the caller, with all that the store has of it: update() writes the
    /// difference. What it points to (the links of a connector, the phase of a lamp) was read with it and stays
    /// as long as it does. Nothing of it is in the current network's tables, or is taken from there. Null when
    /// there is none, and when it cannot be read, which is recorded.
    template <class T>
    Owned<T> read(long id) const;

    /// @{ Writes objects that the store does not have yet. What they name must be in the store, or among them.
    template <class T, IsObject<T> = true>
    bool insert(T &object) {
        return insert(QList<T *>{&object});
    }
    template <class T>
    bool insert(const QList<T *> &objects);
    template <class T>
    bool insert(const std::vector<std::unique_ptr<T>> &objects) {
        return insert(listed(objects));
    }
    /// @}

    /// @{ Writes what differs between objects and what the store has of them; rows that are the same stay
    /// untouched. Refused, with a record that names the object: one that the store does not have, one that
    /// names another object that the network does not have (a lamp on a lane that is gone), and, unless
    /// @p cascade says otherwise, one that has lost a part which others refer to (a lane with its lamp).
    ///
    /// A vertex or a node that links share moves for all of them; links that are changed together must agree
    /// on it. On SQLite parts come back in the order of their lists; a server keeps that order only where
    /// it is written down (lanes, vertices, colours) or ids ascend (intervals, routes).
    template <class T, IsObject<T> = true>
    bool update(T &object, Cascade cascade = Cascade::Refuse) {
        return update(QList<T *>{&object}, cascade);
    }
    template <class T>
    bool update(const QList<T *> &objects, Cascade cascade = Cascade::Refuse);
    template <class T>
    bool update(const std::vector<std::unique_ptr<T>> &objects, Cascade cascade = Cascade::Refuse) {
        return update(listed(objects), cascade);
    }
    /// @}

    /// @{ Writes these columns of many objects ("limitSpeed"), and nothing else of them: without a look at what
    /// the store has, at the speed of the engine.
    template <class T>
    bool updateFields(const QStringList &columns, const QList<T *> &objects);
    template <class T>
    bool updateFields(const QStringList &columns, const std::vector<std::unique_ptr<T>> &objects) {
        return updateFields(columns, listed(objects));
    }
    /// @}

    /// @{ Removes objects with their parts, and with Cascade::Take what cannot be without them. Refused, with a
    /// record that names them, while others refer to one. Nodes and vertices go with the last link that has
    /// them.
    template <class T>
    bool remove(long id, Cascade cascade = Cascade::Refuse) {
        return remove<T>(QList<long>{id}, cascade);
    }
    template <class T>
    bool remove(const QList<long> &ids, Cascade cascade = Cascade::Refuse);
    /// @}

    /// Writes what was changed in a network since it was loaded or saved (NetContents::changes), and nothing else:
    /// objects as by insert(), update() and remove(), in the order in which they depend on each other, the
    /// network's record, link types, settings and lanes of routes. All of it or nothing; when it is done, there
    /// are no changes left, and what links share has moved for all of them. It takes as long as the changes
    /// need, not the network.
    ///
    /// Objects that only the store has are not removed for those that are, unless @p cascade says so: another
    /// program may have added them.
    bool saveChanges(NetContents &contents, Cascade cascade = Cascade::Refuse);

    /// What refers to an object: its parts that others may refer to, and what would go or lose something with
    /// Cascade::Take, on and on, each once, in the order in which networks are loaded. None when the store could
    /// not be asked, which is recorded.
    template <class T>
    std::optional<QList<NetObject>> whatRefersTo(long id) const;

    /// @{ New identifiers for objects with their parts, before they are written; see NetIds. insert() and
    /// update() draw those that are missing by themselves.
    std::optional<long> nextId(Table table) const { return NetIds(mDb, mNetId).next(table); }
    template <class T, IsObject<T> = true>
    bool drawIds(T &object) const {
        return NetIds(mDb, mNetId).draw(object);
    }
    template <class T>
    bool drawIds(const QList<T *> &objects) const {
        return NetIds(mDb, mNetId).drawEach(objects);
    }
    /// @}

    QSqlDatabase &db() const { return mDb; }
    long id() const { return mNetId; }

private:
    template <class T>
    static QList<T *> listed(const std::vector<std::unique_ptr<T>> &objects) {
        QList<T *> list;
        list.reserve(int(objects.size()));
        for (const auto &object : objects)
            list.append(object.get());
        return list;
    }
    Store store(const char *operation = __builtin_FUNCTION()) const;

    QSqlDatabase &mDb;
    long mNetId;
};
