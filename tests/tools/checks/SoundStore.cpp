#include "tests/tools/checks/SoundStore.h"

#include <QFile>

using namespace moratools;

namespace {

/// What the files of the example do not say. Lane 1 leads to lane 25 over connector 1; link 3 runs beside link 4.
const QStringList kByHand{
    QStringLiteral("insert into LaneLimitVehicle values (1, 1, 1)"),
    QStringLiteral("insert into LinkLimitVehicle values (1, 1, 1)"),
    QStringLiteral("insert into ConnectorLimitVehicle values (1, 1, 1)"),
    QStringLiteral("insert into LinkFenceMiddle values (1, 3, 4)"),
    QStringLiteral("insert into GuideArrow values (1, 1, 1, 6, 20, 1)"),
    QStringLiteral("insert into RoutingLaneConnector values (1, 5, 1, 1, 25)"),
    QStringLiteral("insert into VehicleDetector values (1, 1, 1, 'stop line', 1, 1, 'link', 1, -1, 3, 2, "
                   "'StandardDetector', 60)"),
    QStringLiteral("insert into DetectorVehiType values (1, 1, 1)"),
    QStringLiteral("insert into Passenger values (1, 1, 1, 60)"),
    QStringLiteral("insert into SimulateConfiguration values (1, 3600, 'F', 300, 300, 300, 1, 20, 7)"),
    QStringLiteral("insert into V2xConfig values (1, 1, 'range', 'radio', '300')"),
    QStringLiteral(
        "insert into Logger values (1, 1, '6', '2023', 'import', '20230202000000', '', '', '', '', '', '')"),
    QStringLiteral("insert into IDGenerater values (1, 'GuideArrow', 1)"),
    QStringLiteral("insert into IDGenerater values (1, 'VehicleDetector', 100)"),
    QStringLiteral("insert into IDGenerater values (1, 'Logger', 1)"),
};

} // namespace

void SoundStore::SetUp() {
    mSound = newStore(QStringLiteral("sound.db"));
    const QString example = sourceFolder() + QStringLiteral("/examples/crossing/crossing");
    const Outcome import = run({QStringLiteral("import"), mSound, example + QStringLiteral(".net.xml"),
                                QStringLiteral("--routes"), example + QStringLiteral(".rou.xml"),
                                QStringLiteral("--additional"), example + QStringLiteral(".add.xml")});
    ASSERT_EQ(import.exitCode, 0) << import.err.toStdString();
    alter(mSound, kByHand);
}

QString SoundStore::storeAfter(const QStringList &statements) {
    const QString copy = file(QStringLiteral("copy-%1.db").arg(++mCopies));
    EXPECT_TRUE(QFile::copy(mSound, copy));
    alter(copy, statements);
    return copy;
}

QMap<QString, int> SoundStore::findings(const QString &store, const QStringList &rules) {
    QMap<QString, int> found;
    for (const RuleFindings &one : checkStore(store, {{}, rules}).rules) {
        if (one.count > 0)
            found.insert(one.rule->id, int(one.count));
    }
    return found;
}
