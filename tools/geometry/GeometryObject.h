#pragma once

#include "model/StoredJson.h"
#include "tools/MoraToolsExport.h"
#include "tools/geometry/Polyline.h"

namespace moratools {

/// The geometry objects of links, lanes and connectors: {"data":[{"x":..,"y":..,"z":..},...]}.
namespace geometryobject {

MORATOOLS_EXPORT StoredJson fromPolyline(const Polyline &line);
MORATOOLS_EXPORT Polyline toPolyline(const StoredJson &geometry);

} // namespace geometryobject

} // namespace moratools
