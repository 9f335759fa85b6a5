#include "tests/differential/Damage.h"
#include "tests/differential/KnownDifferences.h"
#include "tests/differential/RandomNet.h"
#include "tests/differential/SingleOperations.h"
#include "tests/differential/StoredRows.h"
#include "tests/differential/Texts.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/Utf16Store.h"

#include <QFile>

using namespace differential;

namespace {

/// Whole-network operations are the single operations, faster: random networks are written and read by both.
/// MORASTORE_SEEDS says how many, MORASTORE_FIRST_SEED which one is the first.
class WholeAndSingleTest : public StoreKindFixture {
protected:
    static int setting(const char *name, int standard) {
        bool isNumber = false;
        const int value = qEnvironmentVariableIntValue(name, &isNumber);
        return isNumber ? value : standard;
    }

    /// Calls @p body with a plan for each seed. The orders of ids go through all combinations.
    template <class Body>
    void forEachPlan(const Body &body) {
        constexpr int kSeeds = 9;
        const int first = setting("MORASTORE_FIRST_SEED", 1);
        for (int seed = first; seed < first + setting("MORASTORE_SEEDS", kSeeds); ++seed) {
            SCOPED_TRACE(testing::Message()
                         << "to repeat: MORASTORE_FIRST_SEED=" << seed << " MORASTORE_SEEDS=1");
            NetPlan plan;
            plan.seed = quint32(seed);
            plan.owners = IdOrder(seed % 3);
            plan.children = IdOrder(seed / 3 % 3);
            plan.severalNets = hasSeveralNets();
            plan.hasNegativeZero = isPostgres();
            plan.firstSharedId = hasSeveralNets() ? seed * 1000L : 0;
            body(plan);
            if (HasFailure())
                return;
        }
    }

    std::unique_ptr<NetContents> make(const NetPlan &plan) { return RandomNet(plan).make(); }

    /// A place for one more network: in a store of several the next free id, else a new store.
    long nextNet() {
        gNet.loadRecord(NetRecord());
        if (hasSeveralNets())
            return ++mLastNet;
        gDB.close();
        QFile file(path());
        if (mEmptyStore.isEmpty()) {
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            mEmptyStore = file.readAll();
        } else {
            EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(mEmptyStore) == mEmptyStore.size());
        }
        file.close();
        reopen();
        // What a crash would leave is of no interest here.
        execute(QStringLiteral("pragma synchronous = off"));
        return kNet;
    }

    void prepare() override {
        if (qstrncmp(GetParam().name, "Utf16", 5) == 0) {
            gDB.close();
            makeUtf16(path());
            reopen();
        }
        if (!isPostgres())
            execute(QStringLiteral("pragma synchronous = off"));
    }

    void save(NetContents &net, long netId) {
        clearFailures();
        EXPECT_TRUE(DBTools::saveNet(gDB, netId, net, true)) << firstFailure();
        EXPECT_EQ(failureCount(), 0) << firstFailure();
    }
    std::unique_ptr<NetContents> load(long netId) {
        clearFailures();
        auto net = std::make_unique<NetContents>();
        EXPECT_TRUE(DBTools::loadNet(gDB, netId, *net)) << firstFailure();
        EXPECT_EQ(failureCount(), 0) << firstFailure();
        return net;
    }
    std::unique_ptr<NetContents> readObjectByObject(long netId) {
        gNet.releaseNet();
        EXPECT_NE(DBTools::selectNetById(gDB, netId), nullptr);
        return readSingly(netId);
    }
    std::string firstFailure() const {
        return failures().isEmpty() ? std::string() : qPrintable(failures().first().error);
    }
    /// These are numbered afresh at every read.
    QStringList rowsApartFromLaneConnectorIds(long netId) {
        auto rows = storedRows(netId, hasSeveralNets());
        for (auto &row : rows[QStringLiteral("laneconnector")])
            row.remove(QStringLiteral("laneconnid"));
        return linesOf(rows);
    }
    bool hasEdgesOfLaneConnectors() {
        return isPostgres() || !rows(QStringLiteral("select 1 from pragma_table_info('LaneConnector') where "
                                                    "name = 'leftBreakPointsJson'"))
                                    .isEmpty();
    }

private:
    long mLastNet = kNet;
    QByteArray mEmptyStore; ///< of one network, brought forward
};

TEST_P(WholeAndSingleTest, WriteTheSameRows) {
    forEachPlan([this](const NetPlan &plan) {
        const auto net = make(plan);
        const long single = nextNet();
        EXPECT_EQ(writeSingly(*net, single, hasSeveralNets()), refusedSingly(*net, hasSeveralNets()));
        const QStringList expected = linesOf(storedRows(single, hasSeveralNets()));
        const long whole = nextNet();
        save(*net, whole);
        auto rows = storedRows(whole, hasSeveralNets());
        dropWhatSingleInsertsLeaveOut(rows, hasSeveralNets());
        expectSame(expected, linesOf(rows));
    });
}

TEST_P(WholeAndSingleTest, ReadWhatWasWritten) {
    forEachPlan([this](const NetPlan &plan) {
        const auto net = make(plan);
        const long netId = nextNet();
        save(*net, netId);
        arrangeAsRead(*net, hasSeveralNets());
        if (!hasEdgesOfLaneConnectors())
            dropEdgesOfLaneConnectors(*net);
        auto loaded = load(netId);
        expectSame(textsOf(*net), textsOf(*loaded));
        expectSame({}, reportOf(*loaded));
        loaded.reset();
        dropWhatSingleReadsLeaveOut(*net, hasSeveralNets());
        expectSame(textsOf(*net), textsOf(*readObjectByObject(netId)));
    });
}

TEST_P(WholeAndSingleTest, SaveWhatWasLoaded) {
    forEachPlan([this](const NetPlan &plan) {
        const auto net = make(plan);
        const long first = nextNet();
        writeSingly(*net, first, hasSeveralNets());
        const auto once = load(first);
        const QStringList texts = textsOf(*once);
        const QStringList rows = rowsApartFromLaneConnectorIds(first);
        const long second = nextNet();
        save(*once, second);
        expectSame(texts, textsOf(*once));
        expectSame(rows, rowsApartFromLaneConnectorIds(second));
        expectSame(texts, textsOf(*load(second)));
    });
}

TEST_P(WholeAndSingleTest, LoadWhatSingleReadsGive) {
    letReferencesDangle();
    forEachPlan([this](const NetPlan &plan) {
        const auto net = make(plan);
        const long netId = nextNet();
        writeSingly(*net, netId, hasSeveralNets());
        RandomNet random(plan);
        if (plan.seed % 2 == 0)
            scatterRows(random, netId, hasSeveralNets());
        const auto single = readObjectByObject(netId);
        const auto loaded = load(netId);
        dropWhatSingleReadsLeaveOut(*loaded, hasSeveralNets());
        expectSame(textsOf(*single), textsOf(*loaded));
        expectSame({}, reportOf(*loaded));
    });
}

TEST_P(WholeAndSingleTest, LoadADamagedNetworkAndReportAllThatIsLeftOut) {
    letReferencesDangle();
    forEachPlan([this](const NetPlan &plan) {
        auto net = make(plan);
        const long netId = nextNet();
        save(*net, netId);
        net.reset();
        RandomNet random(plan);
        SCOPED_TRACE(qPrintable(damage(random, netId, hasSeveralNets()).join(QLatin1Char('\n'))));
        const auto single = readObjectByObject(netId);
        dropWhatLoadsLeaveOut(*single, hasSeveralNets());
        const QStringList texts = textsOf(*single);
        const auto loaded = load(netId);
        expectSame({}, rowsUnaccountedFor(*loaded, storedRows(netId, hasSeveralNets())));
        dropWhatSingleReadsLeaveOut(*loaded, hasSeveralNets());
        expectSame(texts, textsOf(*loaded));
    });
}

TEST_P(WholeAndSingleTest, SaveWhatADamagedNetworkLoadsAs) {
    if (isPostgres())
        GTEST_SKIP() << "a server puts new rows where damage has left room";
    forEachPlan([this](const NetPlan &plan) {
        auto net = make(plan);
        const long first = nextNet();
        save(*net, first);
        net.reset();
        RandomNet random(plan);
        SCOPED_TRACE(qPrintable(damage(random, first, hasSeveralNets()).join(QLatin1Char('\n'))));
        const auto once = load(first);
        const long second = nextNet();
        save(*once, second);
        dropRepeatedDetectorTypes(*once);
        dropBreakPointsOfLinks(*once);
        const QStringList texts = textsOf(*once);
        const auto twice = load(second);
        dropBreakPointsOfLinks(*twice);
        expectSame(texts, textsOf(*twice));
        expectSame({}, rowsUnaccountedFor(*twice, storedRows(second, hasSeveralNets())));
    });
}

TEST_P(WholeAndSingleTest, GiveUpAtEveryStepAndLeaveNothing) {
    NetPlan plan;
    plan.seed = quint32(setting("MORASTORE_FIRST_SEED", 1));
    plan.severalNets = hasSeveralNets();
    auto net = make(plan);
    const QStringList texts = textsOf(*net);
    const long netId = nextNet();
    const auto untilStep = [](int last) {
        return [last, step = 0](const NetStep &) mutable { return ++step < last; };
    };
    // Every step of a save (on a server some), then the save; and the same of a load.
    const int stride = isPostgres() ? 7 : 1;
    const QStringList rows = linesOf(storedRows(netId, hasSeveralNets()));
    clearFailures();
    int steps = 1;
    for (; !DBTools::saveNet(gDB, netId, *net, true, untilStep(steps)); steps += stride) {
        ASSERT_EQ(failureCount(), 0) << firstFailure();
        expectSame(texts, textsOf(*net));
        expectSame(rows, linesOf(storedRows(netId, hasSeveralNets())));
        ASSERT_FALSE(HasFailure()) << "saving, step " << steps;
    }
    EXPECT_GT(steps, 20);
    arrangeAsRead(*net, hasSeveralNets());
    if (!hasEdgesOfLaneConnectors())
        dropEdgesOfLaneConnectors(*net);
    const QStringList stored = textsOf(*net);
    NetContents loaded;
    for (steps = 1; !DBTools::loadNet(gDB, netId, loaded, untilStep(steps)); steps += stride) {
        ASSERT_EQ(failureCount(), 0) << firstFailure();
        NetContents nothing;
        expectSame(textsOf(nothing), textsOf(loaded));
        EXPECT_TRUE(gNet.lLink().isEmpty() && gNet.lConnector().isEmpty() && ghVehicleType.isEmpty() &&
                    glLinkType.isEmpty());
        ASSERT_FALSE(HasFailure()) << "loading, step " << steps;
    }
    EXPECT_GT(steps, 20);
    expectSame(stored, textsOf(loaded));
}

constexpr StoreKind kAllKinds[] = {{"OneNet", "EmptyNet_V3.0.0", false},
                                   {"SeveralNets", "EmptyNet_V6.0.0", true},
                                   {"Postgres", nullptr, true},
                                   {"Utf16OneNet", "EmptyNet_V3.0.0", false},
                                   {"Utf16SeveralNets", "EmptyNet_V6.0.0", true},
                                   {"V2_1_1", "EmptyNet_V2.1.1", false},
                                   {"V2_01_00", "EmptyNet_V2.01.00", false},
                                   {"V2_00_00", "EmptyNet_V2.00.00", false}};
INSTANTIATE_TEST_SUITE_P(Stores, WholeAndSingleTest, testing::ValuesIn(kAllKinds), storeKindName);

} // namespace
