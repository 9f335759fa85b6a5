#include "store/core/Query.h"

#include "store/core/Savepoint.h"
#include "store/core/StorableValue.h"
#include "store/core/Utf8.h"

#include <QSqlError>

#include <algorithm>

namespace {

/// The brackets around a column that is named like a keyword are SQLite's quoting; PostgreSQL takes the name
/// as it is.
QString inDialect(const Store &store, QString text) {
    return store.isPostgreSql() ? text.replace(QLatin1String("[type]"), QLatin1String("type")) : text;
}

/// Whether a statement was refused for a table or a column that the store does not have.
/// https://www.sqlite.org/rescode.html, https://www.postgresql.org/docs/15/errcodes-appendix.html
bool namesWhatIsMissing(const Store &store, const QString &code) {
    return store.isSqlite() ? code == QLatin1String("1")
                            : code == QLatin1String("42P01") || code == QLatin1String("42703");
}

} // namespace

Query::Query(const Store &store, const Sql &sql, std::initializer_list<long> ids)
    : Query(store, store.text(sql, ids), ids.size() > 0) {
    mObjectId = ids.size() > 0 ? *ids.begin() : 0;
}

Query::Query(const Store &store, const char *sql, std::initializer_list<long> ids)
    : Query(store, fillNumbers(QString::fromUtf8(sql), ids), ids.size() > 0) {
    mObjectId = ids.size() > 0 ? *ids.begin() : 0;
}

Query::Query(const Store &store, const QString &text) : Query(store, text, false) {}

Query::Query(const Store &store, const QString &text, bool isForOneObject)
    : mStore(store), mText(inDialect(store, text)), mQuery(store.db()), mIsForOneObject(isForOneObject) {
    // QPSQL gives up the rest of a forward-only result as soon as another statement runs on the connection.
    mQuery.setForwardOnly(!store.isPostgreSql());
}

Query::~Query() {
    if (mPrepared && !mIsForOneObject)
        mStore.keepStatement(mText, mQuery);
}

Query &Query::bind(const char *name, const QString &value) {
    return bindValue(name, value.isNull() ? QString(QLatin1String("")) : value);
}

Query &Query::bind(const char *name, const StoredJson &value) {
    const QByteArray text = value.text();
    return put(name, mStore.isSqlite() ? QVariant(text) : QVariant(QString::fromUtf8(text)),
               storablevalue::objection(value, text, !mStore.isSqlite()));
}

Query &Query::bindFlag(const char *name, bool value) {
    return bindValue(name, value ? QStringLiteral("T") : QStringLiteral("F"));
}

Query &Query::bindNet() {
    return mStore.hasSeveralNets() ? bind(":NetId", mStore.netId()) : *this;
}

Query &Query::bindValue(const char *name, const QVariant &value) {
    return put(name, storablevalue::bound(value, mStore.isPostgreSql()),
               storablevalue::objection(value, storablevalue::mayBeLonger(QLatin1String(name))));
}

Query &Query::put(const char *name, const QVariant &value, const QString &objection) {
    if (!mStore.isUsable())
        return *this;
    prepare();
    mQuery.bindValue(QString::fromLatin1(name), value);
    noteObject(name, value);
    // A later row may bring a good value for the same placeholder.
    if (!objection.isEmpty() || mRefusedName == name) {
        mRefusedName = objection.isEmpty() ? QByteArray() : QByteArray(name);
        mRefusal = objection;
    }
    return *this;
}

void Query::noteObject(const char *name, const QVariant &value) {
    if (mObjectName.isEmpty() && !mIsForOneObject && value.userType() == QMetaType::LongLong &&
        qstrcmp(name, ":NetId") != 0)
        mObjectName = name;
    if (mObjectName == name)
        mObjectId = narrowedId(value);
}

void Query::prepare() {
    if (mPrepared || mPrepareFailed)
        return;
    if (const auto kept = mIsForOneObject ? std::nullopt : mStore.takeStatement(mText)) {
        mQuery = *kept;
        mPrepared = true;
        return;
    }
    Savepoint savepoint(mStore.db());
    mPrepared = savepoint.end(mQuery.prepare(mStore.asRun(mText)));
    mPrepareFailed = !mPrepared;
}

bool Query::run() {
    mRan = mStore.isUsable();
    mRow = -1;
    if (!mRan)
        return false;
    // Executing what could not be prepared would replace the engine's reason by a count of its parameters.
    if (mPrepareFailed || !mRefusedName.isEmpty())
        return false;
    Savepoint savepoint(mStore.db());
    const bool done = savepoint.end(mPrepared ? mQuery.exec() : mQuery.exec(mStore.asRun(mText)));
    if (!done)
        mStore.heed(mQuery.lastError());
    // Before the first row: a record of a row would take a copy of each of its values along.
    if (done && mResult.isEmpty() && mQuery.isSelect())
        mResult = mQuery.record();
    return done;
}

bool Query::check() const {
    if (!mRan || mRefusedName.isEmpty() || mPrepareFailed)
        return mRan && mStore.check(mQuery, mObjectId, mText);
    return mStore.fail(mText,
                       QStringLiteral("The value of %1 cannot be stored: it %2")
                           .arg(QLatin1String(mRefusedName.mid(1)), mRefusal),
                       mObjectId);
}

bool Query::breaksOff() {
    // What failed to execute is not active: that was recorded when it did.
    if (mQuery.isActive() && mQuery.lastError().isValid())
        mBrokeOff = !mStore.check(mQuery, mObjectId, mText);
    if (mIsPart)
        mStore.requireAnswer(!mBrokeOff);
    return false;
}

bool Query::execPart() {
    mIsPart = true;
    const bool done = exec();
    mStore.requireAnswer(done || namesWhatIsMissing(mStore, mQuery.lastError().nativeErrorCode()));
    return done;
}

std::optional<bool> Query::returnsRow() {
    const bool found = execAndNext();
    const bool isAnswer = found || (mQuery.isActive() && isComplete());
    return isAnswer ? std::make_optional(found) : std::nullopt;
}

bool Query::isWhole() {
    ++mRow;
    if (!mStore.isSqlite())
        return true;
    for (int i = 0; i < mResult.count(); ++i) {
        const QString objection = objectionTo(i);
        if (objection.isEmpty())
            continue;
        mBrokeOff = true;
        if (mIsPart)
            mStore.requireAnswer(false);
        return mStore.fail(mText,
                           QStringLiteral("The text in column %1 %2, the row cannot be read with it.")
                               .arg(mResult.fieldName(i), objection),
                           mObjectId, FailureKind::Damaged);
    }
    return true;
}

QString Query::objectionTo(int column) const {
    const QVariant value = mQuery.value(column);
    const auto *text =
        value.userType() == QMetaType::QString ? static_cast<const QString *>(value.constData()) : nullptr;
    const int size = text ? text->size()
                     : value.userType() == QMetaType::QByteArray
                         ? static_cast<const QByteArray *>(value.constData())->size()
                         : 0;
    using storablevalue::kLongestText;
    if (size > kLongestText && !storablevalue::mayBeLonger(mResult.fieldName(column)))
        return QStringLiteral("is longer than %1 characters: shorten it").arg(kLongestText);
    if (!text || !text->contains(QChar::ReplacementCharacter) || isStoredAsUtf8(column))
        return {};
    return QStringLiteral("is not UTF-8: write it anew");
}

/// The driver replaces what is not UTF-8 by a character that may as well be stored: the bytes tell.
bool Query::isStoredAsUtf8(int column) const {
    if (mPrepared)
        return true;
    QSqlQuery encoding(QStringLiteral("pragma encoding"), mStore.db());
    if (!encoding.next() || encoding.value(0).toString() != QLatin1String("UTF-8"))
        return true;
    QString name = mResult.fieldName(column);
    name.replace(QLatin1Char('"'), QLatin1String("\"\""));
    QSqlQuery stored(mStore.db());
    stored.setForwardOnly(true);
    const bool isThere = stored.exec(QStringLiteral("select cast(\"%1\" as blob) from (%2) limit 1 offset %3")
                                         .arg(name, mText, QString::number(mRow))) &&
                         stored.next();
    const QByteArray bytes = isThere ? stored.value(0).toByteArray() : QByteArray();
    return isThere &&
           utf8::isWhole(utf8::decoded(bytes.constData(), bytes.size()), bytes.constData(), bytes.size());
}

QVariant Query::value(const char *column) {
    const int index = columnIndex(column);
    return index >= 0 ? mQuery.value(index) : QVariant();
}

int Query::columnIndex(const char *column) {
    const auto known = std::find_if(mColumns.cbegin(), mColumns.cend(),
                                    [column](const auto &entry) { return entry.first == column; });
    if (known != mColumns.cend())
        return known->second;
    if (mColumnNames.isEmpty()) {
        for (int i = 0; i < mResult.count(); ++i)
            mColumnNames.append(mResult.fieldName(i));
    }
    const QLatin1String name(column);
    const auto found =
        std::find_if(mColumnNames.cbegin(), mColumnNames.cend(), [name](const QString &candidate) {
            return candidate.size() == name.size() && candidate.compare(name, Qt::CaseInsensitive) == 0;
        });
    const int index = found != mColumnNames.cend() ? int(found - mColumnNames.cbegin()) : -1;
    if (!mColumnNames.isEmpty())
        mColumns.emplace_back(column, index);
    return index;
}

bool appendIds(const Store &store, const Sql &sql, QList<long> &ids) {
    Query query(store, sql);
    if (!query.exec())
        return false;
    while (query.next())
        ids.append(query.firstId());
    return query.isComplete();
}
