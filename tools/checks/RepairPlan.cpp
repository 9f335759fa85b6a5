#include "tools/checks/RepairPlan.h"

#include "store/catalogue/Catalogue.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Counters.h"
#include "tools/checks/Finding.h"
#include "tools/checks/References.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

/// " and NetId = 3" in stores of several networks.
QString andNetwork(const Checked &checked) {
    return checked.rows().hasSeveralNetworks() ? QStringLiteral(" and NetId = %1").arg(checked.net().id)
                                               : QString();
}

RepairStep stepFor(const Checked &checked, const Counter &counter) {
    if (!checked.rows().isSqlite())
        // Sequences serve all networks.
        return {QStringLiteral("select setval('%1', greatest(?, (select last_value from %1)))")
                    .arg(counter.sequence),
                {counter.largest}};
    if (counter.value)
        return {QStringLiteral("update IDGenerater set ID = ? where lower(TableName) = ? and ID < ?") +
                    andNetwork(checked),
                {counter.largest, counter.table.toLower(), counter.largest}};
    if (checked.rows().hasSeveralNetworks())
        return {QStringLiteral("insert into IDGenerater (NetId, TableName, ID) values (?, ?, ?)"),
                {qint64(checked.net().id), counter.table, counter.largest}};
    return {QStringLiteral("insert into IDGenerater (TableName, ID) values (?, ?)"),
            {counter.table, counter.largest}};
}

/// The share of a row in a whole, and the statement that sets it.
struct Share {
    double share;
    QVariantList key;
};

/// The shares of one whole, as they are read.
class Whole {
public:
    Whole(const QString &name, const QString &update) : mName(name), mUpdate(update) {}

    void add(double share, const QVariantList &key) { mShares.push_back({share, key}); }

    /// Where the sum misses 1 or 100 by no more than rounding to two decimals can take away.
    void plan(std::vector<PlannedRepair> &plan) const {
        constexpr double rounding = 0.005;
        constexpr double noise = 1e-6;
        double sum = 0;
        for (const Share &share : mShares)
            sum += share.share;
        const double whole = sum > 50 ? 100 : 1;
        const double missing = whole - sum;
        // A tenth more, so that the last digits of the sum do not count.
        const double allowed = 1.1 * rounding * double(mShares.size());
        if (!(std::abs(missing) > noise && std::abs(missing) <= allowed))
            return;
        const auto largest = std::max_element(
            mShares.begin(), mShares.end(), [](const Share &a, const Share &b) { return a.share < b.share; });
        const double mended = largest->share + missing;
        plan.push_back(
            {QStringLiteral("%1: shares add up to %2 instead of %3, the largest is %4 instead of %5")
                 .arg(mName, QString::number(whole), QString::number(sum, 'g', 10),
                      QString::number(mended, 'g', 10), QString::number(largest->share, 'g', 10)),
             {{mUpdate, QVariantList{mended} + largest->key}}});
    }

private:
    QString mName;
    QString mUpdate;
    std::vector<Share> mShares;
};

/// The rows of a table of shares that belong together, in the order of a statement: `parts` columns tell the
/// whole, the share follows, and then the key of the row.
void planShares(const Checked &checked, const QString &select, int parts, const QString &name,
                const QString &update, std::vector<PlannedRepair> &plan) {
    QSqlQuery rows = checked.rows().run(select);
    QVariantList current;
    std::vector<Whole> wholes;
    while (rows.next()) {
        QVariantList whole;
        for (int i = 0; i < parts; ++i)
            whole.append(rows.value(i));
        QVariantList key;
        for (int i = parts + 1; i < rows.record().count(); ++i)
            key.append(rows.value(i));
        if (wholes.empty() || whole != current)
            wholes.emplace_back(called(name, whole.first().toLongLong()), update);
        current = whole;
        wholes.back().add(rows.value(parts).toDouble(), key);
    }
    checked.rows().check(rows);
    for (const Whole &whole : wholes)
        whole.plan(plan);
}

bool hasTables(const Checked &checked, std::initializer_list<const char *> names) {
    return std::all_of(names.begin(), names.end(),
                       [&checked](const char *name) { return checked.rows().table(QLatin1String(name)); });
}

} // namespace

std::vector<PlannedRepair> repairsOfStore(const Checked &checked) {
    if (!checked.rows().isSqlite() || !checked.rows().hasSeveralNetworks() ||
        !hasTables(checked, {"Net", "IDGenerater"}))
        return {};
    const QString ofNone = QStringLiteral(" from IDGenerater where NetId not in (select NetId from Net)");
    QSqlQuery count = checked.rows().run(QStringLiteral("select count(*)") + ofNone);
    if (!count.next() || count.value(0).toInt() == 0)
        return {};
    return {
        {QStringLiteral("counters of networks that are gone were removed: %1").arg(count.value(0).toInt()),
         {{QStringLiteral("delete") + ofNone}}}};
}

std::vector<PlannedRepair> repairsOfCounters(const Checked &checked) {
    std::vector<PlannedRepair> plan;
    for (const Counter &counter : checked.made<Counters>().counters) {
        // A sequence that is missing is for who owns the database.
        const bool isMissing = !counter.value && checked.rows().isSqlite();
        if (isMissing || (counter.value && *counter.value < counter.largest))
            plan.push_back({QStringLiteral("the counter of table %1 is at %2")
                                .arg(counter.table, QString::number(counter.largest)),
                            {stepFor(checked, counter)}});
    }
    return plan;
}

std::vector<PlannedRepair> repairsOfOrphans(const Checked &checked) {
    std::vector<PlannedRepair> plan;
    for (const catalogue::Table &entry : catalogue::tables()) {
        if (entry.id)
            continue;
        for (const catalogue::Reference &reference : entry.references) {
            const QString from =
                reference.bond == catalogue::Bond::Part ? danglingRows(checked, entry, reference) : QString();
            if (from.isEmpty())
                continue;
            QSqlQuery count = checked.rows().run(QStringLiteral("select count(*) from ") + from);
            if (count.next() && count.value(0).toLongLong() > 0)
                plan.push_back({QStringLiteral("rows of table %1 that belong to nothing were removed: %2")
                                    .arg(QLatin1String(entry.name), count.value(0).toString()),
                                {{QStringLiteral("delete from ") + from}}});
        }
    }
    return plan;
}

std::vector<PlannedRepair> repairsOfShares(const Checked &checked) {
    std::vector<PlannedRepair> plan;
    const QString net = andNetwork(checked);
    const QString where = net.isEmpty() ? QString() : QStringLiteral(" where") + net.mid(4);
    if (hasTables(checked, {"VehicleConsDetail"}))
        planShares(
            checked,
            QStringLiteral("select vehicleConsCode, proportion, vehicleConsCode, vehicleTypeCode from "
                           "VehicleConsDetail%1 order by vehicleConsCode, vehicleTypeCode")
                .arg(where),
            1, QStringLiteral("vehicle composition"),
            QStringLiteral(
                "update VehicleConsDetail set proportion = ? where vehicleConsCode = ? and vehicleTypeCode = ?") +
                net,
            plan);
    if (hasTables(checked, {"Routing"}))
        planShares(
            checked,
            QStringLiteral(
                "select deciPointID, proportion, routingID from Routing%1 order by deciPointID, routingID")
                .arg(where),
            1, QStringLiteral("decision point"),
            QStringLiteral("update Routing set proportion = ? where routingID = ?") + net, plan);
    if (hasTables(checked, {"Routing", "RoutingFLowRatio"}))
        planShares(
            checked,
            QStringLiteral(
                "select r.deciPointID, f.endDateTime, f.ratio, f.RoutingFLowRatioID from RoutingFLowRatio f join "
                "Routing r on r.routingID = f.routingID%1 order by r.deciPointID, f.endDateTime, f.RoutingFLowRatioID")
                .arg(net.isEmpty()
                         ? QString()
                         : QStringLiteral(" and r.NetId = f.NetId where f.NetId = %1").arg(checked.net().id)),
            2, QStringLiteral("decision point"),
            QStringLiteral("update RoutingFLowRatio set ratio = ? where RoutingFLowRatioID = ?") + net, plan);
    return plan;
}

} // namespace moratools
