#pragma once

#include "model/GeometryLine.h"
#include "tools/kinds/NetworkObjects.h"

#include <QColor>
#include <QPainterPath>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <vector>

class QPainter;

namespace moratools {

/// What stands on the roads of a plan: signal lamps, departure and decision points, detectors, stations and
/// bus lines, zones and speed areas. Symbols never get smaller than they can be seen.
class TrafficLayer {
public:
    explicit TrafficLayer(const NetworkObjects &network);

    /// Paints on a plan in metres, y upwards.
    void paint(QPainter &painter, double pixelsPerMetre) const;

    /// The height in pixels that the legend takes in `width`; 0 when there is nothing to explain.
    double legendHeight(double width) const;
    void paintLegend(QPainter &painter, const QPointF &topLeft, double width) const;

    /// What has no place on the plan, a line for each kind.
    QStringList leftOut() const;

private:
    enum class Shape { Disc, Square, Diamond, Arrow, Cross };

    struct Mark {
        QPointF position;
        double direction = 0; ///< degrees, anticlockwise from the x axis
        QColor colour;        ///< invalid: that of the kind
    };
    struct Kind {
        QString name;
        QColor colour;
        Shape shape;
        double size;   ///< metres
        double pixels; ///< at least
        std::vector<Mark> marks;
        int marksOfOne = 1; ///< marks for each object
        int leftOut = 0;    ///< marks without a place

        void add(const Mark &mark);
    };
    struct Band {
        QString name;
        QColor colour;
        double width; ///< metres
        int count = 0;
        QPainterPath path;
        int leftOut = 0;
    };
    struct LegendPlace {
        double x;
        double y;
    };

    void addBands(const NetworkObjects &network);
    void addDemand(const NetworkObjects &network);
    void addDevices(const NetworkObjects &network);
    void addStretch(Band &band, long linkId, int laneNumber, double start, double length);
    static void addStation(Band &band, const BusStation &station);
    void noteLeftOut();
    static QPainterPath outlineOf(Shape shape, double size);
    std::vector<LegendPlace> legendPlaces(double width) const;
    QStringList legendLabels() const;

    QHash<long, const Link *> mLinks;
    QStringList mLeftOut;
    std::vector<Band> mBands;
    std::vector<Kind> mKinds;
};

} // namespace moratools
