#include "tools/checks/Admission.h"
#include "tools/checks/ObjectRules.h"
#include "tools/checks/RuleGroups.h"

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

// Shares are percentages, which many stores keep with two digits: each is off by half a hundredth at most.
constexpr double kRounding = 0.005;

struct Figure {
    const char *name;
    double VehicleType::*value;
};

/// The figures of a type that `isGood` does not hold for, with their values.
template <class IsGood>
QStringList figuresOf(const VehicleType &type, std::initializer_list<Figure> figures, const IsGood &isGood) {
    QStringList wrong;
    for (const Figure &figure : figures) {
        if (!isGood(type.*figure.value))
            wrong.append(
                QStringLiteral("%1 of %2").arg(QLatin1String(figure.name), shown(type.*figure.value)));
    }
    return wrong;
}

void checkMeasures(const Checked &checked, Reporter &reporter) {
    for (const auto &type : checked.network().traffic.vehicleTypes) {
        const QStringList wrong = figuresOf(*type,
                                            {{"a length", &VehicleType::length},
                                             {"a width", &VehicleType::width},
                                             {"a mean speed", &VehicleType::avgSpeed},
                                             {"a highest speed", &VehicleType::maxSpeed},
                                             {"a mean acceleration", &VehicleType::avgAcce},
                                             {"a highest acceleration", &VehicleType::maxAcce},
                                             {"a mean deceleration", &VehicleType::avgDece},
                                             {"a highest deceleration", &VehicleType::maxDece}},
                                            isPositive);
        if (!wrong.isEmpty())
            findObject(reporter, *type, QStringLiteral("has ") + wrong.join(QStringLiteral(" and ")));
    }
}

void checkDeviations(const Checked &checked, Reporter &reporter) {
    for (const auto &type : checked.network().traffic.vehicleTypes) {
        const QStringList wrong = figuresOf(*type,
                                            {{"of length", &VehicleType::lengthSD},
                                             {"of width", &VehicleType::widthSD},
                                             {"of speed", &VehicleType::speedSD},
                                             {"of acceleration", &VehicleType::acceSD},
                                             {"of deceleration", &VehicleType::deceSD}},
                                            isAmount);
        if (!wrong.isEmpty())
            findObject(reporter, *type,
                       QStringLiteral("has a standard deviation ") + wrong.join(QStringLiteral(" and ")));
    }
}

void checkSpeeds(const Checked &checked, Reporter &reporter) {
    for (const auto &type : checked.network().traffic.vehicleTypes) {
        if (type->avgSpeed > type->maxSpeed)
            findObject(reporter, *type,
                       QStringLiteral("has a mean speed of %1 km/h and a highest one of %2 km/h")
                           .arg(shown(type->avgSpeed), shown(type->maxSpeed)));
    }
}

void checkNames(const Checked &checked, Reporter &reporter) {
    QHash<QString, const VehicleType *> known;
    for (const auto &type : checked.network().traffic.vehicleTypes) {
        const VehicleType *&first = known[type->vehicleTypeName];
        if (first)
            findObject(reporter, *type, QStringLiteral("has the name of %1").arg(calledObject(*first)));
        else
            first = type.get();
    }
}

double sharesOf(const VehicleComposition &composition) {
    double sum = 0;
    for (const VehicleConsDetail &detail : composition.mlDetail)
        sum += detail.proportion;
    return sum;
}

void checkEmpty(const Checked &checked, Reporter &reporter) {
    for (const auto &composition : checked.network().traffic.compositions) {
        if (composition->mlDetail.isEmpty())
            findObject(reporter, *composition, QStringLiteral("has no vehicle types"));
    }
}

void checkShares(const Checked &checked, Reporter &reporter) {
    for (const auto &composition : checked.network().traffic.compositions) {
        const auto &details = composition->mlDetail;
        const auto wrong = std::find_if(details.begin(), details.end(), [](const VehicleConsDetail &detail) {
            return !isAmount(detail.proportion);
        });
        if (wrong != details.end())
            findObject(reporter, *composition,
                       QStringLiteral("has a share of %1 percent for vehicle type %2")
                           .arg(shown(wrong->proportion), QString::number(wrong->vehicleTypeCode)));
        else if (!details.isEmpty() && !isPositive(sharesOf(*composition)))
            findObject(reporter, *composition, QStringLiteral("has shares that are all 0"));
    }
}

void checkSum(const Checked &checked, Reporter &reporter) {
    for (const auto &composition : checked.network().traffic.compositions) {
        const double sum = sharesOf(*composition);
        // Compared so that the last digits of the sum do not count.
        const double allowed = kRounding * composition->mlDetail.size() * (1 + 1e-9) + 1e-9;
        if (isPositive(sum) && std::abs(sum - 100) > allowed)
            findObject(reporter, *composition,
                       QStringLiteral("has shares that add up to %1 percent").arg(shown(sum)));
    }
}

void checkDefaults(const Checked &checked, Reporter &reporter) {
    const VehicleComposition *first = nullptr;
    for (const auto &composition : checked.network().traffic.compositions) {
        if (!composition->isDefault)
            continue;
        if (first)
            findObject(reporter, *composition,
                       QStringLiteral("is the default, as is %1").arg(calledObject(*first)));
        else
            first = composition.get();
    }
}

} // namespace

std::vector<Rule> vehicleRules() {
    return {
        {"vehicle-type.measures-not-positive", "demand", Severity::Error, Scope::Objects,
         "A length, width, speed, acceleration or deceleration of a vehicle type is not above 0.",
         "Set the figure; the standard catalogue has usual ones.", checkMeasures},
        {"vehicle-type.deviation-negative", "demand", Severity::Error, Scope::Objects,
         "A standard deviation of a vehicle type is below 0 or no finite number.",
         "Set it, to 0 where all vehicles are alike.", checkDeviations},
        {"vehicle-type.speeds-contradict", "demand", Severity::Warning, Scope::Objects,
         "The mean speed of a vehicle type is above its highest one.", "Set the speeds.", checkSpeeds},
        {"vehicle-type.name-twice", "demand", Severity::Warning, Scope::Objects,
         "Two vehicle types have one name, so what looks a type up by name finds either.",
         "Give one of them another name.", checkNames},
        {"composition.without-types", "demand", Severity::Error, Scope::Objects,
         "A vehicle composition lists no vehicle types, so no vehicle can be drawn from it.",
         "List its types, or remove it where no departure uses it.", checkEmpty},
        {"composition.share-not-positive", "demand", Severity::Error, Scope::Objects,
         "A share of a vehicle composition is below 0 or no finite number, or all are 0.", "Set the shares.",
         checkShares},
        {"composition.shares-off", "demand", Severity::Warning, Scope::Objects,
         "The shares of a vehicle composition do not add up to 100 percent.", "Set the shares.", checkSum},
        {"composition.default-twice", "demand", Severity::Warning, Scope::Objects,
         "More than one vehicle composition is the default.", "Leave one of them the default.",
         checkDefaults},
    };
}

} // namespace moratools
