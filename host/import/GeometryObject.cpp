#include "host/import/GeometryObject.h"

#include <QJsonArray>

namespace geometryobject {

QJsonObject fromPolyline(const Polyline &line) {
    QJsonArray data;
    for (const Point3 &point : line)
        data.append(QJsonObject{
            {QStringLiteral("x"), point.x}, {QStringLiteral("y"), point.y}, {QStringLiteral("z"), point.z}});
    return {{QStringLiteral("data"), data}};
}

Polyline toPolyline(const QJsonObject &object) {
    Polyline line;
    const QJsonArray data = object.value(QLatin1String("data")).toArray();
    line.reserve(std::size_t(data.size()));
    for (const QJsonValue &value : data) {
        const QJsonObject point = value.toObject();
        line.push_back({point.value(QLatin1String("x")).toDouble(),
                        point.value(QLatin1String("y")).toDouble(),
                        point.value(QLatin1String("z")).toDouble()});
    }
    return line;
}

} // namespace geometryobject
