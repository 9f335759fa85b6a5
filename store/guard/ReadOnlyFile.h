#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

#include <memory>

class QSqlDatabase;
class QTemporaryDir;

/// How an SQLite file is opened so that reading leaves it, its time stamps and its folder as they were,
/// whatever lies beside it:
///
/// - Where the engine can read the file itself without a trace it does, also beside a program that writes.
/// - A store with a write-ahead log on a medium where nothing changes is read without one.
/// - What it could read only by writing (a transaction of a program that died, a write-ahead log without the
///   index of a running program) is read from a private copy, with journal and log, in which the engine may
///   do so. The copy goes with this object.
class MORASTORE_EXPORT ReadOnlyFile {
public:
    /// Whether a file can change where it lies; Unknown asks the system.
    enum class Medium { Unknown, Writable, ReadOnly };

    explicit ReadOnlyFile(const QString &path, Medium medium = Medium::Unknown);
    ~ReadOnlyFile();

    /// Why the file cannot be read so, as a clause for the user; empty when it can.
    const QString &refusal() const { return mRefusal; }
    /// Gives a connection that is not open its name and options.
    void applyTo(QSqlDatabase &db) const;

    bool isCopy() const { return mFolder != nullptr; }
    /// Copies the file, if it was not, so that it can be brought forward; false with refusal().
    bool turnIntoCopy();
    /// The copy is open. Where the system lets go of files in use it has no name from here on, so that a
    /// process that is killed leaves nothing behind.
    void hideCopy();

private:
    Q_DISABLE_COPY(ReadOnlyFile)

    enum class Way {
        Plain,     ///< read-only, with the engine's locks
        BesideLog, ///< the same, through the log of a program that has it open
        Alone      ///< read-only, on a medium where nothing changes
    };

    void chooseBesideLog(Medium medium);
    void chooseBesideJournal();
    bool tryCopy(QString &reason);

    QString mPath;
    Way mWay = Way::Plain;
    QString mRefusal;
    std::unique_ptr<QTemporaryDir> mFolder;
};
