#include "host/commands/CompanionFiles.h"

#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "store/catalogue/Catalogue.h"
#include "tools/reports/Failure.h"
#include "tools/sumo/reader/CompanionReader.h"

#include <QSet>

using namespace moratools;

namespace commands {

void CompanionFiles::addTo(CLI::App &command) {
    command.add_option("--routes", routes, "SUMO demand file, .rou.xml or .rou.xml.gz; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command
        .add_option("--additional", additional,
                    "SUMO file of additional objects, .add.xml or .add.xml.gz; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command.add_flag("--strict", strict, "Fail, with nothing written, when anything has to be left out");
}

CompanionPlan CompanionFiles::plan(const SumoNet &net) const {
    SumoCompanions companions;
    for (const auto *files : {&additional, &routes}) {
        for (const std::string &file : *files) {
            ProgressBar reading(QStringLiteral("reading"));
            readSumoCompanion(QString::fromStdString(file), companions, reading.hearer());
        }
    }
    CompanionPlan plan = planCompanions(net, std::move(companions));
    const QStringList lines = plan.leftOut.lines();
    for (const QString &line : lines)
        tell(line);
    if (strict && !plan.leftOut.isEmpty())
        throw Failure(QStringLiteral("nothing was written: %1 would be left out; correct the files or import "
                                     "without --strict")
                          .arg(plan.leftOut.summary()));
    return plan;
}

void reportLeftOut(const CompanionPlan &plan) {
    if (!plan.leftOut.isEmpty())
        throw Incomplete(QStringLiteral("done, but %1 were left out").arg(plan.leftOut.summary()));
}

QString countsOf(const TrafficObjects &traffic) {
    QStringList counts;
    TrafficObjects::forEachKind([&](const char *table, const char *, auto list) {
        if (const auto number = (traffic.*list).size(); number > 0)
            counts.append(QStringLiteral("%1 %2s").arg(
                QString::number(number), QLatin1String(catalogue::kindIn(QLatin1String(table))->word)));
    });
    return counts.join(QStringLiteral(", "));
}

QString vehicleAccountOf(const CompanionPlan &plan) {
    qint64 onLines = 0;
    for (const PlannedLine &line : plan.lines)
        onLines += line.runs;
    const qint64 standing = qint64(plan.obstacles.size());
    const qint64 leftOut = plan.leftOut.vehicles;
    const qint64 all = plan.demand.vehicles + onLines + standing + leftOut;
    if (all == 0)
        return {};
    return QStringLiteral(
               "vehicles: %1 in the files, %2 depart, %3 run on lines, %4 stand as obstacles, %5 left out")
        .arg(QString::number(all), QString::number(plan.demand.vehicles), QString::number(onLines),
             QString::number(standing), QString::number(leftOut));
}

} // namespace commands
