#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "host/commands/PatchFile.h"
#include "tools/differences/PatchApplication.h"
#include "tools/session/NetworkChoice.h"

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string patch;
    std::string net;
    bool anyway = false;
};

void apply(const Options &options) {
    const PatchFile file(QString::fromStdString(options.patch));
    PatchReader patch(file.device(), file.name());
    const StoreAddress address(QString::fromStdString(options.store));
    PatchedNetwork patched;
    long netId = 0;
    const QString after = patch.header().after;
    {
        const StoreReader before(address);
        netId = before.networkOf(options.net).id;
    }
    {
        const OpenedStore store(address, Access::Write);
        ProgressBar applying(QStringLiteral("applying"));
        patched = applyPatch(store, netId, patch, options.anyway ? Fitting::Anyway : Fitting::Whole,
                             applying.hearer());
    }
    for (const QString &line : qAsConst(patched.leftOut))
        tell(QStringLiteral("left out: ") + line);
    print(QStringLiteral("network %1: %2 changes\n")
              .arg(QString::number(netId), QString::number(patched.changes)),
          QStringLiteral("the changes are in the store"));
    if (!patched.leftOut.isEmpty())
        throw Incomplete(QStringLiteral("done, but %1 changes did not fit").arg(patched.leftOut.size()));
}

} // namespace

void addApply(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "apply",
        "Apply a patch that \"diff -o\" has written to the network that it was made for: as a whole or, on a "
        "failure, not at all.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command->add_option("PATCH", options->patch, "Patch to apply")->required();
    command->add_option("--net", options->net, kNetHelp)->type_name("NET");
    command->add_flag("--anyway", options->anyway,
                      "To any network: what fits is applied, the rest is told, and the command ends with 3");
    command->callback([options, &run] { run.work = [options] { apply(*options); }; });
}

} // namespace commands
