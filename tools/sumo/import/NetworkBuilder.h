#pragma once

#include "model/Connector.h"
#include "model/Link.h"
#include "model/NetLists.h"
#include "tools/MoraToolsExport.h"
#include "tools/sumo/import/IdSource.h"
#include "tools/sumo/reader/SumoNet.h"

#include <QJsonArray>

#include <memory>
#include <vector>

namespace moratools {

/// Makes the objects of a store from the records of a SUMO network.
///
/// Each edge becomes a link, named by its id, whose vertices are the centre line of its carriageway; its end
/// nodes are named by the junctions. A node row belongs to one link, so links that meet share the junction by
/// name. Lanes are numbered from the right (serial number 1), also where traffic keeps left. All connections
/// between two edges become one connector, named "from->to", with a lane connector each.
///
/// What has no place of its own in the store is kept in the attributes objects under "sumo": for links the
/// attributes of the edge and of its first lane, a list "lanes" of what the lanes, by serial number, have
/// otherwise, and the inside of a junction; for connectors the attributes of each connection.
class MORATOOLS_EXPORT NetworkBuilder {
public:
    /// `withLaneConnectorGeometry` says whether the store has a place for it.
    NetworkBuilder(const SumoNet &net, IdSource &ids, bool withLaneConnectorGeometry)
        : mNet(net), mIds(ids), mWithLaneConnectorGeometry(withLaneConnectorGeometry) {}

    std::vector<std::unique_ptr<Link>> buildLinks();
    /// Connectors between `links`, which came from buildLinks() and must outlive them.
    std::vector<std::unique_ptr<Connector>> buildConnectors(const std::vector<std::unique_ptr<Link>> &links);
    /// Keeps the insides of junctions in the attributes of the links of `network`.
    /// @return those of junctions where no link begins or ends.
    QJsonArray keepJunctions(const NetLists &network) const;

private:
    std::unique_ptr<Link> buildLink(const SumoEdge &edge);
    void addVertices(Link &link, const SumoEdge &edge);
    void addLanes(Link &link, const SumoEdge &edge);
    /// One connector of connections that share both edges, `links` being in the order of the network's edges.
    std::unique_ptr<Connector> buildConnector(const std::vector<const SumoConnection *> &connections,
                                              const std::vector<std::unique_ptr<Link>> &links);
    Lane *laneOf(const Link &link, int sumoIndex) const;

    const SumoNet &mNet;
    IdSource &mIds;
    bool mWithLaneConnectorGeometry;
};

/// The centre line of an edge's carriageway: halfway between its outer lanes where these have equally many
/// points, else its middle lane's line moved to the centre.
MORATOOLS_EXPORT GeometryLine carriagewayCentre(const SumoEdge &edge, bool leftHand);

} // namespace moratools
