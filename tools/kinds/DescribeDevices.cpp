#include "tools/kinds/DescribedFields.h"
#include "tools/kinds/Description.h"

#include <algorithm>

namespace moratools {

namespace {

QJsonArray lanesOf(const QList<ZoneLane *> &lanes) {
    QJsonArray list;
    for (const ZoneLane *lane : lanes)
        list.append(QJsonObject(
            Fields().add("laneNumber", lane->laneNumber).add("toLaneNumber", lane->toLaneNumber)));
    return list;
}

QJsonObject fieldsOf(const SignalPhase &phase) {
    return Fields()
        .add("signalPhaseID", phase.signalPhaseID)
        .add("serialNumber", phase.serialNumber)
        .add("name", phase.name)
        .addList("colors", phase.mlColor, [](const Online::ColorInterval &interval) {
            return QJsonObject(Fields().add("color", interval.color).add("timeLength", interval.interval));
        });
}

QJsonObject fieldsOf(const BusStationLine &stop) {
    return Fields()
        .add("stationLineID", stop.stationLineID)
        .add("busStationID", stop.busStationID)
        .add("linkID", stop.linkID)
        .add("parkingTime", stop.parkingTime)
        .add("leavingPercent", stop.leavingPercent)
        .add("getOnTimePerson", stop.getOnTimePerson)
        .add("getOutTimePerson", stop.getOutTimePerson)
        .addList("arrivals", stop.mlPassengerArriving, [](const PassengerArriving *arrival) {
            return QJsonObject(Fields()
                                   .add("passengerArrivingID", arrival->passengerArrivingID)
                                   .add("startTime", arrival->startTime)
                                   .add("endTime", arrival->endTime)
                                   .add("passengerCount", arrival->passengerCount));
        });
}

QList<BusStationLine *> stopsOnce(const BusLine &line) {
    QList<BusStationLine *> stops = line.mlStationLine;
    const auto before = [](const BusStationLine *a, const BusStationLine *b) {
        return a->stationLineID < b->stationLineID;
    };
    std::sort(stops.begin(), stops.end(), before);
    stops.erase(std::unique(stops.begin(), stops.end(),
                            [](const BusStationLine *a, const BusStationLine *b) {
                                return a->stationLineID == b->stationLineID;
                            }),
                stops.end());
    return stops;
}

} // namespace

Description describe(const SignalGroup &group) {
    return {group.signalGroupID, group.name,
            Fields()
                .add("signalGroupID", group.signalGroupID)
                .add("name", group.name)
                .add("timeLength", group.timeLength)
                .add("startTime", group.startTime)
                .add("endTime", group.endTime)
                .addList("phases", group.mlPhase, [](const SignalPhase *phase) { return fieldsOf(*phase); })};
}

Description describe(const SignalLamp &lamp) {
    return {lamp.signalLampID, lamp.name,
            Fields()
                .add("signalLampID", lamp.signalLampID)
                .add("name", lamp.name)
                .add("signalPhaseID", lamp.mpPhase ? lamp.mpPhase->signalPhaseID : 0L)
                .add("laneID", lamp.laneID)
                .add("toLaneID", lamp.toLaneID)
                .add("x", lamp.x)
                .add("y", lamp.y)
                .add("z", lamp.z)};
}

Description describe(const VehicleDetector &detector) {
    return {detector.vehicleDetectorId, detector.name,
            Fields()
                .add("vehicleDetectorId", detector.vehicleDetectorId)
                .add("name", detector.name)
                .add("signalGroupID", detector.signalGroupID)
                .add("phaseNumber", detector.phaseNumber)
                .add("roadId", detector.roadId)
                .add("roadType", detector.roadType)
                .add("laneNumber", detector.laneNumber)
                .add("toLaneNumber", detector.toLaneNumber)
                .add("distToTerminal", detector.distToTerminal)
                .add("length", detector.length)
                .add("type", detector.type)
                .add("maxGreen", detector.maxGreen)
                .addList("vehicleTypeCodes", detector.mlVehiTypeCode,
                         [](long code) { return QJsonValue(qint64(code)); })};
}

Description describe(const VehicleQueueCounter &counter) {
    return {counter.queueCounterID, counter.name,
            Fields()
                .add("queueCounterID", counter.queueCounterID)
                .add("name", counter.name)
                .add("roadID", counter.roadID)
                .add("laneNumber", counter.laneNumber)
                .add("toLaneNumber", counter.toLaneNumber)
                .add("x", counter.x)
                .add("y", counter.y)
                .add("z", counter.z)
                .add("distance", counter.distance)
                .add("speedLowLimit", counter.speedLowLimit)
                .add("speedUpLimit", counter.speedUpLimit)
                .add("maxDistInterval", counter.maxDistInterval)
                .add("maxQueueLength", counter.maxQueueLength)
                .add("startTime", counter.startTime)
                .add("endTime", counter.endTime)
                .add("dataInterval", counter.dataInterval)
                .add("countInterval", counter.countInterval)};
}

Description describe(const VehicleTravelDetector &detector) {
    return {detector.detectorId, detector.name,
            Fields()
                .add("detectorId", detector.detectorId)
                .add("name", detector.name)
                .add("startRoadId", detector.startRoadId)
                .add("start_laneNumber", detector.start_laneNumber)
                .add("start_toLaneNumber", detector.start_toLaneNumber)
                .add("startDist", detector.startDist)
                .add("startX", detector.startX)
                .add("startY", detector.startY)
                .add("teminalRoadId", detector.teminalRoadId)
                .add("teminal_laneNumber", detector.teminal_laneNumber)
                .add("teminal_toLaneNumber", detector.teminal_toLaneNumber)
                .add("teminalDist", detector.teminalDist)
                .add("teminalX", detector.teminalX)
                .add("teminalY", detector.teminalY)
                .add("startTime", detector.startTime)
                .add("endTime", detector.endTime)
                .add("dataInterval", detector.dataInterval)
                .add("shortestDistance", detector.shortestDistance)};
}

Description describe(const VehicleDrivInfoCollector &collector) {
    return {collector.collecterID, collector.name,
            Fields()
                .add("collecterID", collector.collecterID)
                .add("name", collector.name)
                .add("roadID", collector.roadID)
                .add("laneNumber", collector.laneNumber)
                .add("toLaneNumber", collector.toLaneNumber)
                .add("distance", collector.distance)
                .add("x", collector.x)
                .add("y", collector.y)
                .add("z", collector.z)
                .add("startTime", collector.startTime)
                .add("endTime", collector.endTime)
                .add("dataInterval", collector.dataInterval)};
}

Description describe(const BusStation &station) {
    return {station.busStationID, station.name,
            Fields()
                .add("busStationID", station.busStationID)
                .add("name", station.name)
                .add("linkID", station.mpLink ? station.mpLink->linkID : 0L)
                .add("laneNumber", station.laneNumber)
                .add("x", station.x)
                .add("y", station.y)
                .add("length", station.length)
                .add("type", station.type)};
}

Description describe(const BusLine &line) {
    return {
        line.busLineID, line.name,
        Fields()
            .add("busLineID", line.busLineID)
            .add("name", line.name)
            .add("length", line.length)
            .add("dischargeFreq", line.dischargeFreq)
            .add("dischargeStartTime", line.dischargeStartTime)
            .add("dischargeEndTime", line.dischargeEndTime)
            .add("startX", line.startX)
            .add("startY", line.startY)
            .add("endX", line.endX)
            .add("endY", line.endY)
            .add("desirSpeed", line.desirSpeed)
            .add("speedSD", line.speedSD)
            .add("passCountAtStartTime", line.passCountAtStartTime)
            .addList("roads", line.mlRoadId, [](long id) { return QJsonValue(qint64(id)); })
            .addList("links", line.mlLink, [](const Link *link) { return QJsonValue(qint64(link->linkID)); })
            .addList("stops", stopsOnce(line), [](const BusStationLine *stop) { return fieldsOf(*stop); })};
}

Description describe(const ReduceSpeedArea &area) {
    return {area.reduceSpeedAreaID, area.name,
            Fields()
                .add("reduceSpeedAreaID", area.reduceSpeedAreaID)
                .add("name", area.name)
                .add("location", area.location)
                .add("areaLength", area.areaLength)
                .add("roadID", area.roadID)
                .add("laneNumber", area.laneNumber)
                .add("toLaneNumber", area.toLaneNumber)
                .addList("intervals", area.mlSpeedInterval,
                         [](const ReduceSpeedInterval *interval) {
                             return QJsonObject(Fields()
                                                    .add("intervalID", interval->intervalID)
                                                    .add("startTime", interval->startTime)
                                                    .add("endTime", interval->endTime));
                         })
                .addList("vehicleTypes", area.mlSpeedVehiType, [](const ReduceSpeedVehiType *type) {
                    return QJsonObject(Fields()
                                           .add("vehicleTypeCode", type->vehicleTypeCode)
                                           .add("avgSpeed", type->avgSpeed)
                                           .add("speedSD", type->speedSD));
                })};
}

Description describe(const AccidentZone &zone) {
    return {zone.accidentZoneId, zone.name,
            Fields()
                .add("accidentZoneId", zone.accidentZoneId)
                .add("name", zone.name)
                .add("location", zone.location)
                .add("zoneLength", zone.zoneLength)
                .add("roadId", zone.roadId)
                .add("roadType", zone.roadType)
                .add("lanes", lanesOf(zone.mlLane))};
}

Description describe(const RoadWorkZone &zone) {
    return {zone.roadWorkZoneId, zone.name,
            Fields()
                .add("roadWorkZoneId", zone.roadWorkZoneId)
                .add("name", zone.name)
                .add("location", zone.location)
                .add("zoneLength", zone.zoneLength)
                .add("limitSpeed", zone.limitSpeed)
                .add("roadID", zone.roadID)
                .add("roadName", zone.roadName)
                .add("roadType", zone.roadType)
                .add("lanes", lanesOf(zone.mlLane))};
}

} // namespace moratools
