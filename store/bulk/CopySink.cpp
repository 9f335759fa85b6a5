#include "store/bulk/CopyStream.h"
#include "store/bulk/RowSink.h"
#include "store/core/Savepoint.h"
#include "store/core/Store.h"

namespace {

class CopySink : public RowSink {
public:
    CopySink(const Store &store, const QString &table, const QStringList &columns)
        : mStore(store), mSavepoint(store.db()), mStream(store.db(), table, columns) {}

    void setNull(int column) override { mStream.setNull(column); }
    void set(int column, qint64 value) override { mStream.set(column, value); }
    void set(int column, double value) override { mStream.set(column, value); }
    void set(int column, const QString &value) override { mStream.set(column, value); }
    void set(int column, const QByteArray &json) override { mStream.setText(column, json); }
    bool write() override { return mStream.write() || fail(); }
    bool finish() override { return mSavepoint.end(mStream.finish()) || fail(); }

private:
    bool fail() { return mStore.failWithCode(mStream.sql(), mStream.error(), mStream.errorCode()); }

    const Store &mStore;
    /// Before the stream, which is closed before what it wrote is undone.
    Savepoint mSavepoint;
    CopyStream mStream;
};

} // namespace

std::unique_ptr<RowSink> copySink(const Store &store, const QString &table, const QStringList &columns) {
    // Of a stream the server returns no rows to record.
    const bool serves = !store.state().recording && CopyStream::serves(store.db());
    return serves ? std::make_unique<CopySink>(store, table, columns) : nullptr;
}
