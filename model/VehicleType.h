#pragma once

#include "MoraStoreExport.h"

#include <QHash>
#include <QReadWriteLock>
#include <QString>
#include <QStringList>

#include <memory>

struct _VehicleType;

/// The figures from which the vehicles of a type are drawn. Lengths in metres, speeds in km/h, accelerations
/// and decelerations in m/s²; "SD" is a standard deviation.
///
/// A new record is the standard car except for its name "0" and its speed deviation; a look-up that finds
/// nothing returns it.
class MORASTORE_EXPORT VehicleType {
public:
    VehicleType() = default;
    VehicleType &operator=(const _VehicleType &record);

    /// 3 for the pedestrian, 2 for bicycle and e-scooter, 1 for every other; by the display word.
    int type() const;

    /// The type stored under `code`.
    static VehicleType findVeicleType(const QHash<long, VehicleType> &types, long code);
    /// The first type of exactly that name.
    static VehicleType findVeicleType(const QHash<long, VehicleType> &types, const QString &name);
    /// The largest code, 0 when there is none above. Takes no lock.
    static long maxVehicleTypeCode(const QHash<long, VehicleType> &types);
    /// The names in ascending order of codes.
    static QStringList nameList(const QHash<long, VehicleType> &types);

    /// Guards the registries of vehicle types. The look-ups and nameList() hold it for reading; who changes a
    /// registry while other threads look things up holds it for writing. Recursive: a thread that holds it
    /// for reading may look up. One that holds it for writing must not.
    static QReadWriteLock mlock;
    /// A copy that the caller owns.
    std::unique_ptr<VehicleType> clone() const { return std::make_unique<VehicleType>(*this); }

    long vehicleTypeCode = 1;
    QString vehicleTypeName = QStringLiteral("0");
    double length = 4.5;
    double lengthSD = 0.5;
    double width = 2;
    double widthSD = 0.2;
    double avgSpeed = 60;
    double speedSD = 20;
    double maxSpeed = 80;
    double avgAcce = 4;
    double acceSD = 0.5;
    double maxAcce = 5.5;
    double avgDece = 6;
    double deceSD = 0.5;
    double maxDece = 7.5;
    /// The name as a read found it, where the displayed one would be written otherwise.
    QString storedTypeName;
};

/// The vehicle types of the process's store by code; the host fills it from DBTools::selectVehicleType.
extern MORASTORE_EXPORT QHash<long, VehicleType> &ghVehicleType;
