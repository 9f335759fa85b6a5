#include "tools/rows/Digest.h"
#include "store/catalogue/Catalogue.h"

#include <QCryptographicHash>
#include <QMap>

#include <algorithm>
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
QMap<QByteArray, int> countedColumns(const StoreTable &table, Covered covered) {
    QMap<QByteArray, int> columns;
    for (int i = 0; i < table.columns.size(); ++i) {
        const QString &key = table.columns[i].key;
        if (!isLeftAside(table.name.toLower(), key, covered))
            columns.insert(key.toUtf8(), i);
    }
    return columns;
}

/// Takes the rows of a table in their order. Rows that the order does not tell apart are sorted by content;
/// only these are held together.
class TableDigest {
public:
    TableDigest(QCryptographicHash &hash, const StoreTable &table, const catalogue::Table &entry,
                Covered covered)
        : mHash(hash), mName(QByteArray(entry.name).toLower()), mColumns(countedColumns(table, covered)) {
        for (const char *name : entry.key) {
            const int index = mColumns.value(QByteArray(name).toLower(), -1);
            if (index >= 0)
                mOrder.append(index);
        }
    }

    void add(const StoreReader::Row &row) {
        QByteArray place;
        for (const int index : qAsConst(mOrder))
            rowvalue::appendCanonical(place, row[index]);
        if (place != mPlace)
            flush();
        mPlace = place;
        QByteArray content;
        for (auto column = mColumns.cbegin(); column != mColumns.cend(); ++column) {
            const QVariant &value = row[column.value()];
            if (!value.isValid())
                continue;
            content.append(column.key()).append('\0');
            rowvalue::appendCanonical(content, value);
        }
        mRows.push_back(content);
    }

    void flush() {
        std::sort(mRows.begin(), mRows.end());
        for (const QByteArray &row : mRows) {
            mHash.addData(mName);
            mHash.addData("", 1);
            QByteArray size;
            rowvalue::appendCanonical(size, qint64(row.size()));
            mHash.addData(size);
            mHash.addData(row);
        }
        mRows.clear();
    }

private:
    QCryptographicHash &mHash;
    QByteArray mName;
    QMap<QByteArray, int> mColumns;
    QVector<int> mOrder;
    QByteArray mPlace;
    std::vector<QByteArray> mRows;
};

} // namespace

QString digestOf(const StoreReader &store, const StoreReader::Network &network, Covered covered,
                 const Progress &progress) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const std::vector<catalogue::Table> &tables = catalogue::tables();
    for (std::size_t i = 0; i < tables.size(); ++i) {
        reportShare(progress, double(i) / double(tables.size()));
        const StoreTable *table = store.table(QLatin1String(tables[i].name));
        if (!table)
            continue;
        TableDigest digest(hash, *table, tables[i], covered);
        store.read(*table, tables[i], network, StoreReader::Order::Canonical,
                   [&digest](const StoreReader::Row &row) { digest.add(row); });
        digest.flush();
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace moratools
