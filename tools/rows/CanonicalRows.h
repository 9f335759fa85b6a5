#pragma once

#include "tools/rows/Digest.h"
#include "tools/rows/NetworkRows.h"

#include <QByteArray>
#include <QPair>
#include <QVector>

#include <optional>
#include <vector>

namespace moratools {

class Sha256;
class Translation;

/// The rows of a table of a network as its digest sees them, in groups of equal `catalogue::Table::key`: each
/// row is its columns that count and are not NULL, ordered by name, in a form that is the same on every engine.
class CanonicalRows {
public:
    /// Without a table there are no rows. `words`, where it is given, puts words into another language.
    CanonicalRows(const NetworkRows &rows, const catalogue::Table &entry, Covered covered,
                  Translation *words = nullptr);

    /// Goes to the next group; false after the last.
    bool next();
    /// The values of the key, as rowvalue::appendCanonical() writes them.
    const QByteArray &place() const { return mPlace; }
    /// Its rows, ascending by their bytes.
    const std::vector<QByteArray> &group() const { return mGroup; }
    /// Below 0 when a place comes before another one in the order of the groups, above 0 when it comes after.
    static int compare(const QByteArray &place, const QByteArray &other);

    /// The size of the first `values` values of a place.
    static int sizeOf(const QByteArray &place, int values);

    /// The columns of a row (their names in lower case) with their values.
    static QVector<QPair<QByteArray, QVariant>> columnsOf(const QByteArray &row);

private:
    struct Counted {
        QByteArray name; ///< and a NUL
        int index;
        bool isWord;
    };

    bool nextRow();
    void appendRow();

    QVector<Counted> mColumns;
    QVector<int> mOrder;
    std::optional<RowCursor> mCursor;
    Translation *mWords;
    bool mHasRow = false;
    QByteArray mNextPlace;
    QByteArray mNextRow;
    QByteArray mPlace;
    std::vector<QByteArray> mGroup;
};

/// The digest of a network, group by group and table by table in the order of the catalogue.
class NetworkDigest {
public:
    NetworkDigest();
    ~NetworkDigest();

    void add(const catalogue::Table &entry, const std::vector<QByteArray> &group);
    QString result();

private:
    Q_DISABLE_COPY(NetworkDigest)

    std::unique_ptr<Sha256> mHash;
    QByteArray mWaiting;
};

} // namespace moratools
