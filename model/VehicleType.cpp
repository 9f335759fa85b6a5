#include "VehicleType.h"

#include "SpecialWords.h"
#include "Words.h"

#include <MoraInterfaces/PlainRecords.h>

#include <QReadLocker>

#include <algorithm>

QReadWriteLock VehicleType::mlock(QReadWriteLock::Recursive);

VehicleType &VehicleType::operator=(const _VehicleType &record) {
    vehicleTypeCode = record.vehicleTypeCode;
    vehicleTypeName = record.vehicleTypeName;
    length = record.length;
    lengthSD = record.lengthSD;
    width = record.width;
    widthSD = record.widthSD;
    avgSpeed = record.avgSpeed;
    speedSD = record.speedSD;
    maxSpeed = record.maxSpeed;
    avgAcce = record.avgAcce;
    acceSD = record.acceSD;
    maxAcce = record.maxAcce;
    avgDece = record.avgDece;
    deceSD = record.deceSD;
    maxDece = record.maxDece;
    return *this;
}

int VehicleType::type() const {
    if (vehicleTypeName == gSpecialWords.getWord(Words::Pedestrian))
        return 3;
    if (vehicleTypeName == gSpecialWords.getWord(Words::Bicycle) ||
        vehicleTypeName == gSpecialWords.getWord(Words::Escooter))
        return 2;
    return 1;
}

VehicleType VehicleType::findVeicleType(const QHash<long, VehicleType> &types, long code) {
    const QReadLocker locker(&mlock);
    return types.value(code);
}

VehicleType VehicleType::findVeicleType(const QHash<long, VehicleType> &types, const QString &name) {
    const QReadLocker locker(&mlock);
    for (const VehicleType &vehicleType : types) {
        if (vehicleType.vehicleTypeName == name)
            return vehicleType;
    }
    return {};
}

long VehicleType::maxVehicleTypeCode(const QHash<long, VehicleType> &types) {
    long largest = 0;
    for (auto entry = types.keyBegin(); entry != types.keyEnd(); ++entry)
        largest = std::max(largest, *entry);
    return largest;
}

QStringList VehicleType::nameList(const QHash<long, VehicleType> &types) {
    const QReadLocker locker(&mlock);
    QList<long> codes = types.keys();
    std::sort(codes.begin(), codes.end());
    QStringList names;
    for (const long code : codes)
        names.append(types.value(code).vehicleTypeName);
    return names;
}
