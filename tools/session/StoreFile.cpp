#include "tools/session/StoreFile.h"

#include "store/DBTools.h"
#include "store/core/ConnectionName.h"
#include "store/guard/ConnectionGuard.h"
#include "store/guard/FileGuard.h"
#include "store/guard/ReadOnlyFile.h"
#include "store/guard/SchemaGuard.h"
#include "store/schema/Upgrade.h"
#include "tools/reports/Failure.h"
#include "tools/session/Patience.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtEndian>

namespace moratools {

namespace {

// The header of an SQLite file, https://www.sqlite.org/fileformat.html, 1.3: magic text, page size at byte 16
// (1 stands for 65536), change counter at 24, number of pages at 28 (valid while 92 repeats the counter).
constexpr char kMagic[] = "SQLite format 3";
constexpr int kHeaderSize = 100;

/// The connection of a look at a file goes when that is over.
struct Probe {
    ~Probe() { QSqlDatabase::removeDatabase(name); }
    const QString name = newConnectionName("probe");
};

quint32 bigEndian32(const QByteArray &bytes, int at) {
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

void requireReadableFile(const QString &path, Access access) {
    const QFileInfo info(path);
    if (!info.exists())
        throw Failure(
            QStringLiteral("%1: no such file; make a store with \"morastore new\" first").arg(path));
    if (info.isDir())
        throw Failure(QStringLiteral("%1: this is a folder; give the path of a store file").arg(path));
    if (!info.isFile())
        throw Failure(QStringLiteral("%1: this is no regular file; give the path of a store file").arg(path));
    // The permissions count, too, where the user's rights would override them.
    const auto anyWrite = QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    if (access != Access::Read && (!info.isWritable() || !(info.permissions() & anyWrite)))
        throw Failure(
            QStringLiteral("%1: the file is read-only; make it writable or work on a copy").arg(path));
}

void requireWholeFile(const QString &path) {
    if (DBTools::isFileEncrypted(path))
        throw Failure(
            QStringLiteral("%1: the store is protected; run \"morastore unprotect\" on it first").arg(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("%1: cannot be read (%2)").arg(path, file.errorString()));
    const QByteArray header = file.read(kHeaderSize);
    if (header.size() < kHeaderSize || qstrncmp(header.constData(), kMagic, sizeof kMagic) != 0)
        throw Failure(QStringLiteral("%1: this is no SQLite file; give the path of a store file").arg(path));
    const quint16 raw = qFromBigEndian<quint16>(header.constData() + 16);
    const qint64 pageSize = raw == 1 ? 65536 : raw;
    const bool countIsValid = bigEndian32(header, 24) == bigEndian32(header, 92);
    if (countIsValid && file.size() < pageSize * bigEndian32(header, 28))
        throw Failure(QStringLiteral("%1: the store is cut off after %2 of %3 bytes; restore it from a copy")
                          .arg(path, QString::number(file.size()),
                               QString::number(pageSize * bigEndian32(header, 28))));
}

// Result codes of SQLite, https://www.sqlite.org/rescode.html.
constexpr int kGeneralError = 1;

/// How long, in milliseconds, readings wait for a program that writes.
constexpr int kQuick = 500;

/// The low byte, which is the primary code.
int codeOf(const QSqlError &error) {
    return error.nativeErrorCode().toInt() & 0xff;
}

[[noreturn]] void refuse(const QString &path, const QSqlError &error) {
    constexpr int busy = 5;
    constexpr int locked = 6;
    constexpr int readOnly = 8;
    const int code = codeOf(error);
    if (code == busy || code == locked)
        throw Failure(
            QStringLiteral("%1: another program holds the store; close it there and try again").arg(path));
    if (code == readOnly)
        throw Failure(
            QStringLiteral("%1: the store is read-only; make it writable or work on a copy").arg(path));
    if (code == kGeneralError)
        throw Failure(
            QStringLiteral("%1: this SQLite file is no store; give the path of a store file").arg(path));
    throw Failure(QStringLiteral("%1: the store cannot be used (%2); restore it from a copy")
                      .arg(path, error.databaseText()));
}

/// That the engine may write to the file without writing to, or deleting, another one.
void requireNoGuest(const QString &path) {
    const QString refusal = fileguard::refusal(path, fileguard::Purpose::Write);
    if (!refusal.isEmpty())
        throw Failure(QStringLiteral("%1: %2").arg(path, refusal));
}

void run(QSqlDatabase &db, const QString &path, const char *sql) {
    QSqlQuery query(db);
    if (!query.exec(QLatin1String(sql)))
        refuse(path, query.lastError());
}

/// The same for as long as the process waits for others.
void runPatiently(const QSqlDatabase &db, const QString &path, const char *sql) {
    const QSqlQuery query = patience::exec(db, QLatin1String(sql), kQuick);
    if (query.lastError().isValid())
        refuse(path, query.lastError());
}

bool isLedByNetwork(const QSqlDatabase &db) {
    QSqlQuery column(
        QStringLiteral("select 1 from pragma_table_info('Link') where pk > 0 and lower(name) = 'netid'"), db);
    return column.next();
}

/// The store is one that the library would open, asked without a trace.
Age judge(const QString &path, Access access) {
    const ReadOnlyFile file(path);
    if (!file.refusal().isEmpty())
        throw Failure(QStringLiteral("%1: %2").arg(path, file.refusal()));
    const Probe probe;
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), probe.name);
    file.applyTo(db);
    db.setConnectOptions(db.connectOptions() + QStringLiteral(";QSQLITE_BUSY_TIMEOUT=%1").arg(kQuick));
    if (!connectionguard::open(db))
        throw Failure(QStringLiteral("%1: cannot be opened (%2)").arg(path, db.lastError().databaseText()));
    const connectionguard::QuickQuestions quick(db);
    if (access != Access::Read)
        runPatiently(db, path, "select count(*) from sqlite_master");
    else
        run(db, path, "select count(*) from sqlite_master");
    FailureList reasons;
    if (!schemaguard::hasPlainTables(db, path, reasons) || !schemaguard::hasFittingVersion(db, path, reasons))
        throw Failure(reasons.last().error);
    run(db, path, "select count(*) from IDGenerater");
    run(db, path, "select 1 from Link limit 1");
    // The library takes a store that names no version for one of a single network.
    if (DBTools::selectDbVersion(db) == 0 && isLedByNetwork(db))
        throw Failure(
            QStringLiteral("%1: the store does not say of which version it is; restore it from a copy")
                .arg(path));
    const auto isFirst = upgrade::isFirstGeneration(db, reasons);
    const auto isPending = isFirst ? upgrade::isPending(db, reasons) : std::nullopt;
    if (!isPending)
        throw Failure(
            QStringLiteral("%1: the store cannot be read (%2); try again when no other program writes to it")
                .arg(path, reasons.last().error.trimmed()));
    if (*isFirst)
        return Age::FirstGeneration;
    return *isPending ? Age::Older : Age::Current;
}

/// That nobody else writes to the store now. What a process that died left half-written is taken back.
void requireWriteLock(const QString &path) {
    const Probe probe;
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), probe.name);
    db.setDatabaseName(path);
    if (!connectionguard::open(db))
        throw Failure(QStringLiteral("%1: cannot be opened (%2)").arg(path, db.lastError().databaseText()));
    runPatiently(db, path, "begin immediate");
    run(db, path, "rollback");
}

} // namespace

Age requireStore(const QString &path, Access access) {
    requireReadableFile(path, access);
    requireWholeFile(path);
    if (access != Access::Read)
        requireNoGuest(path);
    const Age age = judge(path, access);
    if (access != Access::Read)
        requireWriteLock(path);
    return age;
}

} // namespace moratools
