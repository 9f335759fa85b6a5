#include "store/whole/NetLoad.h"

#include "store/families/Identifiers.h"

#include <algorithm>

void NetLoad::skip(const char *table, long id, const char *reason) {
    constexpr int named = 10;
    QList<SkippedRows> &skipped = contents.skipped;
    auto entry = std::find_if(skipped.begin(), skipped.end(), [&](const SkippedRows &other) {
        return other.table == QLatin1String(table) && other.reason == QLatin1String(reason);
    });
    if (entry == skipped.end())
        entry = skipped.insert(skipped.end(), {QLatin1String(table), QLatin1String(reason), 0, {}});
    ++entry->count;
    if (entry->ids.size() < named)
        entry->ids.append(id);
}

void NetLoad::refuseText(const char *table, long id, const QByteArray &column) {
    mFailed = true;
    store.fail(
        QStringLiteral("select * from ") + QLatin1String(table),
        QStringLiteral("The text in column %1 of table %2, row %3, is not UTF-8: write it anew, nothing "
                       "can be loaded with it.")
            .arg(QString::fromLatin1(column), QLatin1String(table), QString::number(id)));
}

long NetLoad::idOf(const char *table, const char *order, Rows &row) {
    const QByteArray own = identifiers::idColumn(QLatin1String(table)).toLatin1();
    return row.idIn(own.isEmpty() ? QByteArray(order).split(',').first() : own);
}
