#include "store/DBTools.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/SystemCalls.h"

#include <MoraInterfaces/MoraInterfaces.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>

namespace {

constexpr int kHeader = 60;
constexpr int kChunk = 65536;
constexpr int kSealedChunk = kChunk + 17;

class Settings : public IMoraInterface {
public:
    QJsonObject jsonSettings() const override { return values; }
    QJsonObject values;
};

class ProtectionTest : public StoreFixture {
public:
    ProtectionTest() {
        gpMoraInterface = &mSettings;
        clearFailures();
    }
    ~ProtectionTest() override { gpMoraInterface = nullptr; }

protected:
    QByteArray content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void put(const QByteArray &bytes) const {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    static QByteArray sample(int size) {
        QRandomGenerator random(42);
        QByteArray bytes(size, Qt::Uninitialized);
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random.generate()); });
        return bytes;
    }
    /// Nothing was accepted, one failure that names the file was recorded, the file is as it was and alone.
    void expectRefused(bool (*operation)(QString), const char *reason, const std::string &what = {}) {
        clearFailures();
        const QByteArray before = content();
        EXPECT_FALSE(operation(path())) << what;
        EXPECT_EQ(content(), before) << what;
        ASSERT_EQ(failureCount(), 1) << what;
        const QString error = DBTools::mlCallDbResult.first().error;
        EXPECT_TRUE(error.startsWith(QDir::toNativeSeparators(path()))) << qPrintable(error);
        EXPECT_TRUE(error.contains(QLatin1String(reason))) << what << ": " << qPrintable(error);
        EXPECT_EQ(QDir(folder()).entryList(QDir::Files).size(), 1) << what << ": nothing is left beside it";
    }

    Settings mSettings;
};

TEST_F(ProtectionTest, GivesBackContentOfEverySizeAndKeepsPermissions) {
    for (const int size : {0, 1, kChunk - 1, kChunk, kChunk + 1, 3 * kChunk}) {
        put(sample(size));
        const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther;
        QFile::setPermissions(path(), permissions);
        ASSERT_TRUE(DBTools::encryptFile(path())) << size;
        EXPECT_TRUE(DBTools::isFileEncrypted(path()));
        EXPECT_EQ(content().size(), kHeader + size + 17 * (size / kChunk + 1));
        EXPECT_EQ(QFile::permissions(path()) & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
                  permissions);
        ASSERT_TRUE(DBTools::decryptFile(path())) << size;
        EXPECT_EQ(content(), sample(size));
    }
    EXPECT_EQ(failureCount(), 0);
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files).size(), 1);
}

TEST_F(ProtectionTest, TheHeaderDecidesTheDirectionAndTheKey) {
    const QByteArray plain = sample(100);
    put(plain);
    EXPECT_TRUE(DBTools::encryptDecryptFileByKey1(path()));
    const QByteArray first = content();
    expectRefused(DBTools::encryptDecryptFileByKey2, "another key");
    expectRefused(DBTools::encryptFile, "protected already");
    EXPECT_TRUE(DBTools::encryptDecryptFile(path()));
    EXPECT_EQ(content(), plain);
    expectRefused(DBTools::decryptFile, "not protected");
    EXPECT_TRUE(DBTools::encryptDecryptFileByKey1(path()));
    EXPECT_NE(content(), first) << "a salt of its own each time";
    EXPECT_TRUE(DBTools::encryptDecryptFileByKey1(path()));
    EXPECT_TRUE(DBTools::encryptDecryptFileByKey2(path()));
    expectRefused(DBTools::encryptDecryptFileByKey1, "another key");
    EXPECT_TRUE(DBTools::encryptDecryptFileByKey2(path()));
    EXPECT_EQ(content(), plain);
}

TEST_F(ProtectionTest, UsesTheHostsOwnKey) {
    const QString key = QStringLiteral("__storekey");
    put(sample(100));
    mSettings.values.insert(key, QStringLiteral("geheim \u00e9"));
    ASSERT_TRUE(DBTools::encryptFile(path()));
    mSettings.values.insert(key, QStringLiteral("geheim e"));
    expectRefused(DBTools::encryptDecryptFile, "protected with another key");
    expectRefused(DBTools::encryptDecryptFileByKey1, "another key");
    mSettings.values.remove(key);
    expectRefused(DBTools::decryptFile, "__storekey");
    // The same text, composed differently.
    mSettings.values.insert(key, QStringLiteral("geheim e\u0301"));
    EXPECT_TRUE(DBTools::encryptDecryptFile(path()));
    EXPECT_EQ(content(), sample(100));
    mSettings.values.insert(key, QString());
    expectRefused(DBTools::encryptFile, "__storekey");
}

TEST_F(ProtectionTest, AFileThatEverybodyCanMakeIsNotTakenForTheHosts) {
    put(sample(100));
    ASSERT_TRUE(DBTools::encryptDecryptFileByKey1(path()));
    const QByteArray byKey1 = content();
    put(sample(100));
    ASSERT_TRUE(DBTools::encryptDecryptFileByKey2(path()));
    const QByteArray byKey2 = content();

    for (const QJsonValue &setting : {QJsonValue(QStringLiteral("geheim")), QJsonValue(QString())}) {
        mSettings.values.insert(QStringLiteral("__storekey"), setting);
        put(byKey1);
        expectRefused(DBTools::decryptFile, "with key 1 of the library");
        expectRefused(DBTools::encryptDecryptFile, "with key 1 of the library");
        expectRefused(DBTools::encryptDecryptFileByKey2, "another key");
        EXPECT_TRUE(DBTools::encryptDecryptFileByKey1(path())) << "the caller names that key";
        EXPECT_EQ(content(), sample(100));
        put(byKey2);
        expectRefused(DBTools::decryptFile, "with key 2 of the library");
        EXPECT_TRUE(DBTools::encryptDecryptFileByKey2(path()));
        EXPECT_EQ(content(), sample(100));
    }
    mSettings.values.insert(QStringLiteral("__storekey"), QJsonValue());
    put(byKey2);
    EXPECT_TRUE(DBTools::decryptFile(path())) << "the host has no key of its own";
}

TEST_F(ProtectionTest, TheFileIsOnTheDiskBeforeItReplacesTheOldOneAndIsNeverOpenToMore) {
    if (!systemcalls::canWatch)
        GTEST_SKIP() << "the system does not let a program watch its own calls";
    for (const auto permissions : {QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther,
                                   QFile::ReadOwner | QFile::WriteOwner | QFile::WriteGroup}) {
        put(sample(100));
        ASSERT_TRUE(QFile::setPermissions(path(), permissions));
        const bool forOthers = (permissions & QFile::ReadOther) != 0;
        const std::string expected =
            std::string(forOthers ? "sync file 604" : "sync file 620") + ", rename, sync folder";
        systemcalls::watch();
        EXPECT_TRUE(DBTools::encryptFile(path()));
        EXPECT_EQ(systemcalls::noted(), expected);
        systemcalls::watch();
        EXPECT_TRUE(DBTools::decryptFile(path()));
        EXPECT_EQ(systemcalls::noted(), expected);
    }
}

TEST_F(ProtectionTest, AChangeOfTheSameSizeIsNotLost) {
    if (!systemcalls::canWatch)
        GTEST_SKIP() << "the system does not let a program watch its own calls";
    put(sample(100));
    const QByteArray changed = sample(100).replace(50, 1, "!");
    // The new content is written by then.
    systemcalls::beforeSync([&] {
        put(changed);
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        EXPECT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(1), QFile::FileModificationTime));
    });
    EXPECT_FALSE(DBTools::encryptFile(path()));
    EXPECT_EQ(content(), changed);
    ASSERT_EQ(failureCount(), 1);
    EXPECT_TRUE(DBTools::mlCallDbResult.first().error.contains(QLatin1String("has changed it meanwhile")));
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files).size(), 1);
}

TEST_F(ProtectionTest, NeedsNoThread) {
    put(sample(100));
    const systemcalls::NoThreads none;
    EXPECT_NO_THROW(EXPECT_TRUE(DBTools::encryptFile(path())));
    EXPECT_NO_THROW(EXPECT_TRUE(DBTools::decryptFile(path())));
    EXPECT_EQ(content(), sample(100));
}

TEST_F(ProtectionTest, ATextThatLooksLikeAPlaceholderStaysInThePath) {
    const QString odd = folder() + QStringLiteral("/%1 %2 100%3.net");
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V6.0.0"), odd));
    ASSERT_TRUE(QFile::setPermissions(odd, QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_TRUE(DBTools::encryptFile(odd));
    EXPECT_TRUE(DBTools::isFileEncrypted(odd));
    EXPECT_FALSE(DBTools::encryptFile(odd));
    EXPECT_FALSE(DBTools::openDatabase(gDB, odd, true));
    ASSERT_EQ(failureCount(), 1);
    EXPECT_EQ(DBTools::mlCallDbResult.first().error,
              QDir::toNativeSeparators(odd) + QStringLiteral(": the store is protected; unprotect it first"));
    EXPECT_TRUE(DBTools::decryptFile(odd));
    QFile log(odd + QStringLiteral("-wal"));
    ASSERT_TRUE(log.open(QIODevice::WriteOnly) && log.write("x") == 1);
    QFile store(odd);
    ASSERT_TRUE(store.open(QIODevice::WriteOnly) && store.write("no SQLite file") == 14);
    store.close();
    clearFailures();
    EXPECT_FALSE(DBTools::encryptFile(odd));
    ASSERT_EQ(failureCount(), 1);
    EXPECT_EQ(DBTools::mlCallDbResult.first().error,
              QDir::toNativeSeparators(odd) +
                  QStringLiteral(": %1 %2 100%3.net-wal beside it belongs to a program that uses the store: "
                                 "close it there"));
}

TEST_F(ProtectionTest, AcceptsNoMutilation) {
    put(sample(2 * kChunk + 500));
    ASSERT_TRUE(DBTools::encryptDecryptFileByKey1(path()));
    const QByteArray sealed = content();
    const int end = sealed.size();
    const auto refuse = [&](const QByteArray &bytes, const std::string &what) {
        put(bytes);
        expectRefused(DBTools::decryptFile, "", what);
        // Too little of the header is left below this size to tell the file from one that was never
        // protected.
        if (bytes.size() >= 8)
            expectRefused(DBTools::encryptDecryptFile, "", what + ", toggled");
    };

    const QList<int> boundaries = {kHeader, kHeader + kSealedChunk, kHeader + 2 * kSealedChunk};
    QList<int> places = {end - 1};
    for (int i = 0; i < kHeader; ++i)
        places.append(i);
    for (const int boundary : boundaries)
        places += {boundary - 1, boundary, boundary + 1, boundary + 17};
    for (const int place : qAsConst(places)) {
        QByteArray bytes = sealed;
        bytes[place] = static_cast<char>(bytes[place] ^ 1);
        refuse(bytes, "altered at " + std::to_string(place));
        refuse(sealed.left(place), "cut at " + std::to_string(place));
    }

    const QByteArray header = sealed.left(kHeader);
    const QByteArray first = sealed.mid(kHeader, kSealedChunk);
    const QByteArray second = sealed.mid(kHeader + kSealedChunk, kSealedChunk);
    const QByteArray last = sealed.mid(kHeader + 2 * kSealedChunk);
    refuse(sealed + QByteArray(1, '\0'), "a byte more");
    refuse(sealed + sealed, "twice");
    refuse(header + last, "only the last chunk");
    refuse(header + first + last, "a chunk is missing");
    refuse(header + second + first + last, "chunks in another order");
    refuse(header + first + first + second + last, "a chunk is repeated");
    refuse(header + first + second + last + last, "the last chunk is repeated");
    put(sample(1));
    ASSERT_TRUE(DBTools::encryptDecryptFileByKey1(path()));
    refuse(content().left(kHeader) + sealed.mid(kHeader), "the header of another file");

    put(sealed);
    EXPECT_TRUE(DBTools::decryptFile(path()));
    EXPECT_EQ(content(), sample(2 * kChunk + 500));
}

TEST_F(ProtectionTest, ProtectsAStoreThatIsClosed) {
    openTemplate("EmptyNet_V6.0.0");
    expectRefused(DBTools::encryptFile, "the store is open");
    gDB.close();
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        other.setDatabaseName(QFileInfo(path()).canonicalFilePath());
        ASSERT_TRUE(other.open());
        QSqlQuery query(other);
        ASSERT_TRUE(query.exec(QStringLiteral("pragma journal_mode = wal")));
        ASSERT_TRUE(query.exec(QStringLiteral("update Net set name = 'logged'")));
        EXPECT_FALSE(DBTools::encryptFile(path()));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    clearFailures();
    ASSERT_TRUE(DBTools::encryptFile(path())) << qPrintable(DBTools::mlCallDbResult.value(0).error);
    EXPECT_FALSE(DBTools::openDatabase(gDB, path(), true));
    ASSERT_EQ(failureCount(), 1);
    EXPECT_TRUE(DBTools::mlCallDbResult.first().error.contains(QLatin1String("the store is protected")));
    ASSERT_TRUE(DBTools::decryptFile(path()));
    reopen();
    EXPECT_EQ(rows(QStringLiteral("select name from Net")), QStringList(QStringLiteral("logged")));
}

TEST_F(ProtectionTest, RefusesWhatItMustNotReplaceAndFollowsLinks) {
    put(sample(100));
    QFile journal(path() + QStringLiteral("-wal"));
    ASSERT_TRUE(journal.open(QIODevice::WriteOnly) && journal.write("x") == 1);
    journal.close();
    EXPECT_FALSE(DBTools::encryptFile(path()));
    ASSERT_TRUE(journal.remove());
    QFile::setPermissions(path(), QFile::ReadOwner);
    expectRefused(DBTools::encryptFile, "read-only");
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner);
    clearFailures();
    EXPECT_FALSE(DBTools::encryptFile(folder()));
    EXPECT_FALSE(DBTools::encryptFile(folder() + QStringLiteral("/none")));
    EXPECT_FALSE(DBTools::encryptDecryptFile(QString()));
    EXPECT_EQ(failureCount(), 3);

    const QString link = folder() + QStringLiteral("/link");
    ASSERT_TRUE(QFile::link(path(), link));
    EXPECT_TRUE(DBTools::encryptFile(link));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(DBTools::isFileEncrypted(path()));
}

} // namespace
