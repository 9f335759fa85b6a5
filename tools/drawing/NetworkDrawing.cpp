#include "tools/drawing/NetworkDrawing.h"

#include "model/GeometryLine.h"
#include "model/Words.h"
#include "tools/drawing/Shapes.h"
#include "tools/kinds/Roads.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace moratools {

using shapes::lineOf;

namespace {

const QColor kPaper(0xfa, 0xf9, 0xf6);
const QColor kInk(0x2f, 0x36, 0x40);
const QColor kFaintInk(0x7b, 0x83, 0x8d);
const QColor kMarking(0xff, 0xff, 0xff);
const QColor kBorder(0x5c, 0x64, 0x6f);
const QColor kJunction(0xe2, 0xe4, 0xe7);
const QColor kConnector(0x3d, 0x6e, 0xa5);

constexpr double kMargin = 28;     // pixels around the plan
constexpr double kHeader = 52;     // pixels for the title
constexpr double kFooter = 54;     // pixels for legend and scale bar
constexpr double kArrowLength = 4; // metres
constexpr double kArrowBeforeEnd = 6;

// Scales, in pixels per metre, from which a kind of detail can be told apart.
constexpr double kScaleForMarkings = 0.9;
constexpr double kScaleForSurfaces = 0.45;
/// Objects up to which a picture that can be magnified carries all detail.
constexpr int kLanesWithAllDetail = 6000;

/// Lane kinds of the dictionary and their colours.
struct KindColour {
    Words::Word kind;
    QColor colour;
};
const KindColour kColours[] = {
    {Words::MotorizedLane, QColor(0x8b, 0x93, 0x9e)},    {Words::MixedLane, QColor(0xa8, 0xa0, 0x8c)},
    {Words::NonMotorizedLane, QColor(0x86, 0xb3, 0x8d)}, {Words::BusLane, QColor(0xcf, 0x86, 0x6a)},
    {Words::Sidewalk, QColor(0xdb, 0xcf, 0xb6)},
};

/// Rails, water: no road, nor lanes for anyone on roads.
const QColor kNoRoad(0xc9, 0xd6, 0xe0);

QColor colourOf(const QString &kind) {
    if (kind.isEmpty())
        return kNoRoad;
    for (const KindColour &entry : kColours) {
        if (entry.kind.names(kind))
            return entry.colour;
    }
    return QColor(0xb0, 0x9c, 0xc0);
}

QRectF boundsOf(const GeometryLine &line, QRectF bounds, bool &any) {
    for (const GeometryPoint &point : line) {
        if (!any)
            bounds = QRectF(point.x, point.y, 0, 0);
        any = true;
        bounds.setLeft(std::min(bounds.left(), point.x));
        bounds.setRight(std::max(bounds.right(), point.x));
        bounds.setTop(std::min(bounds.top(), point.y));
        bounds.setBottom(std::max(bounds.bottom(), point.y));
    }
    return bounds;
}

/// A line width in metres that is never thinner than `pixels` on the picture.
double atLeast(double metres, double pixels, double pixelsPerMetre) {
    return std::max(metres, pixels / pixelsPerMetre);
}

/// A round length (1, 2 or 5 times a power of ten, in metres) of about `pixels`.
double roundLength(double pixels, double pixelsPerMetre) {
    const double metres = pixels / pixelsPerMetre;
    const double power = std::pow(10.0, std::floor(std::log10(metres)));
    for (const double step : {5.0, 2.0, 1.0}) {
        if (step * power <= metres)
            return step * power;
    }
    return power;
}

QFont fontOf(double pixels, bool bold) {
    QFont font(QStringLiteral("sans-serif"));
    font.setPixelSize(int(pixels));
    font.setBold(bold);
    return font;
}

} // namespace

NetworkDrawing::NetworkDrawing(const NetworkObjects &network, const std::vector<Marks> &marks)
    : mTraffic(network), mTitle(network.record.name) {
    mJunctions.setFillRule(Qt::WindingFill);
    mArrows.setFillRule(Qt::WindingFill);
    int lanes = 0;
    double length = 0;
    bool any = false;
    // Roads lead over the others.
    for (const bool roads : {false, true}) {
        for (const auto &link : network.links) {
            if (isRoad(*link) == roads)
                addLink(*link);
        }
    }
    for (const auto &link : network.links) {
        lanes += link->mlLane.size();
        if (shapes::isOnPlan({link->length}))
            length += link->length;
        mExtent = boundsOf(lineOf(link->leftBreakPointsJson), mExtent, any);
        mExtent = boundsOf(lineOf(link->rightBreakPointsJson), mExtent, any);
    }
    for (const auto &connector : network.connectors)
        addConnector(*connector);
    mSummary =
        QStringLiteral("%1 links, %2 lanes, %3 connectors, %4 km")
            .arg(QLocale().toString(network.links.size()), QLocale().toString(lanes),
                 QLocale().toString(network.connectors.size()), QString::number(length / 1000, 'f', 1));
    if (mExtent.width() < 1 || mExtent.height() < 1)
        mExtent.adjust(-1, -1, 1, 1);
    mMarks.emplace(marks, mExtent);
}

NetworkDrawing::LaneKind &NetworkDrawing::kindOf(const QString &name) {
    const auto known = mKindNumbers.constFind(name);
    if (known != mKindNumbers.cend())
        return mKinds[*known];
    mKindNumbers.insert(name, mKinds.size());
    mKinds.push_back({name, colourOf(name), 0, {}, {}});
    mKinds.back().surface.setFillRule(Qt::WindingFill);
    return mKinds.back();
}

QStringList NetworkDrawing::leftOut() const {
    constexpr int named = 10;
    QStringList lines = mTraffic.leftOut() + mMarks->leftOut();
    if (mLinksLeftOut.isEmpty())
        return lines;
    QStringList ids;
    for (const long id : mLinksLeftOut.mid(0, named))
        ids.append(QString::number(id));
    lines.prepend(QStringLiteral("%1 links without a geometry on the plan: %2%3")
                      .arg(QString::number(mLinksLeftOut.size()), ids.join(QStringLiteral(", ")),
                           mLinksLeftOut.size() > named ? QStringLiteral(", ...") : QString()));
    return lines;
}

void NetworkDrawing::addLink(const Link &link) {
    bool isDrawn = false;
    const bool isRoad = moratools::isRoad(link);
    for (const Lane *lane : link.mlLane) {
        LaneKind &kind = kindOf(isRoad ? lane->actionType : QString());
        const GeometryLine left = lineOf(lane->leftBreakPointsJson);
        const GeometryLine right = lineOf(lane->rightBreakPointsJson);
        const GeometryLine centre = lineOf(lane->centerLinePointsJson);
        ++kind.count;
        isDrawn = isDrawn || centre.size() >= 2;
        shapes::addArea(kind.surface, left, right);
        shapes::addLine(kind.axis, centre);
        if (!isRoad)
            continue;
        addArrow(centre, lane->width);
        shapes::addLine(lane == link.mlLane.last() ? mEdges : mDividers, left);
        if (lane == link.mlLane.first())
            shapes::addLine(mEdges, right);
    }
    if (!isDrawn)
        mLinksLeftOut.append(link.linkID);
}

void NetworkDrawing::addArrow(const GeometryLine &centre, double width) {
    if (geometry::length(centre) > 2 * (kArrowBeforeEnd + kArrowLength))
        shapes::addArrow(mArrows, centre, kArrowBeforeEnd, kArrowLength,
                         shapes::isOnPlan({width}) ? std::min(1.3, std::abs(width) * 0.6) : 1.3);
}

void NetworkDrawing::addConnector(const Connector &connector) {
    // With a single lane connector the stored borders are its own: its curve runs halfway between them.
    const GeometryLine left = lineOf(connector.leftBreakPointsJson);
    const GeometryLine right = lineOf(connector.rightBreakPointsJson);
    const bool bordersAreItsOwn = connector.mlLaneConnector.size() == 1 && left.size() == right.size();
    shapes::addArea(mJunctions, left, right);
    for (const LaneConnector *laneConnector : connector.mlLaneConnector) {
        GeometryLine curve = lineOf(laneConnector->centerLinePointsJson);
        if (curve.size() < 2 && bordersAreItsOwn)
            curve = geometry::midway(left, right);
        if (curve.size() < 2)
            curve = geometry::turn(lineOf(laneConnector->mpStartLane->centerLinePointsJson),
                                   lineOf(laneConnector->mpEndLane->centerLinePointsJson));
        shapes::addLine(mConnectors, curve);
    }
}

QSizeF NetworkDrawing::sizeFor(double longSide) const {
    const double scale = (longSide - 2 * kMargin) / std::max(mExtent.width(), mExtent.height());
    // Room for title and legend, however narrow the network is.
    const double width = std::max(mExtent.width() * scale + 2 * kMargin, 640.0);
    return {width, mExtent.height() * scale + 2 * kMargin + headerHeight(width) + kFooter};
}

double NetworkDrawing::headerHeight(double width) const {
    return kHeader + mTraffic.legendHeight(width - 2 * kMargin);
}

void NetworkDrawing::paint(QPainter &painter, const QSizeF &size, bool zoomable) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(QPointF(), size), kPaper);
    const double header = headerHeight(size.width());
    const QRectF plan(kMargin, kMargin + header, size.width() - 2 * kMargin,
                      size.height() - 2 * kMargin - header - kFooter);
    const double pixelsPerMetre = std::min(plan.width() / mExtent.width(), plan.height() / mExtent.height());
    painter.save();
    painter.translate(plan.center());
    painter.scale(pixelsPerMetre, -pixelsPerMetre);
    painter.translate(-mExtent.center());
    paintNetwork(painter, pixelsPerMetre, zoomable);
    mTraffic.paint(painter, pixelsPerMetre);
    mMarks->paint(painter, pixelsPerMetre);
    painter.restore();
    mTraffic.paintLegend(painter, QPointF(kMargin, kMargin + kHeader - 8), size.width() - 2 * kMargin);
    paintLegend(painter, size, pixelsPerMetre);
}

void NetworkDrawing::paintNetwork(QPainter &painter, double pixelsPerMetre, bool zoomable) const {
    int lanes = 0;
    for (const LaneKind &kind : mKinds)
        lanes += kind.count;
    const bool allDetail = zoomable && lanes <= kLanesWithAllDetail;
    const bool surfaces = allDetail || pixelsPerMetre >= kScaleForSurfaces;
    const bool markings = allDetail || pixelsPerMetre >= kScaleForMarkings;

    QColor curve = kConnector;
    curve.setAlpha(surfaces ? 150 : 90);
    const QPen connectorPen(curve, atLeast(0.3, surfaces ? 0.6 : 0.35, pixelsPerMetre), Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin);
    if (surfaces)
        painter.fillPath(mJunctions, kJunction);
    else
        painter.strokePath(mConnectors, connectorPen);
    for (const LaneKind &kind : mKinds) {
        // Where a lane is thinner than a pixel its axis keeps it visible.
        if (surfaces)
            painter.fillPath(kind.surface, kind.colour);
        if (pixelsPerMetre * 3.2 < 1.6)
            painter.strokePath(kind.axis, QPen(kind.colour.darker(125), 0.9 / pixelsPerMetre, Qt::SolidLine,
                                               Qt::RoundCap, Qt::RoundJoin));
    }
    if (markings) {
        painter.strokePath(mEdges,
                           QPen(kBorder, atLeast(0.18, 0.5, pixelsPerMetre), Qt::SolidLine, Qt::FlatCap));
        const double width = atLeast(0.15, 0.5, pixelsPerMetre);
        QPen dashes(kMarking, width, Qt::CustomDashLine, Qt::FlatCap);
        dashes.setDashPattern({3 / width, 4.5 / width});
        painter.strokePath(mDividers, dashes);
        painter.fillPath(mArrows, kMarking);
    }
    if (surfaces)
        painter.strokePath(mConnectors, connectorPen);
}

void NetworkDrawing::paintLegend(QPainter &painter, const QSizeF &size, double pixelsPerMetre) const {
    painter.setPen(kInk);
    painter.setFont(fontOf(22, true));
    const double width = size.width() - 2 * kMargin;
    painter.drawText(QPointF(kMargin, kMargin + 18),
                     QFontMetricsF(painter.font()).elidedText(mTitle, Qt::ElideRight, width));
    painter.setPen(kFaintInk);
    painter.setFont(fontOf(14, false));
    painter.drawText(QPointF(kMargin, kMargin + 40), mSummary);

    const double baseline = size.height() - kMargin;
    double x = mMarks->paintLegend(painter, QPointF(kMargin, baseline), kInk);
    for (const LaneKind &kind : mKinds) {
        // What is beside the picture nobody sees.
        if (x > size.width())
            break;
        const QString label = QStringLiteral("%1 (%2)").arg(
            kind.name.isEmpty() ? QStringLiteral("no road") : kind.name, QLocale().toString(kind.count));
        painter.fillRect(QRectF(x, baseline - 11, 22, 12), kind.colour);
        painter.setPen(kInk);
        painter.drawText(QPointF(x + 28, baseline), label);
        x += 28 + QFontMetricsF(painter.font()).horizontalAdvance(label) + 22;
    }
    paintScaleBar(painter, QPointF(size.width() - kMargin, baseline - 26), pixelsPerMetre);
}

void NetworkDrawing::paintScaleBar(QPainter &painter, const QPointF &end, double pixelsPerMetre) const {
    const double metres = roundLength(180, pixelsPerMetre);
    const double pixels = metres * pixelsPerMetre;
    const QString label =
        metres >= 1000 ? QStringLiteral("%1 km").arg(metres / 1000) : QStringLiteral("%1 m").arg(metres);
    const QPointF start = end - QPointF(pixels, 0);
    painter.setPen(QPen(kInk, 1.5, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(start, end);
    painter.drawLine(start - QPointF(0, 5), start + QPointF(0, 5));
    painter.drawLine(end - QPointF(0, 5), end + QPointF(0, 5));
    const double width = QFontMetricsF(painter.font()).horizontalAdvance(label);
    painter.drawText(QPointF(start.x() - 10 - width, end.y() + 5), label);
}

} // namespace moratools
