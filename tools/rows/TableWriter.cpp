#include "tools/rows/TableWriter.h"

#include "store/core/Engine.h"
#include "tools/reports/Failure.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>

namespace moratools {

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

void put(CopyStream &stream, int column, const QVariant &value) {
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return stream.setNull(column);
    case QMetaType::LongLong:
        return stream.set(column, value.toLongLong());
    case QMetaType::Double:
        return stream.set(column, value.toDouble());
    case QMetaType::QByteArray:
        return stream.setBytes(column, value.toByteArray());
    default:
        return stream.set(column, value.toString());
    }
}

} // namespace

TableWriter::TableWriter(const StoreSession &store, const StoreTable &table,
                         const QVector<StoreColumn> &columns)
    : mStore(store),
      mDb(store.db()),
      mIsServer(engine::isPostgreSql(mDb)),
      mTable(table.name),
      mColumns(columns),
      mInsert(mDb) {}

/// With the first row: a stream keeps the connection from everything else.
void TableWriter::open() {
    mIsOpen = true;
    QStringList names;
    QStringList places;
    for (const StoreColumn &column : qAsConst(mColumns)) {
        names.append(quotedName(column.name));
        places.append(QStringLiteral("?"));
    }
    if (mIsServer)
        mStream = std::make_unique<CopyStream>(mDb, quotedName(mTable), names);
    else
        mInsert.prepare(
            QStringLiteral("insert into %1(%2) values(%3)")
                .arg(quotedName(mTable), names.join(QLatin1Char(',')), places.join(QLatin1Char(','))));
}

void TableWriter::write(QVector<QVariant> &row) {
    if (!mIsOpen)
        open();
    for (int i = 0; i < row.size(); ++i) {
        if (!rowvalue::fit(row[i], mColumns[i].kind, !mIsServer))
            throw Failure(QStringLiteral("column %1 of table %2 cannot keep the value \"%3\"; correct it in "
                                         "the source. Nothing was copied")
                              .arg(mColumns[i].name, mTable, shown(row[i])));
        if (mIsServer)
            put(*mStream, i, row[i]);
        else
            mInsert.bindValue(i, row[i]);
    }
    if (mIsServer ? !mStream->write() : !mInsert.exec())
        mIsServer ? refuse(mStream->error(), mStream->errorCode())
                  : refuse(mInsert.lastError().databaseText().simplified());
}

void TableWriter::finish() {
    if (mStream && !mStream->finish())
        refuse(mStream->error(), mStream->errorCode());
}

void TableWriter::refuse(const QString &reason, const QString &code) const {
    mStore.requireServerAlive();
    if (mIsServer)
        requireServer(code, reason);
    throw Failure(
        QStringLiteral("a row of table %1 is refused (%2); correct it in the source. Nothing was copied")
            .arg(mTable, reason));
}

} // namespace moratools
