#include "tools/drawing/Marks.h"

#include "tools/drawing/Shapes.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace moratools {

namespace {

constexpr double kRadius = 11; // pixels: around the symbols of what stands there
constexpr double kWidth = 2.5;
constexpr double kLineWidth = 4;
constexpr double kLegendRadius = 5;

} // namespace

MarkLayer::MarkLayer(std::vector<Marks> marks, const QRectF &extent) : mMarks(std::move(marks)) {
    for (Marks &one : mMarks) {
        const auto end = std::remove_if(one.places.begin(), one.places.end(),
                                        // Numbers that are none are in no extent either.
                                        [&extent](const QPointF &place) { return !extent.contains(place); });
        const auto isOff = [&extent](const GeometryLine &line) {
            return std::none_of(line.begin(), line.end(), [&extent](const GeometryPoint &point) {
                return extent.contains(QPointF(point.x, point.y));
            });
        };
        const auto lineEnd = std::remove_if(one.lines.begin(), one.lines.end(), isOff);
        const auto count = (one.places.end() - end) + (one.lines.end() - lineEnd);
        one.places.erase(end, one.places.end());
        one.lines.erase(lineEnd, one.lines.end());
        if (count > 0)
            mLeftOut.append(QStringLiteral("%1 places marked as %2, which are not on the plan")
                                .arg(QString::number(count), one.name));
    }
}

void MarkLayer::paint(QPainter &painter, double pixelsPerMetre) const {
    const double radius = kRadius / pixelsPerMetre;
    painter.setBrush(Qt::NoBrush);
    for (const Marks &one : mMarks) {
        painter.setPen(
            QPen(one.colour, kLineWidth / pixelsPerMetre, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QPainterPath path;
        for (const GeometryLine &line : one.lines)
            shapes::addLine(path, line);
        painter.drawPath(path);
        painter.setPen(QPen(one.colour, kWidth / pixelsPerMetre));
        for (const QPointF &place : one.places)
            painter.drawEllipse(place, radius, radius);
    }
}

double MarkLayer::paintLegend(QPainter &painter, const QPointF &start, const QColor &ink) const {
    double x = start.x();
    painter.setBrush(Qt::NoBrush);
    for (const Marks &one : mMarks) {
        const std::size_t count = one.places.size() + one.lines.size();
        if (count == 0)
            continue;
        const QString label = QStringLiteral("%1 (%2)").arg(one.name, QLocale().toString(qint64(count)));
        painter.setPen(QPen(one.colour, kWidth));
        painter.drawEllipse(QPointF(x + 11, start.y() - 5), kLegendRadius, kLegendRadius);
        painter.setPen(ink);
        painter.drawText(QPointF(x + 28, start.y()), label);
        x += 28 + QFontMetricsF(painter.font()).horizontalAdvance(label) + 22;
    }
    return x;
}

} // namespace moratools
