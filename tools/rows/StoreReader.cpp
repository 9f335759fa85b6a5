#include "tools/rows/StoreReader.h"

#include "store/catalogue/Catalogue.h"
#include "store/core/Engine.h"
#include "store/guard/ConnectionGuard.h"
#include "store/guard/SchemaGuard.h"
#include "store/server/ConnectionWords.h"
#include "tools/reports/Failure.h"
#include "tools/session/ConnectionSettings.h"
#include "tools/session/Server.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreFile.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace moratools {

QSqlDatabase StoreReader::connection() const {
    return QSqlDatabase::database(mConnection, false);
}

StoreReader::StoreReader(const StoreAddress &address) : mName(address.name()) {
    if (address.isServer())
        requireServerStore(address, Access::Read);
    else
        requireStore(address.path(), Access::Read);
    try {
        open(address);
        mTables = storeTables(connection());
        mGeneration = readGeneration();
        readNetworks(address);
        takeOlderArrivals();
        if (mFile)
            mFile->hideCopy();
    } catch (...) {
        QSqlDatabase::removeDatabase(mConnection);
        throw;
    }
}

StoreReader::~StoreReader() {
    connection().close();
    QSqlDatabase::removeDatabase(mConnection);
}

void StoreReader::open(const StoreAddress &address) {
    const StoreSettings settings = connectionSettings(address);
    QSqlDatabase db = QSqlDatabase::addDatabase(settings.driver, mConnection);
    connectionwords::nameStore(db, settings);
    if (!address.isServer()) {
        mFile = std::make_unique<ReadOnlyFile>(address.path());
        if (!mFile->refusal().isEmpty())
            throw Failure(QStringLiteral("%1: %2").arg(mName, mFile->refusal()));
        mFile->applyTo(db);
        db.setConnectOptions(db.connectOptions() + QStringLiteral(";QSQLITE_BUSY_TIMEOUT=500"));
    }
    if (!connectionguard::open(db))
        throw Failure(QStringLiteral("%1: cannot be opened (%2)")
                          .arg(mName, db.lastError().databaseText().simplified()));
    FailureList reasons;
    if (!schemaguard::hasPlainTables(db, mName, reasons) ||
        !schemaguard::hasFittingVersion(db, mName, reasons))
        throw Failure(reasons.last().error);
    run(address.isServer() ? QStringLiteral("begin transaction isolation level repeatable read read only")
                           : QStringLiteral("begin"));
}

int StoreReader::readGeneration() const {
    // Stores of the first generation need not say what they are.
    if (!table(QStringLiteral("dbversion")))
        return 0;
    QSqlQuery version = run(QStringLiteral("select versionId from DbVersion"));
    return version.next() ? version.value(0).toInt() : 0;
}

void StoreReader::readNetworks(const StoreAddress &address) {
    const QString fallback =
        address.isServer() ? address.value("dbname") : QFileInfo(address.path()).completeBaseName();
    if (table(QStringLiteral("net"))) {
        QSqlQuery rows = run(QStringLiteral("select NetId, name from Net order by NetId"));
        while (rows.next())
            mNetworks.append({long(rows.value(0).toLongLong()), rows.value(1).toString()});
        check(rows);
    }
    if (hasSeveralNetworks())
        return;
    if (mNetworks.isEmpty())
        mNetworks.append({1, fallback});
    mNetworks.erase(mNetworks.begin() + 1, mNetworks.end());
}

/// Arrivals of older releases stand in a table of their own, with the same columns but for the name of the
/// first. It counts where the one that replaced it is empty.
void StoreReader::takeOlderArrivals() {
    const QString current = QStringLiteral("busstationpassengerarriving");
    const StoreTable *older = table(QStringLiteral("passengerarriving"));
    const StoreTable *newer = table(current);
    if (!older || hasSeveralNetworks() || (newer && count(*newer, mNetworks.first()) > 0))
        return;
    StoreTable arrivals = *older;
    for (StoreColumn &column : arrivals.columns) {
        if (column.key == QLatin1String("passengerid"))
            column.key = QStringLiteral("passengerarrivingid");
    }
    mTables.remove(QStringLiteral("passengerarriving"));
    mTables.insert(current, arrivals);
}

QList<StoreReader::Network> StoreReader::networksOf(const std::vector<std::string> &wanted) const {
    if (wanted.empty() && mNetworks.isEmpty())
        throw Failure(QStringLiteral("%1: the store has no network; import one first").arg(mName));
    if (wanted.empty())
        return mNetworks;
    QList<Network> chosen;
    for (const std::string &one : wanted)
        chosen.append(networkCalled(QString::fromStdString(one), mNetworks));
    return chosen;
}

StoreReader::Network StoreReader::networkOf(const std::string &wanted) const {
    return networksOf(wanted.empty() ? std::vector<std::string>() : std::vector<std::string>{wanted}).first();
}

bool StoreReader::isSqlite() const {
    return engine::isSqlite(connection());
}

const StoreTable *StoreReader::table(const QString &named) const {
    const auto found = mTables.constFind(named.toLower());
    return found == mTables.constEnd() ? nullptr : &*found;
}

NetworkRows StoreReader::rowsOf(const Network &network) const {
    return {connection(), mName, mTables, hasSeveralNetworks(), network.id};
}

QString StoreReader::condition(const StoreTable &table, const Network &network) const {
    return rowsOf(network).condition(table);
}

void StoreReader::read(const StoreTable &table, const catalogue::Table &entry, const Network &network,
                       Order order, const std::function<void(const Row &)> &use) const {
    RowCursor cursor = rowsOf(network).read(table, entry, order);
    Row row(table.columns.size());
    while (cursor.next()) {
        for (int i = 0; i < row.size(); ++i)
            row[i] = cursor.value(i);
        use(row);
    }
}

qint64 StoreReader::count(const StoreTable &table, const Network &network) const {
    QSqlQuery rows = run(
        QStringLiteral("select count(*) from %1%2").arg(quotedName(table.name), condition(table, network)));
    return rows.next() ? rows.value(0).toLongLong() : 0;
}

std::vector<qint64> StoreReader::integers(const StoreTable &table, const StoreColumn &column,
                                          const Network &network) const {
    QSqlQuery rows =
        run(QStringLiteral("select distinct %1 from %2%3 order by 1")
                .arg(quotedName(column.name), quotedName(table.name), condition(table, network)));
    std::vector<qint64> values;
    while (rows.next()) {
        if (!rows.value(0).isNull())
            values.push_back(rows.value(0).toLongLong());
    }
    check(rows);
    return values;
}

qint64 StoreReader::largest(const StoreTable &table, const StoreColumn &column,
                            const Network &network) const {
    QSqlQuery rows =
        run(QStringLiteral("select max(%1) from %2%3")
                .arg(quotedName(column.name), quotedName(table.name), condition(table, network)));
    return rows.next() ? rows.value(0).toLongLong() : 0;
}

QHash<qint64, QString> StoreReader::texts(const StoreTable &table, const StoreColumn &id,
                                          const StoreColumn &column, const Network &network,
                                          const std::vector<qint64> &ids) const {
    constexpr std::size_t atOnce = 500;
    QHash<qint64, QString> texts;
    for (std::size_t first = 0; first < ids.size(); first += atOnce) {
        QStringList numbers;
        for (std::size_t i = first; i < std::min(ids.size(), first + atOnce); ++i)
            numbers.append(QString::number(ids[i]));
        const QString where = condition(table, network);
        QSqlQuery rows =
            run(QStringLiteral("select %1, %2 from %3%4 %5 %1 in (%6)")
                    .arg(quotedName(id.name), quotedName(column.name), quotedName(table.name), where,
                         where.isEmpty() ? QStringLiteral("where") : QStringLiteral("and"),
                         numbers.join(QLatin1Char(','))));
        while (rows.next())
            texts.insert(rows.value(0).toLongLong(), rows.value(1).toString());
        check(rows);
    }
    return texts;
}

QList<QPair<QString, qint64>> StoreReader::tablesBesides(const QList<Network> &networks) const {
    // The store's own bookkeeping.
    static const QStringList bookkeeping{QStringLiteral("idgenerater"), QStringLiteral("dbversion")};
    QList<QPair<QString, qint64>> others;
    for (auto table = mTables.cbegin(); table != mTables.cend(); ++table) {
        if (catalogue::find(table.key()) || bookkeeping.contains(table.key()))
            continue;
        qint64 rows = 0;
        if (table->isNetworkScoped() && hasSeveralNetworks()) {
            for (const Network &network : networks)
                rows += count(*table, network);
        } else {
            QSqlQuery all = run(QStringLiteral("select count(*) from %1").arg(quotedName(table->name)));
            rows = all.next() ? all.value(0).toLongLong() : 0;
        }
        if (rows > 0)
            others.append({table->name, rows});
    }
    std::sort(others.begin(), others.end());
    return others;
}

Language StoreReader::language(const Network &network) const {
    return rowsOf(network).language();
}

void StoreReader::finish() {
    run(QStringLiteral("rollback"));
}

QSqlQuery StoreReader::run(const QString &sql) const {
    QSqlQuery query(connection());
    query.setForwardOnly(true);
    if (!query.exec(sql))
        check(query);
    return query;
}

void StoreReader::check(const QSqlQuery &query) const {
    requireServer(query, mName);
    if (query.lastError().isValid())
        throw Failure(QStringLiteral("%1: the store cannot be read (%2); check it, or the server")
                          .arg(mName, query.lastError().databaseText().simplified()));
}

} // namespace moratools
