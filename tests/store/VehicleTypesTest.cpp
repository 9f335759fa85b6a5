#include "model/SpecialWords.h"
#include "model/VehicleType.h"
#include "tests/support/StoreFixture.h"

namespace {

class VehicleTypesTest : public StoreKindFixture {};

double VehicleType::*const kFigures[] = {
    &VehicleType::length,   &VehicleType::lengthSD, &VehicleType::width,    &VehicleType::widthSD,
    &VehicleType::avgSpeed, &VehicleType::speedSD,  &VehicleType::maxSpeed, &VehicleType::avgAcce,
    &VehicleType::acceSD,   &VehicleType::maxAcce,  &VehicleType::avgDece,  &VehicleType::deceSD,
    &VehicleType::maxDece};

/// Figures that a store of two decimals, or a way through text, would not keep.
VehicleType sampleType(long code) {
    VehicleType type;
    type.vehicleTypeCode = code;
    type.vehicleTypeName = QStringLiteral("O'Brien's tram 有轨电车");
    double figure = double(code) / 3;
    for (double VehicleType::*member : kFigures)
        type.*member = figure += 1;
    return type;
}

TEST_P(VehicleTypesTest, ComeBackAsWritten) {
    const VehicleType written = sampleType(50);
    ASSERT_TRUE(DBTools::insertVehicleType(gDB, kNet, written, true));
    ASSERT_TRUE(DBTools::insertVehicleType(gDB, kNet, sampleType(40), false));
    reopen();
    QHash<long, VehicleType> types = {{50, VehicleType()}, {99, VehicleType()}};
    ASSERT_TRUE(DBTools::selectVehicleType(gDB, kNet, types));
    EXPECT_TRUE(types.contains(40) && types.contains(99));
    const VehicleType read = types.value(50);
    EXPECT_EQ(read.vehicleTypeCode, 50);
    EXPECT_EQ(read.vehicleTypeName, written.vehicleTypeName);
    for (double VehicleType::*member : kFigures)
        EXPECT_EQ(read.*member, written.*member);
}

TEST_P(VehicleTypesTest, NamesFollowTheLanguagesOfStoreAndHost) {
    const struct {
        bool dbIsEnglish, langIsNotZh;
        const char *stored, *readFromPedestrian;
    } cases[] = {{false, false, "行人", "Pedestrian"},
                 {false, true, "行人", "Pedestrian"},
                 {true, false, "行人", "行人"},
                 {true, true, "Pedestrian", "Pedestrian"}};
    VehicleType type = sampleType(50);
    type.vehicleTypeName = QStringLiteral("行人");
    for (const auto &[dbIsEnglish, langIsNotZh, stored, readFromPedestrian] : cases) {
        gSpecialWords.setDbIsEnglish(dbIsEnglish);
        gSpecialWords.setLangIsNotZh(langIsNotZh);
        execute(QStringLiteral("delete from VehicleType"));
        ASSERT_TRUE(DBTools::insertVehicleType(gDB, kNet, type, true));
        EXPECT_EQ(rows(QStringLiteral("select vehicleTypeName from VehicleType")),
                  QStringList(QString::fromUtf8(stored)));
        execute(QStringLiteral("update VehicleType set vehicleTypeName = 'Pedestrian'"));
        QHash<long, VehicleType> types;
        ASSERT_TRUE(DBTools::selectVehicleType(gDB, kNet, types));
        EXPECT_EQ(types.value(50).vehicleTypeName, QString::fromUtf8(readFromPedestrian));
    }
}

TEST_P(VehicleTypesTest, FailuresAreRecorded) {
    ASSERT_TRUE(DBTools::insertVehicleType(gDB, kNet, sampleType(50), true));
    const QStringList before = rows(QStringLiteral("select * from VehicleType"));
    VehicleType second = sampleType(50);
    second.length = 1;
    for (const bool inTransaction : {true, false})
        EXPECT_FALSE(DBTools::insertVehicleType(gDB, kNet, second, inTransaction));
    EXPECT_EQ(failures().size(), 2);
    EXPECT_EQ(rows(QStringLiteral("select * from VehicleType")), before);

    dropTable(QStringLiteral("VehicleType"));
    QHash<long, VehicleType> types;
    EXPECT_TRUE(DBTools::selectVehicleType(gDB, kNet, types)) << "a catalogue is true in every case";
    EXPECT_EQ(failures().size(), 3);
}

INSTANTIATE_TEST_SUITE_P(Stores, VehicleTypesTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
