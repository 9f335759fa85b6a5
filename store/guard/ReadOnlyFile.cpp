#include "store/guard/ReadOnlyFile.h"

#include "store/core/ConnectionName.h"
#include "store/guard/ConnectionGuard.h"
#include "store/guard/FileGuard.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QUrl>
#include <QUrlQuery>
#include <QVariant>

namespace {

/// The primary result code of the first read, https://www.sqlite.org/rescode.html; 0 when it succeeds. The
/// read goes on until the trial is over, so that no other program changes the file by way of a journal.
class Trial {
public:
    explicit Trial(const ReadOnlyFile &file) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mName);
        file.applyTo(db);
        db.setConnectOptions(db.connectOptions() + QStringLiteral(";QSQLITE_BUSY_TIMEOUT=500"));
        connectionguard::open(db);
        for (const char *sql : {"begin", "select count(*) from sqlite_master"}) {
            QSqlQuery query(db);
            if (mCode == 0 && !query.exec(QLatin1String(sql)))
                mCode = db.isOpen() ? query.lastError().nativeErrorCode().toInt() & 0xff : kCannotOpen;
        }
    }
    ~Trial() { QSqlDatabase::removeDatabase(mName); }

    bool isGood() const { return mCode == 0; }
    /// The engine would have to write first.
    bool isWriteNeeded() const { return mCode == kReadOnly; }

private:
    Q_DISABLE_COPY(Trial)

    static constexpr int kReadOnly = 8;
    static constexpr int kCannotOpen = 14;

    const QString mName = newConnectionName("trial");
    int mCode = 0;
};

/// Bytes 18 and 19 of the header, https://www.sqlite.org/fileformat.html, 1.3: 2 for a write-ahead log.
bool usesLog(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.seek(18) && file.read(2).contains('\2');
}

/// What shows that a file has changed.
QPair<qint64, QDateTime> stampOf(const QString &path) {
    QFileInfo info(path);
    info.setCaching(false);
    return {info.exists() ? info.size() : -1, info.exists() ? info.lastModified() : QDateTime()};
}

/// A program that dies leaves both, one that runs keeps both: the engine would make what is missing.
bool hasLogAndIndex(const QString &path) {
    return QFileInfo::exists(path + QLatin1String("-wal")) && QFileInfo::exists(path + QLatin1String("-shm"));
}

} // namespace

ReadOnlyFile::ReadOnlyFile(const QString &path, Medium medium)
    : mPath(fileguard::resolved(path)), mRefusal(fileguard::refusal(path, fileguard::Purpose::Read)) {
    if (!mRefusal.isEmpty())
        return;
    if (usesLog(mPath) || QFileInfo::exists(mPath + QLatin1String("-wal")))
        chooseBesideLog(medium);
    else
        chooseBesideJournal();
}

ReadOnlyFile::~ReadOnlyFile() = default;

void ReadOnlyFile::chooseBesideLog(Medium medium) {
    if (hasLogAndIndex(mPath)) {
        mWay = Way::BesideLog;
        if (Trial(*this).isGood())
            return;
        mWay = Way::Plain;
    }
    const bool isLogEmpty = QFileInfo(mPath + QLatin1String("-wal")).size() == 0;
    const bool isFixed =
        medium == Medium::Unknown ? QStorageInfo(mPath).isReadOnly() : medium == Medium::ReadOnly;
    if (isLogEmpty && isFixed)
        mWay = Way::Alone;
    else
        turnIntoCopy();
}

void ReadOnlyFile::chooseBesideJournal() {
    if (!Trial(*this).isWriteNeeded())
        return;
    // What the journal of a transaction on several files means is not in this folder alone.
    mRefusal = fileguard::refusal(mPath, fileguard::Purpose::Write);
    if (mRefusal.isEmpty())
        turnIntoCopy();
}

void ReadOnlyFile::applyTo(QSqlDatabase &db) const {
    if (isCopy()) {
        db.setDatabaseName(mFolder->filePath(QFileInfo(mPath).fileName()));
        db.setConnectOptions();
        return;
    }
    if (mWay == Way::Plain) {
        db.setDatabaseName(mPath);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        return;
    }
    // https://www.sqlite.org/uri.html and wal.html, "Read-Only Databases"
    QUrl name = QUrl::fromLocalFile(mPath);
    QUrlQuery parameters;
    parameters.addQueryItem(QStringLiteral("mode"), QStringLiteral("ro"));
    parameters.addQueryItem(mWay == Way::Alone ? QStringLiteral("immutable") : QStringLiteral("readonly_shm"),
                            QStringLiteral("1"));
    name.setQuery(parameters);
    db.setDatabaseName(QString::fromLatin1(name.toEncoded()));
    db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
}

bool ReadOnlyFile::turnIntoCopy() {
    if (isCopy())
        return true;
    // The engine's lock, where it gives one, keeps a program from changing the file while it is copied; what
    // is written without one shows in the time stamps.
    const std::unique_ptr<Trial> lock =
        mWay == Way::Plain && !usesLog(mPath) ? std::make_unique<Trial>(*this) : nullptr;
    constexpr int attempts = 3;
    QString reason;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (tryCopy(reason))
            return true;
    }
    mRefusal =
        QStringLiteral("the store can be read from a copy only, and that cannot be made (%1)").arg(reason);
    return false;
}

bool ReadOnlyFile::tryCopy(QString &reason) {
    auto folder = std::make_unique<QTemporaryDir>();
    const QString copy = folder->filePath(QFileInfo(mPath).fileName());
    const QStringList suffixes{QString(), QStringLiteral("-wal"), QStringLiteral("-journal")};
    QList<QPair<qint64, QDateTime>> before;
    for (const QString &suffix : suffixes) {
        before.append(stampOf(mPath + suffix));
        QFile source(mPath + suffix);
        if (before.last().first < 0 ||
            (source.copy(copy + suffix) &&
             QFile::setPermissions(copy + suffix, QFile::ReadOwner | QFile::WriteOwner)))
            continue;
        reason = folder->isValid() ? source.errorString() : folder->errorString();
        return false;
    }
    // The log may grow meanwhile: what is new in it is not looked at, or is whole.
    if (stampOf(mPath) != before.first() || stampOf(mPath + suffixes.last()) != before.last()) {
        reason = QStringLiteral("another program is writing to it; close it there and try again");
        return false;
    }
    mFolder = std::move(folder);
    return true;
}

void ReadOnlyFile::hideCopy() {
#ifndef Q_OS_WIN
    if (isCopy())
        mFolder->remove();
#endif
}
