#pragma once

#include "model/NetContents.h"
#include "store/core/Rows.h"

/// What the families share while a network is loaded as a whole.
class NetLoad {
public:
    NetLoad(const Store &from, NetContents &into, const NetProgress &progress)
        : store(from), contents(into), mMeter(progress) {}

    /// Calls @p visit with each row of @p table that belongs to the network, in that order of columns.
    template <class Visit>
    void forEachRow(const char *table, const char *order, const Visit &visit) {
        Rows rows(store, table, order, mMeter);
        while (rows.next()) {
            visit(rows);
            if (!rows.jsonParses())
                skip(table, idOf(table, order, rows), "holds JSON that does not parse and reads as empty");
        }
        mFailed = mFailed || rows.hasFailed();
    }

    /// Reports the row or object of that id, which the load leaves out or takes only in part.
    /// @param reason a clause that follows the id.
    void skip(const char *table, long id, const char *reason);

    /// Neither cancelled nor failed so far.
    bool isGood() const { return !mFailed && !mMeter.isCancelled(); }

    const Store &store;
    NetContents &contents;

private:
    static long idOf(const char *table, const char *order, Rows &row);

    ProgressMeter mMeter;
    bool mFailed = false;
};
