#pragma once

#include "model/GeometryLine.h"
#include "tools/MoraToolsExport.h"
#include "tools/drawing/Marks.h"
#include "tools/drawing/TrafficLayer.h"
#include "tools/kinds/NetworkObjects.h"

#include <QColor>
#include <QHash>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class QPainter;

namespace moratools {

/// A plan of a network: lanes to scale and coloured by kind, with dividers and direction arrows where the
/// scale lets them be seen, the curves of the lane connectors, what stands on the roads, a title, a legend
/// and a scale bar; and marks on all of that.
class MORATOOLS_EXPORT NetworkDrawing {
public:
    explicit NetworkDrawing(const NetworkObjects &network, const std::vector<Marks> &marks = {});

    /// The size of the whole picture when its longer side is `longSide` pixels.
    QSizeF sizeFor(double longSide) const;
    /// Paints the plan into `size`. `zoomable` says that the viewer may magnify it (a vector picture), so
    /// that detail is worth its bytes.
    void paint(QPainter &painter, const QSizeF &size, bool zoomable) const;

    /// What the plan lacks since its geometry is missing or not on a plan: a line for each kind of object.
    QStringList leftOut() const;

private:
    struct LaneKind {
        QString name; ///< as the network has it
        QColor colour;
        int count = 0;
        QPainterPath surface; ///< outline of each lane, metres
        QPainterPath axis;    ///< centre line of each lane
    };

    void addLink(const Link &link);
    void addArrow(const GeometryLine &centre, double width);
    void addConnector(const Connector &connector);
    LaneKind &kindOf(const QString &name);

    void paintNetwork(QPainter &painter, double pixelsPerMetre, bool zoomable) const;
    void paintLegend(QPainter &painter, const QSizeF &size, double pixelsPerMetre) const;
    void paintScaleBar(QPainter &painter, const QPointF &end, double pixelsPerMetre) const;

    double headerHeight(double width) const;

    TrafficLayer mTraffic;
    std::optional<MarkLayer> mMarks; ///< once the extent is known
    QList<long> mLinksLeftOut;
    QString mTitle;
    QString mSummary;
    QRectF mExtent; ///< metres, y upwards
    std::vector<LaneKind> mKinds;
    QHash<QString, std::size_t> mKindNumbers; ///< by name; a store may name each lane's kind otherwise
    QPainterPath mDividers;
    QPainterPath mEdges; ///< outer borders of the carriageways
    QPainterPath mArrows;
    QPainterPath mConnectors;
    QPainterPath mJunctions; ///< areas that the connectors cover
};

/// Throws `Failure` when no picture can go to `path`: another ending than .svg or .png, a folder, a store.
MORATOOLS_EXPORT void requirePicturePath(const QString &path);

/// Paints `network` into an SVG or PNG file, told by the name's ending. `longSide` is the picture's longer
/// side in pixels. The file, the one that a link leads to, is replaced in one go; a device or a pipe is
/// written to. Throws `Failure` when it cannot be written, and as requirePicturePath() does.
/// What the picture lacks, a line for each kind of object and of marks, is returned.
MORATOOLS_EXPORT QStringList drawToFile(const NetworkObjects &network, const QString &path, double longSide,
                                        const std::vector<Marks> &marks = {});

} // namespace moratools
