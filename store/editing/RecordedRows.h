#pragma once

#include "store/bulk/RowRecorder.h"
#include "store/catalogue/Catalogue.h"

#include <QByteArray>
#include <QVariant>

#include <map>
#include <variant>
#include <vector>

/// A value of a row to be written: NULL, a number, a text or a JSON text.
using Cell = std::variant<std::monostate, qint64, double, QString, QByteArray>;

/// Whether reading @p stored gives what reading @p cell would: NULL reads as 0 or as empty.
bool readsAs(const QVariant &stored, const Cell &cell);

/// Rows of one table.
struct RecordedTable {
    std::vector<QByteArray> columns;
    std::vector<std::vector<Cell>> rows;

    /// The place of a column, whatever the case of its name; negative for none.
    int indexOf(const char *column) const;
    /// A whole number of a row; 0 for what is none.
    static long whole(const Cell &cell);
};

/// The rows that objects are written as, by table in the order of the catalogue.
class RecordedRows : public RowRecorder {
public:
    /// @param table alone, where it is not null.
    explicit RecordedRows(const char *table = nullptr) : mOnly(table) {}

    bool wants(const char *table) const override;
    std::unique_ptr<RowSink> sink(const char *table, const QStringList &columns) override;

    /// The rows of a table; null without one.
    const RecordedTable *find(const catalogue::Table &table) const;
    /// The same; an empty table for none.
    const RecordedTable &of(const catalogue::Table &table) const;

private:
    const char *mOnly;
    std::map<const catalogue::Table *, RecordedTable> mTables;
};
