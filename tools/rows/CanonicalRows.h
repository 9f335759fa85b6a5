#pragma once

#include "tools/rows/Digest.h"
#include "tools/rows/NetworkRows.h"

#include <QByteArray>
#include <QPair>
#include <QVector>

#include <functional>
#include <future>
#include <optional>
#include <vector>

namespace moratools {

class Sha256;
class Translation;

/// The canonical form of the rows of a table: which columns count, and which give a row its place.
class CanonicalForm {
public:
    /// `words`: whether words are to be put into another language.
    CanonicalForm(const StoreTable *table, const catalogue::Table &entry, Covered covered, bool words);

    struct Counted {
        QByteArray name; ///< and a NUL
        int index;
        bool isWord;
    };
    /// By name: that does not depend on the order in which a store has them.
    const QVector<Counted> &columns() const { return mColumns; }
    /// Of the columns of the key, as far as the store has them.
    const QVector<int> &order() const { return mOrder; }

    struct Row {
        QByteArray place;
        QByteArray bytes;
    };
    /// A row whose values are at hand, `valueOf` a column's place.
    Row rowOf(const std::function<QVariant(int)> &valueOf, Translation *words) const;

private:
    QVector<Counted> mColumns;
    QVector<int> mOrder;
};

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
    bool nextRow();
    void takeRow();

    Translation *mWords; ///< null where words stay
    CanonicalForm mForm;
    std::optional<RowCursor> mCursor;
    bool mHasRow = false;
    QByteArray mNextPlace;
    QByteArray mPlace;
    std::vector<QByteArray> mGroup;
    std::vector<QByteArray> mSpare; ///< rows of groups before, for their memory
};

/// The digest of a network, group by group and table by table in the order of the catalogue; or those of several that
/// have most rows in common.
class NetworkDigest {
public:
    static constexpr int kAll = -1;

    explicit NetworkDigest(int networks = 1);
    ~NetworkDigest();

    /// Rows of all the networks, or of one.
    void add(const catalogue::Table &entry, const std::vector<QByteArray> &group, int network = kAll);
    /// Asked once all rows are there.
    QString result(int network = 0);

private:
    Q_DISABLE_COPY(NetworkDigest)

    /// Bytes on their way into the hashes.
    struct Portion {
        struct Part {
            int begin;
            int network;
        };
        QByteArray bytes;
        std::vector<Part> parts; ///< each up to the next one
    };

    void hash(const Portion &portion);
    void handOver();

    std::vector<std::unique_ptr<Sha256>> mHashes;
    const catalogue::Table *mEntry = nullptr;
    QByteArray mTable; ///< its name in lower case, and a NUL
    Portion mWaiting;
    Portion mBeingHashed;
    /// A thread of its own hashes while further rows are read. It ends before what it works on goes.
    std::future<void> mHashing;
};

} // namespace moratools
