#pragma once

#include "model/Link.h"

namespace moratools {

/// Tells whether a link still lies where an import put it: then the line of its edge, which goes on into the junctions, is
/// as it was kept.
namespace linkline {

/// The digest's name among what is kept of a link.
constexpr const char *kKey = "line";

/// Over the link's vertices, in full precision.
QString digestOf(const Link &link);

} // namespace linkline

} // namespace moratools
