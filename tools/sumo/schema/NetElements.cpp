#include "tools/sumo/schema/SchemaElements.h"

namespace moratools::schema {

namespace {

constexpr const char *kNetAttributes = "Net.otherAttrsJson sumo.net";
constexpr const char *kLocation = "Net.otherAttrsJson sumo.location";
constexpr const char *kElements = "Net.otherAttrsJson sumo.elements";
constexpr const char *kLink = "Link.otherAttrsJson sumo";
constexpr const char *kJunction = "Link.otherAttrsJson sumo.junction";
constexpr const char *kConnector = "Connector.otherAttrsJson sumo.connections";

} // namespace

const std::vector<Element> &netElements() {
    static const std::vector<Element> elements{
        {".", "", "",
         "avoidOverlap checkLinkFoesAll checkLinkFoesRoundabout internalJunctionsVehicleWidth "
         "junctionCornerDetail junctionHigherSpeed junctionLinkDetail lefthand limitTurnSpeed "
         "rectangularLaneCut spreadType tlsIgnoreInternalJunctionJam version walkingareas",
         kNetAttributes},
        {"connection", "LaneConnector",
         "from=Connector.StartlinkID fromLane=LaneConnector.startLaneID "
         "linkIndex=SignalLamp.signalPhaseID tl=SignalLamp.name to=Connector.EndlinkID "
         "toLane=LaneConnector.endLaneID",
         "allow changeLeft changeRight contPos dir disallow friction indirect keepClear length "
         "linkIndex2 pass shape speed state type uncontrolled via visibility",
         kConnector},
        {"connection/param", "", "", "key value", kJunction},
        {"connection:inside", "", "",
         "allow changeLeft changeRight contPos dir disallow friction from fromLane indirect keepClear "
         "length linkIndex linkIndex2 pass shape speed state tl to toLane type uncontrolled via "
         "visibility",
         kJunction},
        {"edge", "Link", "from=Node.nodeName id=Link.linkName to=Node.nodeName",
         "bidi crossingEdges distance function length name priority shape spreadType type", kLink},
        {"edge/lane", "Lane",
         "id=Lane.serialNumber index=Lane.serialNumber length=Link.length "
         "shape=Lane.centerLinePointsJson speed=Link.limitSpeed width=Lane.width",
         "acceleration allow changeLeft changeRight customShape disallow endOffset friction type", kLink},
        {"edge/lane/neigh", "", "", "lane", kLink},
        {"edge/lane/param", "", "", "key value", kLink},
        {"edge/lane/stopOffset", "", "", "exceptions value vClasses", kLink},
        {"edge/param", "", "", "key value", kLink},
        {"edge/stopOffset", "", "", "exceptions value vClasses", kLink},
        {"edge:inside", "", "",
         "bidi crossingEdges distance from function id length name priority shape spreadType to type",
         kJunction},
        {"edge:inside/lane", "", "",
         "acceleration allow changeLeft changeRight customShape disallow endOffset friction id index "
         "length shape speed type width",
         kJunction},
        {"edge:inside/lane/neigh", "", "", "lane", kJunction},
        {"edge:inside/lane/stopOffset", "", "", "exceptions value vClasses", kJunction},
        {"edge:inside/stopOffset", "", "", "exceptions value vClasses", kJunction},
        {"junction", "Node", "id=Node.nodeName",
         "customShape fringe incLanes intLanes key name radius rightOfWay shape type x y z", kJunction},
        {"junction/request", "", "", "cont foes index response", kJunction},
        {"junction:inside", "", "",
         "customShape fringe id incLanes intLanes key name radius rightOfWay shape type x y z", kJunction},
        {"junction:inside/request", "", "", "cont foes index response", kJunction},
        {"location", "", "", "convBoundary netOffset origBoundary projParameter", kLocation},
        {"prohibition", "", "", "prohibited prohibitor", kElements},
        {"roundabout", "", "", "edges nodes", kElements},
        {"type", "", "",
         "allow bikeLaneWidth disallow discard id maxWidth minWidth numLanes oneway priority shape "
         "sidewalkWidth speed spreadType width widthResolution",
         kElements},
        {"type/meso", "", "",
         "jamThreshold junctionControl minorPenalty overtaking tauff taufj taujf taujj tlsFlowPenalty "
         "tlsPenalty",
         kElements},
        {"type/restriction", "", "", "speed vClass", kElements},
        {"type/stopOffset", "", "", "exceptions value vClasses", kElements},
    };
    return elements;
}

} // namespace moratools::schema
