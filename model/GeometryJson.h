#pragma once

#include "GeometryLine.h"
#include "MoraStoreExport.h"
#include "StoredJson.h"

/// The geometry objects of links, lanes and connectors, {"data":[{"x":..,"y":..,"z":..},...]}, as lists of
/// points. The stored form is compact UTF-8 with the shortest numbers that read back equal; it is read and
/// written without building an object. Any other text of the same meaning is read through its object.
namespace geometryjson {

/// The points of a geometry object, in order; a member that is no number counts as 0.
MORASTORE_EXPORT GeometryLine points(const StoredJson &geometry);

/// Whether a text is a geometry object in the form in which nearly all are stored: compact, each point with x, y and
/// z in this order. Any other text may be one, too, and is to be read as JSON.
MORASTORE_EXPORT bool hasStoredForm(const QByteArray &text);

/// The geometry object of a line, in the stored form that QJsonDocument gives it. JSON has no numbers that
/// are not finite: a line with such comes back as an object, which no store takes.
MORASTORE_EXPORT StoredJson fromPoints(const GeometryLine &points);

} // namespace geometryjson
