#include "tools/rows/FormatSchema.h"

#include "tools/session/NewStore.h"
#include "tools/session/SqliteConnection.h"
#include "tools/session/TemporaryFolder.h"

#include <QSqlQuery>
#include <QVariant>

namespace moratools {

namespace {

/// Numbers are what the engine would turn a text of digits into: https://www.sqlite.org/datatype3.html, 3.1.
bool isNumeric(const QString &type) {
    const QString word = type.toLower();
    for (const char *part : {"int", "numeric", "number", "float", "real", "double"}) {
        if (word.contains(QLatin1String(part)))
            return true;
    }
    return false;
}

} // namespace

QString DeclaredSchema::columnsQuestion() {
    return QStringLiteral(
        "select m.name, c.name, c.type, c.pk from sqlite_master m, pragma_table_info(m.name) c "
        // A virtual table of a plug-in's would run its module.
        "where m.type = 'table' and m.sql like 'create table%' order by m.name, c.cid");
}

QString DeclaredSchema::indexesQuestion() {
    return QStringLiteral(
        "select name, tbl_name from sqlite_master where type = 'index' and sql is not null");
}

void DeclaredSchema::takeColumns(QSqlQuery &rows) {
    while (rows.next()) {
        Table &table = tables[rows.value(0).toString().toLower()];
        const QString column = rows.value(1).toString();
        table.name = rows.value(0).toString();
        table.columns.append(column);
        if (rows.value(3).toInt() > 0)
            table.key.append(column.toLower());
        if (isNumeric(rows.value(2).toString()))
            table.numbers.insert(column.toLower());
    }
    for (Table &table : tables)
        table.key.sort();
}

void DeclaredSchema::takeIndexes(QSqlQuery &rows) {
    while (rows.next())
        indexes.insert(rows.value(0).toString(), rows.value(1).toString());
}

const DeclaredSchema &formatSchema() {
    static const DeclaredSchema schema = [] {
        TemporaryFolder folder;
        const QString path = folder.newFile(QStringLiteral("format.db"));
        makeStore(path, newestTemplate());
        const SqliteConnection store(path);
        DeclaredSchema made;
        QSqlQuery columns = store.run(DeclaredSchema::columnsQuestion());
        made.takeColumns(columns);
        QSqlQuery indexes = store.run(DeclaredSchema::indexesQuestion());
        made.takeIndexes(indexes);
        return made;
    }();
    return schema;
}

QString formatName(const QString &table, const QString &column) {
    for (const QString &name : formatSchema().tables.value(table.toLower()).columns) {
        if (name.compare(column, Qt::CaseInsensitive) == 0)
            return name;
    }
    return column;
}

} // namespace moratools
