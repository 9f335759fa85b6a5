#include "tools/session/StoreUpgrade.h"

#include "tools/reports/Failure.h"
#include "tools/session/SqliteConnection.h"
#include "tools/session/StoreBackup.h"
#include "tools/session/StoreSession.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSqlQuery>
#include <QVariant>

namespace moratools {

namespace {

using Columns = QMap<QString, QStringList>;

/// The columns of every table of the store.
Columns columnsOf(const QString &path) {
    Columns columns;
    const SqliteConnection store(path);
    QSqlQuery query = store.run(QStringLiteral(
        "select t.name, c.name from sqlite_master t, pragma_table_info(t.name) c where t.type = 'table' "
        // A virtual table of a plug-in's would run its module.
        "and t.sql like 'create table%' order by t.name, c.cid"));
    while (query.next())
        columns[query.value(0).toString()].append(query.value(1).toString());
    return columns;
}

void compare(const Columns &before, const Columns &after, StoreUpgrade &upgrade) {
    for (auto table = after.cbegin(); table != after.cend(); ++table) {
        const QString &name = table.key();
        if (!before.contains(name)) {
            upgrade.tables.append(name);
            continue;
        }
        if (name == QLatin1String("IDGenerater") && before[name] != table.value()) {
            upgrade.hasNewCounters = true;
            continue;
        }
        for (const QString &column : table.value()) {
            if (before[name].contains(column))
                continue;
            QString misspelt = column;
            misspelt.replace(QLatin1String("Number"), QLatin1String("Nnumber"));
            const bool isRespelled = before[name].contains(misspelt);
            (isRespelled ? upgrade.respelled : upgrade.columns).append(name + QLatin1Char('.') + column);
        }
    }
}

} // namespace

StoreUpgrade upgradeStore(const QString &path, bool keepsCopy) {
    StoreUpgrade upgrade;
    upgrade.wasCurrent = requireStore(path, Access::Upgrade) == Age::Current;
    if (upgrade.wasCurrent)
        return upgrade;
    const QString absolute = QFileInfo(path).absoluteFilePath();
    if (keepsCopy)
        upgrade.copy = keepCopy(path, QStringLiteral("upgrade"));
    const Columns before = columnsOf(absolute);
    {
        const StoreSession store(path, Access::Upgrade);
        upgrade.refused = store.firstFailureText();
    }
    const Columns after = columnsOf(absolute);
    if (!upgrade.refused.isEmpty() && before == after) {
        if (keepsCopy)
            QFile::remove(upgrade.copy);
        throw Failure(QStringLiteral("%1: the store cannot be brought forward (%2); nothing was changed")
                          .arg(path, upgrade.refused));
    }
    compare(before, after, upgrade);
    return upgrade;
}

} // namespace moratools
