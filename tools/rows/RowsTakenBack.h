#pragma once

#include "tools/rows/CanonicalRows.h"

#include <QMap>

#include <functional>
#include <map>
#include <vector>

namespace moratools {

/// Rows of a network that have changed, in their canonical form: with them the network as it was is told from the
/// network as it is.
class RowsTakenBack {
public:
    /// `words` puts the words of the rows into another language, as it does for a digest. Both outlive this.
    RowsTakenBack(const NetworkRows &rows, Translation &words) : mRows(rows), mWords(words) {}

    using ValueOf = std::function<QVariant(const StoreColumn &)>;
    /// @{ A row with these values was there before, or is there now.
    void was(const catalogue::Table &entry, const ValueOf &valueOf) { note(entry, valueOf, 1); }
    void is(const catalogue::Table &entry, const ValueOf &valueOf) { note(entry, valueOf, -1); }
    /// @}

    /// Rows of equal `catalogue::Table::key`.
    struct Group {
        QByteArray place;
        QMap<QByteArray, int> more; ///< how many more of a row there were; below 0 how many less

        /// The rows that there were, of those that there are. What was said to be there and is not is passed over.
        std::vector<QByteArray> before(const std::vector<QByteArray> &now) const;
    };
    /// In the order of their places.
    std::vector<Group> groups(const catalogue::Table &entry) const;

private:
    struct Changed {
        CanonicalForm form;
        std::map<QByteArray, QMap<QByteArray, int>> rows;
    };

    void note(const catalogue::Table &entry, const ValueOf &valueOf, int more);

    const NetworkRows &mRows;
    Translation &mWords;
    std::map<const catalogue::Table *, Changed> mTables;
};

} // namespace moratools
