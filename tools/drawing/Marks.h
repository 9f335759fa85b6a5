#pragma once

#include "model/GeometryLine.h"
#include "tools/MoraToolsExport.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <vector>

class QPainter;

namespace moratools {

/// Places of one meaning that a picture marks: with rings, and with lines along roads.
struct Marks {
    QString name; ///< in the legend
    QColor colour;
    std::vector<QPointF> places;     ///< metres
    std::vector<GeometryLine> lines; ///< metres
};

/// The marks on a plan. Rings are as large and lines as wide at every scale, above all else, the first marks lowest.
class MarkLayer {
public:
    /// Those outside of `extent`, metres, are left out.
    MarkLayer(std::vector<Marks> marks, const QRectF &extent);

    /// Paints on a plan in metres, y upwards.
    void paint(QPainter &painter, double pixelsPerMetre) const;
    /// Paints the legend on a line, pixels; returns where it ends.
    double paintLegend(QPainter &painter, const QPointF &start, const QColor &ink) const;
    /// A line for all marks of a meaning that are left out.
    const QStringList &leftOut() const { return mLeftOut; }

private:
    std::vector<Marks> mMarks;
    QStringList mLeftOut;
};

} // namespace moratools
