#include "tools/differences/RowPlaces.h"

#include "tools/reports/Failure.h"
#include "tools/rows/FormatSchema.h"
#include "tools/session/ServerFailure.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

#include <algorithm>
#include <map>
#include <utility>

namespace moratools {

namespace {

void check(const QSqlQuery &query, bool done) {
    if (done)
        return;
    requireServer(query);
    throw Failure(QStringLiteral("the order of rows cannot be kept (%1); nothing was changed")
                      .arg(query.lastError().databaseText().simplified()));
}

void run(QSqlQuery &query, const QString &sql) {
    check(query, query.exec(sql));
}

/// "routingID = 3 and num1 = 1"; identities are whole numbers.
QString isTheRow(const StoreTable &table, const RowPlace &place) {
    QStringList conditions;
    for (auto column = place.key.cbegin(); column != place.key.cend(); ++column)
        conditions.append(quotedName(table.column(column.key())->name) + QStringLiteral(" = ") +
                          QString::number(column.value().toLongLong()));
    return conditions.join(QStringLiteral(" and "));
}

} // namespace

std::vector<RowPlace> placesIn(const QSqlDatabase &db, const catalogue::Table &entry, const StoreTable &kept,
                               const QString &came, const QString &place) {
    const QString table = QLatin1String(entry.name);
    const bool hasId = entry.id && kept.column(QLatin1String(entry.id));
    QStringList columns{came, place};
    QStringList names;
    for (const char *name : identityColumns(entry, hasId)) {
        columns.append(quotedName(kept.column(QLatin1String(name))->name));
        names.append(formatName(table, QLatin1String(name)));
    }
    QSqlQuery query(db);
    query.setForwardOnly(true);
    run(query,
        QStringLiteral("select %1 from %2 order by rowid").arg(columns.join(QLatin1Char(',')), kept.name));
    std::map<std::vector<qint64>, RowPlace> known;
    while (query.next()) {
        std::vector<qint64> identity;
        RowPlace first{&entry, {}, query.value(0).toBool() ? 0 : query.value(1).toLongLong(), 0};
        for (int i = 0; i < names.size(); ++i) {
            identity.push_back(query.value(i + 2).toLongLong());
            first.key.insert(names[i], identity.back());
        }
        RowPlace &row = known.emplace(identity, first).first->second;
        row.after = query.value(0).toBool() ? query.value(1).toLongLong() : 0;
    }
    check(query, !query.lastError().isValid());
    std::vector<RowPlace> places;
    for (const auto &[identity, row] : known) {
        if (row.before != row.after)
            places.push_back(row);
    }
    return places;
}

void putInPlaces(const NetworkRows &rows, const std::vector<RowPlace> &places) {
    // By table, with the row numbers that they have for the time being.
    std::map<QString, std::vector<std::pair<const RowPlace *, qint64>>> moved;
    for (const RowPlace &place : places) {
        if (place.after > 0)
            moved[QLatin1String(place.table->name)].emplace_back(&place, 0);
    }
    QSqlQuery query(rows.db());
    for (auto &[name, rowsOfTable] : moved) {
        const StoreTable *table = rows.table(name);
        if (!table)
            continue;
        const QString from = quotedName(table->name);
        const QString net = rows.condition(*table);
        const QString isOfNet = net.isEmpty() ? QStringLiteral(" where 1 = 1") : net;
        run(query, QStringLiteral("select max(rowid) from ") + from);
        qint64 last = query.next() ? query.value(0).toLongLong() : 0;
        query.finish();
        for (const auto &[place, now] : rowsOfTable)
            last = std::max(last, place->after);
        // First out of each other's way.
        for (auto &[place, now] : rowsOfTable) {
            now = ++last;
            run(query, QStringLiteral("update %1 set rowid = %2%3 and %4")
                           .arg(from, QString::number(now), isOfNet, isTheRow(*table, *place)));
        }
        for (const auto &[place, now] : rowsOfTable)
            run(query, QStringLiteral("update %1 set rowid = %2 where rowid = %3 and not exists "
                                      "(select 1 from %1 where rowid = %2)")
                           .arg(from, QString::number(place->after), QString::number(now)));
    }
}

} // namespace moratools
