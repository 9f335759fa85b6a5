#include "store/StoredNet.h"
#include "tests/differential/AsRead.h"
#include "tests/differential/Editor.h"
#include "tests/differential/KnownDifferences.h"
#include "tests/differential/RandomNet.h"
#include "tests/differential/StoredRows.h"
#include "tests/differential/Texts.h"
#include "tests/support/Setting.h"
#include "tests/support/StoreFixture.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTextStream>
#include <QThread>

#include <iterator>

using namespace differential;

namespace {

/// Random edits of a network: what a load gives afterwards is what the network in memory has become.
/// MORASTORE_SEEDS says how many sequences, MORASTORE_FIRST_SEED which one is the first, MORASTORE_EDITS how long
/// they are.
class EditingTest : public StoreKindFixture {
protected:
    void prepare() override {
        if (!isPostgres())
            execute(QStringLiteral("pragma synchronous = off"));
    }

    /// An empty store, or one more network of the store.
    long nextNet() {
        if (mIsUsed && !hasSeveralNets()) {
            EXPECT_TRUE(DBTools::removeNetData(gDB, kNet, true));
            execute(QStringLiteral("delete from Net"));
            execute(QStringLiteral("delete from LinkType"));
        }
        const long id = hasSeveralNets() && mIsUsed ? ++mLastNet : kNet;
        mIsUsed = true;
        gNet.loadRecord(NetRecord());
        return id;
    }

    std::unique_ptr<NetContents> load(long netId) {
        auto net = std::make_unique<NetContents>();
        EXPECT_TRUE(DBTools::loadNet(gDB, netId, *net)) << failure();
        return net;
    }
    QStringList texts(NetContents &net) {
        if (isPostgres())
            dropOrderOfPlaces(net);
        return textsOf(net);
    }
    static std::string failure() {
        const QList<CallDbResult> all = DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult;
        return all.isEmpty() ? std::string() : (all.last().error + all.last().sql).toStdString();
    }

    /// What the store says refers to an object is what the network in memory says.
    template <class T>
    void expectSameReferrers(const NetContents &net, const StoredNet &stored) {
        for (const auto &object : NetKind<T>::list(net)) {
            const auto found = stored.whatRefersTo<T>(NetKind<T>::idOf(*object));
            ASSERT_TRUE(found) << failure();
            SCOPED_TRACE(testing::Message() << NetKind<T>::table << " " << NetKind<T>::idOf(*object));
            expectSame(named(net.whatRefersTo(*object)), named(*found));
        }
    }

private:
    static QStringList named(const QList<NetObject> &referrers) {
        QStringList texts;
        for (const NetObject &object : referrers) {
            // Numbered afresh at every read.
            if (object.table == QLatin1String("LaneConnector"))
                continue;
            static const char *const kFates[] = {"part", "goes", "loses"};
            texts.append(
                QStringLiteral("%1 %2 %3")
                    .arg(object.table, QString::number(object.id), QLatin1String(kFates[int(object.fate)])));
        }
        texts.sort();
        // A route has its lane pairs on several connectors.
        texts.removeDuplicates();
        return texts;
    }

    long mLastNet = kNet;
    bool mIsUsed = false;
};

/// What a load does not give: slices of a decision point without ratios.
void dropEmptySlices(NetContents &net) {
    for (const auto &point : net.traffic.decisionPoints) {
        for (int i = point->mlFlowByInterval.size() - 1; i >= 0; --i) {
            if (point->mlFlowByInterval.at(i)->mlFlowRatio.isEmpty())
                delete point->mlFlowByInterval.takeAt(i);
        }
    }
}

/// Restrictions carry the stored names of their types, which follow the types at the next load.
void dropNamesOfRestrictions(NetContents &net) {
    for (const auto &link : net.links) {
        for (Lane *lane : qAsConst(link->mlLane)) {
            for (auto &restriction : lane->mlLimitVehicle)
                restriction.second.clear();
        }
    }
}

/// A route that passes a link twice reads with its stops there twice: in the store they are one each.
void dropRepeatedStops(NetContents &net) {
    for (const auto &line : net.traffic.busLines) {
        QSet<long> met;
        for (int i = 0; i < line->mlStationLine.size(); ++i) {
            const long id = line->mlStationLine.at(i)->stationLineID;
            if (met.contains(id))
                delete line->mlStationLine.takeAt(i--);
            met.insert(id);
        }
    }
}

TEST_P(EditingTest, ANetworkIsInTheStoreAsItWasEdited) {
    const int first = setting("MORASTORE_FIRST_SEED", 1);
    for (int seed = first; seed < first + setting("MORASTORE_SEEDS", 6) && !HasFailure(); ++seed) {
        SCOPED_TRACE(testing::Message()
                     << "to repeat: MORASTORE_FIRST_SEED=" << seed << " MORASTORE_SEEDS=1");
        NetPlan plan;
        plan.seed = quint32(seed);
        plan.severalNets = hasSeveralNets();
        plan.firstSharedId = hasSeveralNets() ? seed * 1000L : 0;
        RandomNet random(plan);
        auto made = random.make();
        const long netId = nextNet();
        clearFailures();
        ASSERT_TRUE(DBTools::saveNet(gDB, netId, *made, true)) << failure();
        made.reset();
        auto net = load(netId);
        StoredNet stored(gDB, netId);
        Editor editor(*net, random, !isPostgres());
        QStringList done;
        for (int edit = 0; edit < setting("MORASTORE_EDITS", 100) && !HasFailure(); ++edit) {
            done.append(editor.edit());
            if (!random.chance(0.4))
                continue;
            clearFailures();
            EXPECT_TRUE(stored.saveChanges(*net)) << failure() << qPrintable(done.join(QStringLiteral(", ")));
            EXPECT_TRUE(net->changes.isEmpty());
        }
        clearFailures();
        EXPECT_TRUE(stored.saveChanges(*net)) << failure() << qPrintable(done.join(QStringLiteral(", ")));
        const QStringList before = linesOf(storedRows(netId, hasSeveralNets()));
        net->changes.markAll();
        EXPECT_TRUE(stored.saveChanges(*net)) << failure();
        expectSame(before, linesOf(storedRows(netId, hasSeveralNets())));
        EXPECT_EQ(failureCount(), 0) << failure();
        dropRepeatedStops(*net);
        arrangeAsRead(*net, hasSeveralNets());
        dropEmptySlices(*net);
        dropNamesOfRestrictions(*net);
        const QStringList expected = texts(*net);
        net.reset();
        reopen();
        prepare();
        const auto loaded = load(netId);
        dropNamesOfRestrictions(*loaded);
        expectSame(expected, texts(*loaded));
        expectSame({}, reportOf(*loaded));
        if (HasFailure())
            ADD_FAILURE() << qPrintable(done.join(QStringLiteral(", ")));
    }
}

TEST_P(EditingTest, StoreAndMemoryAgreeOnWhatRefersToAnObject) {
    for (quint32 seed = 1; seed < 5 && !HasFailure(); ++seed) {
        NetPlan plan;
        plan.seed = seed;
        plan.severalNets = hasSeveralNets();
        plan.firstSharedId = hasSeveralNets() ? long(seed) * 1000L : 0;
        auto net = RandomNet(plan).make();
        const long netId = nextNet();
        ASSERT_TRUE(DBTools::saveNet(gDB, netId, *net, true)) << failure();
        net = load(netId);
        StoredNet stored(gDB, netId);
        expectSameReferrers<VehicleType>(*net, stored);
        expectSameReferrers<VehicleComposition>(*net, stored);
        expectSameReferrers<Link>(*net, stored);
        expectSameReferrers<Connector>(*net, stored);
        expectSameReferrers<SignalGroup>(*net, stored);
        expectSameReferrers<DecisionPoint>(*net, stored);
        expectSameReferrers<BusStation>(*net, stored);
        expectSameReferrers<BusLine>(*net, stored);
        expectSameReferrers<SignalLamp>(*net, stored);
    }
}

TEST_P(EditingTest, ARefusedSaveLeavesStoreAndMemoryAndCanBeRepeated) {
    NetPlan plan;
    plan.severalNets = hasSeveralNets();
    int refusals = 0;
    for (quint32 seed = 1; seed < 4 && !HasFailure(); ++seed) {
        plan.seed = seed;
        plan.firstSharedId = hasSeveralNets() ? long(seed) * 1000L : 0;
        RandomNet random(plan);
        auto net = random.make();
        const long netId = nextNet();
        ASSERT_TRUE(DBTools::saveNet(gDB, netId, *net, true)) << failure();
        net = load(netId);
        StoredNet stored(gDB, netId);
        Editor editor(*net, random, !isPostgres());
        static const char *const kTables[] = {"Link",        "Lane",    "Connector",      "LaneConnector",
                                              "SignalPhase", "Routing", "BusStationLine", "VehicleDetector",
                                              "LinkVertex"};
        for (int save = 0; save < 12 && !HasFailure(); ++save) {
            for (int edit = 0; edit < 12; ++edit)
                editor.edit();
            const QString table = QLatin1String(kTables[random.below(int(std::size(kTables)))]);
            const QString event = QLatin1String(random.chance(0.5) ? "insert" : "delete");
            const QStringList rowsBefore = linesOf(storedRows(netId, hasSeveralNets()));
            const QStringList textsBefore = textsOf(*net);
            refuse(event, table);
            clearFailures();
            const bool saved = stored.saveChanges(*net);
            letPass(table);
            if (!saved) {
                ++refusals;
                EXPECT_FALSE(net->changes.isEmpty());
                expectSame(rowsBefore, linesOf(storedRows(netId, hasSeveralNets())));
                expectSame(textsBefore, textsOf(*net));
                clearFailures();
                EXPECT_TRUE(stored.saveChanges(*net)) << failure();
            }
        }
    }
    EXPECT_GT(refusals, 5);
}

constexpr const char *kStore = "MORA_TEST_EDITED_STORE";
constexpr const char *kSeed = "MORA_TEST_EDIT_SEED";

/// Changes a network on and on: with each save all links and the network's name get the number of the save. Another
/// process kills this one in the middle.
TEST(EditingProcess, DISABLED_EditsUntilItIsKilled) {
    ASSERT_TRUE(DBTools::openDatabase(gDB, qEnvironmentVariable(kStore), true));
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, 1, net));
    NetPlan plan;
    plan.seed = quint32(qEnvironmentVariableIntValue(kSeed));
    plan.severalNets = DBTools::dbVer() >= 6;
    RandomNet random(plan);
    Editor editor(net, random, true);
    StoredNet stored(gDB, 1);
    QTextStream out(stdout);
    for (int save = net.record.name.toInt() + 1;; ++save) {
        for (int edit = 0; edit < 5; ++edit)
            editor.edit();
        net.record.name = QString::number(save);
        for (const auto &link : net.links)
            net.edit(*link).limitSpeed = save;
        ASSERT_TRUE(stored.saveChanges(net));
        out << "saved " << save << '\n';
        out.flush();
    }
}

class EditingKilledTest : public EditingTest {};

TEST_P(EditingKilledTest, AStoreHasAllOfASaveOrNothing) {
    NetPlan plan;
    plan.seed = 3;
    plan.severalNets = hasSeveralNets();
    auto net = RandomNet(plan).make();
    net->record.name = QStringLiteral("0");
    for (const auto &link : net->links)
        link->limitSpeed = 0;
    ASSERT_TRUE(DBTools::saveNet(gDB, nextNet(), *net, true)) << failure();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(kStore), path());
    int saves = 0;
    for (int kill = 0; kill < setting("MORASTORE_KILLS", 8) && !HasFailure(); ++kill) {
        gDB.close();
        QProcess process;
        environment.insert(QLatin1String(kSeed), QString::number(kill + 1));
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--gtest_also_run_disabled_tests"),
                       QStringLiteral("--gtest_filter=EditingProcess.*")});
        // From the first save on it is in the middle of one for most of the time.
        QByteArray said;
        while (!said.contains("saved") && process.waitForReadyRead())
            said += process.readAllStandardOutput();
        QThread::msleep(static_cast<unsigned long>(7 * kill % 50));
        process.kill();
        process.waitForFinished();
        said += process.readAllStandardOutput();
        const int last = said.mid(said.lastIndexOf("saved ") + 6).trimmed().toInt();
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit) << said.constData();
        reopen();
        const QStringList names = rows(QStringLiteral("select name from Net"));
        const int stored = names.value(0).toInt();
        EXPECT_TRUE(stored == last || stored == last + 1) << stored << " after " << last;
        EXPECT_EQ(rows(QStringLiteral("select distinct cast(limitSpeed as integer) from Link")), names);
        net = load(kNet);
        expectSame({}, reportOf(*net));
        saves += last;
    }
    EXPECT_GT(saves, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, EditingKilledTest, testing::ValuesIn(kFileKinds), storeKindName);
INSTANTIATE_TEST_SUITE_P(Kinds, EditingTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
