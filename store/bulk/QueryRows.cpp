#include "store/bulk/RowSource.h"
#include "store/core/Query.h"
#include "store/core/Savepoint.h"

#include <QSqlRecord>
#include <QtNumeric>

#include <cmath>

namespace {

bool holdsNothing(const QVariant &value) {
    return value.isNull() || value.toByteArray().isEmpty();
}

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
    double number(int column, bool &isNumber) override { return numberOf(mQuery.value(column), isNumber); }
    qint64 whole(int column, bool &isNumber) override { return wholeOf(mQuery.value(column), isNumber); }
    QString text(int column) override { return mQuery.value(column).toString(); }
    QByteArray bytes(int column) override { return mQuery.value(column).toByteArray(); }

private:
    const Store &mStore;
    QSqlQuery mQuery;
    bool mReady;
};

} // namespace

double numberOf(const QVariant &value, bool &isNumber) {
    bool converted = false;
    const double number = value.toDouble(&converted);
    isNumber = isNumber && (converted ? qIsFinite(number) : holdsNothing(value));
    return number;
}

qint64 wholeOf(const QVariant &value, bool &isNumber) {
    bool converted = false;
    const qint64 number = value.toLongLong(&converted);
    const bool fits = value.userType() != QMetaType::Double || std::abs(value.toDouble()) < 9.2e18;
    isNumber = isNumber && (converted ? fits : holdsNothing(value));
    return number;
}

std::unique_ptr<RowSource> queryRows(const Store &store, const QString &sql) {
    return std::make_unique<QueryRows>(store, sql);
}
