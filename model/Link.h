#pragma once

#include "Lane.h"
#include "MoraStoreExport.h"
#include "NetIndex.h"
#include "Node.h"
#include "OwningList.h"
#include "StoredJson.h"
#include "Vertex.h"

#include <QString>

#include <memory>

class SpecialWords;

/// A directed road section. It owns its end nodes, vertices and lanes.
class MORASTORE_EXPORT Link {
public:
    Link() = default;
    /// Deletes nodes, vertices and lanes.
    ~Link();

    /// A copy that the caller owns, of the same id, with copies of the nodes, vertices and lanes, of the same
    /// ids. None is in a network's tables. Nodes stand on the copies of the vertices; one that stands on a
    /// vertex of another link goes on to do so.
    std::unique_ptr<Link> clone() const;
    Link &operator=(const Link &) = delete;

    /// Appends one lane per width (metres), numbered by its place in `widths`, with ids drawn from the open
    /// store whose network has the link, or from gDB while none has. When the store gives no id the lanes made so far stay, and the failure is shown in a message box under a
    /// QApplication and written to the log "Link" elsewhere.
    void createLanes(const QList<double> &widths);
    /// The same for the link's own number and width of lanes; a fraction of a lane counts as a lane.
    void createLanes();

    /// Sum of the lanes' widths; without lanes their number times their width. Metres.
    double width() const;

    /// Sets `length` to that of the line through the vertices in the plane, metres. Heights do not count:
    /// positions along a link are measured in the plane, and not every store keeps heights.
    void calcuLength();

    long linkID = 0;
    long roadId = 0;
    QString linkName;
    double laneNumber = 0;  ///< what createLanes() makes, as the next one; kept by the host
    double laneWidth = 0;   ///< metres
    QString laneColor;      ///< six hexadecimal digits, red, green, blue: CCCCCC
    QString linkType;       ///< display word
    QString storedLinkType; ///< as a read found it, where the displayed word would be written otherwise
    double length = 0;
    double curvature = 0; ///< for the host, as the next one; 1 in new connectors
    double nonLinearCoefficient = 0;
    double linkSaturationFlow = 0; ///< vehicles per hour
    double linkTrafficFlow = 0;    ///< vehicles per hour
    double desiredSpeed = 0;       ///< km/h
    double limitSpeed = 0;         ///< km/h
    double minSpeed = 0;           ///< km/h
    double addValue = 0;
    StoredJson centerLinePointsJson; ///< the geometry objects hold {"data":[{"x":..,"y":..,"z":..}, ...]}
    StoredJson leftBreakPointsJson;
    StoredJson rightBreakPointsJson;
    StoredJson otherAttrsJson;   ///< the host's
    Node *mpStartNode = nullptr; ///< owned
    Node *mpEndNode = nullptr;   ///< owned
    OwningList<Vertex> mlVertex; ///< from start to end; what is edited: updateGeometry() makes the shapes
    OwningList<Lane> mlLane;     ///< from right to left

    /// The network whose tables have the object; null while none has.
    Net *net() const { return mPlace.net(); }

private:
    friend class NetIndex<Link>;
    Link(const Link &) = default;

    bool appendLane(int serialNumber, double width, const QString &actionType);
    QString word(const QString &key) const;
    /// What drives on the lanes, by the link's type.
    QString actionTypeOfLanes() const;
    /// @{ Of the open store whose network has the link; of the process's store while none has.
    const SpecialWords &words() const;
    bool nextLaneId(long &id) const;
    /// @}

    NetIndex<Link>::Place mPlace;
};
