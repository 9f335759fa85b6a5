#pragma once

#include "model/Connector.h"
#include "model/Lane.h"
#include "model/LaneConnector.h"
#include "model/Link.h"
#include "model/Node.h"
#include "model/Vertex.h"

#include <QJsonObject>

#include <memory>

/// Objects whose every field has a value of its own, so that a field lost or mixed up on the way shows.

/// A geometry object of @p points points that no other @p seed gives.
QJsonObject sampleGeometry(int seed, int points);

/// A link of three vertices and two lanes. Ids of its parts derive from @p id: vertices and lanes 10 * id +
/// 1, ..., nodes 10 * id + 1 and 10 * id + 2.
std::unique_ptr<Link> sampleLink(long id);

/// A connector whose lane connectors join the lanes of both links pairwise.
std::unique_ptr<Connector> sampleConnector(long id, Link *from, Link *to);
