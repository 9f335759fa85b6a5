#include "tests/support/StoreFixture.h"

#include "model/LinkType.h"
#include "model/Net.h"
#include "model/SpecialWords.h"
#include "model/VehicleComposition.h"
#include "model/VehicleType.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

const StoreKind kStoreKinds[3] = {{"OneNet", "EmptyNet_V3.0.0", false},
                                  {"SeveralNets", "EmptyNet_V6.0.0", true},
                                  {"Postgres", nullptr, true}};
const StoreKind kFileKinds[2] = {kStoreKinds[0], kStoreKinds[1]};

std::string storeKindName(const testing::TestParamInfo<StoreKind> &info) {
    return info.param.name;
}

namespace {

void dropMemory() {
    gNet.releaseNet();
    gNet = Net();
    ghVehicleType.clear();
    ghVehicleComposition.clear();
    glLinkType.clear();
}

} // namespace

StoreFixture::~StoreFixture() {
    dropMemory();
    gSpecialWords = SpecialWords();
    gDB.close();
    gDB = QSqlDatabase();
    gDBForBackup = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

// The name of the file is not ASCII, so that every case also shows that such paths work.
QString StoreFixture::path() const {
    return mFolder.filePath(QStringLiteral("路网 store.net"));
}

void StoreFixture::openTemplate(const char *templateName) {
    ASSERT_TRUE(mFolder.isValid());
    QFile::remove(path());
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/") + QLatin1String(templateName), path()));
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
    openAndAddNet();
}

void StoreFixture::openPostgres() {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "there is no PostgreSQL server (scripts/with-postgres)";
    mDatabase = std::make_unique<PostgresDatabase>();
    mDatabase->use();
    openAndAddNet();
}

void StoreFixture::openAndAddNet() {
    dropMemory();
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    const QString name = QStringLiteral("测试");
    const QString type = QStringLiteral("test");
    if (DBTools::dbVer() >= 6) {
        ASSERT_TRUE(DBTools_V6::insertNet(gDB, kNet, name, {}, type, {}, {}, true, true));
    } else if (!DBTools::selectNetId(gDB, kNet)) {
        ASSERT_TRUE(DBTools::insertNet(gDB, kNet, name, {}, type, {}, QString(), true));
    }
    ASSERT_NE(DBTools::selectNetById(gDB, kNet), nullptr);
    clearFailures();
}

void StoreFixture::reopen() {
    dropMemory();
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    DBTools::selectNetById(gDB, kNet);
    clearFailures();
}

void StoreFixture::execute(const QString &sql) {
    QSqlQuery query(gDB);
    ASSERT_TRUE(query.exec(sql)) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
}

QStringList StoreFixture::rows(const QString &sql) {
    QSqlQuery query(gDB);
    query.setForwardOnly(true);
    if (!query.exec(sql)) {
        ADD_FAILURE() << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
        return {};
    }
    QStringList result;
    while (query.next()) {
        QStringList values;
        for (int i = 0; i < query.record().count(); ++i)
            values.append(query.value(i).isNull() ? QStringLiteral("NULL") : query.value(i).toString());
        result.append(values.join(QLatin1Char('|')));
    }
    return result;
}

int StoreFixture::count(const QString &table) {
    return rows(QStringLiteral("select count(*) from %1").arg(table)).value(0).toInt();
}

void StoreFixture::letReferencesDangle() {
    if (!mDatabase)
        return;
    for (const QString &statement : rows(
             QStringLiteral("select format('alter table %s drop constraint %I', conrelid::regclass, conname) "
                            "from pg_constraint where contype = 'f'")))
        execute(statement);
}

void StoreFixture::refuse(const QString &event, const QString &table) {
    if (!mDatabase) {
        execute(
            QStringLiteral("create trigger refusal before %1 on %2 begin select raise(abort, 'refused'); end")
                .arg(event, table));
        return;
    }
    execute(QStringLiteral("create function refuse() returns trigger language plpgsql as "
                           "'begin raise exception ''refused''; end'"));
    execute(QStringLiteral("create trigger refusal before %1 on %2 for each row execute function refuse()")
                .arg(event, table));
}

void StoreFixture::letPass(const QString &table) {
    execute(mDatabase ? QStringLiteral("drop trigger refusal on ") + table
                      : QStringLiteral("drop trigger refusal"));
    if (mDatabase)
        execute(QStringLiteral("drop function refuse()"));
}

void StoreFixture::dropTable(const QString &table) {
    letReferencesDangle();
    execute(QStringLiteral("drop table %1").arg(table));
}

void StoreFixture::clearFailures() {
    DBTools::mlCallDbResult.clear();
    DBTools_V6::mlCallDbResult.clear();
}
