#pragma once

#include "host/geometry/Polyline.h"

#include <QJsonObject>

/// The geometry objects of links, lanes and connectors: {"data":[{"x":..,"y":..,"z":..},...]}.
namespace geometryobject {

QJsonObject fromPolyline(const Polyline &line);
Polyline toPolyline(const QJsonObject &object);

} // namespace geometryobject
