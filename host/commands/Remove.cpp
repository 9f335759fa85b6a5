#include "host/Failure.h"
#include "host/Terminal.h"
#include "host/commands/Commands.h"
#include "host/store/NetworkRemoval.h"
#include "host/store/OpenStore.h"

#include <iostream>

namespace commands {

namespace {

QString rowsOf(const NetworkInfo &network) {
    QString text;
    for (const auto &[kind, count] : network.rows) {
        if (count > 0)
            text += QStringLiteral("  %1 %2\n").arg(kind.leftJustified(22), QString::number(count));
    }
    return text;
}

/// Asks at the terminal; false unless the answer is yes.
bool isConfirmed() {
    if (!isTerminal(stdin))
        throw Failure(QStringLiteral("nothing was removed: there is nobody to ask; give --yes to remove it"));
    std::cerr << "Remove it? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "yes";
}

void remove(const QString &address, const QString &wanted, bool isSure) {
    const OpenStore store(address, Access::Write);
    const NetworkInfo network = networkCalled(wanted);
    const QString title = QStringLiteral("network %1 \"%2\"").arg(QString::number(network.id), network.name);
    if (!isSure) {
        tell(QStringLiteral("%1 and all that it holds will go:\n%2").arg(title, rowsOf(network)).trimmed());
        if (!isConfirmed())
            throw Failure(QStringLiteral("nothing was removed"));
    }
    removeNetwork(network.id);
    print(QStringLiteral("%1 is gone:\n%2").arg(title, rowsOf(network)));
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
        run = [options] {
            remove(QString::fromStdString(options->store), QString::fromStdString(options->net),
                   options->isSure);
        };
    });
}

} // namespace commands
