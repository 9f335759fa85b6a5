#pragma once

#include "store/core/Failures.h"
#include "store/core/Sql.h"
#include "store/core/StoreState.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <memory>
#include <optional>
#include <utility>

class QSqlError;

/// The two generations of the store format.
enum class Generation {
    OneNet,     ///< A store holds one network; the network id of an operation is not used.
    SeveralNets ///< Generation 6: every network-scoped row is led by the network's id.
};

/// What an operation runs on: connection, network, generation, what is known of the store, and the list that
/// failures go to.
///
/// Cheap to make, one for each call. The connection is checked before the first statement of the operation;
/// on one that is not usable no statement runs, and the operation ends in its failure result. Holds
/// references: it must not outlive the connection handle, the state and the failure list. A constant Store is a constant
/// set of references: what they refer to may change.
class Store {
public:
    /// @param schemaVersion the version of the store when it was opened.
    Store(QSqlDatabase &db, StoreState &state, long netId, Generation generation, int schemaVersion,
          FailureList &failures);

    /// The same in a scope of its own, which must outlive it, in place of that of the current network. Nothing
    /// is prepared in it, and no question is answered.
    Store in(NetScope &scope) const;

    QSqlDatabase &db() const { return mDb; }
    StoreState &state() const { return mState; }
    /// @{ The current network of the open store, or of its own scope, its registries and its dictionary.
    Net &net() const { return mScope->net; }
    QHash<long, VehicleType> &vehicleTypes() const { return mScope->vehicleTypes; }
    QHash<long, VehicleComposition> &compositions() const { return mScope->compositions; }
    QList<LinkType> &linkTypes() const { return mScope->linkTypes; }
    const SpecialWords &words() const { return mState.words; }
    /// @}
    int schemaVersion() const { return mSchemaVersion; }
    long netId() const { return mNetId; }
    bool hasSeveralNets() const { return mGeneration == Generation::SeveralNets; }
    bool isSqlite() const;
    bool isPostgreSql() const;

    /// The connection was usable when it was first asked, and nothing has happened since that forbids going
    /// on.
    bool isUsable() const;
    /// No further statement of this operation may run.
    void giveUp() const { mUse = Use::Forbidden; }
    /// Whether it was given up; unlike isUsable() this asks nothing.
    bool isGivenUp() const { return mUse == Use::Forbidden; }

    /// @{ Without an answer to a question that the operation depends on, the store is given up.
    void requireAnswer(bool isThere) const;
    bool lacksAnswer() const { return mLacksAnswer; }
    /// @p object for the caller to own; null, and the object is gone, when a part of it could not be read.
    template <class Object>
    Object *whole(std::unique_ptr<Object> object) const {
        return mLacksAnswer ? nullptr : object.release();
    }
    /// @}

    /// @{ Whether the operation has a transaction of its own open; OperationTransaction says so.
    bool hasOwnTransaction() const { return mHasOwnTransaction; }
    void setOwnTransaction(bool isOpen) const { mHasOwnTransaction = isOpen; }
    /// @}
    /// Gives the store up after a failure that forbids going on: SQLite may have ended the transaction by
    /// itself, or another process holds the file, for which each further statement of the operation's own
    /// transaction would wait as long again.
    void heed(const QSqlError &error) const;

    /// Stores of version 1 spell the serial number of lanes and signal colours with an extra n.
    bool hasMisspeltSerialNumber() const { return !hasSeveralNets() && mSchemaVersion == 1; }

    /// Whether links and connectors have a column for their road ids.
    bool hasRoadIds() const { return hasSeveralNets() || mState.linkHasRoadId; }

    /// Whether @p table has an optional column whose name contains @p column. A generation-6 store on
    /// PostgreSQL has its columns by definition: the column probe answers false there for ordinary schemas.
    /// Where it cannot be asked the failure is recorded and the store given up.
    bool hasColumn(const char *table, const char *column) const;

    /// The spelling of @p sql for this store.
    QString text(const Sql &sql) const { return QString::fromUtf8(hasSeveralNets() ? sql.many : sql.one); }
    /// The spelling of @p sql for this store with its number placeholders filled: the network id first
    /// (generation 6 only), then @p ids in order.
    QString text(const Sql &sql, std::initializer_list<long> ids) const;

    /// The statement that is run for @p sql: the same, but for one that writes while rows are recorded.
    QString asRun(const QString &sql) const {
        return mState.recording ? mState.recording->statement(sql) : sql;
    }

    /// @{ For operations on lists: from keepStatements() on, a statement whose text is the same for every
    /// object is prepared once, and a column is probed for once. Query takes a prepared statement out while
    /// it uses it.
    void keepStatements() { mKept = std::make_unique<Kept>(); }
    std::optional<QSqlQuery> takeStatement(const QString &text) const;
    void keepStatement(const QString &text, QSqlQuery &statement) const;
    /// @}

    FailureList &failures() const { return mFailures; }
    bool check(const QSqlQuery &query, long objectId = 0, const QString &sql = {}) const {
        return checkStatement(query, mFailures, objectId, sql);
    }
    /// @{ Records a failure; false. One that no driver knows of is as a rule a refusal of what was to be
    /// written.
    bool fail(const QString &sql, const QString &error, long id = 0,
              FailureKind kind = FailureKind::RefusedValue) const {
        return recordFailure(mFailures, sql, error, id, kind);
    }
    bool fail(const QString &sql, const QSqlError &error) const;
    /// One that the engine reported past the driver.
    /// @param code of the engine, as in CallDbResult.
    bool failWithCode(const QString &sql, const QString &error, const QString &code) const;
    /// @}
    /// What this store records is called after the operation for as long as the store lives.
    void carry(OperationName name) const { mName = std::move(name); }
    bool checkConnection() const { return ::checkConnection(mDb, mFailures); }

private:
    enum class Use { Unchecked, Allowed, Forbidden };
    struct Kept {
        QHash<QString, QSqlQuery> statements;
        QHash<QString, bool> columns;
    };

    QSqlDatabase &mDb;
    StoreState &mState;
    NetScope *mScope;
    long mNetId;
    Generation mGeneration;
    int mSchemaVersion;
    FailureList &mFailures;
    mutable Use mUse = Use::Unchecked;
    mutable bool mHasOwnTransaction = false;
    mutable bool mLacksAnswer = false;
    mutable OperationName mName;
    std::unique_ptr<Kept> mKept;
};
