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
constexpr int kEnough = 1 << 18; ///< bytes, to be hashed at once

QVariant takePlace(const char *&at) {
    if (*at != kNothing)
        return rowvalue::takeCanonical(at);
    ++at;
    return {};
}

} // namespace

CanonicalForm::CanonicalForm(const StoreTable *table, const catalogue::Table &entry, Covered covered,
                             bool words) {
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
}

CanonicalForm::Row CanonicalForm::rowOf(const std::function<QVariant(int)> &valueOf,
                                        Translation *words) const {
    Row row;
    for (const int index : mOrder) {
        const QVariant value = valueOf(index);
        if (value.isValid())
            rowvalue::appendCanonical(row.place, value);
        else
            row.place.append(kNothing);
    }
    for (const Counted &column : mColumns) {
        QVariant value = valueOf(column.index);
        if (!value.isValid())
            continue;
        if (column.isWord)
            words->apply(value);
        row.bytes.append(column.name);
        rowvalue::appendCanonical(row.bytes, value);
    }
    return row;
}

CanonicalRows::CanonicalRows(const NetworkRows &rows, const catalogue::Table &entry, Covered covered,
                             Translation *words)
    : mWords(words && words->isNeeded() ? words : nullptr),
      mForm(rows.table(QLatin1String(entry.name)), entry, covered, mWords != nullptr) {
    const StoreTable *table = rows.table(QLatin1String(entry.name));
    if (!table)
        return;
    constexpr int enough = 64;
    mNextPlace.reserve(enough);
    mPlace.reserve(enough);
    mCursor.emplace(rows.read(*table, entry, RowOrder::Canonical));
    mHasRow = nextRow();
}

bool CanonicalRows::nextRow() {
    if (!mCursor->next())
        return false;
    mNextPlace.resize(0);
    for (const int index : mForm.order()) {
        if (!mCursor->appendCanonical(mNextPlace, index))
            mNextPlace.append(kNothing);
    }
    return true;
}

void CanonicalRows::takeRow() {
    if (mSpare.empty()) {
        // What is reserved stays when the row is emptied: most rows need no memory of their own.
        constexpr int enough = 512;
        mSpare.emplace_back().reserve(enough);
    }
    QByteArray row = std::move(mSpare.back());
    mSpare.pop_back();
    row.resize(0);
    for (const CanonicalForm::Counted &column : mForm.columns()) {
        const int before = row.size();
        row.append(column.name);
        if (column.isWord && !mCursor->isNull(column.index)) {
            QVariant word = mCursor->value(column.index);
            mWords->apply(word);
            rowvalue::appendCanonical(row, word);
        } else if (!mCursor->appendCanonical(row, column.index)) {
            row.resize(before);
        }
    }
    mGroup.push_back(std::move(row));
}

bool CanonicalRows::next() {
    std::move(mGroup.begin(), mGroup.end(), std::back_inserter(mSpare));
    mGroup.clear();
    if (!mHasRow)
        return false;
    mPlace.swap(mNextPlace);
    do {
        takeRow();
        mHasRow = nextRow();
    } while (mHasRow && mNextPlace == mPlace);
    if (mGroup.size() > 1)
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

NetworkDigest::NetworkDigest(int networks) {
    for (int i = 0; i < networks; ++i)
        mHashes.push_back(std::make_unique<Sha256>());
    for (Portion *portion : {&mWaiting, &mBeingHashed})
        portion->bytes.reserve(kEnough);
}

NetworkDigest::~NetworkDigest() = default;

void NetworkDigest::add(const catalogue::Table &entry, const std::vector<QByteArray> &group, int network) {
    if (mEntry != &entry) {
        mEntry = &entry;
        mTable = QByteArray(entry.name).toLower() + '\0';
    }
    QByteArray &bytes = mWaiting.bytes;
    if (mWaiting.parts.empty() || mWaiting.parts.back().network != network)
        mWaiting.parts.push_back({bytes.size(), network});
    for (const QByteArray &row : group) {
        bytes.append(mTable);
        rowvalue::appendInteger(bytes, row.size());
        bytes.append(row);
        if (bytes.size() >= kEnough) {
            handOver();
            mWaiting.parts.push_back({0, network});
        }
    }
}

void NetworkDigest::handOver() {
    if (mHashing.valid())
        mHashing.get();
    std::swap(mBeingHashed, mWaiting);
    mWaiting.bytes.resize(0);
    mWaiting.parts.clear();
    mHashing = std::async(std::launch::async, [this] { hash(mBeingHashed); });
}

void NetworkDigest::hash(const Portion &portion) {
    for (auto part = portion.parts.begin(); part != portion.parts.end(); ++part) {
        const int end = part + 1 == portion.parts.end() ? portion.bytes.size() : (part + 1)->begin;
        const QByteArray bytes =
            QByteArray::fromRawData(portion.bytes.constData() + part->begin, end - part->begin);
        for (std::size_t i = 0; i < mHashes.size(); ++i) {
            if (part->network == kAll || std::size_t(part->network) == i)
                mHashes[i]->add(bytes);
        }
    }
}

QString NetworkDigest::result(int network) {
    if (mHashing.valid())
        mHashing.get();
    hash(mWaiting);
    mWaiting = {};
    return mHashes[std::size_t(network)]->result();
}

} // namespace moratools
