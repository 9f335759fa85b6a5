#pragma once

#include "model/StoredJson.h"
#include "tools/geometry/Polyline.h"

/// The geometry objects of links, lanes and connectors: {"data":[{"x":..,"y":..,"z":..},...]}.
namespace geometryobject {

StoredJson fromPolyline(const Polyline &line);
Polyline toPolyline(const StoredJson &geometry);

} // namespace geometryobject
