#include "tests/differential/AsRead.h"
#include "tests/differential/Damage.h"
#include "tests/differential/KnownDifferences.h"
#include "tests/differential/NewObjects.h"
#include "tests/differential/RandomNet.h"
#include "tests/differential/SingleOperations.h"
#include "tests/differential/StoredRows.h"
#include "tests/differential/Texts.h"
#include "tests/support/Setting.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/Utf16Store.h"

#include <QFile>

using namespace differential;

namespace {

/// Whole-network operations are the single operations, faster: random networks are written and read by both.
/// MORASTORE_SEEDS says how many, MORASTORE_FIRST_SEED which one is the first.
class WholeAndSingleTest : public StoreKindFixture {
protected:
    static constexpr int kSeeds = 9;

    /// Calls @p body with a plan for each seed. The orders of ids go through all combinations.
    template <class Body>
    void forEachPlan(const Body &body, int seeds = kSeeds) {
        const int first = setting("MORASTORE_FIRST_SEED", 1);
        for (int seed = first; seed < first + setting("MORASTORE_SEEDS", seeds); ++seed) {
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
    /// The objects with their children as they were written, as far as the store keeps that.
    QStringList textsAsWritten(NetContents &net) {
        if (isPostgres())
            dropOrderOfPlaces(net);
        return textsOf(net);
    }
    /// Stores of generation 2 hold Chinese words.
    static bool holdsEnglishWords() { return qstrncmp(GetParam().name, "V2_", 3) != 0; }
    /// Takes the standard compositions out of a new store of one network: they would refuse a network that
    /// has types only.
    void emptyCatalogue() {
        for (const char *table : {"VehicleConsDetail", "VehicleConstitutent"}) {
            if (!hasSeveralNets())
                execute(QLatin1String("delete from ") + QLatin1String(table));
        }
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
    QMap<QString, bool> isFilled; // by table and column: whether a network has a value there
    forEachPlan([this, &isFilled](const NetPlan &plan) {
        const auto net = make(plan);
        const long single = nextNet();
        EXPECT_EQ(writeSingly(*net, single, hasSeveralNets()), refusedSingly(*net, hasSeveralNets()));
        auto written = storedRows(single, hasSeveralNets());
        if (holdsEnglishWords())
            translateWords(written);
        const QStringList expected = linesOf(written);
        const long whole = nextNet();
        save(*net, whole);
        auto rows = storedRows(whole, hasSeveralNets());
        noteFilled(rows, isFilled);
        dropWhatSingleInsertsLeaveOut(rows, hasSeveralNets());
        expectSame(expected, linesOf(rows));
    });
    if (HasFailure() || setting("MORASTORE_SEEDS", kSeeds) < kSeeds)
        return;
    // A table that networks never fill is not tested here. Those that are left are tables that nobody writes, or
    // that a host or the usage log writes.
    QStringList empty = isFilled.keys(false);
    empty.sort();
    EXPECT_EQ(empty.join(QLatin1Char(' ')).toStdString(),
              hasSeveralNets()
                  ? "linkfencemiddle linklimitvehicle linktype.desiredspeed logger passenger v2xconfig "
                    "vehicletraceoption"
                  : "linkfencemiddle linklimitvehicle logger net.sourceurl passengerarriving roadtype rsu "
                    "vehicle vehicledriving");
}

TEST_P(WholeAndSingleTest, ReadWhatWasWritten) {
    forEachPlan([this](const NetPlan &plan) {
        const auto net = make(plan);
        const long netId = nextNet();
        save(*net, netId);
        arrangeAsRead(*net, hasSeveralNets());
        if (holdsEnglishWords())
            translateNamesOfRestrictions(*net);
        if (!hasEdgesOfLaneConnectors())
            dropEdgesOfLaneConnectors(*net);
        auto loaded = load(netId);
        expectSame(textsAsWritten(*net), textsAsWritten(*loaded));
        expectSame({}, reportOf(*loaded));
        loaded.reset();
        dropWhatSingleReadsLeaveOut(*net, hasSeveralNets());
        expectSame(textsAsWritten(*net), textsAsWritten(*readObjectByObject(netId)));
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
        expectSame(textsAsWritten(*once), textsAsWritten(*load(second)));
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
    letReferencesDangle();
    const auto saveAgain = [this](const NetPlan &plan) {
        auto net = make(plan);
        const long first = nextNet();
        save(*net, first);
        net.reset();
        RandomNet random(plan);
        SCOPED_TRACE(qPrintable(damage(random, first, hasSeveralNets()).join(QLatin1Char('\n'))));
        const auto once = load(first);
        const long second = nextNet();
        emptyCatalogue();
        save(*once, second);
        dropRepeatedDetectorTypes(*once);
        dropBreakPointsOfLinks(*once);
        arrangeStarts(*once);
        const QStringList texts = textsAsWritten(*once);
        const auto twice = load(second);
        dropBreakPointsOfLinks(*twice);
        expectSame(texts, textsAsWritten(*twice));
        expectSame({}, rowsUnaccountedFor(*twice, storedRows(second, hasSeveralNets())));
    };
    forEachPlan(saveAgain, isPostgres() ? 3 : 9);
}

/// A load and a save that are given up at a step, or that the engine refuses a table.
class GivingUpTest : public WholeAndSingleTest {
protected:
    static NetProgress untilStep(int last) {
        return [last, step = 0](const NetStep &) mutable { return ++step < last; };
    }
    void prepare() override {
        WholeAndSingleTest::prepare();
        // Every step, divided among the two that follow on it; fewer where the store itself is the
        // difference.
        const QByteArray name = GetParam().name;
        mStride = name == "OneNet" || name == "SeveralNets" ? 2 : 7;
    }

    /// What a save that is given up must leave in memory and store.
    struct State {
        QStringList texts;
        QStringList rows;
    };
    State stateOf(NetContents &net, long netId) {
        return {textsOf(net), linesOf(storedRows(netId, hasSeveralNets()))};
    }

    /// Saves, with a transaction of its own or without one, and expects that it does not come to it.
    void expectNoSave(NetContents &net, long netId, const State &before, bool useTransaction,
                      const NetProgress &progress, int failuresExpected) {
        clearFailures();
        EXPECT_FALSE(DBTools::saveNet(gDB, netId, net, useTransaction, progress));
        EXPECT_EQ(failureCount(), failuresExpected) << firstFailure();
        const State after = stateOf(net, netId);
        expectSame(before.texts, after.texts);
        expectSame(before.rows, after.rows);
    }

    /// The steps of a save, which is taken back.
    QStringList stepsOf(NetContents &net, long netId) {
        QStringList tables;
        EXPECT_TRUE(gDB.transaction());
        EXPECT_TRUE(DBTools::saveNet(gDB, netId, net, false, [&tables](const NetStep &step) {
            tables.append(QLatin1String(step.table));
            return true;
        })) << firstFailure();
        EXPECT_TRUE(gDB.rollback());
        EXPECT_GT(tables.size(), 20);
        return tables;
    }

    void giveUpEachStep(NetContents &net, long netId, const QStringList &steps, int first) {
        const State before = stateOf(net, netId);
        for (int last = first + 1; last <= steps.size() && !HasFailure(); last += mStride) {
            SCOPED_TRACE(testing::Message() << "cancelled at step " << last);
            expectNoSave(net, netId, before, last % 4 < 2, untilStep(last), 0);
        }
    }
    void refuseEachTable(NetContents &net, long netId, QStringList steps, int first) {
        const State before = stateOf(net, netId);
        steps.removeDuplicates();
        for (int i = first; i < steps.size() && !HasFailure(); i += mStride) {
            SCOPED_TRACE("refused by " + steps.at(i).toStdString());
            refuse(QStringLiteral("insert"), steps.at(i));
            expectNoSave(net, netId, before, i % 4 < 2, {}, 1);
            letPass(steps.at(i));
        }
    }

    /// What is read of a network, apart from the numbers that its objects were given.
    QStringList readTexts(long netId) {
        const auto loaded = load(netId);
        if (isPostgres())
            dropOrderOfPlaces(*loaded);
        forgetIds(*loaded);
        return textsOf(*loaded);
    }

    int mStride = 1;
};

TEST_P(GivingUpTest, ASaveLeavesNothingAndTheNextOneIsLikeTheFirst) {
    const auto saveAgain = [this](const NetPlan &plan, bool withOthers, bool byTable) {
        SCOPED_TRACE(testing::Message() << (withOthers ? "others in front" : "unchanged")
                                        << (byTable ? ", refused tables" : ", cancelled"));
        const auto makeNew = [&] {
            auto net = make(plan);
            forgetIds(*net);
            return net;
        };
        const auto never = makeNew();
        if (withOthers)
            putOthersInFront(*never);
        const long first = nextNet();
        save(*never, first);
        const QStringList expected = readTexts(first);
        const auto net = makeNew();
        const long second = nextNet();
        const QStringList steps = stepsOf(*makeNew(), second);
        byTable ? refuseEachTable(*net, second, steps, withOthers)
                : giveUpEachStep(*net, second, steps, withOthers);
        if (withOthers)
            putOthersInFront(*net);
        save(*net, second);
        expectSame(expected, readTexts(second));
    };
    forEachPlan(
        [&](const NetPlan &plan) {
            for (const bool withOthers : {false, true}) {
                for (const bool byTable : {false, true}) {
                    if (!HasFailure())
                        saveAgain(plan, withOthers, byTable);
                }
            }
        },
        1);
}

TEST_P(GivingUpTest, ALoadLeavesNothingAndTheNextOneIsLikeTheFirst) {
    const auto expectNoLoad = [this](long netId, const NetProgress &progress, bool isFailure) {
        NetContents nothing;
        NetContents loaded;
        clearFailures();
        EXPECT_FALSE(DBTools::loadNet(gDB, netId, loaded, progress));
        EXPECT_EQ(failureCount() > 0, isFailure) << firstFailure();
        expectSame(textsOf(nothing), textsOf(loaded));
        EXPECT_TRUE(gNet.lLink().isEmpty() && gNet.lConnector().isEmpty() && ghVehicleType.isEmpty() &&
                    glLinkType.isEmpty());
    };
    forEachPlan(
        [&](const NetPlan &plan) {
            const auto net = make(plan);
            const long netId = nextNet();
            save(*net, netId);
            QStringList tables;
            NetContents once;
            EXPECT_TRUE(DBTools::loadNet(gDB, netId, once, [&tables](const NetStep &step) {
                tables.append(QLatin1String(step.table));
                return true;
            }));
            const QStringList texts = textsOf(once);
            EXPECT_GT(tables.size(), 20);
            for (int last = 1; last <= tables.size() && !HasFailure(); last += mStride) {
                SCOPED_TRACE(testing::Message() << "cancelled at step " << last);
                expectNoLoad(netId, untilStep(last), false);
            }
            // Older files may lack tables.
            tables.removeDuplicates();
            for (int i = 0; hasSeveralNets() && i < tables.size() && !HasFailure(); i += mStride) {
                SCOPED_TRACE("without " + tables.at(i).toStdString());
                execute(QStringLiteral("alter table %1 rename to elsewhere").arg(tables.at(i)));
                expectNoLoad(netId, {}, true);
                execute(QStringLiteral("alter table elsewhere rename to %1").arg(tables.at(i)));
            }
            expectSame(texts, textsOf(*load(netId)));
        },
        1);
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
INSTANTIATE_TEST_SUITE_P(Stores, GivingUpTest, testing::ValuesIn(kAllKinds), storeKindName);

} // namespace
