#include "tools/sumo/reader/VehicleClasses.h"

#include <QStringList>
#include <QVector>

#include <initializer_list>
#include <iterator>

namespace moratools {

namespace {

// The abstract vehicle classes of the SUMO network format; names that later versions added stand at the end.
constexpr const char *kClasses[] = {
    "private",    "emergency", "authority",     "army",      "vip",        "passenger", "hov",
    "taxi",       "bus",       "coach",         "delivery",  "truck",      "trailer",   "tram",
    "rail_urban", "rail",      "rail_electric", "rail_fast", "motorcycle", "moped",     "bicycle",
    "pedestrian", "evehicle",  "ship",          "custom1",   "custom2",    "container", "cable_car",
    "subway",     "aircraft",  "wheelchair",    "scooter",   "drone"};

std::uint64_t bitOf(const QStringRef &name) {
    for (std::size_t i = 0; i < std::size(kClasses); ++i) {
        if (name == QLatin1String(kClasses[i]))
            return std::uint64_t(1) << i;
    }
    return 0;
}

std::uint64_t bitsOf(std::initializer_list<const char *> names) {
    std::uint64_t bits = 0;
    for (const char *name : names) {
        const QString text = QLatin1String(name);
        bits |= bitOf(QStringRef(&text));
    }
    return bits;
}

std::uint64_t bitsOf(const QString &list) {
    std::uint64_t bits = 0;
    const QVector<QStringRef> names = list.splitRef(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QStringRef &name : names)
        bits |= name == QLatin1String("all") ? ~std::uint64_t(0) : bitOf(name);
    return bits;
}

} // namespace

VehicleClasses VehicleClasses::of(const QString &allow, const QString &disallow) {
    if (!allow.isEmpty())
        return VehicleClasses(bitsOf(allow));
    return VehicleClasses(~bitsOf(disallow));
}

VehicleClasses VehicleClasses::ofOne(const QString &name) {
    return name == QLatin1String("ignoring") ? all() : VehicleClasses(bitOf(QStringRef(&name)));
}

bool VehicleClasses::admits(const char *vehicleClass) const {
    return mBits & bitsOf({vehicleClass});
}

bool VehicleClasses::admitsRoadUsers() const {
    static const std::uint64_t others =
        bitsOf({"bicycle", "pedestrian", "wheelchair", "scooter", "custom1", "custom2"});
    return admitsMotorVehicles() || (mBits & others);
}

bool VehicleClasses::admitsMotorVehicles() const {
    static const std::uint64_t motorVehicles =
        bitsOf({"private", "emergency", "authority", "army", "vip", "passenger", "hov", "taxi", "bus",
                "coach", "delivery", "truck", "trailer", "motorcycle", "moped", "evehicle"});
    return mBits & motorVehicles;
}

bool VehicleClasses::admitsCars() const {
    static const std::uint64_t cars =
        bitsOf({"private", "passenger", "hov", "delivery", "truck", "trailer", "evehicle"});
    return mBits & cars;
}

bool VehicleClasses::admitsPublicTransport() const {
    static const std::uint64_t publicTransport =
        bitsOf({"bus", "coach", "tram", "rail_urban", "rail", "rail_electric", "rail_fast", "subway"});
    return mBits & publicTransport;
}

bool VehicleClasses::admitsTwoWheelers() const {
    static const std::uint64_t twoWheelers = bitsOf({"bicycle", "moped", "motorcycle", "scooter"});
    return mBits & twoWheelers;
}

QString VehicleClasses::toText() const {
    if (isAll())
        return QStringLiteral("all");
    QStringList names;
    for (std::size_t i = 0; i < std::size(kClasses); ++i) {
        if (mBits & (std::uint64_t(1) << i))
            names.append(QLatin1String(kClasses[i]));
    }
    return names.join(QLatin1Char(' '));
}

} // namespace moratools
