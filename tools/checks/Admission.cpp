#include "tools/checks/Admission.h"

#include "model/Words.h"

#include <algorithm>

namespace moratools {

namespace {

// What is as wide is neither walked nor cycled: the widest cargo tricycles have 1.1 m, the narrowest cars 1.3 m. The
// names of types are the host's own and do not tell.
constexpr double kWidestCycle = 1.2; // metres

bool isForCyclesAlone(const Lane &lane) {
    return Words::NonMotorizedLane.names(lane.actionType) || Words::Sidewalk.names(lane.actionType);
}

bool isClosedTo(const Lane &lane, const VehicleType &type) {
    const bool isListed = std::any_of(
        lane.mlLimitVehicle.begin(), lane.mlLimitVehicle.end(),
        [&type](const QPair<long, QString> &limited) { return limited.first == type.vehicleTypeCode; });
    return isListed || (type.width > kWidestCycle && isForCyclesAlone(lane));
}

} // namespace

Admission::Admission(const Checked &checked) {
    readClosedLinks(checked);
    for (const auto &type : checked.network().traffic.vehicleTypes) {
        mTypes.insert(type->vehicleTypeCode, type.get());
        if (!mBus && Words::Bus.names(type->vehicleTypeName))
            mBus = type.get();
    }
}

/// Links have them as rows alone: no object of the model holds them.
void Admission::readClosedLinks(const Checked &checked) {
    const QString name = QStringLiteral("LinkLimitVehicle");
    const StoreReader &rows = checked.rows();
    const StoreTable *table = rows.table(name);
    const StoreColumn *link = table ? table->column(QStringLiteral("linkID")) : nullptr;
    const StoreColumn *type = table ? table->column(QStringLiteral("vehicleTypeCode")) : nullptr;
    if (!link || !type)
        return;
    const int linkAt = int(link - table->columns.constData());
    const int typeAt = int(type - table->columns.constData());
    rows.read(*table, *catalogue::find(name), checked.net(), StoreReader::Order::Canonical,
              [&](const StoreReader::Row &row) {
                  mClosed.insert({row[linkAt].toLongLong(), row[typeAt].toLongLong()});
              });
}

bool Admission::isClosed(const Link &link, const VehicleType &type) const {
    if (mClosed.contains(qMakePair(qint64(link.linkID), qint64(type.vehicleTypeCode))))
        return true;
    return !link.mlLane.isEmpty() &&
           std::all_of(link.mlLane.begin(), link.mlLane.end(),
                       [&type](const Lane *lane) { return isClosedTo(*lane, type); });
}

} // namespace moratools
