#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "tools/session/NetworkChoice.h"
#include "tools/sumo/export/SumoExport.h"

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string folder;
    std::string net;
    bool toSumo = false;
    ExportOptions how;
};

void exportNet(const Options &options) {
    const QString folder = QString::fromStdString(options.folder);
    const OpenedStore store(QString::fromStdString(options.store), Access::Read);
    SumoExport done;
    {
        ProgressBar writing(QStringLiteral("writing"));
        done = exportNetwork(store, chosenNetwork(store, options.net), folder, options.how, writing.hearer());
    }
    print(QStringLiteral("exported network \"%1\" to %2\n")
              .arg(printable::line(done.network), printable::line(folder)));
    for (const QString &line : done.leftOut)
        tell(line);
    if (!done.note.isEmpty())
        tell(done.note);
    if (!done.leftOutCount.isEmpty())
        throw Incomplete(
            QStringLiteral("exported without %1, for which SUMO has no place; the lines above name them")
                .arg(done.leftOutCount));
    if (!done.isWhole)
        throw Incomplete(QStringLiteral("exported without a network file; the line above says why"));
}

} // namespace

void addExport(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "export",
        "Write a network of a store as a scenario for SUMO into a new folder: network, demand, additional "
        "objects and configuration.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command->add_option("FOLDER", options->folder, "Folder to make; one that is there must be empty")
        ->required();
    command->add_flag("--sumo", options->toSumo, "In SUMO's format")->required();
    command->add_option("--net", options->net, kNetHelp)->type_name("NET");
    command->add_flag("--plain-only", options->how.plainOnly,
                      "Only the plain form, of which netconvert makes a network");
    command->add_flag("--rebuild", options->how.rebuild,
                      "Have netconvert make the network anew, also where it is as an import found it");
    command->add_flag("--flows", options->how.flows,
                      "Demand as flows and routes, also where vehicles are as an import found them");
    command->callback([options, &run] { run.work = [options] { exportNet(*options); }; });
}

} // namespace commands
