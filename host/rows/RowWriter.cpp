#include "host/rows/RowWriter.h"

#include "host/Failure.h"
#include "host/store/OpenStore.h"

#include <QSqlError>

namespace {

/// The beginning of a value on one line.
QString shown(const QVariant &value) {
    QString text = value.toString().left(40);
    for (QChar &character : text) {
        if (!character.isPrint())
            character = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

RowWriter::RowWriter(QSqlDatabase &db, const StoreTable &table, const QVector<StoreColumn> &columns)
    : mIsSqlite(db.driverName() == QLatin1String("QSQLITE")),
      mTable(table.name),
      mColumns(columns),
      mInsert(db) {
    QStringList names;
    QStringList places;
    for (const StoreColumn &column : columns) {
        names.append(quotedName(column.name));
        places.append(QStringLiteral("?"));
    }
    mInsert.prepare(
        QStringLiteral("insert into %1(%2) values(%3)")
            .arg(quotedName(mTable), names.join(QLatin1Char(',')), places.join(QLatin1Char(','))));
}

void RowWriter::write(QVector<QVariant> &row) {
    for (int i = 0; i < row.size(); ++i) {
        if (!rowvalue::fit(row[i], mColumns[i].kind, mIsSqlite))
            throw Failure(QStringLiteral("column %1 of table %2 cannot keep the value \"%3\"; correct it in "
                                         "the source. Nothing was copied")
                              .arg(mColumns[i].name, mTable, shown(row[i])));
        mInsert.bindValue(i, row[i]);
    }
    if (mInsert.exec())
        return;
    requireServerAlive();
    throw Failure(QStringLiteral("a row of table %1 is refused (%2); correct it in the source. Nothing was "
                                 "copied")
                      .arg(mTable, mInsert.lastError().databaseText().simplified()));
}
