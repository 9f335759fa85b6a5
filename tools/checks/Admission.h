#pragma once

#include "tools/checks/Checked.h"

#include <QHash>
#include <QPair>
#include <QSet>

namespace moratools {

/// Who may drive where, as far as a store says it: by the kinds of lanes, and by the vehicle types that lanes and
/// links are closed to.
class Admission {
public:
    /// Of the network, which must outlive this.
    explicit Admission(const Checked &checked);

    /// The vehicle type of that code; null when there is none.
    const VehicleType *type(long code) const { return mTypes.value(code); }
    /// The first one that is called a bus; null when there is none.
    const VehicleType *bus() const { return mBus; }

    /// Whether vehicles of a type may use a link on none of its lanes. A link without lanes is closed to those alone
    /// that are listed, and lanes of kinds that are not in the vocabulary are open.
    bool isClosed(const Link &link, const VehicleType &type) const;

private:
    void readClosedLinks(const Checked &checked);

    QSet<QPair<qint64, qint64>> mClosed; ///< link and code of the type
    QHash<long, const VehicleType *> mTypes;
    const VehicleType *mBus = nullptr;
};

} // namespace moratools
