#include "tools/sumo/schema/SchemaElements.h"

namespace moratools::schema {

namespace {

constexpr const char *kFiles = "Net.otherAttrsJson sumo.files";

} // namespace

const std::vector<Element> &additionalElements() {
    static const std::vector<Element> elements{
        {"WAUT", "", "", "id period refTime startProg", kFiles},
        {"WAUT/wautSwitch", "", "", "time to", kFiles},
        {"(busStop|trainStop)", "BusStation",
         "endPos=BusStation.length id=BusStation.name lane=BusStation.laneNumber startPos=BusStation.x",
         "color friendlyPos lines name parkingLength personCapacity", kFiles},
        {"(busStop|trainStop)/access", "", "", "friendlyPos lane length pos", kFiles},
        {"calibrator", "", "",
         "begin edge end file freq id jamThreshold lane name output period pos routeProbe vTypes", kFiles},
        {"calibrator/flow", "", "",
         "arrivalEdge arrivalLane arrivalPos arrivalPosLat arrivalSpeed begin color containerCapacity "
         "containerNumber departEdge departLane departPos departPosLat departSpeed end from fromTaz id "
         "insertionChecks line number period personCapacity personNumber probability reroute route "
         "speed speedFactor to toTaz type vehsPerHour via",
         kFiles},
        {"chargingStation", "", "",
         "chargeDelay chargeInTransit color efficiency endPos friendlyPos id lane lines name power "
         "startPos",
         kFiles},
        {"containerStop", "", "",
         "color containerCapacity endPos friendlyPos id lane lines name parkingLength startPos", kFiles},
        {"containerStop/access", "", "", "friendlyPos lane length pos", kFiles},
        {"(e1Detector|inductionLoop|instantInductionLoop)", "VehicleDrivInfoCollecter",
         "freq=VehicleDrivInfoCollecter.dataInterval id=VehicleDrivInfoCollecter.name "
         "lane=VehicleDrivInfoCollecter.laneNumber period=VehicleDrivInfoCollecter.dataInterval "
         "pos=VehicleDrivInfoCollecter.distance",
         "detectPersons file friendlyPos length name nextEdges splitByType vTypes", kFiles},
        {"(e2Detector|laneAreaDetector)", "VehicleQueueCounter",
         "endPos=VehicleQueueCounter.distance freq=VehicleQueueCounter.dataInterval "
         "id=VehicleQueueCounter.name jamThreshold=VehicleQueueCounter.maxDistInterval "
         "lane=VehicleQueueCounter.laneNumber lanes=VehicleQueueCounter.laneNumber "
         "length=VehicleQueueCounter.maxQueueLength period=VehicleQueueCounter.dataInterval "
         "pos=VehicleQueueCounter.distance speedThreshold=VehicleQueueCounter.speedUpLimit",
         "cont detectPersons file friendlyPos name nextEdges show splitByType timeThreshold tl to "
         "vTypes",
         kFiles},
        {"(e3Detector|entryExitDetector)", "VehicleTravelDetector",
         "freq=VehicleTravelDetector.dataInterval id=VehicleTravelDetector.name "
         "period=VehicleTravelDetector.dataInterval",
         "detectPersons expectArrival file name nextEdges openEntry pos speedThreshold splitByType "
         "timeThreshold vTypes",
         kFiles},
        {"(e3Detector|entryExitDetector)/detEntry", "VehicleTravelDetector",
         "lane=VehicleTravelDetector.startRoadId pos=VehicleTravelDetector.startDist", "friendlyPos", kFiles},
        {"(e3Detector|entryExitDetector)/detExit", "VehicleTravelDetector",
         "lane=VehicleTravelDetector.teminalRoadId pos=VehicleTravelDetector.teminalDist", "friendlyPos",
         kFiles},
        {"(edgeData|laneData)", "", "",
         "aggregate begin detectPersons edges edgesFile end excludeEmpty file freq id maxTraveltime "
         "minSamples period speedThreshold trackVehicles type vTypes withInternal writeAttributes",
         kFiles},
        {"overheadWire", "", "",
         "clamps endPos forbiddenInnerLanes friendlyPos id lanes segments startPos substationId", kFiles},
        {"overheadWireClamp", "", "",
         "id idSegmentEndClamp idSegmentStartClamp substationId wireClampEnd wireClampLaneEnd "
         "wireClampLaneStart wireClampStart",
         kFiles},
        {"overheadWireSegment", "", "", "endPos friendlyPos id lane startPos voltageSource", kFiles},
        {"parkingArea", "", "",
         "angle departPos endPos friendlyPos id lane length lines name onRoad roadsideCapacity "
         "startPos width",
         kFiles},
        {"parkingArea/space", "", "", "angle length name slope width x y z", kFiles},
        {"poi", "", "",
         "angle color friendlyPos height id imgFile lane lat layer lon name pos posLat relativePath "
         "type width x y",
         kFiles},
        {"poly", "", "", "angle color fill geo id imgFile layer lineWidth name relativePath shape type",
         kFiles},
        {"polygonType", "", "", "angle color discard icon id imgFile layer name", kFiles},
        {"ptLine", "", "",
         "begin color completeness end id line missingAfter missingBefore name period type vClass", kFiles},
        {"ptLine/busStop", "", "", "id invalid name", kFiles},
        {"ptLine/route", "", "", "edges", kFiles},
        {"railSignalConstraints", "", "", "id", kFiles},
        {""
         "railSignalConstraints/(predecessor|insertionPredecessor|foeInsertion|insertionOrder|bidiPredecessor)",
         "", "", "active foes limit tl tripId", kFiles},
        {"rerouter", "", "", "edges file id name off pos probability timeThreshold vTypes", kFiles},
        {"rerouter/interval", "", "", "begin end", kFiles},
        {"rerouter/interval/closingLaneReroute", "RoadWorkZone", "id=RoadWorkZoneWithLane.laneNumber",
         "allow disallow", kFiles},
        {"rerouter/interval/closingReroute", "RoadWorkZone", "id=RoadWorkZone.roadID", "allow disallow",
         kFiles},
        {"rerouter/interval/(destProbReroute|routeProbReroute)", "", "", "id probability", kFiles},
        {"rerouter/interval/parkingAreaReroute", "", "", "id probability visible", kFiles},
        {"routeProbe", "", "", "begin edge file freq id name period vTypes", kFiles},
        {"taz", "", "", "center color edges fill id name shape", kFiles},
        {"(taz/tazSource|taz/tazSink)", "", "", "id weight", kFiles},
        {"timedEvent", "", "", "begin dest end source type", kFiles},
        {"tractionSubstation", "", "", "currentLimit id pos voltage", kFiles},
        {"type", "", "", "id", kFiles},
        {"type/meso", "", "",
         "jamThreshold junctionControl minorPenalty overtaking tauff taufj taujf taujj tlsFlowPenalty "
         "tlsPenalty",
         kFiles},
        {"type/restriction", "", "", "speed vClass", kFiles},
        {"vTypeProbe", "", "", "file freq id period type", kFiles},
        {"vaporizer", "", "", "begin end id name", kFiles},
        {"variableSpeedSign", "ReduceSpeedArea",
         "id=ReduceSpeedArea.name lanes=ReduceSpeedArea.laneNumber "
         "vTypes=ReduceSpeedVehiType.vehicleTypeCode",
         "file name pos", kFiles},
        {"variableSpeedSign/step", "ReduceSpeedInterval",
         "speed=ReduceSpeedVehiType.avgSpeed time=ReduceSpeedInterval.startTime", "", kFiles},
        {"wautJunction", "", "", "junctionID procedure synchron wautID", kFiles},
    };
    return elements;
}

} // namespace moratools::schema
