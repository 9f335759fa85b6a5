#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "host/commands/StoreText.h"
#include "tools/kinds/StoreInfo.h"
#include "tools/session/NetworkChoice.h"

#include <QJsonDocument>

#include <optional>

using namespace moratools;

namespace commands {

void addInfo(CLI::App &program, Run &run) {
    struct Options {
        std::string store;
        std::string net;
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "info", "Say what a store holds: generation, language, networks, rows per kind, extent.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command
        ->add_option("--net", options->net,
                     "Number or name of a network to look at; a number goes first; default: all")
        ->type_name("NET");
    command->add_flag("--json", options->json, "As one JSON object; lengths and coordinates in metres");
    command->callback([options, &run] {
        run.work = [options] {
            const StoreAddress address(QString::fromStdString(options->store));
            const OpenedStore store(address, Access::Read);
            const auto net =
                options->net.empty()
                    ? std::nullopt
                    : std::make_optional(networkIdOf(store, QString::fromStdString(options->net)));
            const StoreInfo info = takeStock(store, address.name(), net);
            if (options->json)
                printJson(QJsonDocument(info.toJson()));
            else
                print(textOf(info));
        };
    });
}

} // namespace commands
