#include "store/OpenStore.h"

#include "store/core/ConnectionName.h"
#include "store/opening/ProcessStore.h"
#include "store/opening/StoreOpening.h"
#include "store/server/ConnectionWords.h"

namespace {

StoreSettings settingsOfFile(const QString &path) {
    StoreSettings settings;
    settings.name = path;
    return settings;
}

} // namespace

OpenStore::OpenStore(const QString &path, Access access) : OpenStore(settingsOfFile(path), access) {}

OpenStore::OpenStore(const StoreSettings &settings, Access access) : mState(std::make_unique<StoreState>()) {
    const OperationName operation("OpenStore");
    mState->words.setLangIsNotZh(gSpecialWords.langIsNotZh);
    open(settings, access);
    mState->words.initVars();
}

OpenStore::OpenStore(const QString &path, const OpenOptions &options)
    : OpenStore(settingsOfFile(path), options) {}

OpenStore::OpenStore(const StoreSettings &settings, const OpenOptions &options)
    : mState(std::make_unique<StoreState>()) {
    const OperationName operation("OpenStore");
    open(settings, opening::possibleAccess(settings, options.access));
    mIsOpened = mIsOpened && opening::applyOptions(*mState, mState->db, options);
    if (!mIsOpened)
        mState->db.close();
}

void OpenStore::open(const StoreSettings &settings, Access access) {
    StoreState &state = *mState;
    state.settings = settings;
    state.db = QSqlDatabase::addDatabase(settings.driver, newConnectionName("store"));
    if (state.db.isValid())
        attachState(state.db, &state);
    connectionwords::nameStore(state.db, settings);
    if (access == Access::Read)
        mIsOpened = opening::forReading(state, state.db, settings.name, true);
    else
        mIsOpened =
            (access == Access::Write || opening::passFirstGeneration(state, state.db, settings.name)) &&
            opening::forWriting(state, state.db, settings.name, true);
    if (!mIsOpened)
        state.db.close();
}

OpenStore::~OpenStore() {
    QSqlDatabase &db = mState->db;
    const QString name = db.connectionName();
    if (db.isValid())
        attachState(db, nullptr);
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

bool OpenStore::isOpen() const {
    return mIsOpened && mState->db.isOpen();
}

bool OpenStore::isReadOnly() const {
    return mState->isReadOnly;
}

QSqlDatabase &OpenStore::db() {
    return mState->db;
}

const StoreSettings &OpenStore::settings() const {
    return mState->settings;
}

int OpenStore::version() const {
    return mState->version;
}

bool OpenStore::isInternational() const {
    return mState->isInternational;
}

QList<CallDbResult> &OpenStore::failures() {
    return mState->failures;
}

const QList<CallDbResult> &OpenStore::failures() const {
    return mState->failures;
}

Net &OpenStore::net() {
    return mState->net;
}

QHash<long, VehicleType> &OpenStore::vehicleTypes() {
    return mState->vehicleTypes;
}

QHash<long, VehicleComposition> &OpenStore::compositions() {
    return mState->compositions;
}

QList<LinkType> &OpenStore::linkTypes() {
    return mState->linkTypes;
}

SpecialWords &OpenStore::words() {
    return mState->words;
}

QHash<long, QHash<QString, QList<long>>> &OpenStore::reservedIds() {
    return mState->reservedIds;
}

QHash<long, QHash<QString, long>> &OpenStore::highestIds() {
    return mState->highestIds;
}
