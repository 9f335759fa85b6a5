#pragma once

#include "store/server/ConnectionWords.h"
#include "store/server/SilentWait.h"

#include <QByteArray>

#include <atomic>
#include <memory>

struct pg_conn;

/// Asks a server, on a connection beside another one, what it does for that one's session.
class SessionInquiry {
public:
    enum class Answer {
        Works,          ///< on a statement, or the server does not tell
        WaitsForClient, ///< sends rows that do not get through, or has not got what was sent
        Idle,           ///< it has answered, or was never asked, or is gone
        None            ///< nothing was heard of the server
    };

    /// @param connection the session's; only looked at here.
    explicit SessionInquiry(pg_conn *connection);

    /// Asks the session who it is; empty without an answer.
    QByteArray identify(pg_conn *connection);

    /// @param session what identify() gave. Without it only None and Works are told apart.
    Answer ask(const QByteArray &session, int milliseconds, silentwait::Wanted wanted);
    /// Ends the session by the connection that was asked last, where there is one.
    void end(const QByteArray &session, int milliseconds, silentwait::Wanted wanted);

private:
    struct Close {
        void operator()(pg_conn *connection) const;
    };

    bool connect(int milliseconds, silentwait::Wanted wanted);

    ConnectionWords mWords;
    std::unique_ptr<pg_conn, Close> mSecond;
    std::atomic<bool> mIsPooled{false}; ///< a pool stands between
};
