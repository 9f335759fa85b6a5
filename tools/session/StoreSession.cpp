#include "tools/session/StoreSession.h"

#include "model/Net.h"
#include "model/SpecialWords.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/OpenStore.h"
#include "store/Stores.h"
#include "store/core/Engine.h"
#include "tools/reports/Failure.h"
#include "tools/session/ConnectionSettings.h"
#include "tools/session/Server.h"
#include "tools/session/ServerFailure.h"

#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace moratools {

namespace {

OpenStore::Access ofLibrary(Access access) {
    switch (access) {
    case Access::Read:
        return OpenStore::Access::Read;
    case Access::Write:
        return OpenStore::Access::Write;
    default:
        return OpenStore::Access::Upgrade;
    }
}

} // namespace

void StoreSession::require(const StoreAddress &address, Access access) {
    if (address.isServer()) {
        requireServerStore(address, access);
        return;
    }
    if (requireStore(address.path(), access) == Age::FirstGeneration && access == Access::Write)
        throw Failure(
            QStringLiteral("%1: the store is of the first generation; run \"morastore upgrade\" on it first")
                .arg(address.name()));
}

StoreSession::StoreSession(const QString &name) : mName(name) {}

StoreSession StoreSession::ofProcess(const QString &name) {
    return StoreSession(name);
}

StoreSession::StoreSession(const StoreAddress &address, Access access) : mName(address.name()) {
    require(address, access);
    mStore = std::make_unique<OpenStore>(connectionSettings(address), ofLibrary(access));
    if (!mStore->isOpen() && address.isServer() && !failures().isEmpty()) {
        const CallDbResult reason = failures().first();
        if (reason.kind == FailureKind::Lost && reason.code.isEmpty())
            throw Failure(lostConnection(mName));
        requireServer(reason.code, reason.error, mName);
    }
    if (!mStore->isOpen())
        throw Failure(
            QStringLiteral("%1: the store cannot be opened (%2)").arg(address.name(), firstFailureText()));
    if (!address.isServer())
        QSqlQuery(QStringLiteral("PRAGMA busy_timeout = 500"), db());
}

StoreSession::~StoreSession() {
    if (mStore && unexpectedFailures() > 0)
        DBTools::logError(db());
}

QSqlDatabase &StoreSession::db() const {
    return mStore ? mStore->db() : gDB;
}

Net &StoreSession::net() const {
    return mStore ? mStore->net() : gNet;
}

int StoreSession::generation() const {
    return mStore ? mStore->version() : DBTools::dbVer();
}

bool StoreSession::isEnglish() const {
    return mStore ? mStore->isInternational() : DBTools::isInternational();
}

const SpecialWords &StoreSession::words() const {
    return mStore ? mStore->words() : gSpecialWords;
}

void StoreSession::forgetIdentifiers(long netId) const {
    (mStore ? mStore->reservedIds() : DBTools::mhId).remove(netId);
    (mStore ? mStore->highestIds() : DBTools::mhNetMaxId).remove(netId);
}

QList<CallDbResult> StoreSession::failures() const {
    QList<CallDbResult> all =
        mStore ? mStore->failures() : DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult;
    if (hasSeveralNetworks())
        all.erase(std::remove_if(all.begin(), all.end(), stores::isByDesign), all.end());
    return all;
}

QString StoreSession::firstFailureText() const {
    return failures().isEmpty() ? QString() : failures().first().error.trimmed();
}

void StoreSession::requireServerAlive() const {
    if (!engine::isPostgreSql(db()))
        return;
    QSqlQuery question(db());
    // A server that refuses to answer in a transaction that failed is alive, and gives a code.
    if (!question.exec(QStringLiteral("select 1")) && question.lastError().nativeErrorCode().isEmpty())
        throw Failure(lostConnection(mName));
    // Later failures may be what the first one led to.
    for (const CallDbResult &failure : failures())
        requireServer(failure.code, failure.error, mName);
}

void StoreSession::refuseReading(const QString &what, const QSqlQuery &failed) const {
    requireServer(failed, mName);
    refuseReading(what, failed.lastError().databaseText());
}

void StoreSession::refuseReading(const QString &what, const QString &reason) const {
    requireServerAlive();
    throw Failure(
        reason.isEmpty()
            ? QStringLiteral("%1 cannot be read; the store is damaged, restore it from a copy").arg(what)
            : QStringLiteral("%1 cannot be read (%2); try again when no other program writes to the "
                             "store, or else restore it from a copy")
                  .arg(what, reason.simplified()));
}

} // namespace moratools
