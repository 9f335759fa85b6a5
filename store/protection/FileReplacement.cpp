#include "store/protection/FileReplacement.h"

#include "store/core/ConnectionName.h"
#include "store/core/Failures.h"
#include "store/core/NativePath.h"
#include "store/guard/ConnectionGuard.h"
#include "store/guard/FileGuard.h"
#include "store/guard/ReadOnlyFile.h"
#include "store/guard/SchemaGuard.h"
#include "store/protection/Refusal.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <filesystem>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

/// Qt brings only the files to the disk that it renames itself, and those cannot be read again before.
bool bringToDisk(int file) {
#ifdef Q_OS_WIN
    return _commit(file) == 0;
#else
    return fsync(file) == 0;
#endif
}

/// After a rename: the folder's entry is a change of its own. Where the system cannot bring a folder to the
/// disk (Windows, some file systems) there is nothing to be done; the file has been replaced either way.
void bringFolderToDisk([[maybe_unused]] const QString &folder) {
#ifndef Q_OS_WIN
    const int handle = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_CLOEXEC);
    if (handle < 0)
        return;
    bringToDisk(handle);
    ::close(handle);
#endif
}

void requireNotOpenHere(const QString &path) {
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        const QSqlDatabase db = QSqlDatabase::database(name, false);
        if (db.isOpen() && QFileInfo(db.databaseName()).canonicalFilePath() == path)
            throw Refusal(QStringLiteral("the store is open: close it first"));
    }
}

/// Why the store is none that would be opened, found out without a trace: what is refused stays as it is. Empty
/// when it is one, and where it cannot be read, which has its sentence later.
QString objectionTo(const QString &path) {
    const ReadOnlyFile file(path);
    if (!file.refusal().isEmpty())
        return file.refusal();
    QString objection;
    const QString connection = newConnectionName("protection");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        file.applyTo(db);
        db.setConnectOptions(db.connectOptions() + QStringLiteral(";QSQLITE_BUSY_TIMEOUT=500"));
        const bool isOpen = connectionguard::open(db);
        const connectionguard::QuickQuestions quick(db);
        FailureList reasons;
        if (isOpen && QSqlQuery(QStringLiteral("select count(*) from sqlite_master"), db).next() &&
            (!schemaguard::hasPlainTables(db, QString(), reasons) ||
             !schemaguard::hasFittingVersion(db, QString(), reasons)))
            objection = reasons.last().error;
    }
    QSqlDatabase::removeDatabase(connection);
    return objection;
}

/// An exclusive transaction takes back what a crash left half done, and closing puts a write-ahead log into
/// the file.
void settle(const QString &path) {
    QString reason;
    QString code;
    const QString connection = newConnectionName("protection");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=500"));
        db.setDatabaseName(path);
        QSqlQuery query(connectionguard::open(db) ? QSqlQuery(db) : QSqlQuery());
        for (const char *sql : {"begin exclusive", "select count(*) from sqlite_master", "commit"}) {
            if (reason.isEmpty() && !query.exec(QLatin1String(sql))) {
                reason = db.isOpen() ? query.lastError().databaseText() : db.lastError().text();
                code = query.lastError().nativeErrorCode();
            }
        }
        query.clear();
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    if (!reason.isEmpty())
        throw Refusal(
            QStringLiteral("another program is using the store, or it is damaged (%1): close it there")
                .arg(reason),
            failureKind(code, true));
}

bool startsAsSqlite(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(16) == QByteArray("SQLite format 3", 16);
}

/// A log is there as long as a program has the store open, a journal as long as a transaction is: one that is
/// kept for the next transaction starts with a zero.
void requireNoJournal(const QString &path) {
    const QString log = path + QLatin1String("-wal");
    const QString journal = path + QLatin1String("-journal");
    QFile file(journal);
    const bool isHot =
        file.exists() && (!file.open(QIODevice::ReadOnly) || file.read(1) > QByteArray(1, '\0'));
    if (isHot || QFile::exists(log))
        throw Refusal(QStringLiteral("%1 beside it belongs to a program that uses the store: close it there")
                          .arg(QFileInfo(isHot ? journal : log).fileName()),
                      FailureKind::Busy);
}

} // namespace

FileReplacement::FileReplacement(const QString &path) : mPath(QFileInfo(path).canonicalFilePath()) {
    const QFileInfo info(mPath);
    if (mPath.isEmpty())
        throw Refusal(QStringLiteral("no such file"));
    if (!info.isFile())
        throw Refusal(QStringLiteral("this is no regular file: give the path of a store file"));
    // The permissions count, too, where the user's rights would override them.
    const auto anyWrite = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    if (!info.isWritable() || !(info.permissions() & anyWrite))
        throw Refusal(QStringLiteral("the file is read-only: make it writable"));
    requireNotOpenHere(mPath);
    if (startsAsSqlite(mPath)) {
        QString refusal = fileguard::refusal(mPath, fileguard::Purpose::Write);
        if (refusal.isEmpty())
            refusal = objectionTo(mPath);
        if (!refusal.isEmpty())
            throw Refusal(refusal);
        settle(mPath);
    }
    requireNoJournal(mPath);

    mSource.setFileName(mPath);
    if (!mSource.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Refusal(QStringLiteral("it cannot be read (%1)").arg(mSource.errorString()));
    mSize = mSource.size();
    mChanged = mSource.fileTime(QFileDevice::FileModificationTime);
    // Unbuffered, so that no content stays behind in memory.
    mTarget = std::make_unique<QTemporaryFile>(mPath + QLatin1String(".XXXXXX"));
    if (!static_cast<QIODevice &>(*mTarget).open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        throw Refusal(QStringLiteral("no file can be made beside it (%1)").arg(mTarget->errorString()));
}

sealedformat::Sink FileReplacement::sink() {
    return [this](const unsigned char *bytes, std::size_t size) {
        // A disk that is filling up takes a part; only the next try says why it takes no more.
        while (size > 0) {
            const qint64 step =
                mTarget->write(reinterpret_cast<const char *>(bytes), static_cast<qint64>(size));
            if (step <= 0)
                throw Refusal(
                    QStringLiteral("the new file beside it cannot be written (%1): make room on the disk")
                        .arg(mTarget->errorString()));
            bytes += step;
            size -= static_cast<std::size_t>(step);
        }
    };
}

void FileReplacement::finishWriting() {
    if (!mSource.seek(0) || !mTarget->seek(0))
        throw Refusal(QStringLiteral("it cannot be read again"));
}

void FileReplacement::requireUnchanged() const {
    requireNoJournal(mPath);
    const QFileInfo now(mPath);
    if (now.size() != mSize || now.fileTime(QFileDevice::FileModificationTime) != mChanged)
        throw Refusal(
            QStringLiteral("another program has changed it meanwhile: close it there and try again"),
            FailureKind::Busy);
}

void FileReplacement::commit() {
    // Not what this user may do with the old file, only what it says itself.
    const auto ofUser = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    if (!mTarget->setPermissions(mSource.permissions() & ~ofUser) || !bringToDisk(mTarget->handle()))
        throw Refusal(
            QStringLiteral("the new file beside it cannot be completed (%1)").arg(mTarget->errorString()));
    requireUnchanged();
    mSource.close();
    // It gets its name here where it had none. Windows renames closed files alone.
    const QString name = mTarget->fileName();
    mTarget->setAutoRemove(false);
    mTarget.reset();
    std::error_code error;
    std::filesystem::rename(nativePath(name), nativePath(mPath), error);
    if (error) {
        QFile::remove(name);
        throw Refusal(QStringLiteral("it cannot be replaced (%1): close it in other programs and try again")
                          .arg(QString::fromLocal8Bit(error.message().c_str())));
    }
    bringFolderToDisk(QFileInfo(mPath).path());
}
