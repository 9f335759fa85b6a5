#include "store/core/GeometryJson.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace geometryjson {

QByteArray toBytes(const QJsonObject &object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray toBytes(const StoredJson &value) {
    return value.text().isEmpty() ? toBytes(value.object()) : value.text();
}

QVector<double> heights(const StoredJson &geometry) {
    QVector<double> result;
    const QJsonArray points = geometry.value(QLatin1String("data")).toArray();
    result.reserve(points.size());
    for (const QJsonValue &point : points)
        result.append(point.toObject().value(QLatin1String("z")).toDouble());
    return result;
}

} // namespace geometryjson
