#include "store/bulk/NetLoad.h"

#include "model/Words.h"
#include "store/ids/Identifiers.h"

#include <algorithm>

namespace {

/// Adds a row to those of its table that are reported for the same reason.
void report(QList<SkippedRows> &reports, const char *table, long id, const char *reason) {
    constexpr int named = 10;
    auto entry = std::find_if(reports.begin(), reports.end(), [&](const SkippedRows &other) {
        return other.table == QLatin1String(table) && other.reason == QLatin1String(reason);
    });
    if (entry == reports.end())
        entry = reports.insert(reports.end(), {QLatin1String(table), QLatin1String(reason), 0, {}});
    ++entry->count;
    if (entry->ids.size() < named)
        entry->ids.append(id);
}

} // namespace

void NetLoad::skip(const char *table, long id, const char *reason) {
    report(contents.skipped, table, id, reason);
}

void NetLoad::requireWord(const char *table, long id, const QString &word, const char *reason) {
    if (!Words::isKnown(word))
        report(contents.unknownWords, table, id, reason);
}

void NetLoad::refuseText(const char *table, long id, const DamagedText &text) {
    mFailed = true;
    store.fail(
        QStringLiteral("select * from ") + QLatin1String(table),
        QStringLiteral("The text in column %1 of table %2, row %3, %4, nothing can be loaded with it.")
            .arg(QString::fromLatin1(text.column), QLatin1String(table), QString::number(id), text.objection),
        id, FailureKind::Damaged);
}

QByteArray NetLoad::ownId(const char *table) {
    return identifiers::idColumn(QLatin1String(table)).toLatin1();
}

void NetLoad::judge(const char *table, const char *order, Rows &row, RowIds &ids) {
    if (!row.jsonParses())
        skip(table, idOf(table, order, row), "holds JSON that does not parse and reads as empty");
    if (!row.numbersParse())
        skip(table, idOf(table, order, row),
             "holds no finite number where one belongs and reads as 0 or infinite");
    const char *own = ids.column.constData();
    if (ids.column.isEmpty() || !row.hasColumn(own))
        return;
    if (row.isNull(own))
        return skip(table, 0, "has no id");
    const qint64 id = row.whole(own);
    if (id != static_cast<qint32>(id))
        skip(table, static_cast<qint32>(id), "has an id of more than 32 bits and reads as one of 32");
    ids.met.push_back(id);
}

void NetLoad::reportRepeated(const char *table, RowIds &ids) {
    std::vector<qint64> &met = ids.met;
    if (!std::is_sorted(met.begin(), met.end()))
        std::sort(met.begin(), met.end());
    for (auto at = std::adjacent_find(met.begin(), met.end()); at != met.end();
         at = std::adjacent_find(at + 1, met.end()))
        skip(table, static_cast<qint32>(*at), "is there more than once");
}

long NetLoad::idOf(const char *table, const char *order, Rows &row) {
    const QByteArray own = identifiers::idColumn(QLatin1String(table)).toLatin1();
    return row.idIn(own.isEmpty() ? QByteArray(order).split(',').first() : own);
}
