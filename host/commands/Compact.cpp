#include "host/Printable.h"
#include "host/commands/Commands.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreAddress.h"
#include "tools/session/StoreCompaction.h"

using namespace moratools;

namespace commands {

void addCompact(CLI::App &program, Run &run) {
    const auto path = std::make_shared<std::string>();
    CLI::App *command = program.add_subcommand(
        "compact",
        "Give the room that removed networks leave in a store file back to the disk: as a whole or, "
        "on a failure, not at all. What the store holds stays the same.");
    command->add_option("STORE", *path, "Path of the store")->required();
    command->callback([path, &run] {
        run.work = [path] {
            const StoreAddress address(QString::fromStdString(*path));
            if (address.isServer())
                throw Failure(
                    QStringLiteral("%1: only store files are compacted; a server uses the room again by "
                                   "itself, and its administrator gives it back with VACUUM FULL")
                        .arg(address.name()));
            const Compaction sizes = compactStore(address.path());
            print(QStringLiteral("%1: %2 bytes, %3 before\n")
                      .arg(printable::line(address.name()), QString::number(sizes.after),
                           QString::number(sizes.before)),
                  QStringLiteral("the store is compacted"));
        };
    });
}

} // namespace commands
