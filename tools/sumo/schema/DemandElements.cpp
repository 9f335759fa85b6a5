#include "tools/sumo/schema/SchemaElements.h"

namespace moratools::schema {

namespace {

constexpr const char *kFiles = "Net.otherAttrsJson sumo.files";

} // namespace

const std::vector<Element> &demandElements() {
    static const std::vector<Element> elements{
        {"(container|containerFlow)/stop", "", "",
         "actType arrival busStop chargingStation collision containerStop containerTriggered duration "
         "edge ended endPos expected expectedContainers extension friendlyPos index join jump lane "
         "line onDemand overheadWireSegment parking parkingArea permitted posLat speed split started "
         "startPos stoppingPlace trainStop triggered tripId until",
         kFiles},
        {"(container|containerFlow)/tranship", "", "",
         "arrivalPos containerStop departPos duration edges from speed to", kFiles},
        {"(container|containerFlow)/transport", "", "",
         "arrivalPos containerStop depart from group intended lines to", kFiles},
        {"flow", "DepartureInterval, Routing, BusLine",
         "begin=DepartureInterval.interval end=DepartureInterval.interval from=DeparturePoint.linkID "
         "line=BusLine.name number=DepartureInterval.vehiCount perHour=DepartureInterval.vehiCount "
         "period=DepartureInterval.vehiCount probability=DepartureInterval.vehiCount "
         "route=Routing.routingName type=DepartureInterval.vehiCons "
         "vehsPerHour=DepartureInterval.vehiCount",
         "arrivalEdge arrivalLane arrivalPos arrivalPosLat arrivalSpeed color containerCapacity "
         "containerNumber departEdge departLane departPos departPosLat departSpeed fromJunction "
         "fromTaz id insertionChecks personCapacity personNumber reroute speedFactor to toJunction "
         "toTaz via",
         kFiles},
        {"include", "", "", "href", ""},
        {"interval", "RoutingFLowRatio",
         "begin=RoutingFLowRatio.startDateTime end=RoutingFLowRatio.endDateTime", "id", kFiles},
        {"interval/edgeRelation", "Routing",
         "count=RoutingFLowRatio.ratio from=DecisionPoint.linkID probability=RoutingFLowRatio.ratio "
         "ratio=RoutingFLowRatio.ratio to=RoutingLink.linkID",
         "", kFiles},
        {"interval/(edge|sink|source)", "", "", "id", kFiles},
        {"interval/fromEdge", "DecisionPoint", "id=DecisionPoint.linkID", "", kFiles},
        {"interval/fromEdge/toEdge", "Routing", "id=RoutingLink.linkID probability=RoutingFLowRatio.ratio",
         "", kFiles},
        {"interval/tazRelation", "", "", "count from to", kFiles},
        {"(personFlow|containerFlow)", "BusStationPassengerArriving",
         "begin=BusStationPassengerArriving.startTime "
         "containersPerHour=BusStationPassengerArriving.passengerCount "
         "end=BusStationPassengerArriving.endTime number=BusStationPassengerArriving.passengerCount "
         "perHour=BusStationPassengerArriving.passengerCount "
         "period=BusStationPassengerArriving.passengerCount "
         "personsPerHour=BusStationPassengerArriving.passengerCount "
         "probability=BusStationPassengerArriving.passengerCount "
         "vehsPerHour=BusStationPassengerArriving.passengerCount",
         "color departPos id modes speedFactor type vTypes", kFiles},
        {"(person|container)", "BusStationPassengerArriving", "depart=BusStationPassengerArriving.startTime",
         "color departPos id modes speedFactor type vTypes", kFiles},
        {"(person|personFlow)/personTrip", "", "",
         "arrivalPos busStop departPos from fromJunction fromTaz group lines modes to toJunction toTaz "
         "trainStop via vTypes walkFactor",
         kFiles},
        {"(person|personFlow)/ride", "BusStationPassengerArriving",
         "lines=BusStationPassengerArriving.stationLineID",
         "arrivalPos busStop cost depart ended from group intended started to trainStop vehicle", kFiles},
        {"(person|personFlow)/stop", "BusStationPassengerArriving",
         "busStop=BusStationPassengerArriving.stationLineID",
         "actType arrival chargingStation collision containerStop containerTriggered duration edge "
         "ended endPos expected expectedContainers extension friendlyPos index join jump lane line "
         "onDemand overheadWireSegment parking parkingArea permitted posLat speed split started "
         "startPos stoppingPlace trainStop triggered tripId until",
         kFiles},
        {"(person|personFlow)/walk", "BusStationPassengerArriving",
         "busStop=BusStationPassengerArriving.stationLineID",
         "arrivalPos arrivalTime cost departPos departPosLat duration edges exitTimes from "
         "fromJunction route routeLength speed to toJunction trainStop via",
         kFiles},
        {"route", "Routing", "edges=RoutingLink.linkID id=Routing.routingName",
         "color cost costs cycleTime exitTimes fromTaz probability reason refId repeat replacedAtTime "
         "replacedOnEdge savings toTaz",
         kFiles},
        {"routeDistribution", "DecisionPoint",
         "probabilities=RoutingFLowRatio.ratio routes=Routing.deciPointID", "id last", kFiles},
        {"routeDistribution/route", "Routing",
         "edges=RoutingLink.linkID id=Routing.routingName probability=RoutingFLowRatio.ratio "
         "refId=Routing.deciPointID",
         "color cost costs cycleTime exitTimes fromTaz reason repeat replacedAtTime replacedOnEdge "
         "savings toTaz",
         kFiles},
        {"vType", "VehicleType",
         "accel=VehicleType.maxAcce decel=VehicleType.avgDece emergencyDecel=VehicleType.maxDece "
         "id=VehicleType.vehicleTypeName length=VehicleType.Length maxSpeed=VehicleType.maxSpeed "
         "speedDev=VehicleType.speedSD width=VehicleType.width",
         "actionStepLength adaptFactor adaptTime apparentDecel applyDriverState apProb "
         "boardingDuration c1 carFollowModel carriageDoors carriageGap carriageLength cc1 cc2 cc3 cc4 "
         "cc5 cc6 cc7 cc8 cc9 ccAccel ccDecel ccoolness collisionAvoidanceGainGap "
         "collisionAvoidanceGainGapDot collisionAvoidanceGainSpace collisionAvoidanceGainSpeed "
         "collisionAvoidanceOverride collisionMinGapFactor color constSpacing containerCapacity delta "
         "desiredMaxSpeed emissionClass epsilonacc estimation flatbedD flatbedH flatbedKa flatbedKp "
         "flatbedKv gapClosingControlGainGap gapClosingControlGainGapDot gapClosingControlGainSpace "
         "gapClosingControlGainSpeed gapControlGainGap gapControlGainGapDot gapControlGainSpace "
         "gapControlGainSpeed guiShape height imgFile impatience jerkmax jmCrossingGap "
         "jmDriveAfterRedTime jmDriveAfterYellowTime jmDriveRedSpeed jmIgnoreFoeProb jmIgnoreFoeSpeed "
         "jmIgnoreJunctionFoeProb jmIgnoreKeepClearTime jmSigmaMinor jmStoplineGap jmTimegapMinor k kp "
         "lambda laneChangeModel lanesCount latAlignment lcAccelLat lcAssertive lcCooperative "
         "lcCooperativeRoundabout lcCooperativeSpeed lcExperimental1 lcImpatience lcKeepRight "
         "lcKeepRightAcceptanceTime lcLaneDiscipline lcLookaheadLeft lcMaxDistLatStanding "
         "lcMaxSpeedLatFactor lcMaxSpeedLatStanding lcOpposite lcOvertakeDeltaSpeedFactor "
         "lcOvertakeRight lcPushy lcPushyGap lcSigma lcSpeedGain lcSpeedGainLookahead lcSpeedGainRight "
         "lcStrategic lcSublane lcTimeToImpatience lcTurnAlignmentDistance loadingDuration "
         "locomotiveLength maneuverAngleTimes maxSpeedLat maxvehpreview Mbegin Mflatness minGap "
         "minGapLat omegaN osgFile personCapacity phi ploegH ploegKd ploegKp probability scale "
         "security sigma sigmaerror sigmagap sigmaleader sigmaStep speedControlGain "
         "speedControlGainCACC speedControlMinGap speedFactor startupDelay stepping taccmax tau "
         "tauCACCToACC tauEngine tauLast timeToTeleport timeToTeleportBidi tmp1 tmp2 tmp3 tmp4 tmp5 "
         "tPersDrive tPersEstimate tpreview trainType treaction vClass vehdynamics xi",
         kFiles},
        {""
         "vType/(carFollowing-IDM|carFollowing-IDMM|carFollowing-Krauss|carFollowing-KraussPS|carFollowing-KraussOrig1|carFollowing-KraussX|carFollowing-EIDM|carFollowing-SmartSK|carFollowing-Daniel1|carFollowing-PWagner2009|carFollowing-BKerner|carFollowing-Wiedemann|carFollowing-W99|carFollowing-Rail|carFollowing-ACC|carFollowing-CACC|carFollowing-CC)",
         "", "",
         "accel adaptFactor adaptTime apparentDecel applyDriverState apProb c1 cc1 cc2 cc3 cc4 cc5 cc6 "
         "cc7 cc8 cc9 ccAccel ccDecel ccoolness collisionAvoidanceGainGap collisionAvoidanceGainGapDot "
         "collisionAvoidanceGainSpace collisionAvoidanceGainSpeed collisionAvoidanceOverride "
         "collisionMinGapFactor constSpacing decel delta emergencyDecel epsilonacc estimation flatbedD "
         "flatbedH flatbedKa flatbedKp flatbedKv gapClosingControlGainGap gapClosingControlGainGapDot "
         "gapClosingControlGainSpace gapClosingControlGainSpeed gapControlGainGap gapControlGainGapDot "
         "gapControlGainSpace gapControlGainSpeed jerkmax k kp lambda lanesCount maxvehpreview Mbegin "
         "Mflatness minGap omegaN phi ploegH ploegKd ploegKp security sigma sigmaerror sigmagap "
         "sigmaleader sigmaStep speedControlGain speedControlGainCACC speedControlMinGap startupDelay "
         "stepping taccmax tau tauCACCToACC tauEngine tauLast tmp1 tmp2 tmp3 tmp4 tmp5 tPersDrive "
         "tPersEstimate tpreview trainType treaction vehdynamics xi",
         kFiles},
        {"vTypeDistribution", "VehicleConstitutent",
         "id=VehicleConstitutent.name probabilities=VehicleConsDetail.proportion "
         "vTypes=VehicleConsDetail.vehicleTypeCode",
         "deterministic", kFiles},
        {"vTypeDistribution/vType", "VehicleType",
         "accel=VehicleType.maxAcce decel=VehicleType.avgDece emergencyDecel=VehicleType.maxDece "
         "id=VehicleType.vehicleTypeName length=VehicleType.Length maxSpeed=VehicleType.maxSpeed "
         "probability=VehicleConsDetail.proportion speedDev=VehicleType.speedSD "
         "width=VehicleType.width",
         "actionStepLength adaptFactor adaptTime apparentDecel applyDriverState apProb "
         "boardingDuration c1 carFollowModel carriageDoors carriageGap carriageLength cc1 cc2 cc3 cc4 "
         "cc5 cc6 cc7 cc8 cc9 ccAccel ccDecel ccoolness collisionAvoidanceGainGap "
         "collisionAvoidanceGainGapDot collisionAvoidanceGainSpace collisionAvoidanceGainSpeed "
         "collisionAvoidanceOverride collisionMinGapFactor color constSpacing containerCapacity delta "
         "desiredMaxSpeed emissionClass epsilonacc estimation flatbedD flatbedH flatbedKa flatbedKp "
         "flatbedKv gapClosingControlGainGap gapClosingControlGainGapDot gapClosingControlGainSpace "
         "gapClosingControlGainSpeed gapControlGainGap gapControlGainGapDot gapControlGainSpace "
         "gapControlGainSpeed guiShape height imgFile impatience jerkmax jmCrossingGap "
         "jmDriveAfterRedTime jmDriveAfterYellowTime jmDriveRedSpeed jmIgnoreFoeProb jmIgnoreFoeSpeed "
         "jmIgnoreJunctionFoeProb jmIgnoreKeepClearTime jmSigmaMinor jmStoplineGap jmTimegapMinor k kp "
         "lambda laneChangeModel lanesCount latAlignment lcAccelLat lcAssertive lcCooperative "
         "lcCooperativeRoundabout lcCooperativeSpeed lcExperimental1 lcImpatience lcKeepRight "
         "lcKeepRightAcceptanceTime lcLaneDiscipline lcLookaheadLeft lcMaxDistLatStanding "
         "lcMaxSpeedLatFactor lcMaxSpeedLatStanding lcOpposite lcOvertakeDeltaSpeedFactor "
         "lcOvertakeRight lcPushy lcPushyGap lcSigma lcSpeedGain lcSpeedGainLookahead lcSpeedGainRight "
         "lcStrategic lcSublane lcTimeToImpatience lcTurnAlignmentDistance loadingDuration "
         "locomotiveLength maneuverAngleTimes maxSpeedLat maxvehpreview Mbegin Mflatness minGap "
         "minGapLat omegaN osgFile personCapacity phi ploegH ploegKd ploegKp scale security sigma "
         "sigmaerror sigmagap sigmaleader sigmaStep speedControlGain speedControlGainCACC "
         "speedControlMinGap speedFactor startupDelay stepping taccmax tau tauCACCToACC tauEngine "
         "tauLast timeToTeleport timeToTeleportBidi tmp1 tmp2 tmp3 tmp4 tmp5 tPersDrive tPersEstimate "
         "tpreview trainType treaction vClass vehdynamics xi",
         kFiles},
        {"(vehicle|trip)", "DepartureInterval, Routing, BusLine, AccidentZone",
         "depart=DepartureInterval.interval from=DeparturePoint.linkID line=BusLine.name "
         "route=Routing.routingName type=DepartureInterval.vehiCons",
         "arrivalEdge arrivalLane arrivalPos arrivalPosLat arrivalSpeed color containerCapacity "
         "containerNumber departEdge departLane departPos departPosLat departSpeed fromJunction "
         "fromTaz id insertionChecks personCapacity personNumber reroute speedFactor to toJunction "
         "toTaz via",
         kFiles},
        {"(vehicle|trip|flow)/routeDistribution", "DecisionPoint",
         "probabilities=RoutingFLowRatio.ratio routes=Routing.deciPointID", "id last", kFiles},
        {""
         "(vehicle|trip|flow|calibrator|vehicle/routeDistribution|trip/routeDistribution|flow/routeDistribution)/route",
         "Routing", "edges=RoutingLink.linkID",
         "color cost costs cycleTime exitTimes fromTaz id probability reason refId repeat "
         "replacedAtTime replacedOnEdge savings toTaz",
         kFiles},
        {""
         "(vehicle|trip|flow|route|vehicle/route|trip/route|flow/route|routeDistribution/route|vehicle/routeDistribution/route|trip/routeDistribution/route|flow/routeDistribution/route)/stop",
         "BusStationLine, AccidentZone",
         "busStop=BusStationLine.busStationID duration=BusStationLine.parkingTime "
         "endPos=AccidentZone.zoneLength lane=AccidentZoneWithLane.laneNumber "
         "startPos=AccidentZone.location",
         "actType arrival chargingStation collision containerStop containerTriggered edge ended "
         "expected expectedContainers extension friendlyPos index join jump line onDemand "
         "overheadWireSegment parking parkingArea permitted posLat speed split started stoppingPlace "
         "trainStop triggered tripId until",
         kFiles},
    };
    return elements;
}

} // namespace moratools::schema
