#pragma once

#include "model/SpecialWords.h"
#include "store/catalogue/Catalogue.h"
#include "tools/rows/CopyTarget.h"
#include "tools/rows/Renumbering.h"
#include "tools/rows/TableWriter.h"

#include <memory>

namespace moratools {

/// Words of the fixed vocabulary from one store's language into another's.
class Translation {
public:
    /// Translates nothing unless both languages are known and differ.
    Translation(Language from, Language to);
    bool isNeeded() const { return mIsNeeded; }
    /// Whether `word` was put into the other language.
    bool apply(QVariant &word);

private:
    bool mIsNeeded;
    bool mToChinese;
    SpecialWords mWords;
};

/// What the rows of a network become on their way.
struct RowChanges {
    long netId;
    const Renumbering &ids;
    Translation &words;
    /// Identifiers for lane connectors of older stores, which keep none.
    qint64 nextLaneConnector;
};

/// Copies the rows of one table: columns by name, identifiers and references as renumbered, words in the
/// language of the target.
class TableCopy {
public:
    TableCopy(const catalogue::Table &entry, const StoreTable &source, const StoreTable &target,
              const CopyTarget &store, RowChanges &changes);

    /// Writes the copy of a row.
    void add(const StoreReader::Row &row);
    /// After the last row.
    void finish() { mWriter->finish(); }

    qint64 rows() const { return mRows; }
    qint64 words() const { return mWords; }
    /// The largest of the numbers that the store counts for this table; 0 where it counts none.
    qint64 largestNumber() const { return mLargestNumber; }
    /// Columns that the target lacks, with the number of rows that have a value there.
    QStringList leftOut() const;
    /// A value for a column of every row in place of that of the source.
    void replace(const QString &column, const QVariant &value);

private:
    struct Cell {
        int source = -1; ///< index of the source's column
        QVariant filling;
        bool isFixed = false;
        bool isId = false;     ///< unique in the store
        bool isOwnId = false;  ///< numbers the rows of the table
        bool isNumber = false; ///< counted by the store: identifiers, and codes that are not renumbered
        bool isWord = false;
        const catalogue::Reference *reference = nullptr;
    };

    void plan(const StoreTable &target);
    QVariant copied(const Cell &cell, const StoreReader::Row &row);
    QString roadTable(const catalogue::Reference &reference, const StoreReader::Row &row, qint64 road) const;
    QVariant valueOf(const StoreReader::Row &row, const char *column) const;

    const catalogue::Table &mEntry;
    StoreTable mSource;
    RowChanges &mChanges;
    QVector<StoreColumn> mColumns; ///< of the target, as far as they are written
    QVector<Cell> mCells;
    QVector<int> mLeftOutColumns;
    QVector<qint64> mLeftOutValues;
    QVector<QVariant> mRow;
    std::unique_ptr<TableWriter> mWriter;
    qint64 mRows = 0;
    qint64 mWords = 0;
    qint64 mLargestNumber = 0;
};

} // namespace moratools
