#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "tests/host/Morastore.h"
#include "tests/hostile/HostileFiles.h"

// Files that lie beside a store, and lead the engine to files that are none of the store's.

namespace {

class HostileFiles : public Morastore {
protected:
    void SetUp() override {
        mStore = newStore();
        ASSERT_EQ(run({QStringLiteral("import"), mStore, kExample}).exitCode, 0);
        mSound = newStore(QStringLiteral("sound.mora"));
        ASSERT_EQ(run({QStringLiteral("import"), mSound, kExample}).exitCode, 0);
        mVictim = write(QStringLiteral("victim.txt"), "kept by somebody else");
    }
    void TearDown() override {
        gDB.close();
        gDB = QSqlDatabase();
        gDBForBackup = QSqlDatabase();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }

    /// Every command and every opening of the library's refuses the store with a sentence that contains
    /// `expected`, and no file of the folder changes.
    void expectRefusalByAll(const QString &expected) const {
        const QString picture = file(QStringLiteral("p.svg"));
        for (const QStringList &command : commandsThatOpen(mStore, mSound, picture))
            expectRefusal(
                [&] {
                    SCOPED_TRACE(command.join(QLatin1Char(' ')).toStdString());
                    return run(command);
                },
                expected);
        const QByteArray before = read(mStore);
        for (const auto open : {DBTools::openDatabase, DBTools::openDatabaseReadOnly}) {
            EXPECT_FALSE(open(gDB, mStore, true));
            ASSERT_EQ(DBTools::mlCallDbResult.size(), 1);
            EXPECT_TRUE(DBTools::mlCallDbResult.first().error.contains(expected))
                << DBTools::mlCallDbResult.first().error.toStdString();
        }
        DBTools_V6::mlCallDbResult.clear();
        EXPECT_FALSE(DBTools_V6::openDatabaseForBackup(gDBForBackup, mStore, true));
        EXPECT_EQ(DBTools_V6::mlCallDbResult.size(), 1);
        EXPECT_TRUE(read(mStore) == before);
    }

    QString mStore;
    QString mSound;
    QString mVictim;
};

TEST_F(HostileFiles, AJournalThatNamesAnotherFileDeletesNothing) {
    const QString journal = QStringLiteral("store.mora-journal");
    write(journal, hotJournal(read(mStore), mVictim));
    expectRefusalByAll(QStringLiteral("store.mora-journal beside it names another file, ") + mVictim);
    EXPECT_EQ(read(mVictim), QByteArray("kept by somebody else"));
    // A link leads to the same store, whose journal lies beside the store itself.
    const QString link = file(QStringLiteral("link.mora"));
    ASSERT_TRUE(QFile::link(mStore, link));
    EXPECT_FALSE(DBTools::openDatabase(gDB, link, true));
    EXPECT_TRUE(QFile::exists(mVictim));
    // One that is not hot becomes it with the next transaction, which ends in front of the record.
    QByteArray cold = hotJournal(read(mStore), mVictim);
    cold[0] = '\0';
    write(journal, cold);
    EXPECT_FALSE(DBTools::openDatabase(gDB, mStore, true));
    EXPECT_EQ(read(file(journal)), cold);

    // The same without the record is an ordinary crash: taken back, and done.
    write(journal, hotJournal(read(mStore), {}));
    EXPECT_TRUE(DBTools::openDatabase(gDB, mStore, true));
    EXPECT_FALSE(QFile::exists(file(journal)));
}

TEST_F(HostileFiles, ALinkIsNoPlaceForAJournal) {
    for (const char *suffix : {"-journal", "-wal", "-shm"}) {
        const QString link = mStore + QLatin1String(suffix);
        ASSERT_TRUE(QFile::link(mVictim, link));
        expectRefusalByAll(QStringLiteral("store.mora%1 beside it is a link").arg(QLatin1String(suffix)));
        EXPECT_EQ(read(mVictim), QByteArray("kept by somebody else")) << suffix;
        EXPECT_TRUE(QFile::remove(link));
    }
}

} // namespace
