#include "model/AccidentZone.h"
#include "model/BusLine.h"
#include "model/DecisionPoint.h"
#include "model/Link.h"
#include "model/Net.h"
#include "model/ReduceSpeedArea.h"

#include <MoraInterfaces/PlainRecords.h>

#include <gtest/gtest.h>

#include <utility>

// The address sanitizer finds what is freed twice or never; the cases make the owners and copies that could.

TEST(Ownership, CopiedDecisionPointHasRoutesOfItsOwn) {
    Link link;
    DecisionPoint point;
    point.deciPointID = 4;
    point.mpLink = &link;
    auto *route = new Routing;
    route->routingID = 6;
    route->mpDecisionPoint = &point;
    route->mlLinkChain = {{&link, &link}};
    point.mlRouting.append(route);
    auto *interval = new RoutingFlowByInterval;
    interval->endDateTime = 300;
    interval->mlFlowRatio.append(new RoutingFLowRatio);
    point.mlFlowByInterval.append(interval);

    DecisionPoint copy = point;
    DecisionPoint assigned;
    assigned.mlRouting.append(new Routing);
    assigned = copy;
    assigned = std::as_const(assigned);
    for (const DecisionPoint *twin : {&copy, &assigned}) {
        EXPECT_EQ(twin->deciPointID, 4);
        EXPECT_EQ(twin->mpLink, &link);
        ASSERT_EQ(twin->mlRouting.size(), 1);
        EXPECT_NE(twin->mlRouting.first(), route);
        EXPECT_EQ(twin->mlRouting.first()->routingID, 6);
        EXPECT_EQ(twin->mlRouting.first()->mpDecisionPoint, twin);
        EXPECT_EQ(twin->mlRouting.first()->mlLinkChain, route->mlLinkChain);
        ASSERT_EQ(twin->mlFlowByInterval.size(), 1);
        EXPECT_NE(twin->mlFlowByInterval.first()->mlFlowRatio.first(), interval->mlFlowRatio.first());
    }
    route->init();
    EXPECT_EQ(route->mpDecisionPoint, nullptr);
    EXPECT_TRUE(route->mlLinkChain.isEmpty());
    EXPECT_EQ(copy.mlRouting.first()->mlLinkChain.size(), 1);
}

TEST(Ownership, DecisionPointTakesThePlainRecordAndFindsItsLink) {
    Link link;
    link.linkID = 8;
    gNet.enter(&link);
    DecisionPoint point;
    point.mlRouting.append(new Routing);
    point = _DecisionPoint{3, QStringLiteral("p"), 8, 1.5, 2.5, 3.5};
    EXPECT_EQ(point.deciPointID, 3);
    EXPECT_EQ(point.deciPointName, QStringLiteral("p"));
    EXPECT_EQ(point.mpLink, &link);
    EXPECT_EQ(QList<double>({point.x, point.y, point.z}), QList<double>({1.5, 2.5, 3.5}));
    EXPECT_EQ(point.mlRouting.size(), 1);
    point = _DecisionPoint{};
    EXPECT_EQ(point.mpLink, nullptr);

    RoutingFLowRatio ratio;
    ratio = _RoutingFLowRatio{1, 2, 3, 4, 0.5};
    EXPECT_EQ(
        QList<long>({ratio.routingFLowRatioID, ratio.routingID, ratio.startDateTime, ratio.endDateTime}),
        QList<long>({1, 2, 3, 4}));
    EXPECT_EQ(ratio.ratio, 0.5);
}

TEST(Ownership, CopiedBusLineHasStopsOfItsOwnAndSharesLinks) {
    Link link;
    BusLine line;
    line.busLineID = 2;
    line.mlLink = {&link};
    auto *stop = new BusStationLine;
    stop->stationLineID = 5;
    stop->mlPassengerArriving.append(new PassengerArriving(1, 0, 300, 12));
    stop->mlPassenger.append(new Passenger(++Passenger::generId, 10, stop));
    stop->mlLeavingPassenger.append(new Passenger(++Passenger::generId, 20, stop));
    line.mlStationLine.append(stop);

    BusLine copy = line;
    ASSERT_EQ(copy.mlStationLine.size(), 1);
    const BusStationLine *copiedStop = copy.mlStationLine.first();
    EXPECT_NE(copiedStop, stop);
    EXPECT_EQ(copiedStop->stationLineID, 5);
    ASSERT_EQ(copiedStop->mlPassengerArriving.size(), 1);
    EXPECT_EQ(copiedStop->mlPassengerArriving.first()->passengerCount, 12);
    EXPECT_TRUE(copiedStop->mlPassenger.isEmpty());
    EXPECT_TRUE(copiedStop->mlLeavingPassenger.isEmpty());

    stop->releasePassengers();
    EXPECT_TRUE(stop->mlPassenger.isEmpty() && stop->mlLeavingPassenger.isEmpty());
    EXPECT_EQ(stop->mlPassengerArriving.size(), 1);
    stop->releasePassengerArriving();
    EXPECT_TRUE(stop->mlPassengerArriving.isEmpty());

    line.init();
    EXPECT_EQ(line.name, QStringLiteral("0"));
    EXPECT_TRUE(line.mlLink.isEmpty() && line.mlStationLine.isEmpty());
    EXPECT_EQ(copy.mlLink, QList<Link *>({&link}));
}

TEST(Ownership, StopIsTunedThroughTheInterface) {
    BusStationLine stop;
    stop.stationLineID = 1;
    stop.busStationID = 2;
    stop.busLineID = 3;
    IBusStationLine &shown = stop;
    EXPECT_EQ(QList<long>({shown.id(), shown.stationId(), shown.lineId()}), QList<long>({1, 2, 3}));
    EXPECT_EQ(shown.busParkingTime(), 5);
    shown.setBusParkingTime(6);
    shown.setGetOutPercent(7);
    shown.setGetOnTimePerPerson(8);
    shown.setGetOutTimePerPerson(9);
    EXPECT_EQ(QList<double>({double(shown.busParkingTime()), shown.getOutPercent(),
                             shown.getOnTimePerPerson(), shown.getOutTimePerPerson()}),
              QList<double>({6, 7, 8, 9}));
    EXPECT_EQ(stop.leavingPercent, 7);
}

TEST(Ownership, AListTakesOverTheObjectsOfAnother) {
    int alive = 0;
    struct Counted {
        explicit Counted(int &counter) : count(counter) { ++count; }
        Counted(const Counted &other) : count(other.count) { ++count; }
        ~Counted() { --count; }
        int &count;
    };
    {
        OwningList<Counted> list;
        auto *kept = new Counted(alive);
        auto *newOne = new Counted(alive);
        list = {new Counted(alive), kept};
        const QList<Counted *> others = {kept, newOne, nullptr};
        list = others;
        EXPECT_EQ(alive, 2) << "what is not in the list any more is deleted";
        EXPECT_EQ(list, others);
        const OwningList<Counted> copy = list;
        EXPECT_EQ(copy.last(), nullptr);
        EXPECT_EQ(alive, 4);
        const QList<Counted *> same(list);
        list = same;
        EXPECT_EQ(alive, 4);
        list = {};
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(alive, 0);
}

TEST(Ownership, CopiedZonesAndAreasHaveChildrenOfTheirOwn) {
    AccidentZone zone;
    zone.mlLane.append(new ZoneLane{1, 2, -1});
    AccidentZone copy = zone;
    AccidentZone moved = std::move(zone);
    EXPECT_NE(copy.mlLane.first(), moved.mlLane.first());
    EXPECT_EQ(copy.mlLane.first()->laneNumber, 2);
    moved = copy;
    EXPECT_EQ(moved.mlLane.size(), 1);
    QList<AccidentZone> zones = {copy, moved};
    zones.removeFirst();
    EXPECT_EQ(zones.first().mlLane.size(), 1);

    ReduceSpeedArea area;
    area.mlSpeedInterval.append(new ReduceSpeedInterval{1, 2, 3, 4});
    area.mlSpeedVehiType.append(new ReduceSpeedVehiType{2, 1, 30, 5});
    const ReduceSpeedArea kept = area;
    area.releaseSpeedInterval();
    EXPECT_TRUE(area.mlSpeedInterval.isEmpty());
    EXPECT_EQ(area.mlSpeedVehiType.size(), 1);
    area.releaseVehiType();
    EXPECT_TRUE(area.mlSpeedVehiType.isEmpty());
    EXPECT_EQ(kept.mlSpeedInterval.first()->endTime, 4);
    EXPECT_EQ(kept.mlSpeedVehiType.first()->avgSpeed, 30);
}
