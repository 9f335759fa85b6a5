#include "store/families/UsageLog.h"

#include "model/AppVersionManager.h"
#include "model/Logger.h"
#include "store/core/Columns.h"
#include "store/core/Query.h"
#include "store/ids/Identifiers.h"

#include <QDateTime>
#include <QSysInfo>

namespace usagelog {

namespace {

const QString kTable = QStringLiteral("Logger");

constexpr const char *kColumnsOfStore = "select * from Logger where 1 = 0";
constexpr Sql kSelectId = {"select logID from Logger where logID = %1",
                           "select logID from Logger where NetId = %0 and logID = %1"};
constexpr Sql kSelectLargestId = {"select max(logID) from Logger",
                                  "select max(logID) from Logger where NetId = %0"};
// By time first: programs that write at once reserve their ids in blocks.
constexpr Sql kSelect = {"select * from Logger order by operDate desc, logID desc",
                         "select * from Logger where NetId = %0 order by operDate desc, logID desc"};

constexpr std::tuple kColumns = {
    Column{":logID", &Logger::logID},
    Column{":appVersionName", &Logger::appVersionName},
    Column{":appVersionDate", &Logger::appVersionDate},
    Column{":operation", &Logger::operation},
    Column{":operDate", &Logger::operDate},
    Column{":userName", &Logger::userName},
    Column{":hostName", &Logger::hostName},
    Column{":pluginName", &Logger::pluginName},
    Column{":pluginVersion", &Logger::pluginVersion},
    Column{":pluginOperation", &Logger::pluginOperation},
    Column{":remark", &Logger::remark},
};

void fillIn(const Store &store, Logger &event) {
    const auto fill = [](QString &text, const QString &value) {
        if (text.isEmpty())
            text = value;
    };
    if (event.appVersionName.isEmpty()) {
        const AppVersion &version = AppVersionManager::ofLibrary().newest();
        event.appVersionName = version.number.toString();
        fill(event.appVersionDate, version.date.toString(Qt::ISODate));
    }
    fill(event.operDate, QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddhhmmss")));
    fill(event.userName, qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME")));
    fill(event.hostName, QSysInfo::machineHostName());
    fill(event.remark,
         QStringLiteral("%1, Qt %2, %3")
             .arg(QSysInfo::prettyProductName(), QLatin1String(qVersion()), store.db().driverName()));
}

/// An id from the counter; past the largest in use when a row that was written without the counter has it.
bool drawId(const Store &store, long &id) {
    if (!identifiers::next(store, kTable, id))
        return false;
    Query taken(store, kSelectId, {id});
    if (!taken.exec())
        return false;
    if (!taken.next())
        return taken.isComplete();
    taken.finish();
    Query largest(store, kSelectLargestId);
    if (!largest.execAndNext() || !identifiers::requireId(store, kTable, largest.firstInteger() + 1))
        return false;
    id = largest.firstId() + 1;
    return true;
}

bool insertRow(const Store &store, const Logger &event) {
    // Older stores have the table with fewer columns: what it has no column for is left out.
    Query table(store, kColumnsOfStore);
    if (!table.exec())
        return false;
    QStringList placeholders;
    if (store.hasSeveralNets())
        placeholders.append(QStringLiteral(":NetId"));
    std::vector<bool> isThere;
    forEachColumn(kColumns, [&](const auto &column) {
        isThere.push_back(table.hasColumn(column.name()));
        if (isThere.back())
            placeholders.append(QLatin1String(column.placeholder));
    });
    table.finish();
    const QString values = placeholders.join(QLatin1Char(','));
    Query insert(store, QStringLiteral("insert into Logger(%1) values(%2)")
                            .arg(QString(values).remove(QLatin1Char(':')), values));
    insert.bindNet();
    std::size_t place = 0;
    forEachColumn(kColumns, [&](const auto &column) {
        if (isThere[place++])
            column.bind(insert, event);
    });
    return insert.exec();
}

} // namespace

bool appendEvent(const Store &store, Logger event) {
    fillIn(store, event);
    return drawId(store, event.logID) && insertRow(store, event);
}

bool readEvents(const Store &store, QList<Logger> &events, int limit) {
    QString text = store.text(kSelect, {});
    if (limit > 0)
        text += QStringLiteral(" limit %1").arg(limit);
    Query rows(store, text);
    if (!rows.exec())
        return false;
    while (rows.next()) {
        Logger event;
        readAll(rows, kColumns, event);
        events.append(event);
    }
    return rows.isComplete();
}

} // namespace usagelog
