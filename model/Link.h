#pragma once

#include "Lane.h"
#include "MoraStoreExport.h"
#include "Node.h"
#include "OwningList.h"
#include "StoredJson.h"
#include "Vertex.h"

#include <QString>

/// A directed road section. It owns its end nodes, vertices and lanes.
class MORASTORE_EXPORT Link {
public:
    Link() = default;
    /// Deletes nodes, vertices and lanes, and leaves the tables of gNet.
    ~Link();

    /// Appends one lane per width (metres), numbered by its place in `widths`, with ids drawn from gDB. When
    /// the store gives no id the lanes made so far stay, and the failure is shown in a message box under a
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
    double laneNumber = 0;
    double laneWidth = 0; ///< metres
    QString laneColor;
    QString linkType;       ///< display word
    QString storedLinkType; ///< as a whole load found it, where the displayed word would be written otherwise
    double length = 0;
    double curvature = 0;
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
    OwningList<Vertex> mlVertex; ///< from start to end
    OwningList<Lane> mlLane;

private:
    Q_DISABLE_COPY(Link)

    bool appendLane(int serialNumber, double laneWidth, const QString &actionType);
    /// Asks the open store.
    static bool nextLaneId(long &id);
};
