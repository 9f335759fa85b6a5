#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "tools/reports/Failure.h"
#include "tools/rows/NetworkCopy.h"

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string source;
    std::string target;
    std::vector<std::string> nets;
    std::string name;
};

QString accountOf(const CopiedNetwork &copy) {
    QString text = QStringLiteral("network %1 \"%2\": %3 rows")
                       .arg(QString::number(copy.id), printable::line(copy.name), QString::number(copy.rows));
    if (copy.id != copy.from)
        text += QStringLiteral(", from network %1").arg(copy.from);
    if (copy.renumbered > 0)
        text += QStringLiteral(", %1 new identifiers").arg(copy.renumbered);
    if (copy.words > 0)
        text += QStringLiteral(", %1 words translated").arg(copy.words);
    return text + QLatin1Char('\n');
}

/// Asked before the library opens the target, which brings an older store forward.
void requireSeveralNetworks(const StoreAddress &target) {
    if (!StoreReader(target).hasSeveralNetworks())
        throw Failure(
            QStringLiteral("%1: the target is of a generation that holds one network; make a new store "
                           "with \"morastore new\" and copy into that")
                .arg(target.name()));
}

void copy(const Options &options) {
    const StoreAddress to(QString::fromStdString(options.target));
    requireSeveralNetworks(to);
    StoreReader source(QString::fromStdString(options.source));
    const QList<StoreReader::Network> networks = source.networksOf(options.nets);
    const QString name = QString::fromStdString(options.name);
    if (!name.isEmpty() && networks.size() != 1)
        throw Failure(
            QStringLiteral("--name names one network, and %1 are to be copied; choose one with --net")
                .arg(networks.size()));
    QStringList leftOut;
    for (const auto &table : source.tablesBesides(networks))
        leftOut.append(QStringLiteral("table %1: %2 rows").arg(table.first, QString::number(table.second)));
    {
        const OpenedStore target(to, Access::Read);
        requireFreeNames(target, networks, name);
    }
    QString account;
    {
        const OpenedStore target(to, Access::Write);
        ProgressBar copying(QStringLiteral("copying"));
        const QList<CopiedNetwork> copies = copyNetworks(source, target, networks, name, copying.hearer());
        for (const CopiedNetwork &network : copies) {
            account += accountOf(network);
            leftOut += network.leftOut;
        }
    }
    for (const QString &line : qAsConst(leftOut))
        tell(QStringLiteral("left out: ") + line);
    print(account, QStringLiteral("the networks are in the target"));
    if (!leftOut.isEmpty())
        throw Incomplete(QStringLiteral("done, but %1 tables or columns were left out").arg(leftOut.size()));
}

} // namespace

void addCopy(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "copy", "Copy networks from a store of any generation into one of generation 6, on either engine: as "
                "a whole or, on a failure, not at all. The source is never changed.");
    command->add_option("SOURCE", options->source, kStoreHelp)->required();
    command->add_option("TARGET", options->target, kStoreHelp)->required();
    command
        ->add_option("--net", options->nets,
                     "Number or name of a network of SOURCE; a number goes first; may be repeated; "
                     "default: all")
        ->type_name("NET")
        ->allow_extra_args(false);
    command->add_option("--name", options->name, "Name of the copy; default: the network's own")
        ->type_name("N");
    command->callback([options, &run] { run.work = [options] { copy(*options); }; });
}

} // namespace commands
