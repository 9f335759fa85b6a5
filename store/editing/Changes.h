#pragma once

#include "model/NetReferences.h"
#include "store/editing/NetRows.h"
#include "store/editing/RecordedRows.h"
#include "store/editing/SharedParts.h"

#include <map>
#include <optional>

/// A change of objects in a store: the rows that they are to have beside those that they have. What is the same
/// stays as it is; children that are new, changed or gone are written, changed, deleted.
class Changes {
public:
    /// @param only the table whose rows alone are recorded; null for all.
    explicit Changes(const Store &store, const char *only = nullptr);

    /// The rows of the objects as they are to be; filled by whoever names the objects below.
    RecordedRows &recorded() { return mRecorded; }

    /// @{ Objects of a table that the store has, that it has not, and that it may have.
    void change(const catalogue::Table &table, const Ids &ids);
    void add(const catalogue::Table &table, const Ids &ids);
    void put(const catalogue::Table &table, const Ids &ids);
    /// @}
    /// All rows of a table of settings.
    void replaceAll(const catalogue::Table &table) { mReplaced.push_back(&table); }
    /// @{ Objects to be removed, that the store has, and that it may have.
    void remove(const catalogue::Table &table, const Ids &ids);
    void letGo(const catalogue::Table &table, const Ids &ids);
    /// @}

    /// Writes it, in the transaction of the caller, who takes it back when this is false. Refused, with a record
    /// that names the object: one that is not there, or is there already; one that names another object that
    /// neither the store nor the change has; and with Cascade::Refuse the removal of one, or of a part, that
    /// others refer to.
    bool apply(Cascade cascade);
    /// Writes some columns of all recorded rows of a table, whose objects the store must have.
    bool applyColumns(const catalogue::Table &table, const QStringList &columns);

    /// The identifiers of shared rows (nodes, vertices) that were written, each with its row in recorded().
    const std::map<long, std::size_t> &written(const catalogue::Table &table) { return mWritten[&table]; }

private:
    using Table = catalogue::Table;
    using Reference = catalogue::Reference;
    using Key = std::vector<long>;
    using StoredRow = std::vector<QVariant>;

    /// The rows of a table that the store has of the objects.
    struct Stored {
        std::vector<QByteArray> columns;
        std::vector<StoredRow> rows;

        int indexOf(const char *column) const;
    };
    /// One row to be changed: the columns that differ.
    struct Update {
        std::size_t row;
        std::vector<int> columns;
    };
    /// What is to be done with a table.
    struct Work {
        std::vector<std::size_t> inserts; ///< by number of the recorded row
        std::vector<Update> updates;
        std::vector<Key> deletes; ///< of rows that nothing refers to
        Ids gone;                 ///< of rows that others may refer to
    };

    /// A row that names something.
    struct NamedPlace {
        const Table *from;
        const Reference *reference;
        long row;
    };
    /// What the rows of the change name, by the table that has to have it.
    struct Named {
        std::map<const Table *, std::map<long, NamedPlace>> tables;
        std::map<long, NamedPlace> roads;
    };

    bool readStored();
    bool readRows(const Table &table, const char *column, const Ids &ids);
    bool readParts();
    bool readCarried();
    /// Rows that have come from other owners.
    bool readMoved();
    bool requirePresence() const;
    bool requireRemoved() const;
    bool compare();
    bool compareTable(const Table &table, Work &work);
    bool compareGroup(const Table &table, const RecordedTable &recorded, const Stored &stored,
                      const std::vector<std::size_t> &now, const std::vector<std::size_t> &before,
                      Work &work);
    bool compareShared(const Table &table, Work &work);
    bool referencesLead() const;
    void collectNames(const Table &table, const Work &work, Named &named) const;
    bool requireNamed(const std::map<long, NamedPlace> &places,
                      const std::vector<const Table *> &targets) const;
    static std::vector<int> differences(const Table &table, const RecordedTable &recorded, std::size_t now,
                                        const Stored &stored, std::size_t before);
    bool write(const Table &table, const Work &work);
    bool insertRows(const Table &table, const Work &work);
    bool updateRows(const Table &table, const Work &work);
    bool deleteRows(const Table &table, const Work &work);
    bool removeGone(Cascade cascade);
    bool keepOrder(const Table &table);
    bool keepIds(const Table &table, const Work &work);

    Ids recordedIds(const Table &table) const;
    Ids storedIds(const Table &table, const char *column) const;
    static Key keyOf(const Table &table, const RecordedTable &rows, std::size_t row);
    static Key keyOf(const Table &table, const Stored &rows, std::size_t row);
    static long ownNumber(const Table &table, const RecordedTable &rows, std::size_t row);
    /// Columns by which a row is found, or that are not the object's to change: the network, and numbers that a
    /// read gives afresh.
    static bool isFixed(const Table &table, const QByteArray &column);
    static QString listed(const std::vector<NetObject> &referrers);
    bool refuse(const Table &table, long id, const QString &reason,
                FailureKind kind = FailureKind::Constraint) const;

    const Store &mStore;
    NetRows mRows;
    RecordedRows mRecorded;
    SharedParts mShared;
    std::map<const Table *, Ids> mObjects; ///< that are changed or added
    std::map<const Table *, Ids> mKnown;   ///< of these, those that the store must have
    std::map<const Table *, Ids> mAdded;   ///< and those that it must not have
    std::map<const Table *, Ids> mRemoved;
    std::map<const Table *, Ids> mFound; ///< of these, those that the store must have
    std::vector<const Table *> mReplaced;
    std::map<const Table *, Stored> mStored;
    std::map<const Table *, Work> mWork;
    std::map<const Table *, std::map<long, std::size_t>> mWritten;
};
