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
    : mDb(db),
      mIsServer(db.driverName() == QLatin1String("QPSQL")),
      mTable(table.name),
      mColumns(columns),
      mInsert(db) {}

/// With the first row: a stream keeps the connection from everything else.
void RowWriter::open() {
    mIsOpen = true;
    QStringList names;
    QStringList places;
    for (const StoreColumn &column : qAsConst(mColumns)) {
        names.append(quotedName(column.name));
        places.append(QStringLiteral("?"));
    }
    if (mIsServer)
        mStream = std::make_unique<CopyStream>(mDb, mTable, names);
    else
        mInsert.prepare(
            QStringLiteral("insert into %1(%2) values(%3)")
                .arg(quotedName(mTable), names.join(QLatin1Char(',')), places.join(QLatin1Char(','))));
}

void RowWriter::write(QVector<QVariant> &row) {
    if (!mIsOpen)
        open();
    for (int i = 0; i < row.size(); ++i) {
        if (!rowvalue::fit(row[i], mColumns[i].kind, !mIsServer))
            throw Failure(QStringLiteral("column %1 of table %2 cannot keep the value \"%3\"; correct it in "
                                         "the source. Nothing was copied")
                              .arg(mColumns[i].name, mTable, shown(row[i])));
        if (!mIsServer)
            mInsert.bindValue(i, row[i]);
    }
    if (mIsServer ? !mStream->write(row) : !mInsert.exec())
        refuse(mIsServer ? mStream->error() : mInsert.lastError().databaseText().simplified());
}

void RowWriter::finish() {
    if (mStream && !mStream->finish())
        refuse(mStream->error());
}

void RowWriter::refuse(const QString &reason) const {
    requireServerAlive();
    throw Failure(
        QStringLiteral("a row of table %1 is refused (%2); correct it in the source. Nothing was copied")
            .arg(mTable, reason));
}
