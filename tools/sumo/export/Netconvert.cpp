#include "tools/sumo/export/Netconvert.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace moratools {

namespace netconvert {

namespace {

constexpr int kStartMilliseconds = 30000;
constexpr int kForEver = -1;

/// The folder of SUMO's own files: one above the program's, or beside it as packages have it.
QString homeOf(const QString &program) {
    const QDir beside = QFileInfo(QFileInfo(program).canonicalFilePath()).dir();
    for (const QString &home :
         {beside.filePath(QStringLiteral("../share/sumo")), beside.filePath(QStringLiteral(".."))}) {
        if (QFileInfo(home + QStringLiteral("/data")).isDir())
            return QDir::cleanPath(home);
    }
    return {};
}

} // namespace

QString program() {
    return QStandardPaths::findExecutable(QStringLiteral("netconvert"));
}

QStringList optionsFor(const QJsonObject &net) {
    QStringList options;
    const auto add = [&options](const char *name, const QString &value) {
        options << QLatin1String("--") + QLatin1String(name) << value;
    };
    const QString yes = QStringLiteral("true");
    const QString no = QStringLiteral("false");
    add("offset.disable-normalization", yes);
    add("no-turnarounds", yes);
    add("roundabouts.guess", no);
    add("geometry.min-radius.fix.railways", no);
    add("geometry.max-grade.fix", no);
    add("output.street-names", yes);
    add("ignore-errors.edge-type", yes);
    add("xml-validation", QStringLiteral("never"));
    if (net.isEmpty())
        return options;
    // What netconvert assumes where it makes a network is not what a network without the attribute was made with.
    static const struct {
        const char *attribute;
        const char *option;
        const char *otherwise; ///< null: netconvert's own default
    } known[] = {
        {"junctionCornerDetail", "junctions.corner-detail", "0"},
        {"limitTurnSpeed", "junctions.limit-turn-speed", "-1"},
        {"junctionLinkDetail", "junctions.internal-link-detail", nullptr},
        {"rectangularLaneCut", "rectangular-lane-cut", nullptr},
        {"walkingareas", "walkingareas", nullptr},
        {"lefthand", "lefthand", nullptr},
        {"checkLaneFoesAll", "check-lane-foes.all", nullptr},
        {"checkLaneFoesRoundabout", "check-lane-foes.roundabout", nullptr},
        {"tlsIgnoreInternalJunctionJam", "tls.ignore-internal-junction-jam", nullptr},
        {"spreadType", "default.spreadtype", nullptr},
        {"higherSpeed", "junctions.higher-speed", nullptr},
        {"internalJunctionsVehicleWidth", "internal-junctions.vehicle-width", nullptr},
    };
    for (const auto &each : known) {
        const QString value =
            net.value(QLatin1String(each.attribute)).toString(QLatin1String(each.otherwise));
        if (!value.isEmpty())
            add(each.option, value);
    }
    return options;
}

QString build(const QString &program, const QString &prefix, const QString &output,
              const QStringList &options) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!environment.contains(QStringLiteral("SUMO_HOME")) && !homeOf(program).isEmpty())
        environment.insert(QStringLiteral("SUMO_HOME"), homeOf(program));
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    QStringList arguments{QStringLiteral("--node-files"),       prefix + QStringLiteral(".nod.xml"),
                          QStringLiteral("--edge-files"),       prefix + QStringLiteral(".edg.xml"),
                          QStringLiteral("--connection-files"), prefix + QStringLiteral(".con.xml"),
                          QStringLiteral("--tllogic-files"),    prefix + QStringLiteral(".tll.xml"),
                          QStringLiteral("--type-files"),       prefix + QStringLiteral(".typ.xml"),
                          QStringLiteral("--output-file"),      output};
    process.start(program, arguments + options);
    if (!process.waitForStarted(kStartMilliseconds))
        return process.errorString();
    process.waitForFinished(kForEver);
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 && QFileInfo::exists(output))
        return {};
    const QStringList lines = QString::fromUtf8(process.readAllStandardError()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("Error")))
            return line;
    }
    return process.errorString();
}

} // namespace netconvert

} // namespace moratools
