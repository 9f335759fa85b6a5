#include "tools/rows/Digest.h"
#include "store/catalogue/Catalogue.h"

#include <QCryptographicHash>
#include <QMap>

#include <algorithm>

namespace moratools {

namespace {

/// The columns of a table that count, by name: names do not depend on the order in which a store has them.
QMap<QByteArray, int> countedColumns(const StoreTable &table) {
    const bool isRecord = table.name.compare(QLatin1String("Net"), Qt::CaseInsensitive) == 0;
    QMap<QByteArray, int> columns;
    for (int i = 0; i < table.columns.size(); ++i) {
        const QString &key = table.columns[i].key;
        const bool isOfStore =
            key == QLatin1String("netid") || (isRecord && key == QLatin1String("isdefault"));
        if (!isOfStore)
            columns.insert(key.toUtf8(), i);
    }
    return columns;
}

/// Takes the rows of a table in their order. Rows that the order does not tell apart are sorted by content;
/// only these are held together.
class TableDigest {
public:
    TableDigest(QCryptographicHash &hash, const StoreTable &table, const catalogue::Table &entry)
        : mHash(hash), mName(QByteArray(entry.name).toLower()), mColumns(countedColumns(table)) {
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

QString digestOf(const StoreReader &store, const StoreReader::Network &network, const Progress &progress) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const std::vector<catalogue::Table> &tables = catalogue::tables();
    for (std::size_t i = 0; i < tables.size(); ++i) {
        reportShare(progress, double(i) / double(tables.size()));
        const StoreTable *table = store.table(QLatin1String(tables[i].name));
        if (!table)
            continue;
        TableDigest digest(hash, *table, tables[i]);
        store.read(*table, tables[i], network, StoreReader::Order::Canonical,
                   [&digest](const StoreReader::Row &row) { digest.add(row); });
        digest.flush();
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace moratools
