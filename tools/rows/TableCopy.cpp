#include "tools/rows/TableCopy.h"

#include "store/catalogue/Catalogue.h"

#include <algorithm>

namespace moratools {

Translation::Translation(Language from, Language to)
    : mIsNeeded(from != to && from != Language::Unknown && to != Language::Unknown),
      mToChinese(to == Language::Chinese) {
    mWords.setDbIsEnglish(true);
    mWords.setLangIsNotZh(!mToChinese);
}

bool Translation::apply(QVariant &word) {
    if (!mIsNeeded || word.userType() != QMetaType::QString)
        return false;
    const QString before = word.toString();
    const QString after = mToChinese ? mWords.trEnToZh(before) : mWords.trZhToEn(before);
    word = after;
    return after != before;
}

TableCopy::TableCopy(const catalogue::Table &entry, const StoreTable &source, const StoreTable &target,
                     const CopyTarget &store, RowChanges &changes)
    : mEntry(entry), mSource(source), mChanges(changes) {
    plan(target);
    mWriter = std::make_unique<TableWriter>(store.store(), target, mColumns);
}

namespace {

int indexOf(const StoreTable &table, const QString &key) {
    for (int i = 0; i < table.columns.size(); ++i) {
        if (table.columns[i].key == key)
            return i;
    }
    return -1;
}

bool isNamed(const char *name, const QString &key) {
    return name && key.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

} // namespace

void TableCopy::plan(const StoreTable &target) {
    for (const StoreColumn &column : target.columns) {
        Cell cell;
        cell.source = indexOf(mSource, column.key);
        if (column.key == QLatin1String("netid")) {
            cell.isFixed = true;
            cell.filling = qint64(mChanges.netId);
        }
        for (const catalogue::Filling &filling : mEntry.fillings) {
            if (isNamed(filling.column, column.key))
                cell.filling = filling.value;
        }
        cell.isId = isNamed(mEntry.uniqueId(), column.key);
        cell.isOwnId = isNamed(mEntry.id, column.key);
        cell.isNumber = cell.isId || (mEntry.isIdTold && isNamed(mEntry.id, column.key));
        for (const char *word : mEntry.words)
            cell.isWord = cell.isWord || isNamed(word, column.key);
        for (const catalogue::Reference &reference : mEntry.references) {
            if (isNamed(reference.column, column.key))
                cell.reference = &reference;
        }
        // What nobody says is left to the column's default.
        if (cell.source < 0 && !cell.filling.isValid() && !cell.isId)
            continue;
        mColumns.append(column);
        mCells.append(cell);
    }
    for (int i = 0; i < mSource.columns.size(); ++i) {
        const QString &key = mSource.columns[i].key;
        if (!target.column(key) && key != QLatin1String("netid"))
            mLeftOutColumns.append(i);
    }
    mLeftOutValues.resize(mLeftOutColumns.size());
    mRow.resize(mCells.size());
}

void TableCopy::replace(const QString &column, const QVariant &value) {
    for (int i = 0; i < mColumns.size(); ++i) {
        if (mColumns[i].key != column)
            continue;
        mCells[i].isFixed = true;
        mCells[i].filling = value;
    }
}

void TableCopy::add(const StoreReader::Row &row) {
    for (int i = 0; i < mCells.size(); ++i)
        mRow[i] = copied(mCells[i], row);
    for (int i = 0; i < mLeftOutColumns.size(); ++i)
        mLeftOutValues[i] += row[mLeftOutColumns[i]].isValid() ? 1 : 0;
    mWriter->write(mRow);
    ++mRows;
}

QVariant TableCopy::copied(const Cell &cell, const StoreReader::Row &row) {
    QVariant value = cell.source >= 0 && !cell.isFixed ? row[cell.source] : QVariant();
    if (!value.isValid())
        value = cell.filling;
    if (!value.isValid() && cell.isId)
        value = mChanges.nextLaneConnector++;
    if (cell.isWord && mChanges.words.apply(value))
        ++mWords;
    if (!cell.isNumber && !cell.isOwnId && !cell.reference)
        return value;
    // Identifiers are integers; SQLite may hold them as reals.
    if (!rowvalue::fit(value, ColumnKind::Integer, true) || !value.isValid())
        return value;
    if (cell.reference) {
        const QString table = cell.reference->table ? QString::fromLatin1(cell.reference->table)
                                                    : roadTable(*cell.reference, row, value.toLongLong());
        return mChanges.ids.of(table, value.toLongLong());
    }
    if (cell.source >= 0)
        value = mChanges.ids.of(QString::fromLatin1(mEntry.name), value.toLongLong());
    if (cell.isNumber)
        mLargestNumber = std::max(mLargestNumber, value.toLongLong());
    return value;
}

QString TableCopy::roadTable(const catalogue::Reference &reference, const StoreReader::Row &row,
                             qint64 road) const {
    QString link = QStringLiteral("Link");
    QString connector = QStringLiteral("Connector");
    if (!mChanges.ids.has(connector, road))
        return link;
    if (!mChanges.ids.has(link, road))
        return connector;
    const auto ofRow = [&](const char *column) { return valueOf(row, column); };
    return reference.saysConnector(ofRow) ? connector : link;
}

QVariant TableCopy::valueOf(const StoreReader::Row &row, const char *column) const {
    const int index = indexOf(mSource, QString::fromLatin1(column).toLower());
    return index < 0 ? QVariant() : row[index];
}

QStringList TableCopy::leftOut() const {
    QStringList lines;
    for (int i = 0; i < mLeftOutColumns.size(); ++i) {
        if (mLeftOutValues[i] > 0)
            lines.append(QStringLiteral("column %1 of table %2: %3 values")
                             .arg(mSource.columns[mLeftOutColumns[i]].name, mSource.name,
                                  QString::number(mLeftOutValues[i])));
    }
    return lines;
}

} // namespace moratools
