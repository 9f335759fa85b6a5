#include "store/catalogue/Catalogue.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Finding.h"
#include "tools/checks/RuleGroups.h"
#include "tools/rows/FormatSchema.h"

#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <iterator>

namespace moratools {

namespace {

void checkIntegrity(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().isSqlite())
        return;
    // One line for each fault, or "ok".
    QSqlQuery lines = checked.rows().run(QStringLiteral("pragma integrity_check"));
    while (lines.next()) {
        const QString line = lines.value(0).toString().simplified();
        if (line != QLatin1String("ok"))
            reporter.find(line);
    }
    checked.rows().check(lines);
}

/// Calls `use` with the name of each table of the format and the table of the store, null where it is missing.
template <class Use>
void forEachTable(const Checked &checked, const Use &use) {
    QStringList names = formatSchema().tables.keys();
    names.sort();
    for (const QString &name : qAsConst(names))
        use(formatSchema().tables[name], checked.rows().table(name));
}

void checkTables(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().hasSeveralNetworks())
        return;
    forEachTable(checked, [&reporter](const DeclaredSchema::Table &table, const StoreTable *present) {
        if (!present && catalogue::find(table.name))
            reporter.find(QStringLiteral("table %1 is missing").arg(table.name));
    });
}

void checkColumns(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().hasSeveralNetworks())
        return;
    forEachTable(checked, [&reporter](const DeclaredSchema::Table &table, const StoreTable *present) {
        for (const QString &column : table.columns) {
            if (present && !present->column(column))
                reporter.find(QStringLiteral("table %1 has no column %2").arg(table.name, column));
        }
    });
}

void checkForeignColumns(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().hasSeveralNetworks())
        return;
    forEachTable(checked, [&reporter](const DeclaredSchema::Table &table, const StoreTable *present) {
        for (const StoreColumn &column : present ? present->columns : QVector<StoreColumn>()) {
            if (!table.columns.contains(column.name, Qt::CaseInsensitive))
                reporter.find(QStringLiteral("table %1 has a column %2").arg(table.name, column.name));
        }
    });
}

void checkAge(const Checked &checked, Reporter &reporter) {
    if (checked.rows().hasSeveralNetworks())
        return;
    forEachTable(checked, [&reporter](const DeclaredSchema::Table &table, const StoreTable *present) {
        if (!present && catalogue::find(table.name))
            reporter.find(QStringLiteral("table %1 is not there yet").arg(table.name));
    });
}

/// What the store declares of its tables; nothing on a server and in stores of one network, which have had other
/// keys from release to release.
DeclaredSchema declared(const Checked &checked) {
    DeclaredSchema schema;
    if (!checked.rows().isSqlite() || !checked.rows().hasSeveralNetworks())
        return schema;
    QSqlQuery columns = checked.rows().run(DeclaredSchema::columnsQuestion());
    schema.takeColumns(columns);
    QSqlQuery indexes = checked.rows().run(DeclaredSchema::indexesQuestion());
    schema.takeIndexes(indexes);
    return schema;
}

void checkKeys(const Checked &checked, Reporter &reporter) {
    const DeclaredSchema own = declared(checked);
    forEachTable(checked, [&](const DeclaredSchema::Table &table, const StoreTable *) {
        const auto present = own.tables.constFind(table.name.toLower());
        if (present != own.tables.cend() && present->key != table.key)
            reporter.find(QStringLiteral("table %1 has the key (%2) instead of (%3)")
                              .arg(table.name, present->key.join(QLatin1String(", ")),
                                   table.key.join(QLatin1String(", "))));
    });
}

void checkIndexes(const Checked &checked, Reporter &reporter) {
    const DeclaredSchema own = declared(checked);
    QStringList names = formatSchema().indexes.keys();
    names.sort();
    // A store that an earlier release made may lack many; they are one finding.
    QStringList missing;
    for (const QString &name : qAsConst(names)) {
        const QString table = formatSchema().indexes[name];
        if (own.tables.contains(table.toLower()) && !own.indexes.contains(name))
            missing.append(QStringLiteral("%1 of table %2").arg(name, table));
    }
    if (!missing.isEmpty())
        reporter.find(QStringLiteral("the store has no index ") + missing.join(QLatin1String(", ")));
}

void checkVersion(const Checked &checked, Reporter &reporter) {
    if (!checked.rows().table(QStringLiteral("DbVersion"))) {
        reporter.find(QStringLiteral("the store has no table DbVersion"));
        return;
    }
    QSqlQuery rows = checked.rows().run(QStringLiteral("select versionId from DbVersion"));
    QStringList versions;
    while (rows.next())
        versions.append(rows.value(0).toString());
    checked.rows().check(rows);
    if (versions.isEmpty())
        reporter.find(QStringLiteral("table DbVersion names no version"));
    else if (versions.size() > 1)
        reporter.find(QStringLiteral("table DbVersion names the versions %1; the first one counts")
                          .arg(versions.join(QLatin1String(", "))));
}

void checkEmptiness(const Checked &checked, Reporter &reporter) {
    if (isEmpty(checked.rows()))
        reporter.find(QStringLiteral("the store has no network"));
}

void checkNames(const Checked &checked, Reporter &reporter) {
    QHash<QString, long> first;
    for (const StoreReader::Network &network : checked.rows().networks()) {
        const auto known = first.constFind(network.name);
        if (known == first.cend())
            first.insert(network.name, network.id);
        else
            reporter.find("Net", network.id,
                          QStringLiteral("%1 is called as network %2 is")
                              .arg(called(QStringLiteral("network"), network.id, network.name),
                                   QString::number(*known)));
    }
}

void checkDefault(const Checked &checked, Reporter &reporter) {
    const StoreTable *table = checked.rows().table(QStringLiteral("Net"));
    if (!table || !table->column(QStringLiteral("isDefault")))
        return;
    QSqlQuery rows = checked.rows().run(
        QStringLiteral("select NetId, name from Net where isDefault = 'T' order by NetId"));
    for (bool isFirst = true; rows.next(); isFirst = false) {
        if (!isFirst)
            reporter.find("Net", rows.value(0).toLongLong(),
                          QStringLiteral("%1 is to be opened by default, as another one is")
                              .arg(called(QStringLiteral("network"), rows.value(0).toLongLong(),
                                          rows.value(1).toString())));
    }
    checked.rows().check(rows);
}

void checkReadable(const Checked &checked, Reporter &reporter) {
    if (!checked.refusal().isEmpty())
        reporter.find(checked.refusal());
}

void checkLeftOut(const Checked &checked, Reporter &reporter) {
    for (const QString &line : damageOf(checked.network()))
        reporter.find(line);
}

std::vector<Rule> schemaRules() {
    return {
        {"store.damaged", "store", Severity::Error, Scope::Store,
         "The engine finds pages or indexes of the store damaged.",
         "Restore the store from a copy; `copy` into a new store saves what can still be read.",
         checkIntegrity},
        {"store.table-missing", "store", Severity::Error, Scope::Store,
         "A table that networks have is missing.",
         "Copy the networks into a new store, or restore the store from a copy.", checkTables},
        {"store.column-missing", "store", Severity::Error, Scope::Store,
         "A table lacks a column of the format, and statements that name it fail.",
         "Copy the networks into a new store, or restore the store from a copy.", checkColumns},
        {"store.column-unknown", "store", Severity::Note, Scope::Store,
         "A table of the format has a column that is none of it; the library neither fills nor copies it.",
         "Keep what is your own in tables of your own.", checkForeignColumns},
        {"store.key-changed", "store", Severity::Warning, Scope::Store,
         "A table has another key than the format gives it, so that rows can be there twice.",
         "Copy the networks into a new store.", checkKeys},
        {"store.index-missing", "store", Severity::Note, Scope::Store,
         "Indexes of the format are missing: questions pass over whole tables, or ask network by network.",
         "Copy the networks into a new store.", checkIndexes},
        {"store.older", "store", Severity::Note, Scope::Store,
         "The store is of a generation that lacks a table of the current one.",
         "Nothing has to be done; a copy into a new store brings its networks to the current generation.",
         checkAge},
        {"store.version-unclear", "store", Severity::Warning, Scope::Store,
         "The store does not say in one row of which version it is.",
         "Leave in DbVersion the row of the version that the tables have.", checkVersion},
        {"store.empty", "store", Severity::Note, Scope::Store, "The store has no network.",
         "Import one, or copy one from another store.", checkEmptiness},
    };
}

std::vector<Rule> networkRules() {
    return {
        {"network.name-twice", "store", Severity::Warning, Scope::Store,
         "Two networks of the store have the same name, and whoever asks for it gets one of them.",
         "Rename one of them.", checkNames},
        {"network.default-twice", "store", Severity::Warning, Scope::Store,
         "Several networks are to be opened by default.", "Leave isDefault at 'T' for one of them.",
         checkDefault},
        {"network.not-readable", "store", Severity::Error, Scope::Load, "The network cannot be loaded.",
         "Mend what the other findings name, or restore the store from a copy.", checkReadable},
        {"network.rows-left-out", "store", Severity::Error, Scope::Objects,
         "A load leaves rows out, or takes them only in part.",
         "Mend the rows, or remove them: a save of the whole network loses them.", checkLeftOut},
    };
}

} // namespace

std::vector<Rule> storeRules() {
    std::vector<Rule> rules;
    for (std::vector<Rule> part : {schemaRules(), networkRules(), numberRules()})
        std::move(part.begin(), part.end(), std::back_inserter(rules));
    return rules;
}

} // namespace moratools
