#pragma once

#include "model/NetLists.h"
#include "tools/sumo/export/MadeElement.h"
#include "tools/sumo/export/Names.h"

#include <QHash>
#include <QSet>

namespace moratools {

/// Vehicle types and compositions as SUMO has them.
///
/// Of the standard catalogue only what something drives or is restricted to is exported. A figure's deviation has no place
/// but that of the speed, which is one of the speed that a driver wants.
class ExportedVehicles {
public:
    /// Gives types and compositions their ids. `network` must outlive this object.
    /// `classes` are the vehicle classes of types that came from SUMO, by name; of the others their name tells.
    ExportedVehicles(const NetLists &network, QHash<QString, QString> classes, Names &names);

    /// The id of the type of that code; empty where there is none.
    QString typeId(long code);
    /// What vehicles of a composition are of: a distribution, or its type where it has only one. Empty where it has none.
    QString compositionId(long code);
    /// The vehicle classes in a composition.
    QSet<QString> classesIn(long compositionCode) const;
    /// The type of buses on lines: that of this name, or else of the standard catalogue.
    QString busTypeId(const QString &name);

    /// `<vType>`s and `<vTypeDistribution>`s: those that were asked for so far, and all that are not of the catalogue.
    std::vector<MadeElement> elements() const;

private:
    static constexpr long kBus = 3;           // of the standard catalogue
    static constexpr long kLastStandard = 12; // of the standard catalogue

    QString classOf(const VehicleType &type) const;
    MadeElement elementOf(const VehicleType &type) const;
    MadeElement elementOf(const VehicleComposition &composition) const;

    const NetLists &mNetwork;
    QHash<QString, QString> mClasses;
    Names &mNames;
    QHash<long, const VehicleType *> mTypes;
    QHash<long, const VehicleComposition *> mCompositions;
    QSet<long> mUsedTypes;
    QSet<long> mUsedCompositions;
};

} // namespace moratools
