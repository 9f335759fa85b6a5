#include "store/schema/Dictionaries.h"

#include "model/Words.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/DriverModels.h"
#include "store/families/SceneConfigurations.h"
#include "store/families/VehicleCompositions.h"
#include "store/families/VehicleTypes.h"

#include <MoraInterfaces/PlainRecords.h>

namespace dictionaries {

namespace {

constexpr Sql kLinkTypes[] = {
    {"insert into LinkType values(1, 'TrunkRoad', 1600, 60, 80, 40, 60)",
     "insert into LinkType values(%1, 1, 'TrunkRoad', 1600, 60, 80, 40, 60)"},
    {"insert into LinkType values(2, 'SecondaryRoad', 1200, 40, 60, 20, 40)",
     "insert into LinkType values(%1, 2, 'SecondaryRoad', 1200, 40, 60, 20, 40)"},
    {"insert into LinkType values(3, 'LocalStreet', 900, 30, 40, 10, 30)",
     "insert into LinkType values(%1, 3, 'LocalStreet', 900, 30, 40, 10, 30)"},
    {"insert into LinkType values(4, 'Highway', 2200, 100, 120, 60, 100)",
     "insert into LinkType values(%1, 4, 'Highway', 2200, 100, 120, 60, 100)"},
    {"insert into LinkType values(5, 'Expressway', 1600, 60, 80, 40, 60)",
     "insert into LinkType values(%1, 5, 'Expressway', 1600, 60, 80, 40, 60)"},
    {"insert into LinkType values(6, 'Ramp', 0, 30, 40, 20, null)",
     "insert into LinkType values(%1, 6, 'Ramp', 0, 30, 40, 20, null)"},
    {"insert into LinkType values(7, 'BusLane', 0, 40, 60, 20, null)",
     "insert into LinkType values(%1, 7, 'BusLane', 0, 40, 60, 20, null)"},
    {"insert into LinkType values(8, 'NonMotorizedLane', 0, 20, 30, 5, null)",
     "insert into LinkType values(%1, 8, 'NonMotorizedLane', 0, 20, 30, 5, null)"},
    {"insert into LinkType values(9, 'MixedLane', 0, 20, 30, 5, null)",
     "insert into LinkType values(%1, 9, 'MixedLane', 0, 20, 30, 5, null)"},
    {"insert into LinkType values(10, 'PedestrianCrossing', 0, 5, 8, 1, null)",
     "insert into LinkType values(%1, 10, 'PedestrianCrossing', 0, 5, 8, 1, null)"},
};

/// The placeholder row of a network, shaped to the columns that the store has.
const char *templateNet(const Store &store) {
    if (!store.hasColumn("Net", "centerX"))
        return "insert into Net values(%1, 'Template', null, 'MoraSim', null, null)";
    const bool hasCaption = store.hasColumn("Net", "caption");
    if (!store.hasColumn("Net", "isDefault")) {
        return hasCaption ? "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null, null)"
                          : "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null)";
    }
    return hasCaption ? "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null, null, 'F')"
                      : "insert into Net values(%1, 'Template', null, 'MoraSim', null, 0, 0, null, 'F')";
}

/// A network without a row does not get one here: only a count that could not be taken at all leads to the
/// insert. Hosts write their networks themselves and count on it.
bool seedNet(const Store &store) {
    if (Query(store, "select count(*) from Net where NetId = %1", {store.netId()}).execAndNext())
        return true;
    return Query(store, templateNet(store), {store.netId()}).exec();
}

bool writeLinkTypes(const Store &store) {
    bool written = true;
    for (const Sql &type : kLinkTypes)
        written = Query(store, type).exec() && written;
    return written;
}

/// The standard catalogue, by display names: writing a vehicle type passes its name through the dictionary.
/// The names of the aircraft mean large and small aircraft; their stored words are what stores have.
bool writeVehicleTypes(const Store &store) {
    static const _VehicleType catalogue[] = {
        {1, Words::Car, 4.5, 0.5, 2, 0.2, 60, 10, 80, 4, 0.5, 5.5, 6, 0.5, 7.5},
        {2, Words::Coach, 12, 0.6, 2.5, 0.25, 50, 5, 70, 3, 0.5, 5, 5, 0.5, 7.5},
        {3, Words::Bus, 12, 0.6, 2.5, 0.25, 50, 5, 70, 3, 0.5, 5, 5, 0.5, 7.5},
        {4, Words::Truck, 8, 2, 2.5, 0.25, 50, 5, 70, 2.5, 0.4, 4.5, 4, 0.5, 5.5},
        {5, Words::Escooter, 2.5, 0.15, 0.7, 0.07, 25, 5, 30, 3.5, 0.5, 1.9, 5, 1, 2.3},
        {6, Words::Bicycle, 1.8, 0.15, 0.6, 0.06, 12, 2, 15, 3.5, 0.5, 1.5, 5, 1, 1.7},
        {7, Words::Pedestrian, 0.5, 0.1, 0.5, 0.05, 4.5, 1, 6, 3, 1, 4, 9, 3, 12},
        {8, Words::EngineeringVehicle, 8.8, 0, 3, 0, 50, 5, 70, 2.5, 0.4, 4, 4, 0.5, 5.5},
        {9, Words::FireEngine, 10.2, 0, 3, 0, 60, 10, 80, 4, 0.5, 5, 6, 0.5, 7.5},
        {10, Words::Ambulance, 5.8, 0, 2.5, 0, 60, 10, 80, 4, 0.5, 5.5, 6, 0.5, 7.5},
        {11, Words::Plane, 40, 0, 17.2, 0, 120, 20, 300, 4, 0.5, 5.5, 6, 0.5, 7.5},
        {12, Words::Helicopter, 23.7, 0, 12.2, 0, 120, 20, 300, 4, 0.5, 5.5, 6, 0.5, 7.5},
    };
    bool written = true;
    for (const _VehicleType &record : catalogue) {
        VehicleType type;
        type = record;
        written = vehicletypes::insertVehicleType(store, type, false) && written;
    }
    return written;
}

/// Composition names do not pass through the dictionary, and the stored name is not the dictionary's
/// "Default": it is spelled small in every store.
QString standardCompositionName(const SpecialWords &words) {
    const QString display = Words::Default;
    return words.trZhToEn(display) == display ? display : QStringLiteral("default");
}

bool writeStandardComposition(const Store &store) {
    VehicleComposition standard;
    standard.vehicleConsCode = 1;
    standard.name = standardCompositionName(store.words());
    standard.isDefault = true;
    standard.mlDetail = {{1, 1, 90}, {1, 2, 10}};
    return vehiclecompositions::insertVehicleComposition(store, standard, false);
}

bool writeFollowingSets(const Store &store) {
    constexpr DriveFollowedModelParam sets[] = {{1, 5, 1.5, 2, 2, 4, 2}, {2, 3, 1.5, 1.5, 0.5, 4, 2}};
    bool written = true;
    for (const DriveFollowedModelParam &set : sets)
        written = drivermodels::insertFollowedModelParam(store, set) && written;
    return written;
}

/// The calibrated sets, which differ from the ones that ChangeLaneModelParam has built in.
struct CalibratedValue {
    double ChangeLaneModelParam::*field;
    double byId[3]; // of ids 1, 2 and 3
};

constexpr CalibratedValue kLaneChangeValues[] = {
    {&ChangeLaneModelParam::headBeit0, {1, 1, 0.5}},
    {&ChangeLaneModelParam::headBeit1Coef, {0.1553, 0.0932, 0.0621}},
    {&ChangeLaneModelParam::headBeit2Coef, {0.2175, 0.1864, 0.1553}},
    {&ChangeLaneModelParam::headBeit3Coef, {0.1553, 0.1243, 0.0932}},
    {&ChangeLaneModelParam::headBeit4Coef, {0, 0.0621, 0.031}},
    {&ChangeLaneModelParam::headRandParam, {1, 1, 0.5}},
    {&ChangeLaneModelParam::headDistParam, {0.008, 0.008, 0.008}},
    {&ChangeLaneModelParam::lagBeit0, {1.5, 1.5, 1}},
    {&ChangeLaneModelParam::lagBeit1Coef, {0.0932, 0.0621, 0.3107}},
    {&ChangeLaneModelParam::lagBeit2Coef, {0.2796, 0.2175, 0.1864}},
    {&ChangeLaneModelParam::lagBeit3Coef, {0.1864, 0.1553, 0.1243}},
    {&ChangeLaneModelParam::lagBeit4Coef, {0, 0.0621, 0.031}},
    {&ChangeLaneModelParam::lagRandParam, {1.5, 1.5, 1}},
    {&ChangeLaneModelParam::lagDistParam, {0.008, 0.008, 0.008}},
};

bool writeLaneChangeSets(const Store &store) {
    QList<ChangeLaneModelParam> sets;
    for (long id = 1; id <= 3; ++id) {
        ChangeLaneModelParam set(id);
        for (const CalibratedValue &value : kLaneChangeValues)
            set.*value.field = value.byId[id - 1];
        sets.append(set);
    }
    return drivermodels::insertChangeLaneParams(store, sets);
}

/// A new scene as Configuration has it, saved today.
bool writeScene(const Store &store) {
    Configuration scene;
    scene.saveDate = QDate::currentDate().startOfDay();
    return sceneconfigurations::insertSceneConfiguration(store, scene);
}

/// What fills a table for a network that has none of its rows.
struct Seed {
    Sql count;
    bool (*write)(const Store &);
};

constexpr Seed kFollowingSets = {{"select count(*) from DriveFollowedModelParam",
                                  "select count(*) from DriveFollowedModelParam where NetId = %0"},
                                 writeFollowingSets};

constexpr Seed kSeeds[] = {
    {{"select count(*) from LinkType", "select count(*) from LinkType where NetId = %0"}, writeLinkTypes},
    {{"select count(*) from VehicleType", "select count(*) from VehicleType where NetId = %0"},
     writeVehicleTypes},
    {{"select count(*) from VehicleConstitutent",
      "select count(*) from VehicleConstitutent where NetId = %0"},
     writeStandardComposition},
    kFollowingSets,
    {{"select count(*) from ChangeLaneModelParam",
      "select count(*) from ChangeLaneModelParam where NetId = %0"},
     writeLaneChangeSets},
    {{"select count(*) from Configuration", "select count(*) from Configuration where NetId = %0"},
     writeScene},
};

bool sow(const Store &store, const Seed &seed) {
    Query rows(store, seed.count);
    if (!rows.execAndNext())
        return false;
    const bool isEmpty = rows.firstId() == 0;
    rows.finish();
    return !isEmpty || seed.write(store);
}

} // namespace

bool seedDictionaries(const Store &store, bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    bool written = seedNet(store);
    for (const Seed &seed : kSeeds)
        written = sow(store, seed) && written;
    return transaction.commit(written);
}

bool seedFollowingSets(const Store &store) {
    return sow(store, kFollowingSets);
}

} // namespace dictionaries
