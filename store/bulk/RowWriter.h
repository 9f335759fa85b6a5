#pragma once

#include "model/StoredJson.h"
#include "store/bulk/ProgressMeter.h"
#include "store/bulk/RowRecorder.h"
#include "store/bulk/RowSink.h"
#include "store/core/StorableValue.h"
#include "store/core/Store.h"

#include <QtNumeric>

#include <variant>
#include <vector>

/// Writes many rows into one table at the speed of the engine: for writing networks as a whole. Offers the
/// binds of Query, so that one function binds a row of either: the first row's placeholders, without their
/// colon, name the columns. Every row binds the same ones, best in the same order.
class RowWriter {
public:
    /// @param total the number of rows to come, for the meter, which hears of each row and may end the pass.
    /// @param recorder takes the rows; null for the store.
    RowWriter(const Store &store, const char *table, qint64 total, ProgressMeter &meter,
              RowRecorder *recorder = nullptr);
    ~RowWriter();
    RowWriter(const RowWriter &) = delete;
    RowWriter &operator=(const RowWriter &) = delete;

    const Store &store() const { return mStore; }

    /// @{ As those of Query.
    RowWriter &bind(const char *name, long value) {
        if (!storablevalue::holdsId(value))
            refuse(name, storablevalue::objection(QVariant(qlonglong(value))));
        return put(name, qint64(value));
    }
    RowWriter &bind(const char *name, int value) { return put(name, qint64(value)); }
    RowWriter &bind(const char *name, double value) {
        if (!qIsFinite(value))
            refuse(name, storablevalue::objection(QVariant(value)));
        return put(name, value);
    }
    RowWriter &bind(const char *name, const QString &value);
    RowWriter &bind(const char *name, const StoredJson &value);
    RowWriter &bindFlag(const char *name, bool value);
    RowWriter &bindNet();
    /// @}
    /// Binds a JSON object, or NULL for one that holds nothing.
    RowWriter &bindFilled(const char *name, const StoredJson &value);
    /// Writes the row; false after a failure, which is recorded, and once the work is cancelled. Nothing more
    /// is written then.
    bool exec();
    /// Ends the pass. @return whether all rows were written.
    bool finish();

private:
    using Value = std::variant<std::monostate, qint64, double, QString, QByteArray>;

    template <class T>
    RowWriter &put(const char *name, const T &value) {
        if (mSink)
            mSink->set(placeOf(name), value);
        else if (mGood)
            keep(name, value);
        return *this;
    }
    RowWriter &putNull(const char *name);
    /// Ends the pass when there is an objection to a value; what no engine keeps is not written.
    void refuse(const char *name, const QString &objection);
    void keep(const char *name, Value value) {
        mNames.push_back(name);
        mFirstRow.push_back(std::move(value));
    }
    int placeOf(const char *name);
    void begin();

    const Store &mStore;
    const char *mTable;
    ProgressMeter &mMeter;
    RowRecorder *mRecorder;
    bool mGood;
    std::vector<const char *> mNames;
    std::vector<Value> mFirstRow; ///< until the sink is there
    std::unique_ptr<RowSink> mSink;
    std::size_t mNext = 0;
};
