#pragma once

#include "model/StoredJson.h"
#include "store/bulk/JsonCheck.h"
#include "store/bulk/ProgressMeter.h"
#include "store/bulk/RowSource.h"
#include "store/core/Store.h"

#include <vector>

/// One ordered pass over the rows that a table has of a network: for reading networks as a whole. Offers the
/// readers of Query, so that one function reads a row of either.
///
/// No other statement of the operation should run while the rows are read; see Query on PostgreSQL.
class Rows {
public:
    /// How rows come that the order of a pass does not tell apart: there are none, or as the reads of single
    /// objects give them, which is as they were written.
    enum class Ties { None, AsWritten };

    /// The rows of @p table, all columns, in ascending order of @p order (columns, with commas between them;
    /// empty for the engine's own order).
    /// @param meter hears of each row and may end the pass.
    Rows(const Store &store, const char *table, const char *order, Ties ties, ProgressMeter &meter);

    Rows(const Rows &) = delete;
    Rows &operator=(const Rows &) = delete;

    const Store &store() const { return mStore; }

    /// False after the last row, after a failure, which is recorded, and once the work is cancelled.
    bool next();
    /// Whether the pass ended because a statement failed.
    bool hasFailed() const { return mFailed; }

    /// The identifier in a column whose name is no literal.
    long idIn(const QByteArray &column) {
        const int index = mSource->indexOf(column.constData());
        bool isNumber = true;
        return index >= 0 ? static_cast<long>(static_cast<qint32>(mSource->whole(index, isNumber))) : 0;
    }
    /// Whether every JSON text that was read of the current row is an object.
    bool jsonParses() const { return mJsonParses; }
    /// A text that was read of the current row and is not UTF-8, or too long.
    DamagedText damagedText() const { return mSource->damagedText(); }
    /// Whether everything that was read of the current row as a number is a finite one, or nothing.
    bool numbersParse() const { return mNumbersParse; }

    /// A whole number as the store has it; 0 for NULL and for what is none.
    qint64 whole(const char *column) {
        const int index = columnIndex(column);
        return index >= 0 ? mSource->whole(index, mNumbersParse) : 0;
    }

    /// @{ As those of Query.
    QVariant value(const char *column) {
        const int index = columnIndex(column);
        return index >= 0 ? mSource->value(index) : QVariant();
    }
    bool isNull(const char *column) {
        const int index = columnIndex(column);
        return index < 0 || mSource->isNull(index);
    }
    bool hasColumn(const char *column) { return columnIndex(column) >= 0; }
    QString text(const char *column) {
        const int index = columnIndex(column);
        return index >= 0 ? mSource->text(index) : QString();
    }
    double number(const char *column) {
        const int index = columnIndex(column);
        return index >= 0 ? mSource->number(index, mNumbersParse) : 0;
    }
    int integer(const char *column) { return static_cast<int>(whole(column)); }
    long id(const char *column) { return static_cast<long>(static_cast<qint32>(whole(column))); }
    StoredJson json(const char *column) {
        const int index = columnIndex(column);
        if (index < 0)
            return {};
        const QByteArray text = mSource->bytes(index);
        mJsonParses = mJsonParses && (text.isEmpty() || isJsonObject(text));
        return StoredJson::fromText(text);
    }
    /// @}

private:
    int columnIndex(const char *column);

    const Store &mStore;
    std::unique_ptr<RowSource> mSource;
    ProgressMeter &mMeter;
    int mFailuresBefore;
    bool mFailed = false;
    bool mJsonParses = true;
    bool mNumbersParse = true;
    /// Columns by the address of their name, in the order in which the first row asked for them. The later
    /// rows ask in the same order, so the next one is the one that is asked for.
    std::vector<std::pair<const char *, int>> mColumns;
    std::size_t mNext = 0;
};
