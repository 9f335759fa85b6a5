#pragma once

#include "MoraStoreExport.h"
#include "NetIndex.h"
#include "StoredJson.h"

#include <QList>
#include <QPair>
#include <QString>

#include <memory>

struct GuideArrow;

/// A lane of a link.
class MORASTORE_EXPORT Lane {
public:
    Lane() = default;

    /// Takes the guide arrows of that id out of the list, without deleting them.
    void removeGuideArrow(long guideArrowID);

    /// A copy that the caller owns, of the same id and in no network's tables. The arrows are the same.
    std::unique_ptr<Lane> clone() const;
    Lane &operator=(const Lane &) = delete;

    long laneID = 0;
    long linkID = 0;
    int serialNumber = 0; ///< position across the link, from 1, the rightmost
    double width = 0;     ///< metres
    QString expectTravelDirection;
    QString actionType;              ///< kind of lane, one of the dictionary's words
    StoredJson centerLinePointsJson; ///< the geometry objects hold {"data":[{"x":..,"y":..,"z":..}, ...]}
    StoredJson leftBreakPointsJson;
    StoredJson rightBreakPointsJson;
    StoredJson otherAttrsJson;                  ///< the host's
    QList<GuideArrow *> mlGuideArrow;           ///< not owned
    QList<QPair<long, QString>> mlLimitVehicle; ///< code and name of each restricted vehicle type

    /// The network whose tables have the object; null while none has.
    Net *net() const { return mPlace.net(); }

private:
    friend class NetIndex<Lane>;
    Lane(const Lane &) = default;

    NetIndex<Lane>::Place mPlace;
};
