#pragma once

#include "store/core/CommitGuard.h"

#include <QObject>

#include <memory>
#include <utility>
#include <vector>

class QSqlDriver;

/// The transactions that are open on a connection, the outermost first. Goes with the connection: a child of
/// its driver, which all handles of the connection share.
class OpenTransactions : public QObject {
public:
    struct Level {
        quint64 number;        ///< names its savepoint
        bool isBegun;          ///< the savepoint stands in a transaction that was begun for it
        quint64 failureBefore; ///< the number of the last failure before it
        /// The failures of parts that were rolled back: from after the first number up to the second.
        std::vector<std::pair<quint64, quint64>> undone = {};
        /// Of the outermost one: once the engine has taken it back, what follows is not kept row by row.
        std::unique_ptr<CommitGuard> guard = nullptr;

        /// Whether the failure of that number was recorded inside it, and not undone.
        bool counts(quint64 failure) const;
    };

    ~OpenTransactions() override;
    /// Those of a connection.
    static OpenTransactions &of(QSqlDriver *driver);

    std::vector<Level> levels;

private:
    explicit OpenTransactions(QSqlDriver *driver);
};
