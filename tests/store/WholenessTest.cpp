#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <functional>

namespace {

/// An object that lacks something, and the two ways to write it.
struct NotWhole {
    const char *error = nullptr;
    /// Null where no single operation writes the kind.
    std::function<bool(Link *, Link *, bool)> insert;
    std::function<void(NetContents &)> addTo;
};

template <class T>
using Insert = bool (*)(QSqlDatabase &, long, T *, bool);

/// @param list where a network has such objects.
/// @param make makes one that refers to two links.
template <class T, class List, class Make>
NotWhole lacking(const char *error, Insert<T> insert, const List &list, const Make &make) {
    NotWhole object;
    object.error = error;
    if (insert)
        object.insert = [insert, make](Link *from, Link *to, bool useTransaction) {
            const std::unique_ptr<T> made = make(from, to);
            return insert(gDB, 1, made.get(), useTransaction);
        };
    object.addTo = [list, make](NetContents &contents) {
        list(contents).push_back(make(contents.links[0].get(), contents.links[1].get()));
    };
    return object;
}

template <class T>
auto ofTraffic(Objects<T> TrafficObjects::*list) {
    return [list](NetContents &contents) -> Objects<T> & { return contents.traffic.*list; };
}

Objects<Link> &linksOf(NetContents &contents) {
    return contents.links;
}

Objects<Connector> &connectorsOf(NetContents &contents) {
    return contents.connectors;
}

/// A new object of a kind with an id, changed by @p change, which is given the object and two links.
template <class T, class Change>
auto with(long T::*id, const Change &change) {
    return [id, change](Link *from, Link *to) {
        auto object = std::make_unique<T>();
        (*object).*id = 5;
        change(*object, from, to);
        return object;
    };
}

std::vector<NotWhole> roadsAndSignals() {
    const auto link = [](const auto &change) {
        return [change](Link *, Link *) {
            std::unique_ptr<Link> made = sampleLink(5);
            change(*made);
            return made;
        };
    };
    const auto connector = [](const auto &change) {
        return [change](Link *from, Link *to) {
            std::unique_ptr<Connector> made = sampleConnector(5, from, to);
            change(*made);
            return made;
        };
    };
    const char *noEnd =
        "Connector 5 has no link at an end: set mpStartLink and mpEndLink before it is stored.";
    const char *noLane = "Connector 5 has a lane connector without a lane at an end: set mpStartLane and "
                         "mpEndLane before it is stored.";
    return {
        lacking<Link>("Link 5 has a null entry in mlVertex: take the entry out before it is stored.",
                      DBTools::insertLink, linksOf,
                      link([](Link &made) { made.mlVertex.insert(1, nullptr); })),
        lacking<Link>("Link 5 has a null entry in mlLane: take the entry out before it is stored.",
                      DBTools::insertLink, linksOf, link([](Link &made) { made.mlLane.append(nullptr); })),
        lacking<Connector>(noEnd, DBTools::insertConnector, connectorsOf,
                           connector([](Connector &made) { made.mpStartLink = nullptr; })),
        lacking<Connector>(noEnd, DBTools::insertConnector, connectorsOf,
                           connector([](Connector &made) { made.mpEndLink = nullptr; })),
        lacking<Connector>(
            "Connector 5 has a null entry in mlLaneConnector: take the entry out before it is stored.",
            DBTools::insertConnector, connectorsOf,
            connector([](Connector &made) { made.mlLaneConnector.append(nullptr); })),
        lacking<Connector>(noLane, DBTools::insertConnector, connectorsOf, connector([](Connector &made) {
                               made.mlLaneConnector.first()->mpStartLane = nullptr;
                           })),
        lacking<Connector>(noLane, DBTools::insertConnector, connectorsOf, connector([](Connector &made) {
                               made.mlLaneConnector.last()->mpEndLane = nullptr;
                           })),
        lacking<SignalGroup>(
            "Signal group \"north\" has a null entry in mlPhase: take the entry out before it is stored.",
            DBTools::insertSignalGroup, ofTraffic(&TrafficObjects::signalGroups),
            with(&SignalGroup::signalGroupID,
                 [](SignalGroup &group, Link *, Link *) {
                     group.signalGroupID = 0; // a new object goes by its name
                     group.name = QStringLiteral("north");
                     group.mlPhase.append(nullptr);
                 })),
        lacking<SignalLamp>("Signal lamp 5 has no phase: set it with setPhase() before it is stored.",
                            DBTools::insertSignalLamp, ofTraffic(&TrafficObjects::signalLamps),
                            with(&SignalLamp::signalLampID, [](SignalLamp &, Link *, Link *) {})),
    };
}

std::vector<NotWhole> demand() {
    std::vector<NotWhole> objects;
    const auto point = [](const auto &change) {
        return with(&DecisionPoint::deciPointID, [change](DecisionPoint &made, Link *from, Link *to) {
            made.mpLink = from;
            change(made, to);
        });
    };
    const auto addPoint = [&](const char *error, const auto &change) {
        objects.push_back(lacking<DecisionPoint>(error, DBTools::insertDecisionPoint,
                                                 ofTraffic(&TrafficObjects::decisionPoints), point(change)));
    };
    addPoint("Decision point 5 has no link: set mpLink before it is stored.",
             [](DecisionPoint &made, Link *) { made.mpLink = nullptr; });
    addPoint("Decision point 5 has a null entry in mlRouting: take the entry out before it is "
             "stored.",
             [](DecisionPoint &made, Link *) {
                 made.mlRouting.append(new Routing);
                 made.mlRouting.append(nullptr);
             });
    addPoint("Decision point 5 has a null entry in mlFlowByInterval: take the entry out before it "
             "is stored.",
             [](DecisionPoint &made, Link *) { made.mlFlowByInterval = {nullptr}; });
    addPoint("Decision point 5 has a null entry in mlFlowRatio until 600: take the entry out before "
             "it is stored.",
             [](DecisionPoint &made, Link *) {
                 made.mlFlowByInterval.append(new RoutingFlowByInterval);
                 made.mlFlowByInterval.first()->endDateTime = 600;
                 made.mlFlowByInterval.first()->mlFlowRatio = {nullptr};
             });
    addPoint("Route 6 has a null entry in mlLinkChain: take the entry out before it is stored.",
             [](DecisionPoint &made, Link *to) {
                 made.mlRouting.append(new Routing);
                 made.mlRouting.first()->routingID = 6;
                 made.mlRouting.first()->mlLinkChain = {{to}, {to, nullptr}};
             });
    return objects;
}

std::vector<NotWhole> transportAndZones() {
    std::vector<NotWhole> objects;
    const auto addLine = [&objects](const char *error, const auto &change) {
        objects.push_back(lacking<BusLine>(error, DBTools::insertBusLine,
                                           ofTraffic(&TrafficObjects::busLines),
                                           with(&BusLine::busLineID, change)));
    };
    const auto addArea = [&objects](const char *error, const auto &change) {
        objects.push_back(lacking<ReduceSpeedArea>(error, DBTools::insertReduceSpeedArea,
                                                   ofTraffic(&TrafficObjects::speedAreas),
                                                   with(&ReduceSpeedArea::reduceSpeedAreaID, change)));
    };
    objects.push_back(
        lacking<BusStation>("Bus station 5 has no link: set mpLink before it is stored.",
                            DBTools::insertBusStation, ofTraffic(&TrafficObjects::busStations),
                            with(&BusStation::busStationID, [](BusStation &, Link *, Link *) {})));
    addLine("Bus line 5 has a null entry in mlLink: take the entry out before it is stored.",
            [](BusLine &line, Link *from, Link *) {
                line.mlLink = {from, nullptr};
            });
    addLine("Bus line 5 has a null entry in mlStationLine: take the entry out before it is stored.",
            [](BusLine &line, Link *, Link *) { line.mlStationLine = {nullptr}; });
    addLine("Bus line 5 has a null entry in mlPassengerArriving of stop 7: take the entry out before "
            "it is stored.",
            [](BusLine &line, Link *, Link *) {
                line.mlStationLine.append(new BusStationLine);
                line.mlStationLine.first()->stationLineID = 7;
                line.mlStationLine.first()->mlPassengerArriving = {nullptr};
            });
    addArea("Speed reduction area 5 has a null entry in mlSpeedInterval: take the entry out before "
            "it is stored.",
            [](ReduceSpeedArea &area, Link *, Link *) { area.mlSpeedInterval = {nullptr}; });
    addArea("Speed reduction area 5 has a null entry in mlSpeedVehiType: take the entry out before "
            "it is stored.",
            [](ReduceSpeedArea &area, Link *, Link *) { area.mlSpeedVehiType = {nullptr}; });
    objects.push_back(lacking<AccidentZone>(
        "Accident zone 5 has a null entry in mlLane: take the entry out before it is stored.", nullptr,
        ofTraffic(&TrafficObjects::accidentZones),
        with(&AccidentZone::accidentZoneId,
             [](AccidentZone &zone, Link *, Link *) { zone.mlLane = {nullptr}; })));
    objects.push_back(lacking<RoadWorkZone>(
        "Road-work zone 5 has a null entry in mlLane: take the entry out before it is stored.", nullptr,
        ofTraffic(&TrafficObjects::roadWorkZones),
        with(&RoadWorkZone::roadWorkZoneId,
             [](RoadWorkZone &zone, Link *, Link *) { zone.mlLane = {nullptr}; })));
    return objects;
}

class WholenessTest : public StoreKindFixture {
protected:
    void prepare() override { letReferencesDangle(); }

    /// Refused by one record, with nothing written and nothing left open.
    void expectRefused(bool written, const char *error, long id) {
        EXPECT_FALSE(written) << error;
        EXPECT_EQ(failureCount(), 1) << error;
        if (!failures().isEmpty()) {
            EXPECT_EQ(failures().last().error.toStdString(), error);
            EXPECT_EQ(failures().last().id, id) << error;
        }
        for (const char *table : {"Vertex",
                                  "Node",
                                  "Link",
                                  "Lane",
                                  "LinkVertex",
                                  "Connector",
                                  "LaneConnector",
                                  "SignalGroup",
                                  "SignalPhase",
                                  "SignalLamp",
                                  "DecisionPoint",
                                  "Routing",
                                  "RoutingLink",
                                  "RoutingFLowRatio",
                                  "BusStation",
                                  "BusLine",
                                  "BusStationLine",
                                  "BusStationPassengerArriving",
                                  "BusLineRoad",
                                  "ReduceSpeedArea",
                                  "ReduceSpeedInterval",
                                  "ReduceSpeedVehiType",
                                  "AccidentZone",
                                  "RoadWorkZone"})
            EXPECT_EQ(count(QLatin1String(table)), 0) << table << ": " << error;
        clearFailures();
    }

    void expectRefused(const std::vector<NotWhole> &objects) {
        const auto from = sampleLink(1);
        const auto to = sampleLink(2);
        for (const NotWhole &object : objects) {
            const std::string error = object.error;
            const long id = error.find(" 5 ") != std::string::npos   ? 5
                            : error.find(" 6 ") != std::string::npos ? 6
                                                                     : 0;
            for (const bool useTransaction : {true, false}) {
                if (object.insert)
                    expectRefused(object.insert(from.get(), to.get(), useTransaction), object.error, id);
            }
            NetContents contents;
            contents.links.push_back(sampleLink(1));
            contents.links.push_back(sampleLink(2));
            contents.links.back()->linkID = 0; // and no id is given
            object.addTo(contents);
            expectRefused(DBTools::saveNet(gDB, kNet, contents, true), object.error, id);
            EXPECT_EQ(contents.links[1]->linkID, 0) << error;
        }
    }
};

TEST_P(WholenessTest, ObjectsThatLackSomethingAreRefusedByName) {
    expectRefused(roadsAndSignals());
    expectRefused(demand());
    expectRefused(transportAndZones());
}

TEST_P(WholenessTest, PartsOfADecisionPointAreRefusedByThemselves) {
    const auto link = sampleLink(1);
    Routing route;
    route.routingID = 6;
    route.mlLinkChain = {{link.get()}, {nullptr, link.get()}};
    expectRefused(DBTools::insertRouting(gDB, kNet, &route, true),
                  "Route 6 has a null entry in mlLinkChain: take the entry out before it is stored.", 6);
    RoutingFlowByInterval interval;
    interval.endDateTime = 300;
    interval.mlFlowRatio = {new RoutingFLowRatio, nullptr};
    expectRefused(DBTools::insertRoutingFlowRatio(gDB, kNet, 1, &interval, true),
                  "A flow interval has a null entry in mlFlowRatio until 300: take the entry out before it "
                  "is stored.",
                  0);
    // No route at all is none to write.
    EXPECT_TRUE(DBTools::insertRouting(gDB, kNet, nullptr, true));
    EXPECT_TRUE(DBTools::insertSignalGroup(gDB, kNet, nullptr, true));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(WholenessTest, AListWithANullEntryIsRefused) {
    const auto from = sampleLink(1);
    const auto to = sampleLink(2);
    QList<Link *> links = {from.get(), nullptr};
    expectRefused(DBTools::insertLinks(gDB, kNet, links, true),
                  "The list of links has a null entry in it: take the entry out before it is stored.", 0);
    const auto connector = sampleConnector(5, from.get(), to.get());
    QList<Connector *> connectors = {connector.get(), nullptr};
    expectRefused(DBTools::insertConnectors(gDB, kNet, connectors, true),
                  "The list of connectors has a null entry in it: take the entry out before it is stored.",
                  0);

    const std::vector<std::pair<const char *, std::function<void(NetContents &)>>> lists = {
        {"links", [](NetContents &net) { net.links.emplace_back(); }},
        {"guideArrows", [](NetContents &net) { net.guideArrows.emplace_back(); }},
        {"connectors", [](NetContents &net) { net.connectors.emplace_back(); }},
        {"vehicleTypes", [](NetContents &net) { net.traffic.vehicleTypes.emplace_back(); }},
        {"compositions", [](NetContents &net) { net.traffic.compositions.emplace_back(); }},
        {"departurePoints", [](NetContents &net) { net.traffic.departurePoints.emplace_back(); }},
        {"decisionPoints", [](NetContents &net) { net.traffic.decisionPoints.emplace_back(); }},
        {"signalGroups", [](NetContents &net) { net.traffic.signalGroups.emplace_back(); }},
        {"signalLamps", [](NetContents &net) { net.traffic.signalLamps.emplace_back(); }},
        {"vehicleDetectors", [](NetContents &net) { net.traffic.vehicleDetectors.emplace_back(); }},
        {"queueCounters", [](NetContents &net) { net.traffic.queueCounters.emplace_back(); }},
        {"travelDetectors", [](NetContents &net) { net.traffic.travelDetectors.emplace_back(); }},
        {"collectors", [](NetContents &net) { net.traffic.collectors.emplace_back(); }},
        {"busStations", [](NetContents &net) { net.traffic.busStations.emplace_back(); }},
        {"busLines", [](NetContents &net) { net.traffic.busLines.emplace_back(); }},
        {"speedAreas", [](NetContents &net) { net.traffic.speedAreas.emplace_back(); }},
        {"accidentZones", [](NetContents &net) { net.traffic.accidentZones.emplace_back(); }},
        {"roadWorkZones", [](NetContents &net) { net.traffic.roadWorkZones.emplace_back(); }},
    };
    for (const auto &[list, addNull] : lists) {
        NetContents contents;
        contents.links.push_back(sampleLink(1));
        addNull(contents);
        const std::string error = std::string("Network 1 has a null entry in ") + list +
                                  ": take the entry out before it is stored.";
        expectRefused(DBTools::saveNet(gDB, kNet, contents, true), error.c_str(), kNet);
    }
}

TEST_P(WholenessTest, WhatStandsOnAMissingLinkIsLeftOutByAWholeLoadAlone) {
    const auto link = sampleLink(1);
    const auto gone = sampleLink(2);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    for (Link *at : {link.get(), gone.get()}) {
        DecisionPoint point;
        point.deciPointID = 10 + at->linkID;
        point.mpLink = at;
        point.mlRouting = {new Routing};
        point.mlRouting.first()->routingID = 20 + at->linkID;
        point.mlRouting.first()->mlLinkChain = {{link.get()}};
        point.mlFlowByInterval = {new RoutingFlowByInterval};
        point.mlFlowByInterval.first()->mlFlowRatio = {new RoutingFLowRatio};
        RoutingFLowRatio &ratio = *point.mlFlowByInterval.first()->mlFlowRatio.first();
        ratio.routingFLowRatioID = 30 + at->linkID;
        ratio.routingID = 20 + at->linkID;
        ASSERT_TRUE(DBTools::insertDecisionPoint(gDB, kNet, &point, true));
    }
    reopen();
    const std::unique_ptr<DecisionPoint> read(DBTools::selectDecisionPointByID(gDB, kNet, 12));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mpLink, nullptr);
    EXPECT_EQ(read->mlRouting.size(), 1);

    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    ASSERT_EQ(net.traffic.decisionPoints.size(), 1U);
    EXPECT_EQ(net.traffic.decisionPoints.front()->deciPointID, 11);
    QStringList report;
    for (const SkippedRows &skipped : qAsConst(net.skipped))
        report.append(skipped.table + QStringLiteral(" %1 ").arg(skipped.ids.first()) + skipped.reason);
    EXPECT_EQ(report, QStringList({QStringLiteral("DecisionPoint 12 stands on a link that is missing"),
                                   QStringLiteral("Routing 12 belongs to no decision point"),
                                   QStringLiteral("RoutingLink 22 belongs to no route"),
                                   QStringLiteral("RoutingFLowRatio 22 belongs to no route")}));
    EXPECT_EQ(failureCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, WholenessTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
