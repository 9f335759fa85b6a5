#include "tools/rows/Digest.h"
#include "host/ProgressBar.h"

#include "host/Printable.h"
#include "host/commands/Commands.h"

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::vector<std::string> nets;
};

void digest(const Options &options) {
    const StoreReader store(QString::fromStdString(options.store));
    const QList<StoreReader::Network> networks = store.networksOf(options.nets);
    for (const StoreReader::Network &network : networks) {
        ProgressBar reading(QStringLiteral("reading"));
        print(QStringLiteral("%1  %2 %3\n")
                  .arg(digestOf(store, network, reading.hearer()), QString::number(network.id),
                       printable::line(network.name)));
    }
    for (const auto &table : store.tablesBesides(networks))
        tell(
            QStringLiteral("not covered: table %1, %2 rows").arg(table.first, QString::number(table.second)));
}

} // namespace

void addDigest(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "digest", "Print a digest (SHA-256) of all rows of a network: equal for equal content in any store.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command
        ->add_option("--net", options->nets,
                     "Number or name of a network; a number goes first; may be repeated; default: all")
        ->type_name("NET")
        ->allow_extra_args(false);
    command->callback([options, &run] { run.work = [options] { digest(*options); }; });
}

} // namespace commands
