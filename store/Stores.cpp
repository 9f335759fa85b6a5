#include "store/Stores.h"

#include "store/OpenStore.h"
#include "store/Transaction.h"
#include "store/core/Failures.h"
#include "store/families/Networks.h"
#include "store/guard/NewFile.h"
#include "store/opening/ProcessStore.h"
#include "store/opening/StoreOpening.h"
#include "store/schema/Dictionaries.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>

#include <algorithm>

namespace stores {

namespace {

const QString kTemplates = QStringLiteral(":/Resources/EmptyNet");

bool refuse(const QString &sentence) {
    return recordFailure(processStore().state.failures, {}, sentence);
}

bool write(const QByteArray &bytes, NewFile &file, const QString &wanted) {
    QFile copy(file.path()); // there already, and empty
    if (copy.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && copy.write(bytes) == bytes.size())
        return true;
    // A file that took only a part of the bytes reports no error of its own.
    const QString reason =
        copy.error() == QFileDevice::NoError ? QStringLiteral("no room left") : copy.errorString();
    return refuse(QStringLiteral("%1: cannot be written (%2); check the folder and its disk")
                      .arg(QDir::toNativeSeparators(wanted), reason));
}

bool bringForward(const NewFile &file, const QString &wanted) {
    const OpenStore store(file.path(), OpenStore::Access::Write);
    const QList<CallDbResult> &failures = store.failures();
    const auto failed =
        std::find_if(failures.cbegin(), failures.cend(), [](const auto &each) { return !isByDesign(each); });
    if (store.isOpen() && failed == failures.cend())
        return true;
    return refuse(QStringLiteral("%1: the new store cannot be brought to the current schema (%2)")
                      .arg(QDir::toNativeSeparators(wanted),
                           failed == failures.cend() ? QString() : failed->error.trimmed()));
}

} // namespace

QStringList templateNames() {
    QStringList names = QDir(kTemplates).entryList(QDir::Files, QDir::Name);
    // The dumps for a database server are no SQLite stores.
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString &name) { return name.endsWith(QLatin1String(".backup")); }),
                names.end());
    return names;
}

QString newestTemplate() {
    return QStringLiteral("EmptyNet_V6.0.0");
}

QByteArray templateNamed(const QString &name) {
    QFile source(kTemplates + QLatin1Char('/') + name);
    return templateNames().contains(name) && source.open(QIODevice::ReadOnly) ? source.readAll()
                                                                              : QByteArray();
}

bool create(const QString &path, const QString &templateName) {
    const OperationName operation("create");
    const QByteArray bytes = templateNamed(templateName);
    if (bytes.isEmpty())
        return refuse(QStringLiteral("There is no template \"%1\"; the templates are %2")
                          .arg(templateName, templateNames().join(QStringLiteral(", "))));
    if (path.isEmpty())
        return refuse(QStringLiteral("The name of the store is empty; give the path of a file"));
    if (!QFileInfo(path).absoluteDir().exists())
        return refuse(QStringLiteral("%1: the folder does not exist; make it first")
                          .arg(QDir::toNativeSeparators(path)));
    NewFile file(path);
    if (!file.refusal().isEmpty())
        return refuse(file.refusal());
    return write(bytes, file, path) && bringForward(file, path) && (file.publish() || refuse(file.refusal()));
}

bool isReadOnly(const QSqlDatabase &db) {
    return stateOf(db).isReadOnly;
}

QList<NetRecord> networks(QSqlDatabase &db) {
    const OperationName operation("networks");
    return ::networks::readRecords(opening::storeOfOneNet(stateOf(db), db, 0));
}

std::optional<long> addNetwork(QSqlDatabase &db, NetRecord record) {
    const OperationName operation("addNetwork");
    Transaction change(db);
    StoreState &state = stateOf(db);
    if (!change.isOpen())
        return std::nullopt;
    const Store any = opening::storeByVersion(state, db, 0, nullptr);
    const bool isSecond = !any.hasSeveralNets() && ::networks::isAnyNetworkThere(any).value_or(false);
    if (isSecond)
        any.fail({}, QStringLiteral("The store holds one network and has one: make a store of its own"), 0,
                 FailureKind::Constraint);
    if (record.netId == 0)
        record.netId = ::networks::largestNetworkId(any) + 1;
    const Store store = opening::storeByVersion(state, db, record.netId, nullptr);
    const ::networks::Record row = ::networks::recordOf(record);
    const quint64 before = lastFailureNumber();
    if (!isSecond && !::networks::insertNetwork(store, row, false) && lastFailureNumber() == before)
        store.fail({}, QStringLiteral("The store has a network %1 already").arg(record.netId), record.netId,
                   FailureKind::Constraint);
    // The insert leaves out where the network comes from.
    if (store.hasSeveralNets())
        ::networks::updateNetwork(store, row, false);
    dictionaries::seedDictionaries(store, false);
    if (!change.commit() || !::networks::loadNetworkById(store))
        return std::nullopt;
    return record.netId;
}

bool isByDesign(const CallDbResult &failure) {
    return failure.sql.contains(QLatin1String("IDGenerater")) && failure.sql.contains(QLatin1String("'Rsu'"));
}

} // namespace stores
