#include "store/bulk/RowSink.h"
#include "store/core/Savepoint.h"
#include "store/core/StorableValue.h"
#include "store/core/Store.h"

#include <QSqlQuery>
#include <QVariant>

namespace {

/// One prepared statement through Qt's driver, run for each row.
class QuerySink : public RowSink {
public:
    QuerySink(const Store &store, const QString &sql)
        : mStore(store),
          mSql(sql),
          mSavepoint(store.db()),
          mQuery(store.db()),
          mPrepared(mQuery.prepare(store.asRun(sql))) {}

    void setNull(int column) override { mQuery.bindValue(column, QVariant(QVariant::String)); }
    void set(int column, qint64 value) override { mQuery.bindValue(column, value); }
    void set(int column, double value) override {
        mQuery.bindValue(column, storablevalue::bound(value, mStore.isPostgreSql()));
    }
    void set(int column, const QString &value) override {
        mQuery.bindValue(column, value.isNull() ? QString(QLatin1String("")) : value);
    }
    void set(int column, const QByteArray &json) override {
        mQuery.bindValue(column, mStore.isSqlite() ? QVariant(json) : QVariant(QString::fromUtf8(json)));
    }
    bool write() override {
        const bool isWritten = mPrepared && mQuery.exec();
        // Before the statement goes: in a failed transaction a server would not even take that.
        if (!isWritten)
            mSavepoint.end(false);
        return mStore.check(mQuery, 0, mSql);
    }
    bool finish() override { return mSavepoint.end(true); }

private:
    const Store &mStore;
    QString mSql;
    Savepoint mSavepoint;
    QSqlQuery mQuery;
    bool mPrepared;
};

} // namespace

std::unique_ptr<RowSink> querySink(const Store &store, const QString &table, const QStringList &columns) {
    return std::make_unique<QuerySink>(store, insertStatement(table, columns));
}

std::unique_ptr<RowSink> statementSink(const Store &store, const QString &sql, int placeholders) {
    std::unique_ptr<RowSink> sink = sqliteStatement(store, sql, placeholders);
    return sink ? std::move(sink) : std::make_unique<QuerySink>(store, sql);
}

QString insertStatement(const QString &table, const QStringList &columns) {
    QStringList places;
    for (int i = 0; i < columns.size(); ++i)
        places.append(QStringLiteral("?"));
    return QStringLiteral("insert into %1(%2) values(%3)")
        .arg(table, columns.join(QLatin1String(", ")), places.join(QLatin1String(", ")));
}
