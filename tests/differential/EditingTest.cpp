#include "store/StoredNet.h"
#include "tests/differential/AsRead.h"
#include "tests/differential/KnownDifferences.h"
#include "tests/differential/RandomNet.h"
#include "tests/differential/StoredRows.h"
#include "tests/differential/Texts.h"
#include "tests/support/StoreFixture.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTextStream>
#include <QThread>

#include <algorithm>

using namespace differential;

namespace {

/// Random edits of a network: what a load gives afterwards is what the network in memory has become.
/// MORASTORE_SEEDS says how many sequences, MORASTORE_FIRST_SEED which one is the first, MORASTORE_EDITS how long
/// they are.
class EditingTest : public StoreKindFixture {
protected:
    static int setting(const char *name, int standard) {
        bool isNumber = false;
        const int value = qEnvironmentVariableIntValue(name, &isNumber);
        return isNumber ? value : standard;
    }

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

/// One sequence of edits on a network that was loaded.
class Editor {
public:
    Editor(NetContents &net, RandomNet &random, bool keepsOrder)
        : mNet(net), mRandom(random), mKeepsOrder(keepsOrder) {}

    /// Does one thing; says what.
    QString edit() {
        switch (mRandom.below(10)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return withAny([this](auto &object) { return refill(object); });
        case 4:
        case 5:
            return withAny([this](auto &object) { return addCopy(object); });
        case 6:
            return mRandom.chance(0.5) ? removeAny() : QString();
        case 7:
            return addPart();
        case 8:
            return removePart();
        default:
            return changeSettings();
        }
    }

private:
    template <class T>
    T *any() {
        Objects<T> &list = NetKind<T>::list(mNet);
        return list.empty() ? nullptr : list[std::size_t(mRandom.below(int(list.size())))].get();
    }
    template <class T, class Use>
    QString with(const Use &use) {
        T *object = any<T>();
        return object ? use(*object) : QString();
    }
    template <class Use>
    QString withAny(const Use &use) {
        switch (mRandom.below(18)) {
        case 0:
            return with<VehicleType>(use);
        case 1:
            return with<VehicleComposition>(use);
        case 2:
            return with<GuideArrow>(use);
        case 3:
            return with<Connector>(use);
        case 4:
            return with<SignalGroup>(use);
        case 5:
            return with<SignalLamp>(use);
        case 6:
            return with<DeparturePoint>(use);
        case 7:
            return with<DecisionPoint>(use);
        case 8:
            return with<VehicleDetector>(use);
        case 9:
            return with<VehicleQueueCounter>(use);
        case 10:
            return with<VehicleTravelDetector>(use);
        case 11:
            return with<VehicleDrivInfoCollector>(use);
        case 12:
            return with<BusStation>(use);
        case 13:
            return with<BusLine>(use);
        case 14:
            return with<ReduceSpeedArea>(use);
        case 15:
            return with<AccidentZone>(use);
        case 16:
            return with<RoadWorkZone>(use);
        default:
            return with<Link>(use);
        }
    }
    template <class T>
    static QString said(const char *what, const T &object) {
        return QLatin1String(what) + QLatin1Char(' ') + QLatin1String(NetKind<T>::table) + QLatin1Char(' ') +
               QString::number(NetKind<T>::idOf(object));
    }

    template <class T>
    QString refill(T &object) {
        mRandom.refill(mNet.edit(object));
        if constexpr (std::is_same_v<T, Link>)
            shareVertices(object);
        return said("changed", object);
    }
    /// Links that share a vertex or a node have a copy each: a host changes all of them.
    void shareVertices(const Link &changed) {
        for (const auto &link : mNet.links) {
            for (Vertex *vertex : qAsConst(link->mlVertex)) {
                for (const Vertex *moved : qAsConst(changed.mlVertex)) {
                    if (moved->vertexID != 0 && moved->vertexID == vertex->vertexID && moved != vertex) {
                        mNet.edit(*link);
                        *vertex = *moved;
                    }
                }
            }
        }
    }

    template <class T>
    QString addCopy(const T &object) {
        std::unique_ptr<T> copy = object.clone();
        if (!forget(*copy))
            return {};
        return said("added", mNet.add(std::move(copy)));
    }
    /// @{ Takes the ids of an object and its parts; false for one that cannot be without.
    bool forget(VehicleType &type) {
        for (const auto &other : mNet.traffic.vehicleTypes)
            type.vehicleTypeCode = std::max(type.vehicleTypeCode, other->vehicleTypeCode + 1);
        return true;
    }
    bool forget(VehicleComposition &composition) {
        for (const auto &other : mNet.traffic.compositions)
            composition.vehicleConsCode = std::max(composition.vehicleConsCode, other->vehicleConsCode + 1);
        for (VehicleConsDetail &detail : composition.mlDetail)
            detail.vehicleConsCode = composition.vehicleConsCode;
        return true;
    }
    static bool forget(Link &link) {
        link.linkID = link.roadId = 0;
        for (Vertex *vertex : qAsConst(link.mlVertex))
            vertex->vertexID = 0;
        for (Node *node : {link.mpStartNode, link.mpEndNode}) {
            if (node) {
                node->nodeID = 0;
                node->nodeName = QStringLiteral("copied");
            }
        }
        for (Lane *lane : qAsConst(link.mlLane))
            lane->laneID = lane->linkID = 0;
        return true;
    }
    static bool forget(Connector &connector) {
        connector.connID = connector.roadId = 0;
        for (LaneConnector *lanes : qAsConst(connector.mlLaneConnector))
            lanes->laneConnId = 0;
        return true;
    }
    static bool forget(SignalGroup &group) {
        group.signalGroupID = 0;
        for (SignalPhase *phase : qAsConst(group.mlPhase))
            phase->signalPhaseID = 0;
        return true;
    }
    static bool forget(DeparturePoint &point) {
        point.departurePointID = 0;
        for (DepartureInterval &interval : point.mlInterval)
            interval.departureIntervalD = 0;
        return true;
    }
    static bool forget(DecisionPoint &point) {
        point.deciPointID = 0;
        for (Routing *route : qAsConst(point.mlRouting))
            route->routingID = 0;
        for (RoutingFlowByInterval *interval : qAsConst(point.mlFlowByInterval)) {
            for (RoutingFLowRatio *ratio : qAsConst(interval->mlFlowRatio))
                ratio->routingFLowRatioID = ratio->routingID = 0;
        }
        // Ratios of new routes are told apart where there is one route.
        return point.mlRouting.size() == 1;
    }
    static bool forget(BusLine &line) {
        line.busLineID = 0;
        for (BusStationLine *stop : qAsConst(line.mlStationLine)) {
            stop->stationLineID = stop->busLineID = 0;
            for (PassengerArriving *arriving : qAsConst(stop->mlPassengerArriving))
                arriving->passengerArrivingID = 0;
        }
        // A route that passes a link twice has its stops twice, which are one each in the store.
        QSet<long> stations;
        for (const BusStationLine *stop : qAsConst(line.mlStationLine))
            stations.insert(stop->busStationID);
        return stations.size() == line.mlStationLine.size();
    }
    static bool forget(ReduceSpeedArea &area) {
        area.reduceSpeedAreaID = 0;
        for (ReduceSpeedInterval *interval : qAsConst(area.mlSpeedInterval))
            interval->intervalID = interval->reduceSpeedAreaID = 0;
        for (ReduceSpeedVehiType *type : qAsConst(area.mlSpeedVehiType))
            type->reduceSpeedAreaID = 0;
        return true;
    }
    static bool forget(GuideArrow &arrow) { return (arrow.guideArrowID = 0), true; }
    static bool forget(SignalLamp &lamp) { return (lamp.signalLampID = 0), true; }
    static bool forget(VehicleDetector &device) { return (device.vehicleDetectorId = 0), true; }
    static bool forget(VehicleQueueCounter &device) { return (device.queueCounterID = 0), true; }
    static bool forget(VehicleTravelDetector &device) { return (device.detectorId = 0), true; }
    static bool forget(VehicleDrivInfoCollector &device) { return (device.collecterID = 0), true; }
    static bool forget(BusStation &station) { return (station.busStationID = 0), true; }
    static bool forget(AccidentZone &zone) { return (zone.accidentZoneId = 0), true; }
    static bool forget(RoadWorkZone &zone) { return (zone.roadWorkZoneId = 0), true; }
    /// @}

    QString removeAny() {
        return withAny([this](auto &object) {
            using T = std::decay_t<decltype(object)>;
            // A network without links, types and compositions has nothing left to edit.
            if ((std::is_same_v<T, Link> || std::is_same_v<T, VehicleType> ||
                 std::is_same_v<T, VehicleComposition>)&&NetKind<T>::list(mNet)
                    .size() < 3)
                return QString();
            const QString text = said("removed", object);
            return mNet.remove(object, Cascade::Take) ? text : QString();
        });
    }

    QString addPart() {
        switch (mRandom.below(6)) {
        case 0:
            return with<Link>([this](Link &link) { return addLane(link); });
        case 1:
            return with<SignalGroup>([this](SignalGroup &group) {
                auto phase = group.mlPhase.isEmpty() ? std::make_unique<SignalPhase>()
                                                     : group.mlPhase.first()->clone();
                phase->signalPhaseID = 0;
                phase->mlColor.append({QStringLiteral("黄"), mRandom.below(50)});
                mNet.edit(group).mlPhase.insert(placeIn(group.mlPhase), phase.release());
                return said("phase of", group);
            });
        case 2:
            return with<DeparturePoint>([this](DeparturePoint &point) {
                DepartureInterval interval;
                interval.vehiCount = mRandom.below(1000);
                mNet.edit(point).mlInterval.append(interval);
                return said("interval of", point);
            });
        case 3:
            return with<ReduceSpeedArea>([this](ReduceSpeedArea &area) {
                mNet.edit(area).mlSpeedInterval.insert(placeIn(area.mlSpeedInterval),
                                                       new ReduceSpeedInterval{0, area.reduceSpeedAreaID,
                                                                               mRandom.below(100),
                                                                               mRandom.below(1000)});
                return said("interval of", area);
            });
        case 4:
            return with<SignalGroup>([this](SignalGroup &group) {
                if (group.mlPhase.isEmpty())
                    return QString();
                SignalPhase &phase = *group.mlPhase.last();
                mNet.edit(group);
                phase.storedColors.clear();
                if (mRandom.chance(0.5) || phase.mlColor.isEmpty())
                    phase.mlColor.prepend({QStringLiteral("绿"), 7});
                else
                    phase.mlColor.removeFirst();
                return said("colours of", group);
            });
        default:
            return with<Link>([this](Link &link) {
                if (link.mlVertex.size() < 2)
                    return QString();
                mNet.edit(link);
                if (mRandom.chance(0.5) || link.mlVertex.size() < 4)
                    link.mlVertex.insert(1,
                                         new Vertex{0, mRandom.number(), mRandom.number(), mRandom.number()});
                else
                    delete link.mlVertex.takeAt(1);
                link.centerLinePointsJson = StoredJson();
                return said("vertices of", link);
            });
        }
    }
    template <class Part>
    int placeIn(const QList<Part *> &parts) {
        return mKeepsOrder ? mRandom.below(parts.size() + 1) : parts.size();
    }
    QString addLane(Link &link) {
        if (link.mlLane.isEmpty())
            return {};
        std::unique_ptr<Lane> lane = link.mlLane.last()->clone();
        lane->laneID = 0;
        lane->serialNumber = 1 + mRandom.below(link.mlLane.size() + 1);
        mNet.edit(link);
        for (Lane *other : qAsConst(link.mlLane)) {
            if (other->serialNumber >= lane->serialNumber)
                ++other->serialNumber;
        }
        link.mlLane.append(lane.release());
        return said("lane of", link);
    }

    QString removePart() {
        switch (mRandom.below(4)) {
        case 0:
            return with<Link>([this](Link &link) {
                return link.mlLane.size() > 1 &&
                               mNet.removeLane(link, *link.mlLane.at(mRandom.below(link.mlLane.size())),
                                               Cascade::Take)
                           ? said("lane off", link)
                           : QString();
            });
        case 1:
            return with<SignalGroup>([this](SignalGroup &group) {
                return !group.mlPhase.isEmpty() &&
                               mNet.removePhase(group, *group.mlPhase.at(mRandom.below(group.mlPhase.size())),
                                                Cascade::Take)
                           ? said("phase off", group)
                           : QString();
            });
        case 2:
            return with<DecisionPoint>([this](DecisionPoint &point) {
                return !point.mlRouting.isEmpty() &&
                               mNet.removeRoute(point,
                                                *point.mlRouting.at(mRandom.below(point.mlRouting.size())),
                                                Cascade::Take)
                           ? said("route off", point)
                           : QString();
            });
        default:
            return with<BusLine>([this](BusLine &line) {
                return !line.mlStationLine.isEmpty() &&
                               mNet.removeStop(
                                   line, *line.mlStationLine.at(mRandom.below(line.mlStationLine.size())),
                                   Cascade::Take)
                           ? said("stop off", line)
                           : QString();
            });
        }
    }

    QString changeSettings() {
        switch (mRandom.below(4)) {
        case 0:
            mNet.record.name = QStringLiteral("renamed %1").arg(mRandom.below(1000));
            mNet.record.centerX = mRandom.number();
            return QStringLiteral("record");
        case 1:
            if (mNet.linkTypes.size() > 1 && mRandom.chance(0.5))
                mNet.linkTypes.removeLast();
            else if (!mNet.linkTypes.isEmpty())
                mNet.linkTypes.first().limitSpeed = mRandom.number();
            return QStringLiteral("link types");
        case 2:
            if (!mNet.traffic.routeLanes.isEmpty())
                mNet.traffic.routeLanes.removeAt(mRandom.below(mNet.traffic.routeLanes.size()));
            return QStringLiteral("lanes of routes");
        default:
            if (mNet.settings.simulation)
                mNet.settings.simulation->randSeed = mRandom.below(10000);
            if (mNet.settings.scene)
                mNet.settings.scene->sceneWidth = mRandom.number();
            return QStringLiteral("settings");
        }
    }

    NetContents &mNet;
    RandomNet &mRandom;
    bool mKeepsOrder;
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
