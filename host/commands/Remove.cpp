#include "host/Printable.h"
#include "host/Terminal.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "tools/reports/Failure.h"
#include "tools/rows/NetworkDeletion.h"
#include "tools/session/NetworkChoice.h"

#include <iostream>

using namespace moratools;

namespace commands {

namespace {

QStringList rowsOf(const NetworkInfo &network) {
    QStringList lines;
    for (const auto &[kind, count] : network.rows) {
        if (count > 0)
            lines.append(QStringLiteral("  %1 %2").arg(kind.leftJustified(22), QString::number(count)));
    }
    return lines;
}

/// Asks at the terminal; false unless the answer is yes.
bool isConfirmed() {
    if (!isTerminal(stdin))
        throw Failure(QStringLiteral("nothing was removed: there is nobody to ask; give --yes to remove it"));
    tell(QStringLiteral("Remove it? [y/N]"));
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "yes";
}

void remove(const QString &address, const QString &wanted, bool isSure) {
    const StoreAddress store(address);
    StoreSession::require(store, Access::Write);
    // Opening for writing brings an older store forward, so it waits until there is something to remove.
    const NetworkInfo network = [&] {
        const OpenedStore open(store, Access::Read);
        return takeStockBeforeRemoval(open, networkIdOf(open, wanted));
    }();
    const QString title =
        QStringLiteral("network %1 \"%2\"").arg(QString::number(network.id), printable::line(network.name));
    if (!isSure) {
        tell(title + QStringLiteral(" and all that it holds will go:"));
        for (const QString &line : rowsOf(network))
            tell(line);
        if (!isConfirmed())
            throw Failure(QStringLiteral("nothing was removed"));
    }
    const OpenedStore open(store, Access::Write);
    removeNetwork(open, network.id);
    const QString gone = title + QStringLiteral(" is gone");
    QStringList account{gone + QLatin1Char(':')};
    account += rowsOf(network);
    if (!store.isServer())
        account += QStringLiteral("The file keeps its size; \"morastore compact\" makes it smaller.");
    print(account.join(QLatin1Char('\n')) + QLatin1Char('\n'), gone);
}

} // namespace

void addRemove(CLI::App &program, Run &run) {
    struct Options {
        std::string store;
        std::string net;
        bool isSure = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "remove",
        "Remove a network with all that it holds from a store: as a whole or, on a failure, not at all.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command->add_option("NET", options->net, "Number or name of the network; a number goes first")
        ->required();
    command->add_flag("--yes", options->isSure, "Do not ask");
    command->callback([options, &run] {
        run.work = [options] {
            remove(QString::fromStdString(options->store), QString::fromStdString(options->net),
                   options->isSure);
        };
    });
}

} // namespace commands
