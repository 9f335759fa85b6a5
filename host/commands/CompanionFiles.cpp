#include "host/commands/CompanionFiles.h"

#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "store/catalogue/Catalogue.h"
#include "tools/reports/Failure.h"
#include "tools/sumo/reader/CompanionReader.h"

#include <QSet>

using namespace moratools;

namespace commands {

namespace {

SumoCompanions readCompanions(const SumoScenario &scenario) {
    SumoCompanions companions;
    const auto read = [&companions](const QStringList &files, CompanionRole role) {
        for (const QString &file : files) {
            ProgressBar reading(QStringLiteral("reading"));
            readSumoCompanion(file, companions, reading.hearer(), role);
        }
    };
    read(scenario.additional, CompanionRole::Additional);
    read(scenario.routes, CompanionRole::Routes);
    return companions;
}

} // namespace

void CompanionFiles::addTo(CLI::App &command) {
    CLI::Option_group *source = command.add_option_group("Source");
    source->add_option("NETWORK", network, "SUMO network, .net.xml or .net.xml.gz");
    source
        ->add_option("--sumocfg", sumocfg,
                     "SUMO configuration, .sumocfg: network, demand, additional objects, begin, end and step "
                     "length as it says")
        ->type_name("FILE");
    source->require_option(1);
    command.add_option("--routes", routes, "SUMO demand file, .rou.xml or .rou.xml.gz; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command
        .add_option("--additional", additional,
                    "SUMO file of additional objects, .add.xml or .add.xml.gz; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command.add_flag("--route", route,
                     "Let trips and flows without a route drive the fastest way at free flow");
    command.add_flag("--strict", strict, "Fail, with nothing written, when anything has to be left out");
}

SumoScenario CompanionFiles::scenario() const {
    SumoScenario scenario;
    if (sumocfg.empty())
        scenario.network = QString::fromStdString(network);
    else
        scenario = readScenario(QString::fromStdString(sumocfg));
    for (const std::string &file : additional)
        scenario.additional.append(QString::fromStdString(file));
    for (const std::string &file : routes)
        scenario.routes.append(QString::fromStdString(file));
    return scenario;
}

CompanionPlan CompanionFiles::plan(const SumoScenario &scenario, const SumoNet &net) const {
    SumoCompanions companions = readCompanions(scenario);
    const auto planned = [&] {
        ProgressBar routing(QStringLiteral("routing"));
        return planCompanions(net, std::move(companions), scenario, route ? Trips::Routed : Trips::Depart,
                              routing.hearer());
    };
    CompanionPlan plan = planned();
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
