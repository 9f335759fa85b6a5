#pragma once

#include "model/NetContents.h"
#include "store/core/Rows.h"

/// What the families share while a network is loaded as a whole.
class NetLoad {
public:
    NetLoad(const Store &from, NetContents &into, const NetProgress &progress)
        : store(from), contents(into), mMeter(progress) {}

    /// Calls @p visit with each row of @p table that belongs to the network, in that order of columns, which
    /// tells all rows apart.
    template <class Visit>
    void forEachRow(const char *table, const char *order, const Visit &visit) {
        pass(table, order, Rows::Ties::None, visit);
    }
    /// The same, and rows with the same values in those columns come as they were written: children of an
    /// owner whose single read has no order of its own.
    template <class Visit>
    void forEachRowAsWritten(const char *table, const char *order, const Visit &visit) {
        pass(table, order, Rows::Ties::AsWritten, visit);
    }

    /// Reports the row or object of that id, which the load leaves out or takes only in part.
    /// @param reason a clause that follows the id.
    void skip(const char *table, long id, const char *reason);

    /// Whether there is a link or a connector of that id among what was loaded.
    static bool isLoaded(long roadId) { return gNet.getLinkById(roadId) || gNet.getConnectorById(roadId); }

    /// Neither cancelled nor failed so far.
    bool isGood() const { return !mFailed && !mMeter.isCancelled(); }

    const Store &store;
    NetContents &contents;

private:
    template <class Visit>
    void pass(const char *table, const char *order, Rows::Ties ties, const Visit &visit) {
        Rows rows(store, table, order, ties, mMeter);
        while (rows.next()) {
            visit(rows);
            if (const QByteArray column = rows.damagedText(); !column.isEmpty())
                return refuseText(table, idOf(table, order, rows), column);
            if (!rows.jsonParses())
                skip(table, idOf(table, order, rows), "holds JSON that does not parse and reads as empty");
        }
        mFailed = mFailed || rows.hasFailed();
    }
    /// A text that is not UTF-8 ends the load: what would be read is not what is stored.
    void refuseText(const char *table, long id, const QByteArray &column);
    static long idOf(const char *table, const char *order, Rows &row);

    ProgressMeter mMeter;
    bool mFailed = false;
};
