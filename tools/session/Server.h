#pragma once

#include "store/server/ConnectionWords.h"
#include "store/server/SilentWait.h"
#include "tools/session/StoreAddress.h"
#include "tools/session/StoreFile.h"

#include <memory>

struct pg_conn;

namespace moratools {

/// A session on a PostgreSQL server beside Qt's connections: it knows why a server refuses one, which Qt's
/// driver does not say, and works where there is no store yet.
class Server {
public:
    /// Throws `Failure` with the reason and what to do about it.
    explicit Server(const StoreAddress &address);

    /// A session, or none when the server has no such database.
    static std::unique_ptr<Server> open(const StoreAddress &address);

    /// Throws `Failure` where a pool before the server mixes sessions.
    void requireOwnSession();
    /// Runs a statement. Throws `Failure` with the server's words.
    void run(const QString &sql);
    /// The first value that a statement returns; empty without one. Throws as run() does.
    QString value(const QString &sql);
    /// A text or a name as SQL spells it.
    QString literal(const QString &text);
    QString identifier(const QString &name);

private:
    struct Close {
        void operator()(pg_conn *connection) const;
    };

    Server(const StoreAddress &address, bool mayLackDatabase);
    silentwait::Reached connect(const ConnectionWords &words);
    [[noreturn]] void refuse(silentwait::Reached reached);

    QString mName;
    std::unique_ptr<pg_conn, Close> mConnection;
};

/// Checks, without changing anything, that the database is a store and can be had now for `access`. Throws
/// `Failure` with the reason otherwise.
void requireServerStore(const StoreAddress &address, Access access);

} // namespace moratools
