#pragma once

#include "MoraStoreExport.h"
#include "VehicleConsDetail.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

/// A named mix of vehicle types. Rows of table VehicleConstitutent. A look-up that finds nothing returns a
/// new record, of code 0; none takes a lock.
class MORASTORE_EXPORT VehicleComposition {
public:
    /// Whether a detail has both this composition code and this vehicle type code.
    bool exits(long consCode, long typeCode) const;

    static VehicleComposition findVcByCode(const QHash<long, VehicleComposition> &compositions, long code);
    /// The first of exactly that name.
    static VehicleComposition findVcByName(const QHash<long, VehicleComposition> &compositions,
                                           const QString &name);
    /// The codes in ascending order.
    static QList<long> vcCodeList(const QHash<long, VehicleComposition> &compositions);
    /// The names in ascending order of codes.
    static QStringList vcNameList(const QHash<long, VehicleComposition> &compositions);
    /// A copy that the caller owns.
    std::unique_ptr<VehicleComposition> clone() const { return std::make_unique<VehicleComposition>(*this); }

    long vehicleConsCode = 0;
    QString name;
    bool isDefault = false;
    QList<VehicleConsDetail> mlDetail;
};

/// The compositions of the process's store by code; the host fills it from
/// DBTools::selectVehicleConstitutent.
extern MORASTORE_EXPORT QHash<long, VehicleComposition> &ghVehicleComposition;
