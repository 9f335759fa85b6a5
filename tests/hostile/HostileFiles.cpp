#include "tests/hostile/HostileFiles.h"

#include "tests/host/Morastore.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtEndian>
#include <gtest/gtest.h>

#include <numeric>

namespace {

const QByteArray kMagic("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8);

QByteArray bigEndian(quint32 number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

} // namespace

void alter(const QString &path, const QStringList &statements) {
    const QString connection = QStringLiteral("alter");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open()) << qPrintable(path);
        for (const QString &sql : QStringList(QStringLiteral("pragma writable_schema = on")) + statements) {
            QSqlQuery query(db);
            EXPECT_TRUE(query.exec(sql)) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
        }
    }
    QSqlDatabase::removeDatabase(connection);
}

QList<QStringList> commandsThatOpen(const QString &store, const QString &sound, const QString &picture) {
    const QString copy = QStringLiteral("copy");
    return {{QStringLiteral("info"), store},
            {QStringLiteral("show"), store, QStringLiteral("links")},
            {QStringLiteral("draw"), store, picture},
            {QStringLiteral("digest"), store},
            {QStringLiteral("check"), store},
            {QStringLiteral("check"), store, QStringLiteral("--fix")},
            {copy, store, sound},
            {copy, sound, store},
            {QStringLiteral("import"), store, kExample, QStringLiteral("--name"), QStringLiteral("more")},
            {QStringLiteral("remove"), store, QStringLiteral("1"), QStringLiteral("--yes")},
            {QStringLiteral("upgrade"), store},
            {QStringLiteral("upgrade"), store, QStringLiteral("--no-backup")},
            {QStringLiteral("compact"), store},
            {QStringLiteral("protect"), store}};
}

// https://www.sqlite.org/fileformat.html, 3: magic, number of pages kept (none), nonce, pages of the store
// before, size of a sector, size of a page; then, at the end, page number, name, length, checksum and magic.
QByteArray hotJournal(const QByteArray &store, const QString &superJournal) {
    constexpr int sector = 512;
    const quint32 pageSize = qFromBigEndian<quint16>(store.constData() + 16);
    QByteArray journal = kMagic + bigEndian(0) + bigEndian(1) + bigEndian(quint32(store.size()) / pageSize) +
                         bigEndian(sector) + bigEndian(pageSize);
    journal.append(QByteArray(sector - journal.size(), '\0'));
    if (superJournal.isEmpty())
        return journal;
    const QByteArray name = superJournal.toUtf8();
    const quint32 checksum = std::accumulate(name.begin(), name.end(), quint32(0),
                                             [](quint32 sum, char byte) { return sum + quint32(byte); });
    constexpr quint32 pendingByte = 0x40000000;
    return journal + bigEndian(pendingByte / pageSize + 1) + name + bigEndian(quint32(name.size())) +
           bigEndian(checksum) + kMagic;
}
