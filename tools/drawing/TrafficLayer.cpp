#include "tools/drawing/TrafficLayer.h"

#include "model/Words.h"
#include "tools/drawing/Shapes.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace moratools {

using shapes::lineOf;

namespace {

const QColor kInk(0x2f, 0x36, 0x40);
constexpr double kSmallDevice = 5; // pixels across
constexpr double kSmallPoint = 10;
constexpr double kThinnestBand = 2; // pixels
constexpr double kLegendLine = 20;  // pixels, as the next two
constexpr double kLegendSymbol = 12;
constexpr double kLegendGap = 20;
constexpr int kStepsOfStretch = 16;

QFont legendFont() {
    QFont font(QStringLiteral("sans-serif"));
    font.setPixelSize(14);
    return font;
}

double directionAt(const GeometryLine &line, int index) {
    return qRadiansToDegrees(
        std::atan2(line[index + 1].y - line[index].y, line[index + 1].x - line[index].x));
}

/// The colour that a lamp shows first.
QColor colourOf(const SignalLamp &lamp) {
    const QString word =
        lamp.mpPhase && !lamp.mpPhase->mlColor.isEmpty() ? lamp.mpPhase->mlColor.first().color : QString();
    if (Words::Red.names(word))
        return QColor(0xd6, 0x2f, 0x2f);
    if (Words::Yellow.names(word))
        return QColor(0xf2, 0xb7, 0x05);
    if (Words::Green.names(word))
        return QColor(0x1f, 0xa5, 0x4a);
    return QColor(0x80, 0x80, 0x80);
}

} // namespace

TrafficLayer::TrafficLayer(const NetworkObjects &network) {
    for (const auto &link : network.links)
        mLinks.insert(link->linkID, link.get());
    addBands(network);
    addDemand(network);
    addDevices(network);
    noteLeftOut();
    mBands.erase(
        std::remove_if(mBands.begin(), mBands.end(), [](const Band &band) { return band.count == 0; }),
        mBands.end());
    mKinds.erase(
        std::remove_if(mKinds.begin(), mKinds.end(), [](const Kind &kind) { return kind.marks.empty(); }),
        mKinds.end());
}

void TrafficLayer::noteLeftOut() {
    const auto note = [this](const QString &name, int count) {
        if (count > 0)
            mLeftOut.append(
                QStringLiteral("%1 %2s without a place on the plan").arg(QString::number(count), name));
    };
    for (const Band &band : mBands)
        note(band.name, band.leftOut);
    for (const Kind &kind : mKinds)
        note(kind.name, kind.leftOut / kind.marksOfOne + kind.leftOut % kind.marksOfOne);
}

void TrafficLayer::Kind::add(const Mark &mark) {
    if (shapes::isOnPlan({mark.position.x(), mark.position.y()}))
        marks.push_back(mark);
    else
        ++leftOut;
}

/// A piece of a lane's centre line; laneNumber 0 stands for the middle of the link.
void TrafficLayer::addStretch(Band &band, long linkId, int laneNumber, double start, double length) {
    const Link *link = mLinks.value(linkId);
    if (!link || laneNumber > link->mlLane.size())
        return;
    const GeometryLine line = lineOf(laneNumber > 0 ? link->mlLane.at(laneNumber - 1)->centerLinePointsJson
                                                    : link->centerLinePointsJson);
    if (line.size() < 2 || link->length <= 0)
        return;
    if (!shapes::isOnPlan({start, length, link->length})) {
        ++band.leftOut;
        return;
    }
    GeometryLine piece;
    for (int i = 0; i <= kStepsOfStretch; ++i)
        piece.push_back(
            geometry::pointAt(line, std::min(1.0, (start + length * i / kStepsOfStretch) / link->length)));
    shapes::addLine(band.path, piece);
}

void TrafficLayer::addStation(Band &band, const BusStation &station) {
    const GeometryLine line = station.mpLink ? lineOf(station.mpLink->centerLinePointsJson) : GeometryLine();
    if (line.size() < 2)
        return;
    if (!shapes::isOnPlan({station.x, station.y, station.length})) {
        ++band.leftOut;
        return;
    }
    // Along the lane, which runs like the nearest piece of its link.
    int nearest = 0;
    const GeometryPoint here{station.x, station.y, 0};
    const auto away = [&](int i) {
        const GeometryPoint middle{(line[i].x + line[i + 1].x) / 2, (line[i].y + line[i + 1].y) / 2, 0};
        return geometry::distance(here, middle);
    };
    for (int i = 1; i + 1 < line.size(); ++i)
        nearest = away(i) < away(nearest) ? i : nearest;
    const double angle = qDegreesToRadians(directionAt(line, nearest));
    const QPointF half(std::cos(angle) * station.length / 2, std::sin(angle) * station.length / 2);
    band.path.moveTo(QPointF(here.x, here.y) - half);
    band.path.lineTo(QPointF(here.x, here.y) + half);
    ++band.count;
}

void TrafficLayer::addBands(const NetworkObjects &network) {
    const TrafficObjects &traffic = network.traffic;
    Band lines{QStringLiteral("bus line"), QColor(0x1d, 0x6f, 0xd1, 0x90), 1.2, 0, {}};
    for (const auto &line : traffic.busLines) {
        for (const Link *link : line->mlLink)
            addStretch(lines, link->linkID, 0, 0, link->length);
        ++lines.count;
    }
    Band areas{QStringLiteral("speed area"), QColor(0xf2, 0xc1, 0x4e, 0xa0), 2.4, 0, {}};
    for (const auto &area : traffic.speedAreas) {
        addStretch(areas, area->roadID, area->laneNumber, area->location, area->areaLength);
        ++areas.count;
    }
    Band works{QStringLiteral("road-work zone"), QColor(0xe8, 0x6a, 0x17, 0xc0), 2.6, 0, {}};
    for (const auto &zone : traffic.roadWorkZones) {
        for (const ZoneLane *lane : zone->mlLane)
            addStretch(works, zone->roadID, lane->laneNumber, zone->location, zone->zoneLength);
        ++works.count;
    }
    Band queues{QStringLiteral("queue counter"), QColor(0xb1, 0x3a, 0x8e, 0xa0), 1.6, 0, {}};
    for (const auto &counter : traffic.queueCounters) {
        addStretch(queues, counter->roadID, counter->laneNumber,
                   std::max(0.0, counter->distance - counter->maxQueueLength),
                   std::min(counter->distance, counter->maxQueueLength));
        ++queues.count;
    }
    Band stations{QStringLiteral("bus station"), QColor(0x0b, 0x3d, 0x91), 2.6, 0, {}};
    for (const auto &station : traffic.busStations)
        addStation(stations, *station);
    mBands = {lines, areas, works, queues, stations};
}

void TrafficLayer::addDemand(const NetworkObjects &network) {
    Kind departures{
        QStringLiteral("departure point"), QColor(0x0f, 0x8b, 0x6d), Shape::Arrow, 7, kSmallPoint, {}};
    for (const auto &point : network.traffic.departurePoints) {
        const Link *link = mLinks.value(point->linkID);
        const GeometryLine line = link ? lineOf(link->centerLinePointsJson) : GeometryLine();
        if (line.size() >= 2)
            departures.add({{line.front().x, line.front().y}, directionAt(line, 0), {}});
    }
    Kind decisions{
        QStringLiteral("decision point"), QColor(0x6a, 0x3d, 0x9a), Shape::Diamond, 3.5, kSmallPoint, {}};
    for (const auto &point : network.traffic.decisionPoints)
        decisions.add({{point->x, point->y}, 0, {}});
    mKinds.push_back(departures);
    mKinds.push_back(decisions);
}

void TrafficLayer::addDevices(const NetworkObjects &network) {
    const TrafficObjects &traffic = network.traffic;
    Kind lamps{QStringLiteral("signal lamp"), QColor(0xd6, 0x2f, 0x2f), Shape::Disc, 2, kSmallDevice, {}};
    for (const auto &lamp : traffic.signalLamps)
        lamps.add({{lamp->x, lamp->y}, 0, colourOf(*lamp)});
    Kind collectors{QStringLiteral("driving-data collector"),
                    QColor(0x12, 0xa5, 0xb8),
                    Shape::Square,
                    2,
                    kSmallDevice,
                    {}};
    for (const auto &collector : traffic.collectors)
        collectors.add({{collector->x, collector->y}, 0, {}});
    Kind travel{QStringLiteral("travel-time detector"),
                QColor(0x8a, 0x5a, 0x1c),
                Shape::Square,
                2.4,
                kSmallDevice,
                {}};
    travel.marksOfOne = 2;
    for (const auto &detector : traffic.travelDetectors) {
        travel.add({{detector->startX, detector->startY}, 0, {}});
        travel.add({{detector->teminalX, detector->teminalY}, 0, {}});
    }
    Kind accidents{
        QStringLiteral("accident zone"), QColor(0xc0, 0x10, 0x30), Shape::Cross, 5, kSmallPoint, {}};
    for (const auto &zone : traffic.accidentZones) {
        Band place{QString(), QColor(), 0, 0, {}};
        for (const ZoneLane *lane : zone->mlLane)
            addStretch(place, zone->roadId, lane->laneNumber, double(zone->location),
                       double(zone->zoneLength));
        accidents.leftOut += place.leftOut > 0 ? 1 : 0;
        if (!place.path.isEmpty())
            accidents.add({place.path.boundingRect().center(), 0, {}});
    }
    for (const Kind &kind : {lamps, collectors, travel, accidents})
        mKinds.push_back(kind);
}

QPainterPath TrafficLayer::outlineOf(Shape shape, double size) {
    const double half = size / 2;
    QPainterPath path;
    switch (shape) {
    case Shape::Disc:
        path.addEllipse(QPointF(), half, half);
        break;
    case Shape::Square:
        path.addRect(-half, -half, size, size);
        break;
    case Shape::Diamond:
        path.addPolygon(QPolygonF({{-half, 0}, {0, half}, {half, 0}, {0, -half}, {-half, 0}}));
        break;
    case Shape::Arrow:
        path.addPolygon(QPolygonF({{-half, half}, {half, 0}, {-half, -half}, {-half, half}}));
        break;
    case Shape::Cross:
        for (const double angle : {45.0, -45.0}) {
            QTransform turn;
            turn.rotate(angle);
            QPainterPath bar;
            bar.addRect(-half, -half / 4, size, half / 2);
            path.addPath(turn.map(bar));
        }
        path.setFillRule(Qt::WindingFill);
        break;
    }
    return path;
}

void TrafficLayer::paint(QPainter &painter, double pixelsPerMetre) const {
    for (const Band &band : mBands)
        painter.strokePath(band.path, QPen(band.colour, std::max(band.width, kThinnestBand / pixelsPerMetre),
                                           Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    const QPen outline(kInk, std::min(0.15, 0.6 / pixelsPerMetre));
    for (const Kind &kind : mKinds) {
        const QPainterPath shape = outlineOf(kind.shape, std::max(kind.size, kind.pixels / pixelsPerMetre));
        for (const Mark &mark : kind.marks) {
            painter.save();
            painter.translate(mark.position);
            painter.rotate(mark.direction);
            painter.fillPath(shape, mark.colour.isValid() ? mark.colour : kind.colour);
            painter.strokePath(shape, outline);
            painter.restore();
        }
    }
}

QStringList TrafficLayer::leftOut() const {
    return mLeftOut;
}

QStringList TrafficLayer::legendLabels() const {
    const auto label = [](const QString &name, std::size_t count) {
        return QStringLiteral("%1 (%2)").arg(name, QLocale().toString(count));
    };
    QStringList labels;
    for (const Band &band : mBands)
        labels.append(label(band.name, std::size_t(band.count)));
    for (const Kind &kind : mKinds)
        labels.append(label(kind.name, kind.marks.size() / std::size_t(kind.marksOfOne)));
    return labels;
}

std::vector<TrafficLayer::LegendPlace> TrafficLayer::legendPlaces(double width) const {
    const QFontMetricsF metrics(legendFont());
    std::vector<LegendPlace> places;
    double x = 0;
    double y = 0;
    for (const QString &label : legendLabels()) {
        const double needed = kLegendSymbol + 6 + metrics.horizontalAdvance(label) + kLegendGap;
        if (x > 0 && x + needed > width) {
            x = 0;
            y += kLegendLine;
        }
        places.push_back({x, y});
        x += needed;
    }
    return places;
}

double TrafficLayer::legendHeight(double width) const {
    const std::vector<LegendPlace> places = legendPlaces(width);
    return places.empty() ? 0 : places.back().y + kLegendLine;
}

void TrafficLayer::paintLegend(QPainter &painter, const QPointF &topLeft, double width) const {
    const std::vector<LegendPlace> places = legendPlaces(width);
    const QStringList labels = legendLabels();
    painter.setFont(legendFont());
    for (std::size_t i = 0; i < places.size(); ++i) {
        const QPointF at = topLeft + QPointF(places[i].x, places[i].y);
        const QPointF middle = at + QPointF(kLegendSymbol / 2, kLegendLine / 2);
        if (i < mBands.size()) {
            painter.fillRect(QRectF(middle.x() - kLegendSymbol / 2, middle.y() - 2, kLegendSymbol, 4),
                             mBands[i].colour);
        } else {
            const Kind &kind = mKinds[i - mBands.size()];
            painter.fillPath(outlineOf(kind.shape, kLegendSymbol - 2).translated(middle), kind.colour);
        }
        painter.setPen(kInk);
        painter.drawText(at + QPointF(kLegendSymbol + 6, kLegendLine - 5), labels.at(int(i)));
    }
}

} // namespace moratools
