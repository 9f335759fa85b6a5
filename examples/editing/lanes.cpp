// What updateGeometry() and curve() make of vertices and widths, as the picture of docs/editing.md:
//   lanes > lanes.svg
#include <MoraStore/Connector.h>
#include <MoraStore/GeometryJson.h>
#include <MoraStore/LaneGeometry.h>
#include <MoraStore/Link.h>

#include <QTextStream>

#include <initializer_list>

namespace {

constexpr double kPixels = 14; // a metre
constexpr double kHeight = 520;

// SVG counts y downwards.
QString place(double x, double y) {
    return QStringLiteral("%1,%2").arg(QString::number(40 + x * kPixels, 'f', 1),
                                       QString::number(kHeight - 100 - y * kPixels, 'f', 1));
}

QString places(const StoredJson &geometry) {
    QStringList list;
    for (const GeometryPoint &point : geometryjson::points(geometry))
        list.append(place(point.x, point.y));
    return list.join(QLatin1Char(' '));
}

void line(QTextStream &out, const StoredJson &geometry, const char *style) {
    out << "<polyline points=\"" << places(geometry) << "\" fill=\"none\" " << style << "/>\n";
}

void label(QTextStream &out, double x, double y, const char *text, const char *style = "") {
    const QStringList at = place(x, y).split(QLatin1Char(','));
    out << "<text x=\"" << at[0] << "\" y=\"" << at[1] << "\" " << style << '>' << text << "</text>\n";
}

constexpr const char *kLeft = R"(stroke="#b13a3a" stroke-width="3")";
constexpr const char *kRight = R"(stroke="#1f7a4a" stroke-width="3")";
constexpr const char *kCentre = R"(stroke="#ffffff" stroke-width="1.5" stroke-dasharray="7,6")";
constexpr const char *kLine = R"(stroke="#2f3640" stroke-width="1.5")";

template <class Band>
void area(QTextStream &out, const Band &band, const char *colour) {
    GeometryLine outline = geometryjson::points(band.rightBreakPointsJson);
    for (const GeometryPoint &point : geometryjson::points(band.leftBreakPointsJson))
        outline.prepend(point);
    out << "<polygon points=\"" << places(geometryjson::fromPoints(outline)) << "\" fill=\"" << colour
        << "\"/>\n";
}

void makeLink(Link &link, std::initializer_list<GeometryPoint> line) {
    for (const GeometryPoint &point : line)
        link.mlVertex.append(new Vertex{0, point.x, point.y, point.z});
    for (const double width : {3.0, 4.0}) {
        link.mlLane.append(new Lane);
        link.mlLane.last()->width = width;
    }
    updateGeometry(link);
}

void draw(QTextStream &out, const Link &link) {
    for (const Lane *lane : link.mlLane) {
        area(out, *lane, "#a9b0ba");
        line(out, lane->leftBreakPointsJson, R"(stroke="#ffffff" stroke-width="1.5")");
        line(out, lane->centerLinePointsJson, kCentre);
    }
    line(out, link.leftBreakPointsJson, kLeft);
    line(out, link.rightBreakPointsJson, kRight);
    line(out, link.centerLinePointsJson, kLine);
    for (const Vertex *vertex : link.mlVertex) {
        const QStringList at = place(vertex->x, vertex->y).split(QLatin1Char(','));
        out << "<circle cx=\"" << at[0] << "\" cy=\"" << at[1] << "\" r=\"4\" fill=\"#2f3640\"/>\n";
    }
}

void draw(QTextStream &out, const Connector &connector) {
    area(out, connector, "#dfe2e6");
    line(out, connector.leftBreakPointsJson, kLeft);
    line(out, connector.rightBreakPointsJson, kRight);
    for (const LaneConnector *path : connector.mlLaneConnector)
        line(out, path->centerLinePointsJson, R"(stroke="#3d6ea5" stroke-width="2")");
}

void axes(QTextStream &out) {
    out << R"(<path d="M 60,150 v -60 m -5,9 l 5,-9 l 5,9 M 60,150 h 60 m -9,-5 l 9,5 l -9,5" fill="none" )"
        << kLine << "/>\n<text x=\"68\" y=\"96\">y, north</text><text x=\"128\" y=\"155\">x, east</text>\n";
}

} // namespace

int main() {
    Link from;
    Link to;
    makeLink(from, {{0, 0, 0}, {14, 0, 0}, {28, 5, 0}});
    makeLink(to, {{41, 17, 0}, {41, 28, 0}});
    Connector connector(1, &from, &to);
    for (int i = 0; i < 2; ++i)
        connector.mlLaneConnector.append(new LaneConnector(&connector, from.mlLane[i], to.mlLane[i]));
    curve(connector);

    QTextStream out(stdout);
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"800\" height=\"" << kHeight
        << "\" font-family=\"sans-serif\" font-size=\"15\" fill=\"#2f3640\">\n"
           "<rect width=\"800\" height=\"520\" fill=\"#faf9f6\"/>\n";
    axes(out);
    draw(out, connector);
    draw(out, from);
    draw(out, to);
    label(out, 1, -1.7, "lane 1, 3 m");
    label(out, 1, 1.8, "lane 2, 4 m");
    label(out, 3, 4.3, "left edge", R"(fill="#b13a3a")");
    label(out, 3, -5, "right edge", R"(fill="#1f7a4a")");
    label(out, 16.5, -5, "vertices, and the centre line through them");
    out << "<path d=\"M " << place(17, -4) << " L " << place(14.2, -0.4) << "\" " << kLine << "/>\n";
    label(out, 24, 11, "left edge of the connector", R"(fill="#b13a3a" text-anchor="end")");
    label(out, 41, 7, "its right edge", R"(fill="#1f7a4a")");
    label(out, 25.5, 14.5, "paths of its lane connectors", R"(fill="#3d6ea5" text-anchor="end")");
    label(out, 38, 23, "2");
    label(out, 42.2, 23, "1");
    out << "</svg>\n";
    return 0;
}
