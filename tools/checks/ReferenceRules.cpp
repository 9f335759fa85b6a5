#include "store/catalogue/Catalogue.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Finding.h"
#include "tools/checks/References.h"
#include "tools/checks/RuleGroups.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>
#include <QVariant>

#include <algorithm>

namespace moratools {

namespace {

using catalogue::Bond;
using catalogue::Reference;
using catalogue::Table;

/// "StartNodeID" as a part of a rule's id: "start-node".
QString dashed(QString name) {
    static const QRegularExpression identifier(QStringLiteral("(ID|Id|id|D|Code)(\\d*)$"));
    static const QRegularExpression capital(QStringLiteral("(?<=[a-z])([A-Z0-9])"));
    name.replace(identifier, QStringLiteral("\\2"));
    name.replace(capital, QStringLiteral("-\\1")).replace(QLatin1Char('_'), QLatin1Char('-'));
    return name.toLower();
}

/// What a sentence calls a row of a table.
QString wordOf(const Table &table) {
    const QString name = QLatin1String(table.name);
    const QString word = catalogue::wordFor(name);
    return word.endsWith(name) ? dashed(name).replace(QLatin1Char('-'), QLatin1Char(' ')) : word;
}

/// The statement for the rows of which a reference names nothing.
class Dangling {
public:
    Dangling(const Checked &checked, const Table &table, const Reference &reference)
        : mRows(checked.rows()),
          mNet(checked.net()),
          mTable(table),
          mReference(reference),
          mFrom(mRows.table(QLatin1String(table.name))) {}

    bool isThere() const { return mFrom && mFrom->column(QLatin1String(mReference.column)); }

    /// The table, and the condition for its rows that name nothing.
    QString rows() const {
        const QString value = column(mReference.column);
        QStringList conditions{value + QStringLiteral(" is not null")};
        if (mRows.hasSeveralNetworks())
            conditions.append(quotedName(mFrom->name) + QStringLiteral(".NetId = ") + net());
        if (mReference.bond == Bond::Named || mReference.mayBeNone)
            conditions.append(value + QStringLiteral(" <> 0"));
        conditions.append(mReference.table ? names(mReference.table) : namesRoad());
        return QStringLiteral("%1 where %2")
            .arg(quotedName(mFrom->name), conditions.join(QStringLiteral(" and ")));
    }

    void report(Reporter &reporter) const {
        if (!isThere())
            return;
        QSqlQuery rows = mRows.run(statement());
        while (rows.next())
            reporter.find(finding(rows));
        mRows.check(rows);
    }

private:
    QString column(const char *name) const {
        const StoreColumn *column = mFrom->column(QLatin1String(name));
        return column ? quotedName(mFrom->name) + QLatin1Char('.') + quotedName(column->name) : QString();
    }

    /// What tells the row: the reference, the row's number, the columns of its key.
    QStringList shownColumns() const {
        QStringList columns{column(mReference.column)};
        columns.append(mTable.id ? column(mTable.id) : QString());
        for (const char *name : mTable.key)
            columns.append(column(name));
        columns.replaceInStrings(QRegularExpression(QStringLiteral("^$")), QStringLiteral("null"));
        return columns;
    }

    QString statement() const {
        // By what tells the rows: the number, or the key.
        return QStringLiteral("select %1 from %2 order by %3")
            .arg(shownColumns().join(QStringLiteral(", ")), rows(),
                 mTable.id ? QStringLiteral("2") : keyPlaces());
    }
    QString keyPlaces() const {
        QStringList places;
        for (int i = 0; i < int(mTable.key.size()); ++i)
            places.append(QString::number(i + 3));
        return places.join(QLatin1Char(','));
    }
    QString net() const { return QString::number(mNet.id); }

    /// That no row of a table has the identifier.
    QString names(const char *name) const {
        const StoreTable *table = mRows.table(QLatin1String(name));
        const StoreColumn *id =
            table ? table->column(QLatin1String(catalogue::find(QLatin1String(name))->id)) : nullptr;
        if (!id)
            return QStringLiteral("1 = 1");
        const QString sameNet =
            mRows.hasSeveralNetworks() ? QStringLiteral("t.NetId = %1 and ").arg(net()) : QString();
        return QStringLiteral("not exists (select 1 from %1 t where %2t.%3 = %4)")
            .arg(quotedName(table->name), sameNet, quotedName(id->name), column(mReference.column));
    }

    /// That the road is neither; which of the two the row means is for the loader to find out.
    QString namesRoad() const { return names("Link") + QStringLiteral(" and ") + names("Connector"); }

    Finding finding(const QSqlQuery &row) const {
        Finding found;
        found.table = QLatin1String(mTable.name);
        QString object = wordOf(mTable);
        if (mTable.id) {
            found.id = row.value(1).toLongLong();
            object = called(object, *found.id);
        } else {
            QStringList key;
            for (int i = 0; i < int(mTable.key.size()); ++i)
                key.append(QStringLiteral("%1 %2").arg(QLatin1String(mTable.key[std::size_t(i)]),
                                                       row.value(i + 2).toString()));
            object += QStringLiteral(" (%1)").arg(key.join(QStringLiteral(", ")));
        }
        found.text = QStringLiteral("%1: %2 is %3, and the network has no such %4")
                         .arg(object, QLatin1String(mReference.column), row.value(0).toString(), target());
        return found;
    }
    QString target() const {
        return mReference.table ? wordOf(*catalogue::find(QLatin1String(mReference.table)))
                                : QStringLiteral("link or connector");
    }

    const StoreReader &mRows;
    const StoreReader::Network &mNet;
    const Table &mTable;
    const Reference &mReference;
    const StoreTable *mFrom;
};

/// What the reference is called in the rule's id: as what it names, or as the column where the table names two
/// of these.
QString nameOf(const Table &table, const Reference &reference) {
    const auto alike =
        std::count_if(table.references.begin(), table.references.end(), [&](const Reference &other) {
            return QLatin1String(other.table) == QLatin1String(reference.table) &&
                   other.bond != Bond::HostNumber;
        });
    if (alike > 1)
        return dashed(QLatin1String(reference.column));
    return reference.table ? wordOf(*catalogue::find(QLatin1String(reference.table)))
                                 .replace(QLatin1Char(' '), QLatin1Char('-'))
                           : QStringLiteral("road");
}

Rule ruleFor(const Table &table, const Reference &reference) {
    const QString word = wordOf(table);
    Rule rule;
    rule.id = QStringLiteral("%1.%2-missing")
                  .arg(QString(word).replace(QLatin1Char(' '), QLatin1Char('-')), nameOf(table, reference));
    rule.group = "references";
    // No object holds the rows of these tables.
    rule.severity = table.isAside ? Severity::Warning : Severity::Error;
    rule.scope = Scope::Rows;
    rule.meaning = QStringLiteral("`%1.%2` names nothing that the network has.")
                       .arg(QLatin1String(table.name), QLatin1String(reference.column));
    rule.remedy = reference.bond == Bond::Part
                      ? QStringLiteral("Restore what the row is a part of, or remove the row.")
                      : QStringLiteral("Name another one, or remove the %1.").arg(word);
    // Entries of the catalogue live as long as the process.
    rule.check = [&table, &reference](const Checked &checked, Reporter &reporter) {
        Dangling(checked, table, reference).report(reporter);
    };
    return rule;
}

} // namespace

QString danglingRows(const Checked &checked, const Table &table, const Reference &reference) {
    const Dangling dangling(checked, table, reference);
    return dangling.isThere() && checked.rows().table(QLatin1String(reference.table)) ? dangling.rows()
                                                                                      : QString();
}

std::vector<Rule> referenceRules() {
    std::vector<Rule> rules;
    for (const Table &table : catalogue::tables()) {
        for (const Reference &reference : table.references) {
            if (reference.bond != Bond::HostNumber)
                rules.push_back(ruleFor(table, reference));
        }
    }
    return rules;
}

} // namespace moratools
