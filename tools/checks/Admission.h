#pragma once

#include "tools/checks/Checked.h"

#include <QHash>

namespace moratools {

/// Who may drive where, as far as lanes say it: by their kind, and by the vehicle types that they are closed to.
class Admission {
public:
    /// Of the network, which must outlive this.
    explicit Admission(const Checked &checked);

    /// The vehicle type of that code; null when there is none.
    const VehicleType *type(long code) const { return mTypes.value(code); }
    /// The first one that is called a bus; null when there is none.
    const VehicleType *bus() const { return mBus; }

    /// Whether none of the lanes of a link may be used by vehicles of a type. A link without lanes is closed to none,
    /// and lanes of kinds that are not in the vocabulary are open.
    bool isClosed(const Link &link, const VehicleType &type) const;

private:
    QHash<long, const VehicleType *> mTypes;
    const VehicleType *mBus = nullptr;
};

} // namespace moratools
