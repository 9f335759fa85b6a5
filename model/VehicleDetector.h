#pragma once

#include "MoraStoreExport.h"

#include <QList>
#include <QString>

#include <memory>

class Net;
class SpecialWords;

/// A loop on a lane of a link, or on a lane-to-lane path of a connector, that serves a phase of a signal
/// group.
class MORASTORE_EXPORT VehicleDetector {
public:
    /// Length and kind follow the scale of gNet and gSpecialWords at this moment, or the scale of `net` and `words`.
    VehicleDetector();
    VehicleDetector(const Net &net, const SpecialWords &words);

    /// Whether toLaneNumber is negative; roadType plays no part.
    bool isOnLink() const { return toLaneNumber < 0; }
    /// Whether the code is in the list; an empty list holds none.
    bool hasVehiType(long code) const { return mlVehiTypeCode.contains(code); }
    /// A copy that the caller owns.
    std::unique_ptr<VehicleDetector> clone() const { return std::make_unique<VehicleDetector>(*this); }

    long vehicleDetectorId = 0;
    QString name;
    long signalGroupID = 0;
    int phaseNumber = 0;
    long roadId = 0;                        ///< link or connector
    QString roadType = QStringLiteral("L"); ///< "L": link
    int laneNumber = 0;                     ///< on a connector the lane it starts from
    int toLaneNumber = -1;                  ///< on a connector the lane it leads to
    double distToTerminal = 0;              ///< metres to the end of the road
    double length;                          ///< metres; at first one scene unit
    QString type;                           ///< display word; at first the standard detector
    int maxGreen = 120;                     ///< seconds
    QList<long> mlVehiTypeCode;             ///< the vehicle types that it registers
};
