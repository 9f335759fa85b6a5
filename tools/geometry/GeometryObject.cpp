#include "tools/geometry/GeometryObject.h"

#include "model/GeometryJson.h"

namespace moratools {

namespace geometryobject {

StoredJson fromPolyline(const Polyline &line) {
    QVector<GeometryPoint> points;
    points.reserve(int(line.size()));
    for (const Point3 &point : line)
        points.append({point.x, point.y, point.z});
    return geometryjson::fromPoints(points);
}

Polyline toPolyline(const StoredJson &geometry) {
    const QVector<GeometryPoint> points = geometryjson::points(geometry);
    Polyline line;
    line.reserve(std::size_t(points.size()));
    for (const GeometryPoint &point : points)
        line.push_back({point.x, point.y, point.z});
    return line;
}

} // namespace geometryobject

} // namespace moratools
