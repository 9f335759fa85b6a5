#pragma once

#include "model/NetContents.h"
#include "store/bulk/Rows.h"

#include <optional>
#include <vector>

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
    /// The same as forEachRow() for a table whose rows are read by their ids: one without an id, and one with
    /// that of the row before, are read by none and left out.
    template <class Visit>
    void forEachObject(const char *table, const char *id, const Visit &visit) {
        std::optional<qint64> before;
        pass(
            table, id, Rows::Ties::None,
            [&](Rows &row) {
                const qint64 own = row.whole(id);
                if (!row.isNull(id) && before != own)
                    visit(row);
                before = own;
            },
            id);
    }

    /// Reports the row or object of that id, which the load leaves out or takes only in part.
    /// @param reason a clause that follows the id.
    void skip(const char *table, long id, const char *reason);

    /// Reports the row when a word in it, which the load takes as it stands, is none of the vocabulary.
    void requireWord(const char *table, long id, const QString &word, const char *reason);

    /// Whether there is a link or a connector of that id among what was loaded.
    bool isLoaded(long roadId) const {
        return store.net().getLinkById(roadId) || store.net().getConnectorById(roadId);
    }

    /// Neither cancelled nor failed so far.
    bool isGood() const { return !mFailed && !mMeter.isCancelled(); }

    const Store &store;
    NetContents &contents;

private:
    /// The ids that a pass meets; @p column is empty for a table without.
    struct RowIds {
        QByteArray column;
        std::vector<qint64> met;
    };

    template <class Visit>
    void pass(const char *table, const char *order, Rows::Ties ties, const Visit &visit,
              const char *id = nullptr) {
        Rows rows(store, table, order, ties, mMeter);
        RowIds ids{id ? QByteArray(id) : ownId(table), {}};
        while (rows.next()) {
            visit(rows);
            if (const DamagedText text = rows.damagedText(); !text.column.isEmpty())
                return refuseText(table, idOf(table, order, rows), text);
            judge(table, order, rows, ids);
        }
        reportRepeated(table, ids);
        mFailed = mFailed || rows.hasFailed();
    }
    /// A damaged text ends the load: what would be read is not what is stored.
    void refuseText(const char *table, long id, const DamagedText &text);
    /// The column of a table's own ids; empty without one.
    static QByteArray ownId(const char *table);
    /// Reports what is wrong with a row that was read.
    void judge(const char *table, const char *order, Rows &row, RowIds &ids);
    /// Reports ids that more than one row has, which no key of a sound store lets happen.
    void reportRepeated(const char *table, RowIds &ids);
    static long idOf(const char *table, const char *order, Rows &row);

    ProgressMeter mMeter;
    bool mFailed = false;
};
