#include "host/Failure.h"
#include "host/commands/Commands.h"
#include "host/store/OpenStore.h"
#include "store/DBTools.h"

namespace commands {

namespace {

void add(CLI::App &program, Run &run, const char *name, const char *description, bool (*change)(QString)) {
    const auto path = std::make_shared<std::string>();
    CLI::App *command = program.add_subcommand(name, description);
    command->add_option("FILE", *path, "Path of the store")->required();
    command->callback([path, change, &run] {
        run = [path, change] {
            const StoreAddress address(QString::fromStdString(*path));
            if (address.isServer())
                throw Failure(QStringLiteral("%1: only a store file can be protected; on a server the access "
                                             "rights and its disk's encryption do that")
                                  .arg(address.name()));
            requireNoNewerStore(address.path());
            if (!change(address.path()))
                throw Failure(firstFailureText());
        };
    });
}

} // namespace

void addProtect(CLI::App &program, Run &run) {
    add(program, run, "protect",
        "Encrypt a store file in place, with the key \"__storekey\" of the configuration file or else with the "
        "library's own, which keeps nobody out who has this program.",
        DBTools::encryptFile);
}

void addUnprotect(CLI::App &program, Run &run) {
    add(program, run, "unprotect", "Decrypt a protected store file in place.", DBTools::decryptFile);
}

} // namespace commands
