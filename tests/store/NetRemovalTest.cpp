#include "model/NetContents.h"
#include "tests/differential/RandomNet.h"
#include "tests/support/StoreFixture.h"

#include <QSet>

// Whatever is removed, nothing that stays may refer to it. Who says so is the engine, by the keys that a store of one
// network declares, and SQL for the roads, which have no key.

namespace {

class NetRemovalTest : public StoreFixture {
protected:
    void SetUp() override { openTemplate("EmptyNet_V2.1.1"); }

    /// The rows that name a road which is neither a link nor a connector.
    int homeless() {
        int found = 0;
        for (const char *roads :
             {"roadId as road from VehicleDetector", "roadID as road from VehicleQueueCounter",
              "startRoadId as road from VehicleTravelDetector",
              "teminalRoadId as road from VehicleTravelDetector",
              "roadID as road from VehicleDrivInfoCollecter", "roadID as road from ReduceSpeedArea",
              "roadId as road from AccidentZone", "roadID as road from RoadWorkZone"})
            found += rows(QStringLiteral(
                              "select road from (select %1) where road not in (select linkID from Link) "
                              "and road not in (select connID from Connector)")
                              .arg(QLatin1String(roads)))
                         .size();
        return found;
    }
};

/// Removes one object in @p every of each list but the first, and parts of some that stay. (A network without
/// compositions would be saved beside those of the store.)
void removeSome(NetContents &net, differential::RandomNet &random, int every) {
    forEachNetKind([&](auto kind) {
        using T = typename decltype(kind)::Object;
        QList<T *> some;
        for (const auto &object : kind.list(net)) {
            if (object != kind.list(net).front() && random.below(every) == 0)
                some.append(object.get());
        }
        EXPECT_TRUE(net.removeAll(some, Cascade::Take));
    });
    for (const auto &link : net.links) {
        if (link->mlLane.size() > 1 && random.chance(0.3)) {
            EXPECT_TRUE(
                net.removeLane(*link, *link->mlLane.at(random.below(link->mlLane.size())), Cascade::Take));
        }
    }
    for (const auto &group : net.traffic.signalGroups) {
        if (!group->mlPhase.isEmpty() && random.chance(0.3)) {
            EXPECT_TRUE(net.removePhase(*group, *group->mlPhase.first(), Cascade::Take));
        }
    }
    for (const auto &point : net.traffic.decisionPoints) {
        if (!point->mlRouting.isEmpty() && random.chance(0.3)) {
            EXPECT_TRUE(net.removeRoute(*point, *point->mlRouting.last(), Cascade::Take));
        }
    }
}

TEST_F(NetRemovalTest, NothingThatStaysRefersToWhatIsGone) {
    int removed = 0;
    for (quint32 seed = 1; seed <= 50; ++seed) {
        openTemplate("EmptyNet_V2.1.1");
        differential::NetPlan plan;
        plan.seed = seed;
        differential::RandomNet random(plan);
        const auto net = random.make();
        net->setStored();
        removeSome(*net, random, 4);
        removed += net->changes.removed().size();
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *net, true))
            << seed << ": " << qPrintable(DBTools::mlCallDbResult.value(0).error);
        EXPECT_EQ(rows(QStringLiteral("pragma foreign_key_check")), QStringList()) << seed;
        EXPECT_EQ(homeless(), 0) << seed;
    }
    EXPECT_GT(removed, 300);
}

} // namespace
