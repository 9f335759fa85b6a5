#include "store/FailureScope.h"

#include "model/NetContents.h"
#include "store/OpenStore.h"
#include "store/StoredNet.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QFile>
#include <QSqlQuery>

namespace {

class FailureScopeTest : public StoreKindFixture {
protected:
    static bool insert(long id) { return DBTools::insertLink(gDB, kNet, sampleLink(id).get(), true); }
    QString code(const char *ofSqlite, const char *ofServer) const {
        return QLatin1String(isPostgres() ? ofServer : ofSqlite);
    }
};

TEST_P(FailureScopeTest, FailuresOfBothClassesComeInTheirOrder) {
    const FailureScope since(gDB);
    EXPECT_TRUE(since.isEmpty());
    EXPECT_EQ(since.last().kind, FailureKind::None);
    EXPECT_EQ(since.text(), QString());

    // A question is of DBTools in any store, a link of the class of the store's generation.
    EXPECT_FALSE(DBTools::checkConstraint(gDB, QStringLiteral("select * from Nowhere")));
    ASSERT_TRUE(insert(5));
    const FailureScope later(gDB);
    EXPECT_FALSE(insert(5));
    EXPECT_FALSE(DBTools::checkConstraint(gDB, QStringLiteral("select * from Nowhere")));
    QStringList operations;
    for (const CallDbResult &failure : since.failures()) {
        if (operations.isEmpty() || operations.last() != failure.operation)
            operations.append(failure.operation);
    }
    EXPECT_EQ(operations, (QStringList{"checkConstraint", "insertLink", "checkConstraint"}));
    EXPECT_EQ(since.failures().size(), failureCount());
    EXPECT_EQ(since.first().table, QStringLiteral("Nowhere"));
    EXPECT_EQ(since.first().code, code("1", "42P01"));
    EXPECT_EQ(since.first().kind, FailureKind::Other);
    EXPECT_EQ(later.failures().size(), failureCount() - 1);
    EXPECT_EQ(later.first().operation, QStringLiteral("insertLink"));
    EXPECT_EQ(since.text().count(QStringLiteral("Nowhere"), Qt::CaseInsensitive), isPostgres() ? 2 : 1);

    DBTools::mlCallDbResult.append({QStringLiteral("a host's"), 3, QStringLiteral("own")});
    EXPECT_EQ(FailureScope::sinceOpening(gDB).last().error, QStringLiteral("own"));
    clearFailures();
    EXPECT_TRUE(since.isEmpty());
}

TEST_P(FailureScopeTest, KindsAreAlikeOnAllEngines) {
    ASSERT_TRUE(insert(5));
    const FailureScope twice(gDB);
    EXPECT_FALSE(insert(5));
    const CallDbResult constraint = twice.first();
    EXPECT_EQ(constraint.kind, FailureKind::Constraint) << qPrintable(constraint.error);
    EXPECT_EQ(constraint.code, code("1555", "23505"));
    EXPECT_EQ(constraint.table, QStringLiteral("Vertex"));
    EXPECT_EQ(constraint.objectId, 51);

    const FailureScope spoilt(gDB);
    auto link = sampleLink(6);
    link->linkName = QStringLiteral("a").append(QChar(0)).append(QLatin1Char('b'));
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(spoilt.first().kind, FailureKind::RefusedValue) << qPrintable(spoilt.text());
    EXPECT_EQ(spoilt.first().table, QStringLiteral("Link"));
    EXPECT_EQ(spoilt.first().objectId, 6);

    const FailureScope incomplete(gDB);
    link = sampleLink(7);
    link->mlLane.append(nullptr);
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(incomplete.first().kind, FailureKind::RefusedValue);
    EXPECT_EQ(incomplete.first().objectId, 7);
    EXPECT_EQ(incomplete.first().id, 7);

    const FailureScope closed(gDB);
    gDB.close();
    EXPECT_FALSE(insert(8));
    EXPECT_EQ(closed.first().kind, FailureKind::Lost);
    EXPECT_EQ(closed.first().operation, QStringLiteral("insertLink"));
}

TEST_P(FailureScopeTest, WhatIsNotThereIsNoFailureForAReadAndOneForAChange) {
    StoredNet net(gDB, kNet);
    const FailureScope read(gDB);
    EXPECT_EQ(net.read<Link>(77), nullptr);
    EXPECT_TRUE(read.isEmpty());
    const auto link = sampleLink(77);
    EXPECT_FALSE(net.update(*link));
    const CallDbResult missing = read.last();
    EXPECT_EQ(missing.kind, FailureKind::NotFound) << qPrintable(missing.error);
    EXPECT_EQ(missing.operation, QStringLiteral("update"));
    EXPECT_EQ(missing.table, QStringLiteral("Link"));
    EXPECT_EQ(missing.objectId, 77);
    ASSERT_TRUE(net.insert(*link));
    EXPECT_FALSE(net.insert(*link));
    EXPECT_EQ(read.last().kind, FailureKind::Constraint);
    EXPECT_EQ(read.last().operation, QStringLiteral("insert"));
}

TEST_P(FailureScopeTest, WhatFailsInAWholeSaveHasItsCodeToo) {
    execute(isPostgres() ? QStringLiteral("alter table Link add constraint longer check (length < 0)")
                         : QStringLiteral("create unique index lengths on Link(length)"));
    NetContents net;
    net.links.push_back(sampleLink(1));
    net.links.push_back(sampleLink(2));
    net.links[1]->length = net.links[0]->length;
    const FailureScope since(gDB);
    EXPECT_FALSE(DBTools::saveNet(gDB, kNet, net, true));
    EXPECT_EQ(since.first().kind, FailureKind::Constraint) << qPrintable(since.text());
    EXPECT_EQ(since.first().code, code("2067", "23514"));
    EXPECT_EQ(since.first().table, QStringLiteral("Link"));
    EXPECT_EQ(since.first().operation, QStringLiteral("saveNet"));
}

INSTANTIATE_TEST_SUITE_P(Stores, FailureScopeTest, testing::ValuesIn(kStoreKinds), storeKindName);

class FileFailureTest : public StoreFixture {};

TEST_F(FileFailureTest, WhatIsNoStoreIsToldApartFromWhatIsBusy) {
    openTemplate("EmptyNet_V6.0.0");
    const QString garbage = folder() + QStringLiteral("/garbage.net");
    QFile file(garbage);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(QByteArray(4096, 'x')) == 4096);
    file.close();
    OpenStore damaged(garbage, OpenStore::Access::Read);
    EXPECT_EQ(FailureScope::sinceOpening(damaged.db()).first().kind, FailureKind::Damaged);
    EXPECT_EQ(FailureScope::sinceOpening(damaged.db()).first().operation, QStringLiteral("OpenStore"));
    OpenStore missing(folder() + QStringLiteral("/missing.net"), OpenStore::Access::Read);
    EXPECT_EQ(FailureScope::sinceOpening(missing.db()).first().kind, FailureKind::NotFound);

    OpenStore writer(path(), OpenStore::Access::Write);
    ASSERT_TRUE(QSqlQuery(writer.db()).exec(QStringLiteral("begin immediate")));
    QSqlQuery(gDB).exec(QStringLiteral("pragma busy_timeout = 10"));
    const FailureScope since(gDB);
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, sampleLink(1).get(), true));
    EXPECT_EQ(since.first().kind, FailureKind::Busy) << qPrintable(since.text());
}

} // namespace
