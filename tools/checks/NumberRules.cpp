#include "store/catalogue/Catalogue.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Counters.h"
#include "tools/checks/Finding.h"
#include "tools/checks/RuleGroups.h"
#include "tools/rows/FormatSchema.h"

#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace moratools {

namespace {

using catalogue::Table;

/// Calls `use` with each table of the catalogue that the store has.
template <class Use>
void forEachTable(const Checked &checked, const Use &use) {
    for (const Table &entry : catalogue::tables()) {
        if (const StoreTable *table = checked.rows().table(QLatin1String(entry.name)))
            use(entry, *table);
    }
}

/// The same with the column of its identifiers, for those that have one.
template <class Use>
void forEachId(const Checked &checked, const Use &use) {
    forEachTable(checked, [&use](const Table &entry, const StoreTable &table) {
        if (const StoreColumn *id = entry.id ? table.column(QLatin1String(entry.id)) : nullptr)
            use(entry, table, quotedName(id->name));
    });
}

/// The rows of the network, with a further condition.
QString where(const Checked &checked, const StoreTable &table, const QString &condition) {
    const QString ofNetwork = checked.rows().condition(table, checked.net());
    return ofNetwork.isEmpty() ? QStringLiteral(" where ") + condition
                               : QStringLiteral("%1 and (%2)").arg(ofNetwork, condition);
}

void checkTwice(const Checked &checked, Reporter &reporter) {
    forEachId(checked, [&](const Table &entry, const StoreTable &table, const QString &id) {
        QSqlQuery rows = checked.rows().run(
            QStringLiteral("select %1, count(*) from %2%3 group by %1 having count(*) > 1")
                .arg(id, quotedName(table.name), where(checked, table, id + QStringLiteral(" is not null"))));
        while (rows.next())
            reporter.find(
                entry.name, rows.value(0).toLongLong(),
                QStringLiteral("%1 is there %2 times")
                    .arg(called(catalogue::wordFor(QLatin1String(entry.name)), rows.value(0).toLongLong()),
                         rows.value(1).toString()));
        checked.rows().check(rows);
    });
}

void checkRange(const Checked &checked, Reporter &reporter) {
    forEachId(checked, [&](const Table &entry, const StoreTable &table, const QString &id) {
        // Codes of vehicle types are the host's.
        if (entry.hasSharedIds)
            return;
        const QString unfit =
            checked.rows().isSqlite()
                ? QStringLiteral("%1 is null or typeof(%1) <> 'integer' or %1 not between 1 and 2147483647")
                : QStringLiteral("%1 not between 1 and 2147483647");
        QSqlQuery rows =
            checked.rows().run(QStringLiteral("select %1 from %2%3")
                                   .arg(id, quotedName(table.name), where(checked, table, unfit.arg(id))));
        while (rows.next())
            reporter.find(
                entry.name, rows.value(0).toLongLong(),
                QStringLiteral("a %1 has the identifier %2")
                    .arg(catalogue::wordFor(QLatin1String(entry.name)),
                         rows.value(0).isNull() ? QStringLiteral("NULL") : rows.value(0).toString()));
        checked.rows().check(rows);
    });
}

/// That a column holds something else than a finite number. An empty text counts as none, as it does for readers. In
/// SQLite's order texts and bytes come after all numbers; abs() fails for the least integer.
QString notFinite(const QString &column, bool isSqlite) {
    return (isSqlite
                ? QStringLiteral("(%1 not between -1.7976931348623157e308 and 1.7976931348623157e308 and "
                                 "length(%1) > 0)")
                : QStringLiteral("cast(%1 as text) in ('NaN', 'Infinity', '-Infinity')"))
        .arg(column);
}

void checkFinite(const Checked &checked, Reporter &reporter) {
    forEachTable(checked, [&](const Table &entry, const StoreTable &table) {
        const QSet<QString> numbers = formatSchema().tables.value(table.name.toLower()).numbers;
        QStringList selected{entry.id && table.column(QLatin1String(entry.id))
                                 ? quotedName(table.column(QLatin1String(entry.id))->name)
                                 : QStringLiteral("null")};
        QStringList names;
        QStringList conditions;
        for (const StoreColumn &column : table.columns) {
            if (!numbers.contains(column.key))
                continue;
            names.append(column.name);
            selected.append(quotedName(column.name));
            conditions.append(notFinite(quotedName(column.name), checked.rows().isSqlite()));
        }
        if (conditions.isEmpty())
            return;
        // Which of the columns it is shows in a column of its own.
        for (const QString &condition : qAsConst(conditions))
            selected.append(QStringLiteral("case when %1 then 1 else 0 end").arg(condition));
        QSqlQuery rows =
            checked.rows().run(QStringLiteral("select %1 from %2%3")
                                   .arg(selected.join(QLatin1Char(',')), quotedName(table.name),
                                        where(checked, table, conditions.join(QLatin1String(" or ")))));
        const QString word = catalogue::wordFor(QLatin1String(entry.name));
        while (rows.next()) {
            const qint64 id = rows.value(0).toLongLong();
            for (int i = 0; i < names.size(); ++i) {
                if (rows.value(1 + names.size() + i).toInt() == 1)
                    reporter.find(
                        entry.name, id,
                        QStringLiteral("%1: %2 is %3")
                            .arg(entry.id ? called(word, id) : word, names[i], rows.value(1 + i).toString()));
            }
        }
        checked.rows().check(rows);
    });
}

void checkNetwork(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().hasSeveralNetworks() || !checked.rows().table(QStringLiteral("Net")))
        return;
    forEachTable(checked, [&](const Table &entry, const StoreTable &table) {
        if (!table.isNetworkScoped() || qstrcmp(entry.name, "Net") == 0)
            return;
        QSqlQuery rows = checked.rows().run(
            QStringLiteral(
                "select NetId, count(*) from %1 where NetId is null or NetId not in (select NetId from Net) "
                "group by NetId order by NetId")
                .arg(quotedName(table.name)));
        while (rows.next())
            reporter.find(
                entry.name, rows.value(0).toLongLong(),
                QStringLiteral("%1 rows of table %2 are of network %3, which the store does not have")
                    .arg(rows.value(1).toString(), table.name,
                         rows.value(0).isNull() ? QStringLiteral("NULL") : rows.value(0).toString()));
        checked.rows().check(rows);
    });
}

void checkCountersBehind(const Checked &checked, Reporter &reporter) {
    for (const Counter &counter : checked.made<Counters>().counters) {
        if (counter.value && *counter.value < counter.largest)
            reporter.find(
                QStringLiteral("the counter of table %1 is at %2, and its rows go up to %3")
                    .arg(counter.table, QString::number(*counter.value), QString::number(counter.largest)));
    }
}

void checkCountersMissing(const Checked &checked, Reporter &reporter) {
    for (const Counter &counter : checked.made<Counters>().counters) {
        if (!counter.value)
            reporter.find(QStringLiteral("table %1 has no counter, and its rows go up to %2")
                              .arg(counter.table, QString::number(counter.largest)));
    }
}

void checkCountersOfNoNetwork(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().isSqlite() || !checked.rows().hasSeveralNetworks() ||
        !checked.rows().table(QStringLiteral("Net")))
        return;
    QSqlQuery rows = checked.rows().run(QStringLiteral(
        "select NetId, count(*) from IDGenerater where NetId not in (select NetId from Net) group by NetId order by NetId"));
    while (rows.next())
        reporter.find("IDGenerater", rows.value(0).toLongLong(),
                      QStringLiteral("%1 counters are of network %2, which the store does not have")
                          .arg(rows.value(1).toString(), rows.value(0).toString()));
    checked.rows().check(rows);
}

} // namespace

std::vector<Rule> numberRules() {
    return {
        {"identifier.twice", "store", Severity::Error, Scope::Rows,
         "Two rows of a table have the same identifier; a program that looks for it gets one of them.",
         "Give one of them an identifier that is free, or remove it.", checkTwice},
        {"identifier.unfit", "store", Severity::Error, Scope::Rows,
         "An identifier is no whole number from 1 to 2147483647, the numbers that programs have for it.",
         "Give the row an identifier that is free, and what refers to it the same one.", checkRange},
        {"number.not-finite", "store", Severity::Error, Scope::Rows,
         "A column of numbers holds something else, or a number that is not finite.",
         "Write the number anew.", checkFinite},
        {"network.record-missing", "store", Severity::Warning, Scope::Store,
         "Rows are of a network without a record: the rest of a removal, or a network that no program finds.",
         "Insert the record into Net again if the network is still wanted, else remove the rows.",
         checkNetwork},
        {"counter.behind", "store", Severity::Warning, Scope::Rows,
         "A counter of identifiers is behind the rows: whoever counts on with it gives out numbers that are taken.",
         "`check --fix` moves the counter past the rows.", checkCountersBehind},
        {"counter.missing", "store", Severity::Warning, Scope::Rows,
         "A table has rows and no counter of identifiers: the next object gets the number 1.",
         "`check --fix` makes the counter; on a server create the sequence, `seq_..._id`.",
         checkCountersMissing},
        {"counter.of-no-network", "store", Severity::Note, Scope::Store,
         "Counters of a network that is gone are left.", "`check --fix` removes them.",
         checkCountersOfNoNetwork},
    };
}

} // namespace moratools
