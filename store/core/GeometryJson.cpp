#include "store/core/GeometryJson.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace geometryjson {

QByteArray toBytes(const QJsonObject &object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject fromBytes(const QByteArray &bytes) {
    return bytes.isEmpty() ? QJsonObject() : QJsonDocument::fromJson(bytes).object();
}

QVector<double> heights(const QJsonObject &geometry) {
    QVector<double> result;
    const QJsonArray points = geometry.value(QLatin1String("data")).toArray();
    result.reserve(points.size());
    for (const QJsonValue &point : points)
        result.append(point.toObject().value(QLatin1String("z")).toDouble());
    return result;
}

} // namespace geometryjson
