#include "tests/host/Morastore.h"

#include <QDir>

// A SUMO configuration instead of a list of files.

namespace {

class ScenarioCommands : public Morastore {
protected:
    /// Names the example's files by paths relative to its own folder.
    QString configuration(const char *more) const {
        EXPECT_TRUE(QDir(file(QString())).mkpath(QStringLiteral("run")));
        EXPECT_TRUE(QFile::link(sourceFolder() + QStringLiteral("/examples/crossing"),
                                file(QStringLiteral("crossing"))));
        QFile target(file(QStringLiteral("run/day.sumocfg")));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        target.write("<configuration><input><net-file value=\"../crossing/crossing.net.xml\"/>"
                     "<additional-files value=\"../crossing/crossing.add.xml\"/>"
                     "<route-files value=\"../crossing/crossing.rou.xml,../crossing/turns.xml\"/></input>");
        target.write(more);
        target.write("</configuration>");
        return target.fileName();
    }
};

} // namespace

TEST_F(ScenarioCommands, AConfigurationIsTheFilesThatItNames) {
    const QString scenario = configuration("");
    const QString byName = newStore(QStringLiteral("names.mora"));
    const QString byScenario = newStore(QStringLiteral("scenario.mora"));
    const QString example = sourceFolder() + QStringLiteral("/examples/crossing/");
    const Outcome named = run({QStringLiteral("import"), byName, kExample, QStringLiteral("--additional"),
                               example + QStringLiteral("crossing.add.xml"), QStringLiteral("--routes"),
                               example + QStringLiteral("crossing.rou.xml"), QStringLiteral("--routes"),
                               example + QStringLiteral("turns.xml")});
    const Outcome whole = run({QStringLiteral("import"), byScenario, QStringLiteral("--sumocfg"), scenario});
    ASSERT_EQ(whole.exitCode, 0) << whole.err.toStdString();
    EXPECT_EQ(whole.out, named.out);
    const auto contentOf = [](const QString &store) {
        return run({QStringLiteral("digest"), QStringLiteral("--content"), store}).out;
    };
    EXPECT_EQ(contentOf(byScenario), contentOf(byName));
    EXPECT_EQ(run({QStringLiteral("roundtrip"), QStringLiteral("--sumocfg"), scenario}).exitCode, 0);
}

TEST_F(ScenarioCommands, ARunLastsAsLongAsTheConfigurationSays) {
    const QString store = newStore();
    const QString scenario = configuration("<time><begin value=\"0:01:00\"/><end value=\"160\"/></time>"
                                           "<seed value=\"42\"/><weight-files value=\"w.xml\"/>");
    const Outcome outcome = run({QStringLiteral("import"), store, QStringLiteral("--sumocfg"), scenario});
    EXPECT_EQ(outcome.exitCode, 3) << "weights are no part of a store";
    EXPECT_TRUE(outcome.err.contains(QLatin1String("weight-files=\"w.xml\""))) << outcome.err.toStdString();
    const QVariantList settings = row(
        store, QStringLiteral("select simuTimeInterval, randSeed, simuAccuracy from SimulateConfiguration"));
    EXPECT_EQ(settings, QVariantList({100, 42, 20}));
    EXPECT_EQ(
        run({QStringLiteral("import"), store, kExample, QStringLiteral("--sumocfg"), scenario}).exitCode, 2);
    EXPECT_EQ(run({QStringLiteral("import"), store}).exitCode, 2);
}
