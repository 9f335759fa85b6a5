#include "tools/sumo/export/ExportedVehicles.h"

#include "model/Words.h"
#include "tools/sumo/export/ExportedRoads.h"
#include "tools/sumo/kept/SumoUnits.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace moratools {

namespace {

/// The class of what the catalogue calls so, in either language; cars for what it does not know.
QString standardClassOf(const QString &typeName) {
    static const struct {
        Words::Word word;
        const char *vClass = nullptr;
    } classes[] = {{Words::Coach, "coach"},
                   {Words::Bus, "bus"},
                   {Words::Truck, "truck"},
                   {Words::Escooter, "moped"},
                   {Words::Bicycle, "bicycle"},
                   {Words::Pedestrian, "pedestrian"},
                   {Words::EngineeringVehicle, "truck"},
                   {Words::FireEngine, "emergency"},
                   {Words::Ambulance, "emergency"},
                   {Words::Plane, "custom1"},
                   {Words::Helicopter, "custom2"}};
    const auto *found = std::find_if(std::begin(classes), std::end(classes),
                                     [&typeName](const auto &entry) { return entry.word.names(typeName); });
    return QLatin1String(found == std::end(classes) ? "passenger" : found->vClass);
}

QString englishName(const QString &name) {
    const auto *found = std::find_if(std::begin(Words::kAll), std::end(Words::kAll),
                                     [&name](const Words::Word &word) { return word.names(name); });
    return found == std::end(Words::kAll) ? name : found->inEnglish();
}

} // namespace

ExportedVehicles::ExportedVehicles(const NetLists &network, QHash<QString, QString> classes, Names &names)
    : mNetwork(network), mClasses(std::move(classes)), mNames(names) {
    std::vector<Names::Named> named;
    for (const auto &type : network.traffic.vehicleTypes) {
        mTypes.insert(type->vehicleTypeCode, type.get());
        named.push_back({type.get(), englishName(type->vehicleTypeName), type->vehicleTypeCode, true});
    }
    for (const auto &composition : network.traffic.compositions) {
        mCompositions.insert(composition->vehicleConsCode, composition.get());
        // One of a single type is called like it, and stands for it.
        if (composition->mlDetail.size() != 1)
            named.push_back(
                {composition.get(), englishName(composition->name), composition->vehicleConsCode});
    }
    // Types and distributions share their ids.
    names.give(QStringLiteral("vTypes"), QStringLiteral("type"), named);
}

QString ExportedVehicles::classOf(const VehicleType &type) const {
    const auto known = mClasses.constFind(type.vehicleTypeName);
    return known == mClasses.cend() ? standardClassOf(type.vehicleTypeName) : *known;
}

QSet<QString> ExportedVehicles::classesIn(long compositionCode) const {
    QSet<QString> classes;
    if (const VehicleComposition *composition = mCompositions.value(compositionCode)) {
        for (const VehicleConsDetail &detail : composition->mlDetail) {
            if (const VehicleType *type = mTypes.value(detail.vehicleTypeCode); type && detail.proportion > 0)
                classes.insert(classOf(*type));
        }
    }
    return classes;
}

QString ExportedVehicles::typeId(long code) {
    const VehicleType *type = mTypes.value(code);
    if (!type)
        return {};
    mUsedTypes.insert(code);
    return mNames.of(type);
}

QString ExportedVehicles::busTypeId(const QString &name) {
    const auto &types = mNetwork.traffic.vehicleTypes;
    const auto named = std::find_if(types.begin(), types.end(),
                                    [&name](const auto &type) { return type->vehicleTypeName == name; });
    return typeId(named == types.end() ? kBus : (*named)->vehicleTypeCode);
}

QString ExportedVehicles::compositionId(long code) {
    const VehicleComposition *composition = mCompositions.value(code);
    if (!composition || composition->mlDetail.isEmpty())
        return {};
    if (composition->mlDetail.size() == 1)
        return typeId(composition->mlDetail.first().vehicleTypeCode);
    mUsedCompositions.insert(code);
    for (const VehicleConsDetail &detail : composition->mlDetail)
        typeId(detail.vehicleTypeCode);
    return mNames.of(composition);
}

std::vector<MadeElement> ExportedVehicles::elements() const {
    std::vector<MadeElement> elements;
    for (const auto &type : mNetwork.traffic.vehicleTypes) {
        if (type->vehicleTypeCode > kLastStandard || mUsedTypes.contains(type->vehicleTypeCode))
            elements.push_back(elementOf(*type));
    }
    for (const auto &composition : mNetwork.traffic.compositions) {
        if (mUsedCompositions.contains(composition->vehicleConsCode))
            elements.push_back(elementOf(*composition));
    }
    return elements;
}

MadeElement ExportedVehicles::elementOf(const VehicleType &type) const {
    MadeElement made{
        makeElement("vType", {{"id", mNames.of(&type)},
                              {"vClass", classOf(type)},
                              {"length", numberText(type.length)},
                              {"width", numberText(type.width)},
                              {"accel", numberText(type.avgAcce)},
                              {"decel", numberText(type.avgDece)},
                              {"emergencyDecel", numberText(std::max(type.maxDece, type.avgDece))},
                              {"maxSpeed", numberText(type.maxSpeed / kKmhPerMs)}}),
        type.vehicleTypeName, QString()};
    if (type.lengthSD != 0 || type.widthSD != 0 || type.acceSD != 0 || type.deceSD != 0)
        made.lost =
            QStringLiteral("deviations of vehicle type %1 (%2: in SUMO all vehicles of a type are alike)")
                .arg(QString::number(type.vehicleTypeCode), type.vehicleTypeName);
    if (type.avgSpeed > 0)
        made.element.setAttribute(QStringLiteral("speedDev"), numberText(type.speedSD / type.avgSpeed));
    return made;
}

MadeElement ExportedVehicles::elementOf(const VehicleComposition &composition) const {
    QStringList types;
    QStringList shares;
    for (const VehicleConsDetail &detail : composition.mlDetail) {
        types.append(mNames.of(mTypes.value(detail.vehicleTypeCode)));
        shares.append(numberText(detail.proportion / 100));
    }
    return {makeElement("vTypeDistribution", {{"id", mNames.of(&composition)},
                                              {"vTypes", types.join(QLatin1Char(' '))},
                                              {"probabilities", shares.join(QLatin1Char(' '))}}),
            composition.name, QString()};
}

} // namespace moratools
