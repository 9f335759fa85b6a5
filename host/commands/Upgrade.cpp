#include "host/commands/Commands.h"
#include "host/commands/StoreText.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreAddress.h"
#include "tools/session/StoreUpgrade.h"

using namespace moratools;

namespace commands {

void addUpgrade(CLI::App &program, Run &run) {
    struct Options {
        std::string store;
        bool noBackup = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "upgrade",
        "Bring an older SQLite store to the current schema and say what was added. A checked copy of what "
        "it was is kept beside it as STORE.before-upgrade-DATE-TIME.");
    command->add_option("STORE", options->store, "Path of the store")->required();
    command->add_flag("--no-backup", options->noBackup, "Keep no copy");
    command->callback([options, &run] {
        run.work = [options] {
            const StoreAddress address(QString::fromStdString(options->store));
            if (address.isServer())
                throw Failure(
                    QStringLiteral("%1: only store files are upgraded; a database on a server is current "
                                   "from the start")
                        .arg(address.name()));
            const StoreUpgrade upgrade = upgradeStore(address.path(), !options->noBackup);
            if (!upgrade.refused.isEmpty())
                throw Incomplete(QStringLiteral("%1: the store was brought forward in part (%2); %3")
                                     .arg(address.path(), upgrade.refused,
                                          upgrade.copy.isEmpty()
                                              ? QStringLiteral("try again")
                                              : QStringLiteral("%1 keeps what it was").arg(upgrade.copy)));
            print(textOf(upgrade, address.path()),
                  upgrade.wasCurrent ? QString() : QStringLiteral("the store is current now"));
        };
    });
}

} // namespace commands
