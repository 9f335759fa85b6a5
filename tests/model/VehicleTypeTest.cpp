#include "model/VehicleType.h"
#include "model/SpecialWords.h"
#include "model/VehicleComposition.h"

#include <MoraInterfaces/PlainRecords.h>

#include <QReadLocker>
#include <QThread>
#include <QWriteLocker>

#include <gtest/gtest.h>

#include <memory>

namespace {

VehicleType typeOf(long code, const QString &name) {
    VehicleType type;
    type.vehicleTypeCode = code;
    type.vehicleTypeName = name;
    return type;
}

QHash<long, VehicleType> registry() {
    return {{12, typeOf(12, QStringLiteral("twelve"))},
            {1, typeOf(1, QStringLiteral("one"))},
            {5, typeOf(5, QStringLiteral("five"))}};
}

} // namespace

TEST(VehicleType, LookUps) {
    const QHash<long, VehicleType> types = registry();
    EXPECT_EQ(VehicleType::findVeicleType(types, 5).vehicleTypeName, QStringLiteral("five"));
    EXPECT_EQ(VehicleType::findVeicleType(types, QStringLiteral("twelve")).vehicleTypeCode, 12);
    for (const VehicleType &none : {VehicleType::findVeicleType(types, 6),
                                    VehicleType::findVeicleType(types, QStringLiteral("Five"))}) {
        EXPECT_EQ(none.vehicleTypeCode, 1);
        EXPECT_EQ(none.vehicleTypeName, QStringLiteral("0"));
        EXPECT_EQ(none.speedSD, 20);
    }
    EXPECT_EQ(VehicleType::nameList(types),
              QStringList({QStringLiteral("one"), QStringLiteral("five"), QStringLiteral("twelve")}));
    EXPECT_EQ(VehicleType::maxVehicleTypeCode(types), 12);
    EXPECT_EQ(VehicleType::maxVehicleTypeCode({}), 0);
    EXPECT_EQ(VehicleType::maxVehicleTypeCode({{-3, {}}}), 0);
}

TEST(VehicleType, LookUpUnderAHeldReadLockDoesNotWaitForAWriter) {
    const QHash<long, VehicleType> types = registry();
    bool written = false;
    std::unique_ptr<QThread> writer(QThread::create([&written] {
        const QWriteLocker locker(&VehicleType::mlock);
        written = true;
    }));
    {
        const QReadLocker locker(&VehicleType::mlock);
        writer->start();
        EXPECT_FALSE(
            writer->wait(100)); // it waits for the lock by now, and new readers would queue behind it
        EXPECT_EQ(VehicleType::findVeicleType(types, 5).vehicleTypeCode, 5);
        EXPECT_EQ(VehicleType::nameList(types).size(), 3);
        EXPECT_FALSE(written);
    }
    EXPECT_TRUE(writer->wait(5000));
    EXPECT_TRUE(written);
}

TEST(VehicleType, KindFollowsTheDisplayWord) {
    const auto kind = [](const QString &name) { return typeOf(1, name).type(); };
    EXPECT_EQ(kind(QStringLiteral("行人")), 3);
    EXPECT_EQ(kind(QStringLiteral("自行车")), 2);
    EXPECT_EQ(kind(QStringLiteral("电动车")), 2);
    EXPECT_EQ(kind(QStringLiteral("小客车")), 1);
    EXPECT_EQ(kind(QStringLiteral("Pedestrian")), 1);
    gSpecialWords.setDbIsEnglish(true);
    gSpecialWords.setLangIsNotZh(true);
    EXPECT_EQ(kind(QStringLiteral("Pedestrian")), 3);
    EXPECT_EQ(kind(QStringLiteral("pedestrian")), 1);
    gSpecialWords = SpecialWords();
}

TEST(VehicleType, TakesAllFieldsOfThePlainRecord) {
    const _VehicleType record{2, QStringLiteral("n"), 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    VehicleType type;
    type = record;
    EXPECT_EQ(type.vehicleTypeCode, 2);
    EXPECT_EQ(type.vehicleTypeName, QStringLiteral("n"));
    const QList<double> figures = {type.length,  type.lengthSD, type.width,   type.widthSD, type.avgSpeed,
                                   type.speedSD, type.maxSpeed, type.avgAcce, type.acceSD,  type.maxAcce,
                                   type.avgDece, type.deceSD,   type.maxDece};
    EXPECT_EQ(figures, QList<double>({3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
}

TEST(VehicleComposition, LookUps) {
    VehicleComposition first;
    first.vehicleConsCode = 1;
    first.name = QStringLiteral("mixed");
    first.mlDetail.append({1, 2, 90});
    VehicleComposition tenth;
    tenth.vehicleConsCode = 10;
    tenth.name = QStringLiteral("buses");
    const QHash<long, VehicleComposition> compositions = {{10, tenth}, {1, first}};

    EXPECT_EQ(VehicleComposition::findVcByCode(compositions, 10).name, tenth.name);
    EXPECT_EQ(VehicleComposition::findVcByCode(compositions, 2).vehicleConsCode, 0);
    EXPECT_EQ(VehicleComposition::findVcByName(compositions, first.name).vehicleConsCode, 1);
    EXPECT_EQ(VehicleComposition::findVcByName(compositions, QString()).vehicleConsCode, 0);
    EXPECT_EQ(VehicleComposition::vcCodeList(compositions), QList<long>({1, 10}));
    EXPECT_EQ(VehicleComposition::vcNameList(compositions), QStringList({first.name, tenth.name}));
    EXPECT_TRUE(first.exits(1, 2));
    EXPECT_FALSE(first.exits(1, 1));
    EXPECT_FALSE(first.exits(2, 2));
    EXPECT_FALSE(tenth.exits(10, 2));
}
