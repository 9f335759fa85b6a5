#include "store/opening/ProcessStore.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>

Net &gNet = processStore().state.net;
QHash<long, VehicleType> &ghVehicleType = processStore().state.vehicleTypes;
QHash<long, VehicleComposition> &ghVehicleComposition = processStore().state.compositions;
QList<LinkType> &glLinkType = processStore().state.linkTypes;
SpecialWords &gSpecialWords = processStore().state.words;

namespace {

/// The state goes with the connection: a property of its driver, which all handles of the connection share.
/// So it is found without a lock, and with the connection it is gone.
constexpr const char *kState = "moraStoreState";

} // namespace

ProcessStore &processStore() {
    static ProcessStore store;
    return store;
}

StoreState &stateOf(const QSqlDatabase &db) {
    return stateOf(db.driver());
}

StoreState &stateOf(const QSqlDriver *driver) {
    const QVariant own = driver ? driver->property(kState) : QVariant();
    return own.isValid() ? *static_cast<StoreState *>(own.value<void *>()) : processStore().state;
}

void attachState(const QSqlDatabase &db, StoreState *state) {
    db.driver()->setProperty(kState, state ? QVariant::fromValue<void *>(state) : QVariant());
}
