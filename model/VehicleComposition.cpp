#include "VehicleComposition.h"

#include <algorithm>

bool VehicleComposition::exits(long consCode, long typeCode) const {
    return std::any_of(mlDetail.begin(), mlDetail.end(), [=](const VehicleConsDetail &detail) {
        return detail.vehicleConsCode == consCode && detail.vehicleTypeCode == typeCode;
    });
}

VehicleComposition VehicleComposition::findVcByCode(const QHash<long, VehicleComposition> &compositions,
                                                    long code) {
    return compositions.value(code);
}

VehicleComposition VehicleComposition::findVcByName(const QHash<long, VehicleComposition> &compositions,
                                                    const QString &name) {
    for (const VehicleComposition &composition : compositions) {
        if (composition.name == name)
            return composition;
    }
    return {};
}

QList<long> VehicleComposition::vcCodeList(const QHash<long, VehicleComposition> &compositions) {
    QList<long> codes = compositions.keys();
    std::sort(codes.begin(), codes.end());
    return codes;
}

QStringList VehicleComposition::vcNameList(const QHash<long, VehicleComposition> &compositions) {
    QStringList names;
    for (const long code : vcCodeList(compositions))
        names.append(compositions.value(code).name);
    return names;
}
