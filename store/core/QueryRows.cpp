#include "store/core/Query.h"
#include "store/core/RowSource.h"
#include "store/core/Savepoint.h"

#include <QSqlRecord>

namespace {

/// Rows through Qt's driver.
class QueryRows : public RowSource {
public:
    QueryRows(const Store &store, const QString &sql) : mStore(store), mQuery(store.db()) {
        mQuery.setForwardOnly(!store.isPostgreSql());
        Savepoint savepoint(store.db());
        mReady = savepoint.end(mQuery.exec(sql));
        store.check(mQuery);
    }

    bool next() override {
        if (!mReady || mQuery.next())
            return mReady;
        mReady = false;
        mStore.check(mQuery);
        return false;
    }
    int indexOf(const char *column) override { return mQuery.record().indexOf(QLatin1String(column)); }
    bool isNull(int column) override { return mQuery.isNull(column); }
    QVariant value(int column) override { return mQuery.value(column); }
    double number(int column) override { return mQuery.value(column).toDouble(); }
    qint64 whole(int column) override { return mQuery.value(column).toLongLong(); }
    QString text(int column) override { return mQuery.value(column).toString(); }
    QByteArray bytes(int column) override { return mQuery.value(column).toByteArray(); }

private:
    const Store &mStore;
    QSqlQuery mQuery;
    bool mReady;
};

} // namespace

std::unique_ptr<RowSource> queryRows(const Store &store, const QString &sql) {
    return std::make_unique<QueryRows>(store, sql);
}
