#pragma once

#include "MoraStoreExport.h"
#include "NetIndex.h"
#include "StoredJson.h"

#include <QList>
#include <QPair>
#include <QString>

struct GuideArrow;

/// A lane of a link.
class MORASTORE_EXPORT Lane {
public:
    Lane() = default;

    /// Takes the guide arrows of that id out of the list, without deleting them.
    void removeGuideArrow(long guideArrowID);

    long laneID = 0;
    long linkID = 0;
    int serialNumber = 0; ///< position across the link, from 1
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
    Q_DISABLE_COPY(Lane)

    NetIndex<Lane>::Place mPlace;
};
