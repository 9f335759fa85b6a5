#include "tests/host/Morastore.h"
#include "tests/support/RealData.h"

#include "tools/checks/CheckRun.h"

#include <QMap>

using namespace moratools;

// Networks that are in use have faults of those who drew them, and nothing else that is called an error. What is
// expected was found in the files by hand.

namespace {

struct City {
    const char *name; ///< folder of the real data
    const char *network;
    std::vector<const char *> additional;
    std::vector<const char *> routes;
    /// By rule the names of what is found, in the order of the network.
    QMap<QString, QStringList> errors;
    QMap<QString, int> warnings;
    const char *storeTemplate = "EmptyNet_V6.0.0";
};

void PrintTo(const City &city, std::ostream *out) {
    *out << city.name;
}

/// In badhersfeld two links turn back upon themselves within metres, one of which is drawn longer than it is, and one
/// climbs the 218 m of its height above the sea.
const QMap<QString, QStringList> kFaultsOfBadhersfeld{
    {"link.length-far-off", {"link 648 \"-151592238#0\" has a length of 4.22 m and is drawn 9.97079 m long"}},
    {"link.height-jumps", {"link 6984 \"261919658\" goes from a height of 0 m to 218.36 m within 31.0759 m"}},
    {"lane.edges-cross",
     {"lane 887 (number 1 of link 648 \"-151592238#0\") has a left edge that crosses its right edge",
      "lane 888 (number 2 of link 648 \"-151592238#0\") has a left edge that crosses its right edge",
      "lane 12403 (number 1 of link 8790 \"52329443\") has a left edge that crosses its right edge"}},
};

const std::vector<City> kCities{
    {"rilsa",
     "net.net.xml",
     {"tls.add.xml", "vtypes.add.xml", "measures.add.xml"},
     {"routes.rou.xml.gz"},
     {},
     {}},
    {"bologna",
     "joined_buslanes.net.xml.gz",
     {"joined_tls.add.xml", "joined_vtypes.add.xml", "joined_bus_stops.add.xml", "joined_detectors.add.xml"},
     {"joined.rou.xml.gz", "joined_busses.rou.xml"},
     {},
     {}},
    {"berlin",
     "net.net.xml.gz",
     {"stops.add.xml", "vtypes.add.xml"},
     {"cars_bikes.rou.xml", "flows_2.rou.xml", "pt_lines.rou.xml", "turn_ratio.xml"},
     {},
     {}},
    {"badhersfeld",
     "osm_edited.net.xml.gz",
     {"induction_loops.add.xml", "gtfs_publictransport.add.xml.gz", "pt_vtypes.xml"},
     {"gtfs_publictransport.rou.xml"},
     kFaultsOfBadhersfeld,
     {{"link.length-off", 3}, {"stop.out-of-order", 1}}},
    // Such a store keeps the paths of lane connectors.
    {"berlin", "net.net.xml.gz", {}, {}, {}, {}, "EmptyNet_V3.0.0"},
    {"porto_alegre", "poa.net.xml.gz", {}, {}, {}, {{"link.length-off", 1}}},
};

class RealNetworksChecked : public Morastore, public testing::WithParamInterface<City> {
protected:
    /// A store with the city's files; none where they are missing.
    QString imported(const City &city) {
        const auto path = [&city](const char *name) {
            return realDataFile(QLatin1String(city.name) + QLatin1Char('/') + QLatin1String(name));
        };
        const QString store = file(QStringLiteral("city.mora"));
        QStringList arguments{QStringLiteral("import"), store, path(city.network)};
        for (const char *name : city.additional)
            arguments << QStringLiteral("--additional") << path(name);
        for (const char *name : city.routes)
            arguments << QStringLiteral("--routes") << path(name);
        if (arguments.contains(QString()))
            return {};
        const Outcome made = run(
            {QStringLiteral("new"), QStringLiteral("--template"), QLatin1String(city.storeTemplate), store});
        EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
        // Where vehicles lead nowhere, they are left out: 3.
        EXPECT_NE(run(arguments).exitCode, 1);
        return store;
    }
};

TEST_P(RealNetworksChecked, HaveNoErrorsButTheirFaults) {
    const QString store = imported(GetParam());
    if (store.isEmpty())
        GTEST_SKIP() << "no real data";
    QMap<QString, QStringList> errors;
    QMap<QString, int> warnings;
    for (const RuleFindings &found : checkStore(store, {}).rules) {
        if (found.count == 0 || found.rule->severity == Severity::Note)
            continue;
        // Of signals there are warnings by the dozen: plans without yellow.
        if (found.rule->severity == Severity::Warning && qstrcmp(found.rule->group, "signals") != 0)
            warnings.insert(found.rule->id, int(found.count));
        for (const Finding &finding : found.findings) {
            if (found.rule->severity == Severity::Error)
                errors[found.rule->id].append(finding.text);
        }
    }
    EXPECT_EQ(errors, GetParam().errors);
    EXPECT_EQ(warnings, GetParam().warnings);
}

INSTANTIATE_TEST_SUITE_P(Cities, RealNetworksChecked, testing::ValuesIn(kCities), [](const auto &city) {
    return std::string(city.param.name) + (city.param.storeTemplate[10] == '3' ? "InAnOlderStore" : "");
});

} // namespace
