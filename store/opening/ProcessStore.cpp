#include "store/opening/ProcessStore.h"

#include "store/opening/RecordRows.h"

#include <QSqlDatabase>
#include <QSqlDriver>

Net &gNet = processStore().state.net;
QHash<long, VehicleType> &ghVehicleType = processStore().state.vehicleTypes;
QHash<long, VehicleComposition> &ghVehicleComposition = processStore().state.compositions;
QList<LinkType> &glLinkType = processStore().state.linkTypes;
SpecialWords &gSpecialWords = processStore().state.words;

namespace {

/// The state goes with the connection: a child of its driver, which all handles of the connection share and
/// which has no others as a rule. So it is found without a lock, and with the connection it is gone.
class AttachedState : public QObject {
public:
    AttachedState(QSqlDriver *driver, StoreState *of) : QObject(driver), state(of) {}

    StoreState *const state;
};

AttachedState *attachedTo(const QSqlDriver *driver) {
    if (driver) {
        for (QObject *child : driver->children()) {
            if (auto *attached = dynamic_cast<AttachedState *>(child))
                return attached;
        }
    }
    return nullptr;
}

} // namespace

ProcessStore &processStore() {
    static ProcessStore store;
    return store;
}

StoreState &stateOf(const QSqlDatabase &db) {
    return stateOf(db.driver());
}

StoreState &stateOf(const QSqlDriver *driver) {
    const AttachedState *own = attachedTo(driver);
    return own ? *own->state : processStore().state;
}

void attachState(const QSqlDatabase &db, StoreState *state) {
    delete attachedTo(db.driver());
    if (state)
        new AttachedState(db.driver(), state); // the driver's
}

void recordRows(const QSqlDatabase &db, const QHash<QString, QString> &tables, const QString &condition) {
    recordNoRows(db);
    stateOf(db).recording = new RowRecording(tables, condition, db.driver()); // the driver's
}

void recordNoRows(const QSqlDatabase &db) {
    delete stateOf(db).recording.data();
}

QString asRecorded(const QSqlDatabase &db, const QString &sql) {
    const RowRecording *recording = stateOf(db).recording;
    return recording ? recording->statement(sql) : sql;
}
