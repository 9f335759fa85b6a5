#pragma once

#include "MoraStoreExport.h"

class Connector;
class LaneConnector;
class Link;
class QString;

/// @file
/// The shapes of lanes and of the paths between them, made from what a host draws. Coordinates are metres, x to
/// the east and y to the north, so that left of a line that runs along x is towards greater y. docs/editing.md
/// has a picture.

/// Makes the shape of a link from its vertices and the widths of its lanes.
///
/// The vertices count; the centre line is written from them. The lanes lie side by side in the order of `mlLane`
/// and are numbered by it: the first one, number 1, is the rightmost when one looks along the link, and all of
/// them together lie in equal parts left and right of the centre line. With the widths w[1] ... w[n] and their sum
/// W, the centre line of lane i is that of the link moved to the left by w[1] + ... + w[i - 1] + w[i] / 2 - W / 2;
/// the edges of the lane are w[i] / 2 to either side of it (geometry::offset(): mitred corners, one point for
/// each vertex, heights as they are). A link without lanes has edges Link::width() / 2 from its centre line.
///
/// Written are, on the link, `centerLinePointsJson`, `leftBreakPointsJson` (the left edge of the last lane),
/// `rightBreakPointsJson` (the right edge of the first lane) and `length` (Link::calcuLength()); on each lane the
/// same three objects, `serialNumber` and `linkID`. The nodes stand on the first and the last vertex then, as reads
/// give them. Everything else stays, `laneNumber` and `laneWidth` too.
/// A width of 0 is a lane whose edges lie on its centre line.
///
/// @param why takes one sentence when nothing can be made.
/// @return false, and the link as it was: fewer than two vertices, vertices all in one place, a vertex or a lane
/// that is null, a width below 0, and numbers that are not finite, in the link or in what would come of it.
MORASTORE_EXPORT bool updateGeometry(Link &link, QString *why = nullptr);

/// Makes the path of a lane connector: from the end of its start lane, in the direction that this has there, to
/// the start of its end lane, in the direction that this begins with, as a cubic Bezier curve (geometry::turn()
/// has the formula). Its edges are half a lane's width to either side, going evenly from the width of the start
/// lane to that of the end lane, so that they meet the edges of both.
///
/// Written are `centerLinePointsJson`, `leftBreakPointsJson` and `rightBreakPointsJson`.
///
/// @param why takes one sentence when nothing can be made.
/// @return false, and the lane connector as it was: it lacks a lane, a lane has no centre line (updateGeometry()
/// makes it) or a width below 0, and numbers that are not finite.
MORASTORE_EXPORT bool curve(LaneConnector &path, QString *why = nullptr);

/// Makes the paths of all lane connectors of a connector, and from them its edges (updateEdges()) and its
/// `length`, the mean of their lengths in the plane.
/// @param why takes one sentence when nothing can be made.
/// @return false, and everything as it was: there is no lane connector, or one that has no path.
MORASTORE_EXPORT bool curve(Connector &connector, QString *why = nullptr);

/// Gives a connector the left edge of its leftmost lane connector and the right edge of its rightmost one; none
/// where it has no lane connectors. Rightmost is the one from the lane of the lowest serial number, of these the
/// one to the lane of the lowest. Lane connectors whose lanes are null do not count.
MORASTORE_EXPORT void updateEdges(Connector &connector);
