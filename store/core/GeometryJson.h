#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QVector>

/// The stored form of the geometry columns: {"data":[{"x":..,"y":..,"z":..},...]}, compact, UTF-8, numbers
/// with full precision, so that what was written reads back equal.
namespace geometryjson {

/// A JSON object in its stored form.
QByteArray toBytes(const QJsonObject &object);

/// The object of a stored form; empty when @p bytes are empty or do not parse.
QJsonObject fromBytes(const QByteArray &bytes);

/// The heights (z) of the points of a geometry object, in order.
QVector<double> heights(const QJsonObject &geometry);

} // namespace geometryjson
