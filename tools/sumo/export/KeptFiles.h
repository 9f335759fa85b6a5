#pragma once

#include "tools/sumo/export/ExportedDemand.h"
#include "tools/sumo/export/ExportedSignals.h"
#include "tools/sumo/kept/Digests.h"
#include "tools/sumo/kept/KeptList.h"

namespace moratools {

/// The files of demand and additional objects that came with a network from SUMO, as an import has kept them.
class KeptFiles {
public:
    /// `kept` is what the network's record keeps; `taken` are names that none of the files may have.
    KeptFiles(const QJsonObject &kept, const QSet<QString> &taken);

    /// @{ Their names, in the order in which they were read.
    QStringList additional() const { return names(false); }
    QStringList routes() const { return names(true); }
    /// @}

    /// The signal programmes in them, as "SIGNAL/PROGRAMME".
    const QSet<QString> &programmes() const { return mProgrammes; }
    /// Ids of the routes that stay, whoever drives them.
    const QSet<QString> &routeIds() const { return mRouteIds; }
    /// The vehicle classes of the types in them, by their ids.
    const QHash<QString, QString> &vehicleClasses() const { return mVehicleClasses; }
    /// How most of their vehicles depart and arrive; what they say nothing of is not in it. Empty without vehicles.
    const ExportedDemand::Manner &manner() const { return mManner; }
    /// Whether there is anything of the demand in them.
    bool hasDemand() const { return mHasDemand; }
    /// Whether there are any vehicles.
    bool hasVehicles() const { return mVehicles > 0; }
    /// The type of most vehicles that stop at bus stops; empty without any.
    const QString &busType() const { return mBusType; }

    /// What the files are written from.
    struct Contents {
        const ExportedRoads &roads;
        const ExportedSignals &controls;
        const Digests &digests;
        bool withDemand; ///< vehicles, routes and persons as they stood; else without any
    };
    /// Writes them into a folder: each element as it stood, unless the objects that were made of it have changed; those
    /// are taken from `made`, and what is gone is left away. Takes out of `made` all that the files have.
    /// Elements on edges that are not exported are left out. Throws `Failure`.
    void write(const QString &folder, const Contents &contents, std::vector<MadeElement> &made,
               LeftOut &leftOut) const;

private:
    struct File {
        QString name;
        bool hasRoutes;
        KeptList elements;
    };

    QStringList names(bool hasRoutes) const;
    void look(const KeptElement &element);

    std::vector<File> mFiles;
    QSet<QString> mProgrammes;
    QSet<QString> mRouteIds;
    QHash<QString, QString> mVehicleClasses;
    QHash<QString, QHash<QString, int>> mManners; ///< by attribute and value, how often
    bool mHasDemand = false;
    int mVehicles = 0;
    ExportedDemand::Manner mManner;
    QHash<QString, int> mBusTypes;
    QString mBusType;
};

} // namespace moratools
