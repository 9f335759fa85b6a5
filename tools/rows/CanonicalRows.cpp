#include "tools/rows/CanonicalRows.h"

#include "tools/rows/Sha256.h"
#include "tools/rows/TableCopy.h"

#include <QMap>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace moratools {

namespace {

/// A column that does not count.
struct LeftAside {
    const char *table;
    const char *column;
    Covered from; ///< the widest coverage that leaves it aside
};
constexpr LeftAside kLeftAside[] = {
    {"net", "isdefault", Covered::AllOfIt},          {"net", "name", Covered::Content},
    {"net", "sourcetype", Covered::Content},         {"net", "sourceurl", Covered::Content},
    {"configuration", "savedate", Covered::Content},
};

bool isLeftAside(const QString &table, const QString &column, Covered covered) {
    return column == QLatin1String("netid") ||
           std::any_of(std::begin(kLeftAside), std::end(kLeftAside), [&](const LeftAside &entry) {
               return table == QLatin1String(entry.table) && column == QLatin1String(entry.column) &&
                      (entry.from == Covered::AllOfIt || covered == Covered::Content);
           });
}

/// The columns of a table that count, by name: names do not depend on the order in which a store has them.
QMap<QByteArray, int> countedColumns(const StoreTable &table, const QString &name, Covered covered) {
    QMap<QByteArray, int> columns;
    for (int i = 0; i < table.columns.size(); ++i) {
        const QString &key = table.columns[i].key;
        if (!isLeftAside(name, key, covered))
            columns.insert(key.toUtf8(), i);
    }
    return columns;
}

bool isWord(const catalogue::Table &entry, const QByteArray &column) {
    return std::any_of(entry.words.begin(), entry.words.end(),
                       [&column](const char *word) { return qstricmp(word, column.constData()) == 0; });
}

// SQLite orders what is nothing before numbers, and these before texts.
int rankOf(const QVariant &value) {
    return !value.isValid()                                                                   ? 0
           : value.userType() == QMetaType::LongLong || value.userType() == QMetaType::Double ? 1
                                                                                              : 2;
}

template <class T>
int compared(const T &one, const T &other) {
    return one < other ? -1 : other < one ? 1 : 0;
}

int compareValues(const QVariant &one, const QVariant &other) {
    if (rankOf(one) != rankOf(other))
        return compared(rankOf(one), rankOf(other));
    if (one.userType() == QMetaType::LongLong && other.userType() == QMetaType::LongLong)
        return compared(one.toLongLong(), other.toLongLong());
    if (rankOf(one) == 1)
        return compared(one.toDouble(), other.toDouble());
    return compared(one.toByteArray(), other.toByteArray());
}

constexpr char kNothing = 'n';

QVariant takePlace(const char *&at) {
    if (*at != kNothing)
        return rowvalue::takeCanonical(at);
    ++at;
    return {};
}

} // namespace

CanonicalRows::CanonicalRows(const NetworkRows &rows, const catalogue::Table &entry, Covered covered,
                             Translation *words)
    : mWords(words) {
    const StoreTable *table = rows.table(QLatin1String(entry.name));
    if (!table)
        return;
    const QMap<QByteArray, int> counted =
        countedColumns(*table, QString::fromLatin1(entry.name).toLower(), covered);
    for (auto column = counted.cbegin(); column != counted.cend(); ++column)
        mColumns.append({column.key() + '\0', column.value(), words && isWord(entry, column.key())});
    for (const char *name : entry.key) {
        const int index = counted.value(QByteArray(name).toLower(), -1);
        if (index >= 0)
            mOrder.append(index);
    }
    mCursor.emplace(rows.read(*table, entry, RowOrder::Canonical));
    mHasRow = nextRow();
}

bool CanonicalRows::nextRow() {
    if (!mCursor->next())
        return false;
    mNextPlace.resize(0);
    for (const int index : qAsConst(mOrder)) {
        if (!mCursor->appendCanonical(mNextPlace, index))
            mNextPlace.append(kNothing);
    }
    return true;
}

void CanonicalRows::appendRow() {
    mNextRow.resize(0);
    for (const Counted &column : qAsConst(mColumns)) {
        const int before = mNextRow.size();
        mNextRow.append(column.name);
        if (column.isWord && !mCursor->isNull(column.index)) {
            QVariant word = mCursor->value(column.index);
            mWords->apply(word);
            rowvalue::appendCanonical(mNextRow, word);
        } else if (!mCursor->appendCanonical(mNextRow, column.index)) {
            mNextRow.resize(before);
        }
    }
    mGroup.emplace_back(mNextRow.constData(), mNextRow.size());
}

bool CanonicalRows::next() {
    mGroup.clear();
    if (!mHasRow)
        return false;
    mPlace = mNextPlace;
    while (mHasRow && mNextPlace == mPlace) {
        appendRow();
        mHasRow = nextRow();
    }
    std::sort(mGroup.begin(), mGroup.end());
    return true;
}

int CanonicalRows::compare(const QByteArray &place, const QByteArray &other) {
    const char *one = place.constData();
    const char *two = other.constData();
    int order = 0;
    while (order == 0 && one != place.constEnd() && two != other.constEnd())
        order = compareValues(takePlace(one), takePlace(two));
    return order;
}

int CanonicalRows::sizeOf(const QByteArray &place, int values) {
    const char *at = place.constData();
    for (int i = 0; i < values && at != place.constEnd(); ++i)
        takePlace(at);
    return int(at - place.constData());
}

QVector<QPair<QByteArray, QVariant>> CanonicalRows::columnsOf(const QByteArray &row) {
    QVector<QPair<QByteArray, QVariant>> columns;
    const char *at = row.constData();
    while (at != row.constEnd()) {
        const QByteArray name(at);
        at += name.size() + 1;
        columns.append({name, rowvalue::takeCanonical(at)});
    }
    return columns;
}

NetworkDigest::NetworkDigest() : mHash(std::make_unique<Sha256>()) {}

NetworkDigest::~NetworkDigest() = default;

void NetworkDigest::add(const catalogue::Table &entry, const std::vector<QByteArray> &group) {
    constexpr int enough = 1 << 16;
    for (const QByteArray &row : group) {
        mWaiting.append(QByteArray(entry.name).toLower()).append('\0');
        rowvalue::appendInteger(mWaiting, row.size());
        mWaiting.append(row);
        if (mWaiting.size() < enough)
            continue;
        mHash->add(mWaiting);
        mWaiting.resize(0);
    }
}

QString NetworkDigest::result() {
    mHash->add(mWaiting);
    return mHash->result();
}

} // namespace moratools
