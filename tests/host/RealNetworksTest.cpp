#include "tests/host/Morastore.h"
#include "tests/support/RealData.h"

#include <QStandardPaths>

#include <algorithm>
#include <cmath>

// Real networks go into a store and come back, and the store has what an independent parse of the files says.

namespace {

constexpr struct {
    const char *name; ///< as independent_parse.py says it
    const char *sql;
} kFigures[] = {
    {"links", "select count(*) from Link"},
    {"linkLength", "select sum(length) from Link"},
    {"linkLimits", "select sum(limitSpeed) from Link"},
    {"lanes", "select count(*) from Lane"},
    {"laneWidths", "select sum(width) from Lane"},
    {"laneSerials", "select sum(serialNumber) from Lane"},
    {"laneX",
     "select sum(p.value ->> 'x') from Lane, json_each(cast(centerLinePointsJson as text), '$.data') p"},
    {"laneY",
     "select sum(p.value ->> 'y') from Lane, json_each(cast(centerLinePointsJson as text), '$.data') p"},
    {"connectors", "select count(*) from Connector"},
    {"connectorLimits", "select sum(limitSpeed) from Connector"},
    {"laneConnectors", "select count(*) from LaneConnector"},
    {"programmes", "select count(*) from SignalGroup"},
    {"cycles", "select sum(timeLength) from SignalGroup"},
    {"offsets", "select sum(startTime) from SignalGroup"},
    {"signals", "select count(*) from SignalPhase"},
    {"green", "select sum(timeLength) from SignalColor where color = 'Green'"},
    {"yellow", "select sum(timeLength) from SignalColor where color = 'Yellow'"},
    {"red", "select sum(timeLength) from SignalColor where color = 'Red'"},
    {"grey", "select sum(timeLength) from SignalColor where color = 'Grey'"},
    {"lamps", "select count(*) from SignalLamp"},
    {"vehicles", "select sum(vehiCount) from DepartureInterval"},
    {"departureEnds", "select sum(vehiCount * interval) from DepartureInterval"},
    {"starts", "select count(*) from DecisionPoint"},
    {"routes", "select count(*) from Routing"},
    {"routeLinks", "select count(*) from RoutingLink"},
    {"lines", "select count(*) from BusLine"},
    {"lineLinks", "select count(*) from BusLineRoad"},
    {"stops", "select count(*) from BusStationLine"},
    {"loops", "select count(*) from VehicleDrivInfoCollecter"},
    {"loopPositions", "select sum(distance) from VehicleDrivInfoCollecter"},
    {"busStops", "select count(*) from BusStation"},
    {"busStopLength", "select sum(length) from BusStation"},
};

/// A network and its companions, in a folder of the real data.
struct City {
    const char *name;
    const char *network;
    std::vector<const char *> additional;
    std::vector<const char *> routes;
};

class RealNetworks : public Morastore {
protected:
    static void expectFigures(const QString &store, const QStringList &files) {
        const Outcome parse =
            start(QStandardPaths::findExecutable(QStringLiteral("python3")),
                  QStringList(sourceFolder() + QStringLiteral("/tests/host/independent_parse.py")) + files);
        ASSERT_EQ(parse.exitCode, 0) << parse.err.toStdString();
        QStringList lines = parse.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const auto &figure : kFigures) {
            const QString label = QLatin1String(figure.name) + QLatin1Char(' ');
            const auto line = std::find_if(lines.begin(), lines.end(),
                                           [&](const QString &each) { return each.startsWith(label); });
            const double expected = line == lines.end() ? 0 : line->mid(label.size()).toDouble();
            if (line != lines.end())
                lines.erase(line);
            const double stored = row(store, QLatin1String(figure.sql)).first().toDouble();
            EXPECT_NEAR(stored, expected, 1e-9 * std::abs(expected)) << figure.name;
        }
        EXPECT_TRUE(lines.isEmpty()) << "not looked for: " << lines.join(QLatin1Char(' ')).toStdString();
    }
};

TEST_F(RealNetworks, ComeBackAndAreWhatAnIndependentParseFinds) {
    if (QStandardPaths::findExecutable(QStringLiteral("python3")).isEmpty())
        GTEST_SKIP() << "no Python";
    const City cities[] = {
        {"rilsa", "net.net.xml", {"tls.add.xml", "vtypes.add.xml"}, {"routes.rou.xml.gz"}},
        {"bologna",
         "joined_buslanes.net.xml.gz",
         {"joined_tls.add.xml", "joined_vtypes.add.xml", "joined_bus_stops.add.xml",
          "joined_detectors.add.xml"},
         {"joined.rou.xml.gz", "joined_busses.rou.xml"}},
        {"berlin", "net.net.xml.gz", {"stops.add.xml"}, {}},
        {"badhersfeld", "osm_edited.net.xml.gz", {"induction_loops.add.xml"}, {}},
    };
    for (const City &city : cities) {
        SCOPED_TRACE(city.name);
        const auto path = [&city](const char *name) {
            return realDataFile(QLatin1String(city.name) + QLatin1Char('/') + QLatin1String(name));
        };
        QStringList files{path(city.network)};
        const QString store = file(QLatin1String(city.name));
        QStringList arguments{QStringLiteral("roundtrip"), files.first(), QStringLiteral("--store"), store,
                              QStringLiteral("--strict")};
        for (const char *name : city.additional) {
            files << path(name);
            arguments << QStringLiteral("--additional") << files.last();
        }
        for (const char *name : city.routes) {
            files << path(name);
            arguments << QStringLiteral("--routes") << files.last();
        }
        if (files.contains(QString()))
            GTEST_SKIP() << "no real data: " << city.name;
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.out.contains(QLatin1String("all equal"))) << outcome.out.toStdString();
        expectFigures(store, files);
    }
}

} // namespace
