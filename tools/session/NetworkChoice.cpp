#include "tools/session/NetworkChoice.h"

#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"
#include "tools/session/TextLiteral.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <iterator>

namespace moratools {

NamedNetwork networkCalled(const QString &wanted, const QList<NamedNetwork> &present) {
    bool isNumber = false;
    const long id = wanted.toLong(&isNumber);
    QList<NamedNetwork> found;
    const auto collect = [&](const auto &matches) {
        std::copy_if(present.cbegin(), present.cend(), std::back_inserter(found), matches);
    };
    if (isNumber)
        collect([id](const NamedNetwork &network) { return network.id == id; });
    if (found.isEmpty())
        collect([&wanted](const NamedNetwork &network) { return network.name == wanted; });
    if (found.isEmpty())
        throw Failure(
            QStringLiteral("the store has no network \"%1\"; \"morastore info\" lists those that it has")
                .arg(wanted));
    if (found.size() > 1)
        throw Failure(QStringLiteral("the store has %1 networks \"%2\"; give the number of one")
                          .arg(QString::number(found.size()), wanted));
    return found.first();
}

long networkIdOf(const StoreSession &store, const QString &wanted) {
    // A store may have very many networks.
    QString sql = QStringLiteral("select NetId, name from Net where name = %1").arg(textLiteral(wanted));
    bool isNumber = false;
    const long id = wanted.toLong(&isNumber);
    if (isNumber)
        sql += QStringLiteral(" or NetId = %1").arg(id);
    QList<NamedNetwork> candidates;
    QSqlQuery rows(store.db());
    for (bool isThere = rows.exec(sql) && rows.next(); isThere; isThere = rows.next())
        candidates.append({long(rows.value(0).toLongLong()), rows.value(1).toString()});
    if (!rows.isActive() || rows.lastError().isValid())
        store.refuseReading(QStringLiteral("the list of networks"), rows);
    return networkCalled(wanted, candidates).id;
}

long chosenNetwork(const StoreSession &store, const std::string &wanted) {
    return wanted.empty() ? 0 : networkIdOf(store, QString::fromStdString(wanted));
}

void requireFreeName(const StoreSession &store, const QString &name) {
    QSqlQuery taken(store.db());
    if (!taken.exec(QStringLiteral("select count(*) from Net where name = %1").arg(textLiteral(name))) ||
        !taken.next())
        store.refuseReading(QStringLiteral("the list of networks"), taken);
    if (taken.value(0).toInt() > 0)
        throw Failure(QStringLiteral("the store has a network \"%1\" already; give another name").arg(name));
}

} // namespace moratools
