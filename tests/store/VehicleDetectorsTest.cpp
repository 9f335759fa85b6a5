#include "model/VehicleDetector.h"
#include "model/VehicleType.h"
#include "tests/support/StoreFixture.h"

#include <algorithm>
#include <memory>
#include <tuple>

namespace {

auto fields(VehicleDetector &detector) {
    return std::tie(detector.vehicleDetectorId, detector.name, detector.signalGroupID, detector.phaseNumber,
                    detector.roadId, detector.roadType, detector.laneNumber, detector.toLaneNumber,
                    detector.distToTerminal, detector.length, detector.type, detector.maxGreen);
}

VehicleDetector sampleDetector(long id) {
    VehicleDetector detector;
    fields(detector) =
        std::make_tuple(id, QStringLiteral("O'Brien 环 %1").arg(id), 11L, 3, 7L, QStringLiteral("C"), 2, 0,
                        100.0 / 3, 1.0 / 7, QStringLiteral("标准检测器"), 95);
    return detector;
}

class VehicleDetectorsTest : public StoreKindFixture {
protected:
    static std::unique_ptr<VehicleDetector> read(long id) {
        return std::unique_ptr<VehicleDetector>(DBTools::selectVehicleDetector(gDB, kNet, id));
    }
    QStringList typeRows() {
        return rows(QStringLiteral(
            "select vehicleDetectorId, vehicleTypeCode from DetectorVehiType order by vehicleTypeCode"));
    }
};

TEST_P(VehicleDetectorsTest, ComesBackAsWritten) {
    letReferencesDangle();
    VehicleDetector written = sampleDetector(5);
    EXPECT_TRUE(DBTools::insertVehicleDetector(gDB, kNet, &written, true));
    EXPECT_EQ(count("VehicleDetector"), 0) << "with the flag it is a trial run";
    ASSERT_TRUE(DBTools::insertVehicleDetector(gDB, kNet, &written, false));
    VehicleDetector unnamed;
    unnamed.vehicleDetectorId = 3;
    ASSERT_TRUE(DBTools::insertVehicleDetector(gDB, kNet, &unnamed, false));
    EXPECT_FALSE(DBTools::insertVehicleDetector(gDB, kNet, &unnamed, false));
    EXPECT_EQ(failures().size(), 1);
    reopen();

    const auto after = read(5);
    ASSERT_TRUE(after);
    EXPECT_TRUE(fields(*after) == fields(written));
    EXPECT_FALSE(after->isOnLink()) << "lane 0 is a lane that a path leads to";
    EXPECT_TRUE(after->mlVehiTypeCode.isEmpty());
    QList<long> ids = {9};
    EXPECT_TRUE(DBTools::selectVehicleDetectorIds(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({9, 3, 5}));
    EXPECT_EQ(read(4), nullptr);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(VehicleDetectorsTest, NoLaneToLeadToReadsAsOnLink) {
    letReferencesDangle();
    VehicleDetector written = sampleDetector(5);
    written.toLaneNumber = -1;
    ASSERT_TRUE(DBTools::insertVehicleDetector(gDB, kNet, &written, false));
    EXPECT_EQ(rows("select toLaneNumber from VehicleDetector"), QStringList("-1"));
    execute("update VehicleDetector set toLaneNumber = null");
    EXPECT_EQ(read(5)->toLaneNumber, -1);
}

TEST_P(VehicleDetectorsTest, UnknownSignalGroupIsRefusedWhereKeysAreEnforced) {
    if (!isPostgres())
        execute("PRAGMA foreign_keys=ON");
    VehicleDetector detector = sampleDetector(5);
    EXPECT_FALSE(DBTools::insertVehicleDetector(gDB, kNet, &detector, false));
    EXPECT_EQ(failures().size(), 1);
    EXPECT_EQ(count("VehicleDetector"), 0);
    addRow("SignalGroup", "signalGroupID, name, timeLength, startTime, endTime", "11, 'g', 60, 0, 3600");
    EXPECT_TRUE(DBTools::insertVehicleDetector(gDB, kNet, &detector, false));
}

TEST_P(VehicleDetectorsTest, TypesAreWrittenOneByOneAndGeneration6RefusesThem) {
    letReferencesDangle();
    VehicleDetector detector = sampleDetector(5);
    detector.mlVehiTypeCode = {4, 4, 77, 2};
    ASSERT_TRUE(gDB.transaction());
    EXPECT_FALSE(DBTools::insertVehicleDetector(gDB, kNet, &detector, false));
    EXPECT_TRUE(gDB.commit()) << "the failed rows do not end the caller's transaction";
    EXPECT_EQ(count("VehicleDetector"), 1);
    EXPECT_EQ(failures().size(), hasSeveralNets() ? 4 : 1) << "a record for each row that was refused";
    EXPECT_EQ(typeRows(), hasSeveralNets() ? QStringList() : QStringList({"5|2", "5|4", "5|77"}));
    if (hasSeveralNets())
        addRow("DetectorVehiType", "vehicleDetectorId, vehicleTypeCode", "5, 77");
    reopen();

    ghVehicleType[2].vehicleTypeCode = 2;
    ghVehicleType[4].vehicleTypeCode = 4;
    const long unknown = VehicleType().vehicleTypeCode;
    const auto after = read(5);
    ASSERT_TRUE(after);
    std::sort(after->mlVehiTypeCode.begin(), after->mlVehiTypeCode.end());
    EXPECT_EQ(after->mlVehiTypeCode,
              hasSeveralNets() ? QList<long>({unknown}) : QList<long>({unknown, 2, 4}));
    EXPECT_FALSE(after->hasVehiType(77));
}

INSTANTIATE_TEST_SUITE_P(Stores, VehicleDetectorsTest, testing::ValuesIn(kStoreKinds), storeKindName);

TEST_F(StoreFixture, DetectorsOfSeveralNetworksAreKeptApart) {
    openTemplate("EmptyNet_V6.0.0");
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, "second", {}, "test", {}, {}, false, true));
    VehicleDetector here = sampleDetector(5);
    VehicleDetector there = sampleDetector(5);
    there.name = QStringLiteral("there");
    ASSERT_TRUE(DBTools::insertVehicleDetector(gDB, kNet, &here, false));
    ASSERT_TRUE(DBTools_V6::insertVehicleDetector(gDB, 2, &there, false));
    const std::unique_ptr<VehicleDetector> read(DBTools::selectVehicleDetector(gDB, 2, 5));
    EXPECT_EQ(read->name, there.name);
    QList<long> ids;
    DBTools_V6::selectVehicleDetectorIds(gDB, 2, ids);
    EXPECT_EQ(ids, QList<long>({5}));
}

} // namespace
