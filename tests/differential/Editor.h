#pragma once

#include "model/NetContents.h"
#include "model/NetKinds.h"
#include "tests/differential/RandomNet.h"

#include <QSet>
#include <QString>

#include <algorithm>
#include <memory>
#include <type_traits>

namespace differential {

/// One sequence of edits on a network that was loaded.
class Editor {
public:
    Editor(NetContents &net, RandomNet &random, bool keepsOrder)
        : mNet(net), mRandom(random), mKeepsOrder(keepsOrder) {}

    /// Does one thing; says what.
    QString edit() {
        switch (mRandom.below(10)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return withAny([this](auto &object) { return refill(object); });
        case 4:
        case 5:
            return withAny([this](auto &object) { return addCopy(object); });
        case 6:
            return mRandom.chance(0.5) ? removeAny() : QString();
        case 7:
            return addPart();
        case 8:
            return removePart();
        default:
            return changeSettings();
        }
    }

private:
    template <class T>
    T *any() {
        Objects<T> &list = NetKind<T>::list(mNet);
        return list.empty() ? nullptr : list[std::size_t(mRandom.below(int(list.size())))].get();
    }
    template <class T, class Use>
    QString with(const Use &use) {
        T *object = any<T>();
        return object ? use(*object) : QString();
    }
    template <class Use>
    QString withAny(const Use &use) {
        switch (mRandom.below(18)) {
        case 0:
            return with<VehicleType>(use);
        case 1:
            return with<VehicleComposition>(use);
        case 2:
            return with<GuideArrow>(use);
        case 3:
            return with<Connector>(use);
        case 4:
            return with<SignalGroup>(use);
        case 5:
            return with<SignalLamp>(use);
        case 6:
            return with<DeparturePoint>(use);
        case 7:
            return with<DecisionPoint>(use);
        case 8:
            return with<VehicleDetector>(use);
        case 9:
            return with<VehicleQueueCounter>(use);
        case 10:
            return with<VehicleTravelDetector>(use);
        case 11:
            return with<VehicleDrivInfoCollector>(use);
        case 12:
            return with<BusStation>(use);
        case 13:
            return with<BusLine>(use);
        case 14:
            return with<ReduceSpeedArea>(use);
        case 15:
            return with<AccidentZone>(use);
        case 16:
            return with<RoadWorkZone>(use);
        default:
            return with<Link>(use);
        }
    }
    template <class T>
    static QString said(const char *what, const T &object) {
        return QLatin1String(what) + QLatin1Char(' ') + QLatin1String(NetKind<T>::table) + QLatin1Char(' ') +
               QString::number(NetKind<T>::idOf(object));
    }

    template <class T>
    QString refill(T &object) {
        mRandom.refill(mNet.edit(object));
        if constexpr (std::is_same_v<T, Link>)
            shareVertices(object);
        return said("changed", object);
    }
    /// Links that share a vertex or a node have a copy each: a host changes all of them.
    void shareVertices(const Link &changed) {
        for (const auto &link : mNet.links) {
            for (Vertex *vertex : qAsConst(link->mlVertex)) {
                for (const Vertex *moved : qAsConst(changed.mlVertex)) {
                    if (moved->vertexID != 0 && moved->vertexID == vertex->vertexID && moved != vertex) {
                        mNet.edit(*link);
                        *vertex = *moved;
                    }
                }
            }
        }
    }

    template <class T>
    QString addCopy(const T &object) {
        std::unique_ptr<T> copy = object.clone();
        if (!forget(*copy))
            return {};
        return said("added", mNet.add(std::move(copy)));
    }
    /// @{ Takes the ids of an object and its parts; false for one that cannot be without.
    bool forget(VehicleType &type) {
        for (const auto &other : mNet.traffic.vehicleTypes)
            type.vehicleTypeCode = std::max(type.vehicleTypeCode, other->vehicleTypeCode + 1);
        return true;
    }
    bool forget(VehicleComposition &composition) {
        for (const auto &other : mNet.traffic.compositions)
            composition.vehicleConsCode = std::max(composition.vehicleConsCode, other->vehicleConsCode + 1);
        for (VehicleConsDetail &detail : composition.mlDetail)
            detail.vehicleConsCode = composition.vehicleConsCode;
        return true;
    }
    static bool forget(Link &link) {
        link.linkID = link.roadId = 0;
        for (Vertex *vertex : qAsConst(link.mlVertex))
            vertex->vertexID = 0;
        for (Node *node : {link.mpStartNode, link.mpEndNode}) {
            if (node) {
                node->nodeID = 0;
                node->nodeName = QStringLiteral("copied");
            }
        }
        for (Lane *lane : qAsConst(link.mlLane))
            lane->laneID = lane->linkID = 0;
        return true;
    }
    static bool forget(Connector &connector) {
        connector.connID = connector.roadId = 0;
        for (LaneConnector *lanes : qAsConst(connector.mlLaneConnector))
            lanes->laneConnId = 0;
        return true;
    }
    static bool forget(SignalGroup &group) {
        group.signalGroupID = 0;
        for (SignalPhase *phase : qAsConst(group.mlPhase))
            phase->signalPhaseID = 0;
        return true;
    }
    static bool forget(DeparturePoint &point) {
        point.departurePointID = 0;
        for (DepartureInterval &interval : point.mlInterval)
            interval.departureIntervalD = 0;
        return true;
    }
    static bool forget(DecisionPoint &point) {
        point.deciPointID = 0;
        for (Routing *route : qAsConst(point.mlRouting))
            route->routingID = 0;
        for (RoutingFlowByInterval *interval : qAsConst(point.mlFlowByInterval)) {
            for (RoutingFLowRatio *ratio : qAsConst(interval->mlFlowRatio))
                ratio->routingFLowRatioID = ratio->routingID = 0;
        }
        // Ratios of new routes are told apart where there is one route.
        return point.mlRouting.size() == 1;
    }
    static bool forget(BusLine &line) {
        line.busLineID = 0;
        for (BusStationLine *stop : qAsConst(line.mlStationLine)) {
            stop->stationLineID = stop->busLineID = 0;
            for (PassengerArriving *arriving : qAsConst(stop->mlPassengerArriving))
                arriving->passengerArrivingID = 0;
        }
        // A route that passes a link twice has its stops twice, which are one each in the store.
        QSet<long> stations;
        for (const BusStationLine *stop : qAsConst(line.mlStationLine))
            stations.insert(stop->busStationID);
        return stations.size() == line.mlStationLine.size();
    }
    static bool forget(ReduceSpeedArea &area) {
        area.reduceSpeedAreaID = 0;
        for (ReduceSpeedInterval *interval : qAsConst(area.mlSpeedInterval))
            interval->intervalID = interval->reduceSpeedAreaID = 0;
        for (ReduceSpeedVehiType *type : qAsConst(area.mlSpeedVehiType))
            type->reduceSpeedAreaID = 0;
        return true;
    }
    static bool forget(GuideArrow &arrow) { return (arrow.guideArrowID = 0), true; }
    static bool forget(SignalLamp &lamp) { return (lamp.signalLampID = 0), true; }
    static bool forget(VehicleDetector &device) { return (device.vehicleDetectorId = 0), true; }
    static bool forget(VehicleQueueCounter &device) { return (device.queueCounterID = 0), true; }
    static bool forget(VehicleTravelDetector &device) { return (device.detectorId = 0), true; }
    static bool forget(VehicleDrivInfoCollector &device) { return (device.collecterID = 0), true; }
    static bool forget(BusStation &station) { return (station.busStationID = 0), true; }
    static bool forget(AccidentZone &zone) { return (zone.accidentZoneId = 0), true; }
    static bool forget(RoadWorkZone &zone) { return (zone.roadWorkZoneId = 0), true; }
    /// @}

    QString removeAny() {
        return withAny([this](auto &object) {
            using T = std::decay_t<decltype(object)>;
            // A network without links, types and compositions has nothing left to edit.
            if ((std::is_same_v<T, Link> || std::is_same_v<T, VehicleType> ||
                 std::is_same_v<T, VehicleComposition>)&&NetKind<T>::list(mNet)
                    .size() < 3)
                return QString();
            const QString text = said("removed", object);
            return mNet.remove(object, Cascade::Take) ? text : QString();
        });
    }

    QString addPart() {
        switch (mRandom.below(6)) {
        case 0:
            return with<Link>([this](Link &link) { return addLane(link); });
        case 1:
            return with<SignalGroup>([this](SignalGroup &group) {
                auto phase = group.mlPhase.isEmpty() ? std::make_unique<SignalPhase>()
                                                     : group.mlPhase.first()->clone();
                phase->signalPhaseID = 0;
                phase->mlColor.append({QStringLiteral("黄"), mRandom.below(50)});
                mNet.edit(group).mlPhase.insert(placeIn(group.mlPhase), phase.release());
                return said("phase of", group);
            });
        case 2:
            return with<DeparturePoint>([this](DeparturePoint &point) {
                DepartureInterval interval;
                interval.vehiCount = mRandom.below(1000);
                mNet.edit(point).mlInterval.append(interval);
                return said("interval of", point);
            });
        case 3:
            return with<ReduceSpeedArea>([this](ReduceSpeedArea &area) {
                mNet.edit(area).mlSpeedInterval.insert(placeIn(area.mlSpeedInterval),
                                                       new ReduceSpeedInterval{0, area.reduceSpeedAreaID,
                                                                               mRandom.below(100),
                                                                               mRandom.below(1000)});
                return said("interval of", area);
            });
        case 4:
            return with<SignalGroup>([this](SignalGroup &group) {
                if (group.mlPhase.isEmpty())
                    return QString();
                SignalPhase &phase = *group.mlPhase.last();
                mNet.edit(group);
                phase.storedColors.clear();
                if (mRandom.chance(0.5) || phase.mlColor.isEmpty())
                    phase.mlColor.prepend({QStringLiteral("绿"), 7});
                else
                    phase.mlColor.removeFirst();
                return said("colours of", group);
            });
        default:
            return with<Link>([this](Link &link) {
                if (link.mlVertex.size() < 2)
                    return QString();
                mNet.edit(link);
                if (mRandom.chance(0.5) || link.mlVertex.size() < 4)
                    link.mlVertex.insert(1,
                                         new Vertex{0, mRandom.number(), mRandom.number(), mRandom.number()});
                else
                    delete link.mlVertex.takeAt(1);
                link.centerLinePointsJson = StoredJson();
                return said("vertices of", link);
            });
        }
    }
    template <class Part>
    int placeIn(const QList<Part *> &parts) {
        return mKeepsOrder ? mRandom.below(parts.size() + 1) : parts.size();
    }
    QString addLane(Link &link) {
        if (link.mlLane.isEmpty())
            return {};
        std::unique_ptr<Lane> lane = link.mlLane.last()->clone();
        lane->laneID = 0;
        lane->serialNumber = 1 + mRandom.below(link.mlLane.size() + 1);
        mNet.edit(link);
        for (Lane *other : qAsConst(link.mlLane)) {
            if (other->serialNumber >= lane->serialNumber)
                ++other->serialNumber;
        }
        link.mlLane.append(lane.release());
        return said("lane of", link);
    }

    QString removePart() {
        switch (mRandom.below(4)) {
        case 0:
            return with<Link>([this](Link &link) {
                return link.mlLane.size() > 1 &&
                               mNet.removeLane(link, *link.mlLane.at(mRandom.below(link.mlLane.size())),
                                               Cascade::Take)
                           ? said("lane off", link)
                           : QString();
            });
        case 1:
            return with<SignalGroup>([this](SignalGroup &group) {
                return !group.mlPhase.isEmpty() &&
                               mNet.removePhase(group, *group.mlPhase.at(mRandom.below(group.mlPhase.size())),
                                                Cascade::Take)
                           ? said("phase off", group)
                           : QString();
            });
        case 2:
            return with<DecisionPoint>([this](DecisionPoint &point) {
                return !point.mlRouting.isEmpty() &&
                               mNet.removeRoute(point,
                                                *point.mlRouting.at(mRandom.below(point.mlRouting.size())),
                                                Cascade::Take)
                           ? said("route off", point)
                           : QString();
            });
        default:
            return with<BusLine>([this](BusLine &line) {
                return !line.mlStationLine.isEmpty() &&
                               mNet.removeStop(
                                   line, *line.mlStationLine.at(mRandom.below(line.mlStationLine.size())),
                                   Cascade::Take)
                           ? said("stop off", line)
                           : QString();
            });
        }
    }

    QString changeSettings() {
        switch (mRandom.below(4)) {
        case 0:
            mNet.record.name = QStringLiteral("renamed %1").arg(mRandom.below(1000));
            mNet.record.centerX = mRandom.number();
            return QStringLiteral("record");
        case 1:
            if (mNet.linkTypes.size() > 1 && mRandom.chance(0.5))
                mNet.linkTypes.removeLast();
            else if (!mNet.linkTypes.isEmpty())
                mNet.linkTypes.first().limitSpeed = mRandom.number();
            return QStringLiteral("link types");
        case 2:
            if (!mNet.traffic.routeLanes.isEmpty())
                mNet.traffic.routeLanes.removeAt(mRandom.below(mNet.traffic.routeLanes.size()));
            return QStringLiteral("lanes of routes");
        default:
            if (mNet.settings.simulation)
                mNet.settings.simulation->randSeed = mRandom.below(10000);
            if (mNet.settings.scene)
                mNet.settings.scene->sceneWidth = mRandom.number();
            return QStringLiteral("settings");
        }
    }

    NetContents &mNet;
    RandomNet &mRandom;
    bool mKeepsOrder;
};

} // namespace differential
