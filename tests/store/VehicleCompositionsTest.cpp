#include "model/VehicleComposition.h"
#include "tests/support/StoreFixture.h"

namespace {

class VehicleCompositionsTest : public StoreKindFixture {
protected:
    void prepare() override { letReferencesDangle(); }

    static VehicleComposition sample(long code, QList<VehicleConsDetail> details) {
        VehicleComposition composition;
        composition.vehicleConsCode = code;
        composition.name = QStringLiteral("早高峰");
        composition.isDefault = true;
        composition.mlDetail = details;
        return composition;
    }

    /// Without the standard composition.
    QStringList storedRows(const char *table, const char *columns) {
        return rows(QStringLiteral("select %1 from %2 where vehicleConsCode > 1 order by vehicleConsCode, %1")
                        .arg(QLatin1String(columns), QLatin1String(table)));
    }
    QStringList compositionRows() { return storedRows("VehicleConstitutent", "name, IsDefault"); }
    QStringList detailRows() { return storedRows("VehicleConsDetail", "vehicleTypeCode, proportion"); }
};

TEST_P(VehicleCompositionsTest, ComeBackWithDetailsByTypeCode) {
    ASSERT_TRUE(DBTools::insertVehicleConstitutent(
        gDB, kNet, sample(5, {{5, 9, 100.0 / 3}, {5, 3, 0.125}, {5, 4, 66.5}}), true));
    ASSERT_TRUE(DBTools::insertVehicleConstitutent(gDB, kNet, sample(6, {}), false));
    ASSERT_TRUE(DBTools::insertVehicleConsDetail(gDB, kNet, {6, 1, 7}, true));
    reopen();

    const VehicleComposition one = DBTools::selectVehicleComposition(gDB, kNet, 5);
    EXPECT_TRUE(one.isDefault);
    QHash<long, VehicleComposition> all = {{99, VehicleComposition()}};
    ASSERT_TRUE(DBTools::selectVehicleConstitutent(gDB, kNet, all));
    EXPECT_FALSE(all.value(5).isDefault) << "the whole catalogue comes without the default flag";
    EXPECT_TRUE(all.contains(99));
    for (const VehicleComposition &read : {one, all.value(5)}) {
        EXPECT_EQ(read.vehicleConsCode, 5);
        EXPECT_EQ(read.name, QStringLiteral("早高峰"));
        ASSERT_EQ(read.mlDetail.size(), 3);
        EXPECT_EQ(read.mlDetail.at(1).vehicleTypeCode, 4);
        EXPECT_EQ(read.mlDetail.at(2).vehicleConsCode, 5);
        EXPECT_EQ(read.mlDetail.at(2).vehicleTypeCode, 9);
        EXPECT_EQ(read.mlDetail.at(2).proportion, 100.0 / 3);
    }
    EXPECT_EQ(all.value(6).mlDetail.size(), 1);
    EXPECT_EQ(DBTools::selectVehicleConsDetail(gDB, kNet, 6).value(0).proportion, 7);
    EXPECT_EQ(DBTools::selectVehicleComposition(gDB, kNet, 7).vehicleConsCode, 0);
    EXPECT_EQ(DBTools::selectVehicleComposition(gDB, 2, 5).vehicleConsCode, hasSeveralNets() ? 0 : 5);

    for (const char *flag : {"Y", "F", "y", ""}) {
        execute(QStringLiteral("update VehicleConstitutent set IsDefault = '%1'").arg(QLatin1String(flag)));
        EXPECT_EQ(DBTools::selectVehicleComposition(gDB, kNet, 5).isDefault, *flag == 'Y') << flag;
    }
}

TEST_P(VehicleCompositionsTest, TheFirstFailureEndsTheOperation) {
    ASSERT_TRUE(DBTools::insertVehicleConsDetail(gDB, kNet, {5, 3, 1}, true));
    const VehicleComposition composition = sample(5, {{5, 2, 20}, {5, 3, 30}, {5, 4, 50}});
    EXPECT_FALSE(DBTools::insertVehicleConstitutent(gDB, kNet, composition, true));
    EXPECT_EQ(compositionRows(), QStringList());
    EXPECT_EQ(detailRows(), QStringList({"3|1"}));
    EXPECT_FALSE(DBTools::insertVehicleConstitutent(gDB, kNet, composition, false));
    EXPECT_EQ(compositionRows(), QStringList({"早高峰|T"}));
    EXPECT_EQ(detailRows(), QStringList({"2|20", "3|1"}));
    // The composition's own row refused: no detail is tried.
    EXPECT_FALSE(DBTools::insertVehicleConstitutent(gDB, kNet, sample(5, {{5, 8, 100}}), false));
    EXPECT_EQ(detailRows().size(), 2);
    EXPECT_EQ(failures().size(), 3);
}

INSTANTIATE_TEST_SUITE_P(Stores, VehicleCompositionsTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
