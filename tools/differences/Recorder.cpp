#include "tools/differences/Recorder.h"

#include "store/core/Engine.h"
#include "store/opening/RecordRows.h"
#include "tools/differences/NetworkDiff.h"
#include "tools/differences/RowPlaces.h"
#include "tools/reports/Failure.h"
#include "tools/rows/NetworkRows.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

#include <iterator>

namespace moratools {

namespace {

constexpr char kPrefix[] = "morastore_recorded_";
/// The column that says whether a row came or went.
constexpr char kCame[] = "morastore_came";
/// In a file: the number of the row.
constexpr char kPlace[] = "morastore_place";
/// In a file: whether the triggers are at work.
constexpr char kSwitch[] = "morastore_recording";
constexpr const char *kEvents[] = {"insert", "update", "delete"};

/// "old.a, old.b"
QString valuesOf(const QString &row, const StoreTable &table) {
    QStringList values;
    for (const StoreColumn &column : table.columns)
        values.append(row + QLatin1Char('.') + quotedName(column.name));
    return values.join(QLatin1String(", "));
}

} // namespace

Recorder::Recorder(const StoreSession &store, long netId)
    : mStore(store),
      mNetId(netId),
      mIsSqlite(engine::isSqlite(store.db())),
      mTemporary(QLatin1String(mIsSqlite ? "temp." : "pg_temp.")) {
    requireNoTransaction();
    if (QSqlQuery(QStringLiteral("select isOn from %1").arg(mTemporary + QLatin1String(kSwitch)), store.db())
            .isActive())
        throw Failure(QStringLiteral("the changes of this session have a recorder already"));
    run(QStringLiteral("begin"));
    try {
        prepare();
        run(QStringLiteral("commit"));
    } catch (const Failure &) {
        const QSqlQuery rollback(QStringLiteral("rollback"), store.db());
        throw;
    }
}

Recorder::~Recorder() {
    if (mIsRecording)
        stop();
    drop();
}

void Recorder::prepare() {
    run(QStringLiteral("create temp table %1 as select 0 as isOn").arg(QLatin1String(kSwitch)));
    const QHash<QString, StoreTable> tables = storeTables(mStore.db());
    for (const catalogue::Table &entry : catalogue::tables()) {
        const QString name = QString::fromLatin1(entry.name).toLower();
        const auto table = tables.constFind(name);
        // What belongs to no network is no part of one.
        if (table == tables.constEnd() || (mStore.hasSeveralNetworks() && !table->isNetworkScoped()))
            continue;
        StoreTable kept = *table;
        kept.name = QLatin1String(kPrefix) + name;
        const QString place =
            mIsSqlite ? QStringLiteral("t.rowid as %1, ").arg(QLatin1String(kPlace)) : QString();
        run(QStringLiteral("create temp table %1 as select 1 = 1 as %2, %3t.* from %4 t where 1 = 0")
                .arg(kept.name, QLatin1String(kCame), place, quotedName(table->name)));
        mKept.insert(name, kept);
        if (mIsSqlite)
            prepareTriggers(*table, kept);
    }
}

void Recorder::prepareTriggers(const StoreTable &table, const StoreTable &kept) const {
    const StoreColumn *network =
        mStore.hasSeveralNetworks() ? table.column(QStringLiteral("netid")) : nullptr;
    const QString went = QStringLiteral("(0, old.rowid, %1)").arg(valuesOf(QStringLiteral("old"), table));
    const QString came = QStringLiteral("(1, new.rowid, %1)").arg(valuesOf(QStringLiteral("new"), table));
    const QString rows[] = {came, went + QLatin1String(", ") + came, went};
    for (std::size_t i = 0; i < std::size(kEvents); ++i) {
        const QString ofNetwork = network ? QStringLiteral(" and %1.%2 = %3")
                                                .arg(QLatin1String(i == 0 ? "new" : "old"),
                                                     quotedName(network->name), QString::number(mNetId))
                                          : QString();
        run(QStringLiteral("create temp trigger %1_%2 after %2 on main.%3 when (select isOn from %4)%5 "
                           "begin insert into %1 values %6; end")
                .arg(kept.name, QLatin1String(kEvents[i]), quotedName(table.name), QLatin1String(kSwitch),
                     ofNetwork, rows[i]));
    }
}

void Recorder::begin() {
    if (mIsRecording)
        throw Failure(QStringLiteral("changes of the store are being recorded already; end that first"));
    requireNoTransaction();
    forget();
    if (mIsSqlite) {
        run(QStringLiteral("update temp.%1 set isOn = 1").arg(QLatin1String(kSwitch)));
    } else {
        QHash<QString, QString> tables;
        for (auto kept = mKept.cbegin(); kept != mKept.cend(); ++kept)
            tables.insert(kept.key(), mTemporary + kept->name);
        recordRows(mStore.db(), tables,
                   mStore.hasSeveralNetworks() ? QStringLiteral("NetId = %1").arg(mNetId) : QString());
    }
    mIsRecording = true;
}

Recording Recorder::end() {
    if (!mIsRecording)
        throw Failure(QStringLiteral("changes of the store are not being recorded; begin first"));
    requireNoTransaction();
    const NetworkRows rows(mStore.db(), QStringLiteral("the recorded changes"), written(), false, mNetId);
    Recording recording;
    diffRows(rows.restrictedTo(QStringLiteral("not ") + QLatin1String(kCame)),
             rows.restrictedTo(QLatin1String(kCame)),
             [&](const RowChange &change) { recording.changes.push_back(change); });
    for (const catalogue::Table &entry : catalogue::tables()) {
        const StoreTable *kept = rows.table(QLatin1String(entry.name));
        if (!mIsSqlite || !kept || !entry.isAsWritten)
            continue;
        const auto places = placesIn(mStore.db(), entry, *kept, QLatin1String(kCame), QLatin1String(kPlace));
        recording.places.insert(recording.places.end(), places.begin(), places.end());
    }
    stop();
    forget();
    return recording;
}

void Recorder::cancel() {
    if (!mIsRecording)
        return;
    stop();
    if (QSqlDatabase(mStore.db()).isOpen())
        forget();
}

void Recorder::stop() {
    mIsRecording = false;
    if (mIsSqlite)
        const QSqlQuery off(QStringLiteral("update temp.%1 set isOn = 0").arg(QLatin1String(kSwitch)),
                            mStore.db());
    else
        recordNoRows(mStore.db());
}

QHash<QString, StoreTable> Recorder::written() const {
    QStringList questions;
    for (auto kept = mKept.cbegin(); kept != mKept.cend(); ++kept)
        questions.append(
            QStringLiteral("select '%1' where exists (select 1 from %2)").arg(kept.key(), kept->name));
    QSqlQuery query(mStore.db());
    query.setForwardOnly(true);
    if (!query.exec(questions.join(QLatin1String(" union all "))))
        refuse(query.lastError().databaseText());
    QHash<QString, StoreTable> tables;
    while (query.next())
        tables.insert(query.value(0).toString(), mKept.value(query.value(0).toString()));
    if (query.lastError().isValid())
        refuse(query.lastError().databaseText());
    return tables;
}

void Recorder::forget() const {
    const QHash<QString, StoreTable> tables = written();
    for (const StoreTable &kept : tables)
        run(QLatin1String(mIsSqlite ? "delete from " : "truncate ") + mTemporary + kept.name);
}

void Recorder::drop() const {
    QStringList parts;
    for (const StoreTable &kept : mKept) {
        for (const char *event : kEvents) {
            if (mIsSqlite)
                parts.append(
                    QStringLiteral("trigger %1%2_%3").arg(mTemporary, kept.name, QLatin1String(event)));
        }
        parts.append(QStringLiteral("table ") + mTemporary + kept.name);
    }
    parts.append(QStringLiteral("table ") + mTemporary + QLatin1String(kSwitch));
    // With a connection that is gone they have gone, too.
    for (const QString &part : qAsConst(parts))
        const QSqlQuery dropped(QStringLiteral("drop ") + part, mStore.db());
}

void Recorder::requireNoTransaction() const {
    QSqlQuery query(mStore.db());
    bool isInside = false;
    if (mIsSqlite) {
        // One in another one is refused.
        isInside = !query.exec(QStringLiteral("begin"));
        if (!isInside)
            query.exec(QStringLiteral("commit"));
    } else {
        // A statement of its own begins with its transaction. One that failed takes no question.
        isInside = query.exec(QStringLiteral("select now() = statement_timestamp()"))
                       ? query.next() && !query.value(0).toBool()
                       : query.lastError().nativeErrorCode() == QLatin1String("25P02");
    }
    if (isInside)
        throw Failure(QStringLiteral(
            "changes are not recorded from, or up to, the middle of a transaction; end it first"));
}

void Recorder::run(const QString &sql) const {
    QSqlQuery query(mStore.db());
    if (!query.exec(sql))
        refuse(query.lastError().databaseText());
}

void Recorder::refuse(const QString &reason) const {
    throw Failure(QStringLiteral("changes of the store cannot be recorded (%1)").arg(reason.simplified()));
}

} // namespace moratools
