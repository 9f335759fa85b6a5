#pragma once

#include "model/CallDbResult.h"
#include "store/core/StoreVersion.h"
#include "tools/MoraToolsExport.h"
#include "tools/session/StoreAddress.h"
#include "tools/session/StoreFile.h"

#include <QSqlDatabase>
#include <QString>

#include <memory>

class Net;
class OpenStore;
class QSqlQuery;
class SpecialWords;

namespace moratools {

/// The store that functions of this library work on. It is opened for the life of this object, beside whatever
/// else the process has open: there may be any number, each with a connection, a current network and failures
/// of its own. It is used, and destroyed, in the thread that made it.
///
/// A constant session is a constant set of references: the store and its current network may change.
class MORATOOLS_EXPORT StoreSession {
public:
    /// Opens the store. For reading, nothing of it changes. For writing, an SQLite store that is not current
    /// is brought forward; one of the first generation is not written to, but by an upgrade. Throws
    /// `Failure`.
    StoreSession(const StoreAddress &address, Access access);
    /// The store that the process has open through DBTools (gDB, gNet, ...), which stays open. `name` is what
    /// messages call it.
    static StoreSession ofProcess(const QString &name);
    /// Hands what the library recorded as failed to its log and closes the store.
    ~StoreSession();

    /// Throws `Failure` when the store cannot be had for `access`; nothing of it changes. What else may keep
    /// a program from its work is found out before the store is opened for writing, which brings it forward.
    static void require(const StoreAddress &address, Access access);

    /// The connection, for operations of DBTools; they work on this store then.
    QSqlDatabase &db() const;
    /// The current network.
    Net &net() const;
    int generation() const;
    bool hasSeveralNetworks() const { return probes::hasSeveralNets(generation()); }
    /// The language of the stored words; else they are Chinese.
    bool isEnglish() const;
    /// The dictionary between stored and shown words.
    const SpecialWords &words() const;
    /// Reserved identifiers of network `netId` are its own no longer: a roll back took the counters back.
    void forgetIdentifiers(long netId) const;

    /// What the library recorded as failed since the store was opened, but for the one record that the first
    /// opening of a store of several networks leaves by design.
    int unexpectedFailures() const { return failures().size(); }
    /// The engine's text of the first of them; empty without any.
    QString firstFailureText() const;

    /// Throws `Failure` when the server of the store is gone (what was not committed is gone with it), and when the
    /// what is recorded is a failure of the server's own (requireServer()).
    void requireServerAlive() const;
    /// @{ Throws `Failure`: `what` cannot be read, since the server is gone, a statement failed for `reason`
    /// (the first failure's, where none is given), or the rows are not what they must be.
    [[noreturn]] void refuseReading(const QString &what) const { refuseReading(what, firstFailureText()); }
    [[noreturn]] void refuseReading(const QString &what, const QString &reason) const;
    [[noreturn]] void refuseReading(const QString &what, const QSqlQuery &failed) const;
    /// @}

private:
    explicit StoreSession(const QString &name);
    Q_DISABLE_COPY(StoreSession)
    QList<CallDbResult> failures() const;

    QString mName;
    std::unique_ptr<OpenStore> mStore; ///< null for the process's
};

} // namespace moratools
