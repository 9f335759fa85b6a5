#include "tools/drawing/Marks.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace moratools {

namespace {

constexpr double kRadius = 11; // pixels: around the symbols of what stands there
constexpr double kWidth = 2.5;
constexpr double kLegendRadius = 5;

} // namespace

MarkLayer::MarkLayer(std::vector<Marks> marks, const QRectF &extent) : mMarks(std::move(marks)) {
    for (Marks &one : mMarks) {
        const auto end = std::remove_if(one.places.begin(), one.places.end(),
                                        // Numbers that are none are in no extent either.
                                        [&extent](const QPointF &place) { return !extent.contains(place); });
        const auto count = one.places.end() - end;
        one.places.erase(end, one.places.end());
        if (count > 0)
            mLeftOut.append(QStringLiteral("%1 places marked as %2, which are not on the plan")
                                .arg(QString::number(count), one.name));
    }
}

void MarkLayer::paint(QPainter &painter, double pixelsPerMetre) const {
    const double radius = kRadius / pixelsPerMetre;
    painter.setBrush(Qt::NoBrush);
    for (const Marks &one : mMarks) {
        painter.setPen(QPen(one.colour, kWidth / pixelsPerMetre));
        for (const QPointF &place : one.places)
            painter.drawEllipse(place, radius, radius);
    }
}

double MarkLayer::paintLegend(QPainter &painter, const QPointF &start, const QColor &ink) const {
    double x = start.x();
    painter.setBrush(Qt::NoBrush);
    for (const Marks &one : mMarks) {
        if (one.places.empty())
            continue;
        const QString label =
            QStringLiteral("%1 (%2)").arg(one.name, QLocale().toString(qint64(one.places.size())));
        painter.setPen(QPen(one.colour, kWidth));
        painter.drawEllipse(QPointF(x + 11, start.y() - 5), kLegendRadius, kLegendRadius);
        painter.setPen(ink);
        painter.drawText(QPointF(x + 28, start.y()), label);
        x += 28 + QFontMetricsF(painter.font()).horizontalAdvance(label) + 22;
    }
    return x;
}

} // namespace moratools
