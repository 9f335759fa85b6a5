#pragma once

#include "model/StoredJson.h"

#include <QByteArray>
#include <QVector>

/// The stored form of the geometry columns: {"data":[{"x":..,"y":..,"z":..},...]}, compact, UTF-8, numbers
/// with full precision, so that what was written reads back equal.
namespace geometryjson {

/// A JSON object in its stored form.
QByteArray toBytes(const QJsonObject &object);
/// The text that the value was read with, else its object in the stored form.
QByteArray toBytes(const StoredJson &value);

/// The heights (z) of the points of a geometry object, in order.
QVector<double> heights(const StoredJson &geometry);

} // namespace geometryjson
