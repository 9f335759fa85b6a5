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
    bool content = false;
};

void digest(const Options &options) {
    const StoreReader store(QString::fromStdString(options.store));
    const QList<StoreReader::Network> networks = store.networksOf(options.nets);
    const Covered covered = options.content ? Covered::Content : Covered::AllOfIt;
    for (const StoreReader::Network &network : networks) {
        ProgressBar reading(QStringLiteral("reading"));
        print(QStringLiteral("%1  %2 %3\n")
                  .arg(digestOf(store, network, covered, reading.hearer()), QString::number(network.id),
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
    command->add_flag("--content", options->content,
                      "Where the network came from does not count: its name, its source and the date of its "
                      "save");
    command->callback([options, &run] { run.work = [options] { digest(*options); }; });
}

} // namespace commands
