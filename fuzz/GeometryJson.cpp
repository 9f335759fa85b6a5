#include "model/GeometryJson.h"
#include "fuzz/Fuzzing.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>
#include <cstring>

namespace {

/// The points as Qt's own parser has them.
QVector<GeometryPoint> expectedPoints(const QByteArray &text) {
    QVector<GeometryPoint> points;
    const QJsonArray data = QJsonDocument::fromJson(text).object().value(QLatin1String("data")).toArray();
    for (const QJsonValue &value : data) {
        const QJsonObject point = value.toObject();
        points.append({point.value(QLatin1String("x")).toDouble(), point.value(QLatin1String("y")).toDouble(),
                       point.value(QLatin1String("z")).toDouble()});
    }
    return points;
}

bool isFinite(const GeometryPoint &point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

/// Any text reads as Qt's parser reads it.
void readText(const QByteArray &text) {
    const QVector<GeometryPoint> points = geometryjson::points(StoredJson::fromText(text));
    const QVector<GeometryPoint> expected = expectedPoints(text);
    fuzzing::require(points.size() == expected.size(), "as many points");
    for (int i = 0; i < points.size(); ++i)
        fuzzing::require(points[i].x == expected[i].x && points[i].y == expected[i].y &&
                             points[i].z == expected[i].z,
                         "the same points");
}

/// Any line is written as Qt writes it and reads back equal.
void writeLine(const QByteArray &bytes) {
    QVector<GeometryPoint> points;
    constexpr int size = int(sizeof(GeometryPoint));
    for (int at = 0; at + size <= bytes.size(); at += size) {
        GeometryPoint point;
        std::memcpy(&point, bytes.constData() + at, sizeof point);
        if (isFinite(point))
            points.append(point);
    }
    QJsonArray data;
    for (const GeometryPoint &point : points)
        data.append(QJsonObject{
            {QStringLiteral("x"), point.x}, {QStringLiteral("y"), point.y}, {QStringLiteral("z"), point.z}});
    const QByteArray expected =
        QJsonDocument(QJsonObject{{QStringLiteral("data"), data}}).toJson(QJsonDocument::Compact);
    const StoredJson written = geometryjson::fromPoints(points);
    fuzzing::require(written.text() == expected, "written as Qt writes it");
    const QVector<GeometryPoint> again = geometryjson::points(written);
    fuzzing::require(again.size() == points.size(), "as many points again");
    for (int i = 0; i < points.size(); ++i)
        fuzzing::require(points[i].x == again[i].x && points[i].y == again[i].y && points[i].z == again[i].z,
                         "the same points again");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray bytes = fuzzing::bytesOf(data, size);
    readText(bytes);
    writeLine(bytes);
    return 0;
}
