#include "store/bulk/RowWriter.h"

#include <cstring>

RowWriter::RowWriter(const Store &store, const char *table, qint64 total, ProgressMeter &meter,
                     RowRecorder *recorder)
    : mStore(store),
      mTable(table),
      mMeter(meter),
      mRecorder(recorder),
      mGood(!meter.isCancelled() && store.isUsable()) {
    if (mGood)
        meter.begin(table, total);
}

RowWriter::~RowWriter() = default;

RowWriter &RowWriter::bind(const char *name, const QString &value) {
    refuse(name, storablevalue::objection(QVariant(value)));
    return put(name, value);
}

RowWriter &RowWriter::bind(const char *name, const StoredJson &value) {
    if (!mGood)
        return *this;
    const QByteArray text = value.text();
    refuse(name, storablevalue::objection(value, text, !mStore.isSqlite()));
    return put(name, text);
}

void RowWriter::refuse(const char *name, const QString &objection) {
    if (objection.isEmpty() || !mGood)
        return;
    mGood = mStore.fail(
        QLatin1String("insert into ") + QLatin1String(mTable),
        QStringLiteral("The value of %1 cannot be stored: it %2").arg(QLatin1String(name + 1), objection));
}

RowWriter &RowWriter::bindFlag(const char *name, bool value) {
    static const QString yes = QStringLiteral("T");
    static const QString no = QStringLiteral("F");
    return put(name, value ? yes : no);
}

RowWriter &RowWriter::bindNet() {
    return mStore.hasSeveralNets() ? bind(":NetId", mStore.netId()) : *this;
}

RowWriter &RowWriter::bindFilled(const char *name, const StoredJson &value) {
    return value.holdsNothing() ? putNull(name) : bind(name, value);
}

RowWriter &RowWriter::putNull(const char *name) {
    if (mSink)
        mSink->setNull(placeOf(name));
    else if (mGood)
        keep(name, std::monostate());
    return *this;
}

int RowWriter::placeOf(const char *name) {
    if (mNext < mNames.size() && mNames[mNext] == name)
        return int(mNext++);
    for (mNext = 0; mNext < mNames.size(); ++mNext) {
        if (std::strcmp(mNames[mNext], name) == 0)
            break;
    }
    Q_ASSERT_X(mNext < mNames.size(), "RowWriter", name);
    return int(mNext++);
}

void RowWriter::begin() {
    const QString table = QLatin1String(mTable);
    QStringList columns;
    for (const char *name : mNames)
        columns.append(QLatin1String(name + 1));
    mSink = mRecorder ? mRecorder->sink(mTable, columns) : sqliteSink(mStore, table, columns);
    if (!mSink)
        mSink = copySink(mStore, table, columns);
    if (!mSink)
        mSink = querySink(mStore, table, columns);
    for (std::size_t i = 0; i < mFirstRow.size(); ++i) {
        const auto set = [this, i](const auto &value) {
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>)
                mSink->setNull(int(i));
            else
                mSink->set(int(i), value);
        };
        std::visit(set, mFirstRow[i]);
    }
    mFirstRow.clear();
}

bool RowWriter::exec() {
    if (!mGood) {
        mSink.reset();
        return false;
    }
    if (!mSink)
        begin();
    mNext = 0;
    mGood = mSink->write() && mMeter.step();
    if (!mGood)
        mSink.reset();
    return mGood;
}

bool RowWriter::finish() {
    if (mSink)
        mGood = mSink->finish() && mGood;
    mSink.reset();
    mMeter.end();
    return mGood;
}
