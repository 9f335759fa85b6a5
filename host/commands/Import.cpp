#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/CompanionFiles.h"
#include "host/commands/OpenedStore.h"
#include "tools/reports/OutputFile.h"
#include "tools/sumo/import/ImportReport.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/NetReader.h"

#include <QJsonDocument>

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string name;
    std::string report;
    CompanionFiles companions;
};

/// Writes what became of each element and attribute of the files.
void writeReport(const QString &path, const SumoNet &net, const CompanionPlan &plan, const QString &done) {
    try {
        ProgressBar counting(QStringLiteral("counting"));
        const QJsonObject report = importReport(net, *plan.companions, plan.leftOut, counting.hearer());
        writeOutputFile(path, QJsonDocument(report).toJson());
    } catch (const Failure &failure) {
        throw OutputLost(
            QStringLiteral("%1, but the report is not written: %2").arg(done, failure.message()));
    }
}

void import(const Options &options) {
    const QString report = QString::fromStdString(options.report);
    if (!report.isEmpty())
        requireOutputPath(report, QStringLiteral("report"));
    const SumoScenario scenario = options.companions.scenario();
    const QString name =
        options.name.empty() ? networkNameOf(scenario.network) : QString::fromStdString(options.name);
    // The store is asked first: it takes no time, and reading a large network may. It is opened last: what
    // brings an older store forward stays, whatever becomes of the import.
    const StoreAddress address(QString::fromStdString(options.store));
    StoreSession::require(address, Access::Write);
    {
        const OpenedStore store(address, Access::Read);
        requirePlaceFor(store, name);
    }
    SumoNet net;
    {
        ProgressBar reading(QStringLiteral("reading"));
        net = readSumoNet(scenario.network, reading.hearer());
    }
    const CompanionPlan plan = options.companions.plan(scenario, net);
    const OpenedStore store(address, Access::Write);
    NetworkObjects network;
    {
        ProgressBar writing(QStringLiteral("writing"));
        network = importNetwork(store, net, plan, name, writing.hearer());
    }
    const QString title =
        QStringLiteral("network %1 \"%2\"")
            .arg(QString::number(network.record.netId), printable::line(network.record.name));
    const QString vehicles = vehicleAccountOf(plan);
    print(QStringLiteral("%1: %2 links, %3 connectors\n%4\n%5")
              .arg(title, QString::number(network.links.size()), QString::number(network.connectors.size()),
                   countsOf(network.traffic), vehicles.isEmpty() ? QString() : vehicles + QLatin1Char('\n')),
          title + QStringLiteral(" is in the store"));
    if (!report.isEmpty())
        writeReport(report, net, plan, title + QStringLiteral(" is in the store"));
    reportLeftOut(plan);
}

} // namespace

void addImport(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "import",
        "Read a SUMO network, with demand and additional objects, into a new network of a store: as a whole "
        "or, on a failure, not at all. References that lead nowhere are named and left out.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command
        ->add_option("--report", options->report,
                     "Write what became of each element and attribute of the files, as JSON, to this file")
        ->type_name("FILE");
    options->companions.addTo(*command);
    command->add_option("--name", options->name, "Name of the new network; default: the network file's name")
        ->type_name("N");
    command->callback([options, &run] { run.work = [options] { import(*options); }; });
}

} // namespace commands
