#include "tools/session/NetworkChoice.h"

#include "store/DBTools.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"
#include "tools/session/TextLiteral.h"

#include <QSqlQuery>

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
    const int failuresBefore = store.unexpectedFailures();
    QList<NamedNetwork> present;
    const auto names = DBTools::selectNetNames(store.db());
    for (const auto &[id, name] : names)
        present.append({id, name});
    if (store.unexpectedFailures() > failuresBefore)
        store.refuseReading(QStringLiteral("the list of networks"));
    return networkCalled(wanted, present).id;
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
