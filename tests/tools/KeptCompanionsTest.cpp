#include "model/SpecialWords.h"
#include "tests/support/Places.h"
#include "tests/support/RealData.h"
#include "tests/support/StoreFixture.h"
#include "tools/kinds/NetworkObjects.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/kept/Digests.h"
#include "tools/sumo/reader/CompanionReader.h"
#include "tools/sumo/reader/NetReader.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>

using namespace moratools;

// What an import keeps of the files that come with a network, in the store.

namespace {

/// Beside what stays, one of each that is left out.
constexpr const char *kFile = R"xml(<additional>
<vType id="car" color="1,0,0" probability="2"/><vType id="van"/><vType id="car"/>
<vTypeDistribution id="mix" vTypes="car van"/><vTypeDistribution id="own"><vType id="in"/></vTypeDistribution>
<e1Detector id="loop" lane="west_in_0" pos="5"/><e1Detector id="lost" lane="gone_0"/>
<e2Detector id="area" lane="west_in_0" pos="1" length="9"/>
<e3Detector id="gate"><detEntry lane="west_in_0"/><detExit lane="approach_market_0"/><detExit lane="market_west_0"/></e3Detector>
<busStop id="stop" lane="west_in_0" name="Mitte"/>
<variableSpeedSign id="sign" lanes="west_in_0 west_in_1"><step time="0" speed="5"/></variableSpeedSign>
<rerouter id="works" edges="west_in"><interval><closingReroute id="quay_east"/><closingReroute id="gone"/></interval></rerouter>
<parkingArea id="kept" lane="west_in_0"/>
<tlLogic id="market" programID="n" type="actuated"><phase duration="9" state="rrrrrrrrrrrrrrrr" minDur="3"/></tlLogic>
<route id="r" edges="west_in approach_market"/><route id="bad" edges="approach_market west_in"/>
<vehicle id="first" type="mix" depart="0" route="r"><stop busStop="gone"/><stop busStop="stop"/></vehicle>
<vehicle id="astray" depart="0" route="bad"/><vehicle id="later" depart="triggered" route="r"/>
<flow id="flow" type="car" begin="0" end="900" number="5" route="r"/>
<person id="rider" depart="3"><stop busStop="stop"/><ride lines="first"/></person>
<person id="hails" depart="3"><stop busStop="stop"/><ride lines="taxi"/></person>
<vehicle id="broken" depart="0"><route edges="west_in"/><stop lane="west_in_0" endPos="9"/></vehicle>
<interval begin="0" end="9"><edgeRelation from="approach_market" to="market_quay" count="1"/></interval>
</additional>)xml";

class KeptCompanions : public StoreKindFixture {
protected:
    void prepare() override { import(kFile); }

    void import(const QByteArray &content) {
        QFile target(folder() + QStringLiteral("/all.add.xml"));
        ASSERT_TRUE(target.open(QIODevice::WriteOnly) && target.write(content) > 0);
        target.close();
        SumoScenario scenario;
        scenario.network = sourceFolder() + QStringLiteral("/examples/crossing/crossing.net.xml");
        scenario.additional = QStringList{target.fileName()};
        scenario.options = {{QStringLiteral("end"), QStringLiteral("9")}};
        import(scenario);
    }

    void import(const SumoScenario &scenario) {
        if (isPostgres())
            letReferencesDangle();
        execute(QStringLiteral("update Net set otherAttrsJson = '{\"mine\": 1}'"));
        if (hasSeveralNets())
            execute(QStringLiteral("delete from Net"));
        const SumoNet net = readSumoNet(scenario.network);
        SumoCompanions companions;
        for (const QString &file : scenario.additional)
            readSumoCompanion(file, companions);
        for (const QString &file : scenario.routes)
            readSumoCompanion(file, companions, {}, CompanionRole::Routes);
        importNetwork(StoreSession::ofProcess({}), net, planCompanions(net, std::move(companions), scenario),
                      QStringLiteral("all"));
        load();
    }

    void load() {
        reopen();
        mNetwork = readNetwork(StoreSession::ofProcess({}), 0);
        mSumo = mNetwork.record.otherAttrsJson.value(QStringLiteral("sumo")).toObject();
    }

    KeptList elements(int file = 0) const {
        return KeptList::fromJson(
            mSumo.value(QStringLiteral("files")).toArray().at(file)[QLatin1String("elements")]);
    }
    /// Names of the kept elements whose objects are not as the import made them.
    QStringList changed() const {
        const Digests digests(mNetwork);
        QStringList names;
        for (int file = 0; file < mSumo.value(QStringLiteral("files")).toArray().size(); ++file) {
            elements(file).forEach([&](const KeptEntry &entry) {
                if (digests.of(entry.element) != entry.of)
                    names.append(*entry.element.attribute(QStringLiteral("id")));
            });
        }
        KeptList::fromJson(mSumo.value(QStringLiteral("programmes"))).forEach([&](const KeptEntry &entry) {
            const QString id = *entry.element.attribute(QStringLiteral("id"));
            const QString name = *entry.element.attribute(QStringLiteral("programID"));
            const SignalGroup *group = mNetwork.findByName<SignalGroup>(id + QLatin1Char('/') + name);
            if (!group)
                group = mNetwork.findByName<SignalGroup>(id);
            if (!group || digests.of(*group) != entry.of)
                names.append(QStringLiteral("programme ") + name);
        });
        if (mSumo.value(QStringLiteral("demand")).toString() != digests.demand())
            names.append(QStringLiteral("demand"));
        return names;
    }

    NetworkObjects mNetwork;
    QJsonObject mSumo;
};

} // namespace

TEST_P(KeptCompanions, AllIsThereButWhatWasLeftOut) {
    QByteArray text;
    QStringList made;
    elements().forEach([&](const KeptEntry &entry) {
        const QString *id = entry.element.attribute(QStringLiteral("id"));
        text += entry.element.name.toUtf8() + ' ' + (id ? id->toUtf8() : "-") + '\n';
        if (!entry.of.isEmpty())
            made.append(*id);
        if (entry.element.name == QLatin1String("rerouter") || (id && *id == QLatin1String("first")))
            text += QJsonDocument(entry.element.toJson()).toJson(QJsonDocument::Compact) + '\n';
    });
    EXPECT_EQ(
        text.toStdString(),
        "vType car\nvType van\nvTypeDistribution mix\nvTypeDistribution own\ne1Detector loop\n"
        "e2Detector area\ne3Detector gate\nbusStop stop\nvariableSpeedSign sign\nrerouter works\n"
        R"(["rerouter",{"edges":"west_in","id":"works"},[["interval",{},[["closingReroute",{"id":"quay_east"}]]]]])"
        "\nparkingArea kept\ntlLogic market\nroute r\nvehicle first\n"
        R"(["vehicle",{"depart":"0","id":"first","route":"r","type":"mix"},[["stop",{"busStop":"stop"}]]])"
        "\nvehicle later\nflow flow\nperson rider\nperson hails\nvehicle broken\ninterval -\n");
    EXPECT_EQ(made.join(QLatin1Char(' ')).toStdString(),
              "car van mix own loop area gate stop sign works market");
    EXPECT_EQ(mNetwork.record.otherAttrsJson.contains(QStringLiteral("mine")), !hasSeveralNets())
        << "the record of a store of one network stays";
    EXPECT_EQ(mSumo.value(QStringLiteral("config")).toObject(),
              QJsonObject({{QStringLiteral("end"), QStringLiteral("9")}}));
    const QJsonObject file = mSumo.value(QStringLiteral("files")).toArray().at(0).toObject();
    EXPECT_EQ(file.value(QStringLiteral("name")).toString(), QStringLiteral("all.add.xml"));
    EXPECT_EQ(file.value(QStringLiteral("role")).toString(), QStringLiteral("additional"));
}

TEST_P(KeptCompanions, ADigestTellsWhichObjectsWereChanged) {
    ASSERT_EQ(changed().join(QLatin1Char(' ')).toStdString(), "") << "a save and a load are no change";
    const struct {
        std::function<void(NetworkObjects &)> edit;
        const char *changed;
    } table[] = {
        {[](NetworkObjects &net) { net.findByName<VehicleType>(QStringLiteral("van"))->length += 0.25; },
         "van"},
        {[](NetworkObjects &net) { net.findByName<VehicleType>(QStringLiteral("in"))->maxDece = 9; }, "own"},
        {[](NetworkObjects &net) {
             net.findByName<VehicleComposition>(QStringLiteral("mix"))->mlDetail[0].proportion = 50;
         },
         "mix demand"},
        {[](NetworkObjects &net) { net.traffic.collectors.front()->distance = 6; }, "loop"},
        {[](NetworkObjects &net) { net.traffic.queueCounters.front()->laneNumber = 2; }, "area"},
        {[](NetworkObjects &net) { net.traffic.travelDetectors.back()->teminalDist = 3; }, "gate"},
        {[](NetworkObjects &net) { net.traffic.travelDetectors.pop_back(); }, "gate"},
        {[](NetworkObjects &net) { net.traffic.busStations.front()->length = 3; }, "stop"},
        {[](NetworkObjects &net) { net.traffic.speedAreas.back()->mlSpeedInterval.first()->endTime = 99; },
         "sign"},
        {[](NetworkObjects &net) { net.traffic.roadWorkZones.front()->limitSpeed = 5; }, "works"},
        {[](NetworkObjects &net) {
             net.findByName<SignalGroup>(QStringLiteral("market/n"))->mlPhase.first()->mlColor[0].interval =
                 8;
         },
         "market programme n"},
        {[](NetworkObjects &net) { net.findByName<SignalGroup>(QStringLiteral("market/0"))->startTime = 5; },
         "programme 0"},
        {[](NetworkObjects &net) { net.traffic.departurePoints.front()->mlInterval[0].vehiCount += 1; },
         "demand"},
        {[](NetworkObjects &net) { net.traffic.busLines.front()->mlStationLine.first()->parkingTime = 7; },
         "demand"},
        {[](NetworkObjects &net) { net.traffic.accidentZones.front()->location = 7; }, "demand"},
        {[](NetworkObjects &net) {
             net.traffic.decisionPoints.front()->mlFlowByInterval.last()->mlFlowRatio.first()->ratio = 0.5;
         },
         "demand"},
        {[](NetworkObjects &net) { net.findByName<Link>(QStringLiteral("quay_east"))->linkName += 'x'; },
         "works"},
    };
    for (const auto &entry : table) {
        mNetwork = readNetwork(StoreSession::ofProcess({}), 0);
        entry.edit(mNetwork);
        EXPECT_EQ(changed().join(QLatin1Char(' ')).toStdString(), entry.changed);
    }
}

TEST_P(KeptCompanions, ADigestDoesNotKnowTheHostsLanguage) {
    for (const bool isChinese : {true, false}) {
        gSpecialWords.setLangIsNotZh(!isChinese);
        mNetwork = readNetwork(StoreSession::ofProcess({}), 0);
        const VehicleType *car = mNetwork.find<VehicleType>(1);
        ASSERT_TRUE(car);
        // A store of several networks has its standard rows from this Chinese host.
        EXPECT_EQ(car->vehicleTypeName == QLatin1String("Car"), !isChinese && !hasSeveralNets());
        EXPECT_EQ(changed().join(QLatin1Char(' ')).toStdString(), "") << isChinese;
    }
}

TEST_P(KeptCompanions, ADigestDoesNotKnowNumbers) {
    for (auto &type : mNetwork.traffic.vehicleTypes)
        type->vehicleTypeCode += 1000;
    for (auto &composition : mNetwork.traffic.compositions) {
        composition->vehicleConsCode += 1000;
        for (VehicleConsDetail &detail : composition->mlDetail)
            detail.vehicleTypeCode += 1000;
    }
    for (auto &area : mNetwork.traffic.speedAreas) {
        for (ReduceSpeedVehiType *type : area->mlSpeedVehiType)
            type->vehicleTypeCode += 1000;
    }
    for (auto &point : mNetwork.traffic.departurePoints) {
        for (DepartureInterval &interval : point->mlInterval)
            interval.vehiCons.vehicleConsCode += 1000;
    }
    for (auto &collector : mNetwork.traffic.collectors)
        collector->collecterID += 1000;
    EXPECT_EQ(changed().join(QLatin1Char(' ')).toStdString(), "");
}

TEST_P(KeptCompanions, AFileMayBeLongerThanATextMayBe) {
    QByteArray noise;
    for (int i = 0; noise.size() < 2500000; ++i)
        noise += QCryptographicHash::hash(QByteArray::number(i), QCryptographicHash::Sha256).toHex();
    openNewStore();
    import("<routes><vType id=\"long\"><param key=\"noise\" value=\"" + noise + "\"/></vType></routes>");
    QByteArray kept;
    elements().forEach([&kept](const KeptEntry &entry) {
        kept += entry.element.children.at(0).attribute(QStringLiteral("value"))->toLatin1();
    });
    EXPECT_TRUE(kept == noise);
    EXPECT_GT(QJsonDocument(mSumo).toJson().size(), 1048576) << "what a name may have";
}

TEST_P(KeptCompanions, OfRealNetworksIsAsItWasAfterALoad) {
    const struct {
        const char *configuration;
        std::vector<int> elements; ///< below the roots of the files, additional ones first
    } table[] = {{"bologna/bologna.sumocfg", {3, 56, 106, 13, 11000, 176}},
                 {"rilsa/rilsa.sumocfg", {2, 1, 16, 2170}}};
    for (const auto &entry : table) {
        const QString path = realDataFile(QLatin1String(entry.configuration));
        if (path.isEmpty())
            GTEST_SKIP() << "no real data";
        openNewStore();
        import(readScenario(path));
        std::vector<int> kept;
        for (std::size_t file = 0; file < entry.elements.size(); ++file) {
            kept.push_back(0);
            elements(int(file)).forEach([&kept](const KeptEntry &) { ++kept.back(); });
        }
        EXPECT_EQ(kept, entry.elements);
        EXPECT_EQ(changed().join(QLatin1Char(' ')).toStdString(), "") << entry.configuration;
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, KeptCompanions, testing::ValuesIn(kStoreKinds), storeKindName);
