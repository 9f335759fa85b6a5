#include "tests/differential/SingleOperations.h"

#include "model/SpecialWords.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"

#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace differential {

namespace {

class Writer {
public:
    Writer(NetContents &net, long netId, bool severalNets)
        : mNet(net), mId(netId), mSeveralNets(severalNets) {}

    QStringList write() {
        EXPECT_TRUE(gDB.transaction());
        if (mSeveralNets)
            writeRecord();
        writeCatalogue();
        writeRoads();
        writeSignalsAndDemand();
        writeDevices();
        writeTransitAndZones();
        writeSettings();
        EXPECT_TRUE(gDB.commit());
        return mRefused;
    }

private:
    void note(bool written, const char *kind, long id) {
        if (!written)
            mRefused.append(QString::fromLatin1(kind) + QLatin1Char(' ') + QString::number(id));
    }
    /// A row of the network by a statement of the test's own.
    void row(const QString &table, const QStringList &columns, const QVariantList &values) {
        QStringList names = columns;
        QVariantList all = values;
        if (mSeveralNets) {
            names.prepend(QStringLiteral("NetId"));
            all.prepend(qlonglong(mId));
        }
        QStringList places;
        for (int i = 0; i < names.size(); ++i)
            places.append(QStringLiteral("?"));
        run(QStringLiteral("insert into ") + table + QLatin1Char('(') + names.join(QLatin1String(", ")) +
                QStringLiteral(") values(") + places.join(QLatin1String(", ")) + QLatin1Char(')'),
            all);
    }
    static void run(const QString &sql, const QVariantList &values = {}) {
        QSqlQuery query(gDB);
        EXPECT_TRUE(query.prepare(sql)) << qPrintable(sql);
        for (const QVariant &value : values) {
            // A number in a statement has no sign when it is 0; the text of one has.
            const bool isZero = value.userType() == QMetaType::Double && value.toDouble() == 0;
            query.addBindValue(isZero && std::signbit(value.toDouble()) ? QVariant(QStringLiteral("-0"))
                                                                        : value);
        }
        EXPECT_TRUE(query.exec()) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
    }
    QString ofNet() const {
        return mSeveralNets ? QStringLiteral(" where NetId = ") + QString::number(mId) : QString();
    }

    void writeRecord() {
        const NetRecord &record = mNet.record;
        const QString json =
            QString::fromUtf8(QJsonDocument(record.otherAttrsJson).toJson(QJsonDocument::Compact));
        note(DBTools_V6::insertNet(gDB, mId, record.name, {record.centerX, record.centerY}, record.sourceType,
                                   record.backgroundUrl, json, record.isDefault, false) &&
                 DBTools_V6::updateNet(gDB, mId, record.name, record.sourceUrl, record.sourceType,
                                       record.backgroundUrl, record.centerX, record.centerY, record.caption,
                                       json, record.isDefault, false),
             "Net", mId);
        // The sets of the car-following model can only be changed singly.
        DBTools::initDictionary(gDB, mId, false);
        for (const char *table : {"LinkType", "VehicleTraceOption"})
            run(QStringLiteral("delete from ") + QLatin1String(table) + ofNet());
    }

    void writeCatalogue() {
        for (const char *table : {"VehicleConsDetail", "VehicleConstitutent", "VehicleType"})
            run(QStringLiteral("delete from ") + QLatin1String(table) + ofNet());
        for (const auto &type : mNet.traffic.vehicleTypes)
            note(DBTools::insertVehicleType(gDB, mId, *type, false), "VehicleType", type->vehicleTypeCode);
        for (const auto &composition : mNet.traffic.compositions)
            note(DBTools::insertVehicleConstitutent(gDB, mId, *composition, false), "VehicleConstitutent",
                 composition->vehicleConsCode);
        for (const LinkType &type : qAsConst(mNet.linkTypes))
            writeLinkType(type);
    }

    void writeLinkType(const LinkType &type) {
        // Stores of one network start with the first ten, which have a column that objects lack.
        constexpr int standard = 10;
        const QVariantList values = {gSpecialWords.trZhToEn(type.typeName),
                                     type.trafficCapacity,
                                     type.trafficSpeed,
                                     type.limitSpeed,
                                     type.minSpeed,
                                     qlonglong(type.linkTypeID)};
        if (!mSeveralNets && type.linkTypeID <= standard)
            run(QStringLiteral("update LinkType set typeName = ?, trafficCapacity = ?, trafficSpeed = ?, "
                               "limitSpeed = ?, minSpeed = ? where linkTypeID = ?"),
                values);
        else
            row(QStringLiteral("LinkType"),
                {QStringLiteral("typeName"), QStringLiteral("trafficCapacity"),
                 QStringLiteral("trafficSpeed"), QStringLiteral("limitSpeed"), QStringLiteral("minSpeed"),
                 QStringLiteral("linkTypeID")},
                values);
    }

    void writeRoads() {
        for (const auto &link : mNet.links)
            note(DBTools::insertLink(gDB, mId, link.get(), false), "Link", link->linkID);
        for (const auto &arrow : mNet.guideArrows)
            note(DBTools::insertGuideArrow(gDB, mId, arrow.get(), false), "GuideArrow", arrow->guideArrowID);
        for (const auto &connector : mNet.connectors)
            note(DBTools::insertConnector(gDB, mId, connector.get(), false), "Connector", connector->connID);
    }

    void writeSignalsAndDemand() {
        const TrafficObjects &traffic = mNet.traffic;
        for (const auto &group : traffic.signalGroups)
            note(DBTools::insertSignalGroup(gDB, mId, group.get(), false), "SignalGroup",
                 group->signalGroupID);
        for (const auto &lamp : traffic.signalLamps)
            note(DBTools::insertSignalLamp(gDB, mId, lamp.get(), false), "SignalLamp", lamp->signalLampID);
        for (const auto &point : traffic.departurePoints)
            note(DBTools::insertDeparturePoint(gDB, mId, *point, false), "DeparturePoint",
                 point->departurePointID);
        for (const auto &point : traffic.decisionPoints)
            note(DBTools::insertDecisionPoint(gDB, mId, point.get(), false), "DecisionPoint",
                 point->deciPointID);
        for (const RouteLanes &pair : traffic.routeLanes)
            note(DBTools::insertRoutingLaneConnector(gDB, mId, pair.routingID, pair.connID,
                                                     pair.lanes.laneID1, pair.lanes.laneID2, false),
                 "RoutingLaneConnector", pair.routingID);
    }

    void writeDevices() {
        const TrafficObjects &traffic = mNet.traffic;
        for (const auto &detector : traffic.vehicleDetectors)
            note(DBTools::insertVehicleDetector(gDB, mId, detector.get(), false), "VehicleDetector",
                 detector->vehicleDetectorId);
        for (const auto &counter : traffic.queueCounters)
            note(DBTools::insertVehicleQueueCounter(gDB, mId, counter.get(), false), "VehicleQueueCounter",
                 counter->queueCounterID);
        for (const auto &detector : traffic.travelDetectors)
            note(DBTools::insertVehicleTravelDetector(gDB, mId, detector.get(), false),
                 "VehicleTravelDetector", detector->detectorId);
        for (const auto &collector : traffic.collectors)
            note(DBTools::insertDrivInfoCollector(gDB, mId, *collector, false), "VehicleDrivInfoCollecter",
                 collector->collecterID);
    }

    void writeTransitAndZones() {
        const TrafficObjects &traffic = mNet.traffic;
        for (const auto &station : traffic.busStations)
            note(DBTools::insertBusStation(gDB, mId, station.get(), false), "BusStation",
                 station->busStationID);
        for (const auto &line : traffic.busLines)
            note(DBTools::insertBusLine(gDB, mId, line.get(), false), "BusLine", line->busLineID);
        const auto text = [](const QString &value) { return value.isNull() ? QStringLiteral("") : value; };
        for (const auto &zone : traffic.accidentZones) {
            row(QStringLiteral("AccidentZone"),
                {QStringLiteral("accidentZoneId"), QStringLiteral("name"), QStringLiteral("location"),
                 QStringLiteral("zoneLength"), QStringLiteral("roadId"), QStringLiteral("roadType")},
                {qlonglong(zone->accidentZoneId), text(zone->name), double(zone->location),
                 double(zone->zoneLength), qlonglong(zone->roadId), text(zone->roadType)});
            writeLanes(QStringLiteral("AccidentZoneWithLane"), QStringLiteral("accidentZoneId"),
                       zone->mlLane);
        }
        for (const auto &zone : traffic.roadWorkZones) {
            row(QStringLiteral("RoadWorkZone"),
                {QStringLiteral("roadWorkZoneId"), QStringLiteral("name"), QStringLiteral("location"),
                 QStringLiteral("zoneLength"), QStringLiteral("limitSpeed"), QStringLiteral("roadID"),
                 QStringLiteral("roadName"), QStringLiteral("roadType")},
                {qlonglong(zone->roadWorkZoneId), text(zone->name), zone->location, zone->zoneLength,
                 zone->limitSpeed, qlonglong(zone->roadID), text(zone->roadName), text(zone->roadType)});
            writeLanes(QStringLiteral("RoadWorkZoneWithLane"), QStringLiteral("roadWorkZoneId"),
                       zone->mlLane);
        }
        for (const auto &area : traffic.speedAreas)
            note(DBTools::insertReduceSpeedArea(gDB, mId, area.get(), false), "ReduceSpeedArea",
                 area->reduceSpeedAreaID);
    }

    void writeLanes(const QString &table, const QString &id, const QList<ZoneLane *> &lanes) {
        for (const ZoneLane *lane : lanes)
            row(table, {id, QStringLiteral("laneNumber"), QStringLiteral("toLaneNumber")},
                {qlonglong(lane->zoneId), lane->laneNumber, lane->toLaneNumber});
    }

    void writeSettings() {
        NetSettings &settings = mNet.settings;
        for (DriveFollowedModelParam &param : settings.carFollowing)
            note(DBTools::saveDriveFollowedModelParam(gDB, mId, param, false), "DriveFollowedModelParam",
                 param.modelParamID);
        note(DBTools::saveChangeLaneParam(gDB, mId, settings.laneChanging, false), "ChangeLaneModelParam", 0);
        note(DBTools::saveSimuConfiguration(gDB, mId, *settings.simulation, false), "SimulateConfiguration",
             0);
        gNet.config() = *settings.scene;
        note(DBTools::saveConfiguration(gDB, mId, false), "Configuration", 0);
    }

    NetContents &mNet;
    long mId;
    bool mSeveralNets;
    QStringList mRefused;
};

class Reader {
public:
    explicit Reader(long netId) : mId(netId) {}

    std::unique_ptr<NetContents> read() {
        readCatalogue();
        TrafficObjects &traffic = mNet->traffic;
        each(&DBTools::selectLinkIDs, &DBTools::selectLinkByID, mNet->links);
        each(&DBTools::selectGuideArrowIDs, &DBTools::selectGuideArrowByID, mNet->guideArrows);
        each(&DBTools::selectConnectorIDs, &DBTools::selectConnectorByID, mNet->connectors);
        each(&DBTools::selectSignalGroupIDs, &DBTools::selectSignalGroupByID, traffic.signalGroups);
        each(&DBTools::selectSignalLampIDs, &DBTools::selectSignalLampByID, traffic.signalLamps);
        const auto departurePoint = [](QSqlDatabase &db, long netId, long id) {
            return DBTools::selectDeparturePoint(db, netId, ghVehicleComposition, id);
        };
        each(&DBTools::selectDeparturePointIds, departurePoint, traffic.departurePoints);
        each(&DBTools::selectDecisionPointIDs, &DBTools::selectDecisionPointByID, traffic.decisionPoints);
        readRouteLanes();
        each(&DBTools::selectVehicleDetectorIds, &DBTools::selectVehicleDetector, traffic.vehicleDetectors);
        each(&DBTools::selectVehicleQueueCounterIds, &DBTools::selectVehicleQueueCounter,
             traffic.queueCounters);
        each(&DBTools::selectVehicleTravelDetectorIds, &DBTools::selectVehicleTravelDetector,
             traffic.travelDetectors);
        const auto collector = [](QSqlDatabase &db, long netId, long id) {
            return new VehicleDrivInfoCollector(DBTools::selectVehicleDrivInfoCollector(db, netId, id));
        };
        each(&DBTools::selectVehicleDrivInfoCollectorIds, collector, traffic.collectors);
        each(&DBTools::selectBusStationIds, &DBTools::selectBusStation, traffic.busStations);
        each(&DBTools::selectBusLineIds, &DBTools::selectBusLine, traffic.busLines);
        each(&DBTools::selectAccidentZoneIds, &DBTools::selectAccidentZone, traffic.accidentZones);
        each(&DBTools::selectRoadWorkZoneIds, &DBTools::selectRoadWorkZone, traffic.roadWorkZones);
        each(&DBTools::selectReduceSpeedAreaIds, &DBTools::selectReduceSpeedArea, traffic.speedAreas);
        readSettings();
        return std::move(mNet);
    }

private:
    template <class List, class Read, class Object>
    void each(const List &list, const Read &read, Objects<Object> &objects) {
        QList<long> ids;
        list(gDB, mId, ids);
        for (const long id : qAsConst(ids)) {
            if (Object *object = read(gDB, mId, id))
                objects.emplace_back(object);
        }
    }

    void readCatalogue() {
        ghVehicleType.clear();
        ghVehicleComposition.clear();
        EXPECT_TRUE(DBTools::selectVehicleType(gDB, mId, ghVehicleType));
        QList<long> codes = ghVehicleType.keys();
        std::sort(codes.begin(), codes.end());
        for (const long code : qAsConst(codes))
            mNet->traffic.vehicleTypes.push_back(std::make_unique<VehicleType>(ghVehicleType.value(code)));
        EXPECT_TRUE(DBTools::selectVehicleConstitutent(gDB, mId, ghVehicleComposition));
        codes = VehicleComposition::vcCodeList(ghVehicleComposition);
        // The catalogue as a whole comes without the default flag.
        for (const long code : qAsConst(codes))
            mNet->traffic.compositions.push_back(
                std::make_unique<VehicleComposition>(DBTools::selectVehicleComposition(gDB, mId, code)));
        EXPECT_TRUE(DBTools::selectLinkType(gDB, mId, mNet->linkTypes));
    }

    void readRouteLanes() {
        for (const auto &point : mNet->traffic.decisionPoints) {
            for (const Routing *route : qAsConst(point->mlRouting)) {
                for (const auto &connector : mNet->connectors) {
                    const QList<LCStruct *> pairs =
                        DBTools::selectRoutingLaneConnector(gDB, mId, route->routingID, connector->connID);
                    for (const LCStruct *pair : pairs)
                        mNet->traffic.routeLanes.append({route->routingID, connector->connID, *pair});
                    qDeleteAll(pairs);
                }
            }
        }
        std::sort(mNet->traffic.routeLanes.begin(), mNet->traffic.routeLanes.end(),
                  [](const RouteLanes &a, const RouteLanes &b) {
                      return std::tie(a.routingID, a.connID, a.lanes.laneID1, a.lanes.laneID2) <
                             std::tie(b.routingID, b.connID, b.lanes.laneID1, b.lanes.laneID2);
                  });
    }

    void readSettings() {
        NetSettings &settings = mNet->settings;
        DriveFollowedModelParam first;
        DriveFollowedModelParam second;
        EXPECT_TRUE(DBTools::selectDriveFollowedModelParam(gDB, mId, first, second));
        settings.carFollowing = {first, second};
        EXPECT_TRUE(DBTools::selectChangeLaneParam(gDB, mId, settings.laneChanging));
        EXPECT_TRUE(DBTools::selectSimuConfiguration(gDB, mId, settings.simulation.emplace()));
        EXPECT_TRUE(DBTools::selectConfiguration(gDB, mId, settings.scene.emplace()));
    }

    long mId;
    std::unique_ptr<NetContents> mNet = std::make_unique<NetContents>();
};

} // namespace

QStringList writeSingly(NetContents &net, long netId, bool severalNets) {
    return Writer(net, netId, severalNets).write();
}

std::unique_ptr<NetContents> readSingly(long netId) {
    return Reader(netId).read();
}

} // namespace differential
