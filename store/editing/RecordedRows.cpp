#include "store/editing/RecordedRows.h"

#include "model/StoredJson.h"
#include "store/core/StorableValue.h"

#include <cstring>

namespace {

/// Appends rows to a table. One that has other columns than the rows before it does not come: a kind of
/// object is written with the same columns whatever it holds.
class RecordingSink : public RowSink {
public:
    RecordingSink(RecordedTable &table, std::size_t columns) : mTable(table), mRow(columns) {}

    void setNull(int column) override { mRow[std::size_t(column)] = std::monostate(); }
    void set(int column, qint64 value) override { mRow[std::size_t(column)] = value; }
    void set(int column, double value) override { mRow[std::size_t(column)] = value; }
    void set(int column, const QString &value) override { mRow[std::size_t(column)] = value; }
    void set(int column, const QByteArray &json) override { mRow[std::size_t(column)] = json; }
    bool write() override {
        mTable.rows.push_back(mRow);
        return true;
    }
    bool finish() override { return true; }

private:
    RecordedTable &mTable;
    std::vector<Cell> mRow;
};

struct Reading {
    const QVariant &stored;

    bool operator()(std::monostate) const {
        return stored.isNull() || StoredJson::fromText(stored.toByteArray()).holdsNothing();
    }
    bool operator()(qint64 value) const {
        return stored.type() == QVariant::Double ? storablevalue::wholePart(stored.toDouble()) == value
                                                 : stored.toLongLong() == value;
    }
    bool operator()(double value) const { return stored.toDouble() == value; }
    bool operator()(const QString &value) const { return stored.toString() == value; }
    bool operator()(const QByteArray &value) const { return stored.toByteArray() == value; }
};

} // namespace

bool readsAs(const QVariant &stored, const Cell &cell) {
    return std::visit(Reading{stored}, cell);
}

int RecordedTable::indexOf(const char *column) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (qstricmp(columns[i].constData(), column) == 0)
            return int(i);
    }
    return -1;
}

long RecordedTable::whole(const Cell &cell) {
    const qint64 *value = std::get_if<qint64>(&cell);
    return value ? long(*value) : 0;
}

bool RecordedRows::wants(const char *table) const {
    return !mOnly || std::strcmp(mOnly, table) == 0;
}

std::unique_ptr<RowSink> RecordedRows::sink(const char *table, const QStringList &columns) {
    RecordedTable &rows = mTables[catalogue::find(QLatin1String(table))];
    if (rows.columns.empty()) {
        for (const QString &column : columns)
            rows.columns.push_back(column.toLatin1());
    }
    Q_ASSERT_X(int(rows.columns.size()) == columns.size(), "RecordedRows", table);
    return std::make_unique<RecordingSink>(rows, rows.columns.size());
}

const RecordedTable *RecordedRows::find(const catalogue::Table &table) const {
    const auto found = mTables.find(&table);
    return found != mTables.end() ? &found->second : nullptr;
}

const RecordedTable &RecordedRows::of(const catalogue::Table &table) const {
    static const RecordedTable nothing;
    const RecordedTable *found = find(table);
    return found ? *found : nothing;
}
