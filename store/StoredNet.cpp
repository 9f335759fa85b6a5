#include "store/StoredNet.h"

#include "store/DBTools.h"
#include "store/core/AllOrNothing.h"
#include "store/editing/Objects.h"
#include "store/editing/OwningRead.h"
#include "store/editing/Removal.h"
#include "store/editing/SaveChanges.h"
#include "store/families/Networks.h"
#include "store/ids/Identifiers.h"

namespace {

template <class T>
const catalogue::Table &tableOf() {
    return *catalogue::find(QLatin1String(NetKind<T>::table));
}

template <class T>
Ids idsOf(const QList<T *> &list) {
    Ids ids;
    for (const T *object : list)
        ids.push_back(NetKind<T>::idOf(*object));
    return ids;
}

/// Null is no object.
template <class T>
bool hasNull(const Store &store, const QList<T *> &list) {
    return list.contains(nullptr) &&
           !store.fail({}, QStringLiteral("A list of objects to be written holds null."));
}

} // namespace

StoredNet::StoredNet(QSqlDatabase &db, long netId) : mDb(db), mNetId(netId) {}

Store StoredNet::store(const char *operation) const {
    Store store = DBTools::storeOf(mDb, mNetId, operation);
    store.keepStatements();
    return store;
}

template <class T>
Owned<T> StoredNet::read(long id) const {
    const Store store = this->store();
    return store.isUsable() ? readOwned<T>(store, id) : nullptr;
}

template <class T>
bool StoredNet::insert(const QList<T *> &objects) {
    const Store store = this->store();
    if (!networks::requireNetwork(store) || hasNull(store, objects))
        return false;
    AllOrNothing all(store);
    identifiers::Reservations reserved(store);
    Changes changes(store);
    objects::Recording recording(store, changes);
    bool good = true;
    for (T *object : objects)
        good = good && recording.record(*object);
    changes.add(tableOf<T>(), idsOf(objects));
    if (!all.end(good && changes.apply(Cascade::Refuse)))
        return false;
    recording.keep();
    reserved.keep();
    return true;
}

template <class T>
bool StoredNet::update(const QList<T *> &objects, Cascade cascade) {
    const Store store = this->store();
    if (!store.isUsable() || hasNull(store, objects))
        return false;
    AllOrNothing all(store);
    identifiers::Reservations reserved(store);
    Changes changes(store);
    // Before identifiers are drawn: one without is not in the store.
    changes.change(tableOf<T>(), idsOf(objects));
    objects::Recording recording(store, changes);
    bool good = true;
    for (T *object : objects)
        good = good && recording.record(*object);
    if (!all.end(good && changes.apply(cascade)))
        return false;
    recording.keep();
    reserved.keep();
    return true;
}

template <class T>
bool StoredNet::updateFields(const QStringList &columns, const QList<T *> &objects) {
    const Store store = this->store();
    if (!store.isUsable() || hasNull(store, objects))
        return false;
    const objects::ObjectKind<T> &kind = objects::kKind<T>;
    AllOrNothing all(store);
    Changes changes(store, NetKind<T>::table);
    objects::Borrowed borrowed(store, &changes.recorded());
    bool good = true;
    for (T *object : objects) {
        good = good && (!kind.isWhole || kind.isWhole(store, *object));
        borrowed.lend(object);
    }
    if (good)
        kind.save(borrowed.save());
    return all.end(good && borrowed.save().isGood() && changes.applyColumns(tableOf<T>(), columns));
}

template <class T>
bool StoredNet::remove(const QList<long> &ids, Cascade cascade) {
    const Store store = this->store();
    if (!store.isUsable())
        return false;
    AllOrNothing all(store);
    Changes changes(store);
    changes.remove(tableOf<T>(), Ids(ids.cbegin(), ids.cend()));
    return all.end(changes.apply(cascade));
}

bool StoredNet::saveChanges(NetContents &contents, Cascade cascade) {
    return editing::saveChanges(store(), contents, cascade);
}

template <class T>
std::optional<QList<NetObject>> StoredNet::whatRefersTo(long id) const {
    const Store store = this->store();
    if (!store.isUsable())
        return std::nullopt;
    const NetRows rows(store);
    Removal removal(rows);
    removal.start(tableOf<T>(), {id});
    if (!removal.find())
        return std::nullopt;
    QList<NetObject> referrers;
    for (const NetObject &object : removal.referrers())
        referrers.append(object);
    return referrers;
}

// Every kind of object that the header names.
// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a class
#define MORASTORE_OBJECT(T)                                                                                  \
    template Owned<T> StoredNet::read<T>(long) const;                                                        \
    template bool StoredNet::insert<T>(const QList<T *> &);                                                  \
    template bool StoredNet::update<T>(const QList<T *> &, Cascade);                                         \
    template bool StoredNet::updateFields<T>(const QStringList &, const QList<T *> &);                       \
    template bool StoredNet::remove<T>(const QList<long> &, Cascade);                                        \
    template std::optional<QList<NetObject>> StoredNet::whatRefersTo<T>(long) const
MORASTORE_OBJECT(VehicleType);
MORASTORE_OBJECT(VehicleComposition);
MORASTORE_OBJECT(Link);
MORASTORE_OBJECT(GuideArrow);
MORASTORE_OBJECT(Connector);
MORASTORE_OBJECT(SignalGroup);
MORASTORE_OBJECT(SignalLamp);
MORASTORE_OBJECT(DeparturePoint);
MORASTORE_OBJECT(DecisionPoint);
MORASTORE_OBJECT(VehicleDetector);
MORASTORE_OBJECT(VehicleQueueCounter);
MORASTORE_OBJECT(VehicleTravelDetector);
MORASTORE_OBJECT(VehicleDrivInfoCollector);
MORASTORE_OBJECT(BusStation);
MORASTORE_OBJECT(BusLine);
MORASTORE_OBJECT(ReduceSpeedArea);
MORASTORE_OBJECT(AccidentZone);
MORASTORE_OBJECT(RoadWorkZone);
// NOLINTEND(bugprone-macro-parentheses)
