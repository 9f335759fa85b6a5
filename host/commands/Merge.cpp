#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/Conflicts.h"
#include "host/commands/NewFindings.h"
#include "tools/differences/NetworkMerge.h"
#include "tools/reports/Failure.h"
#include "tools/reports/OutputFile.h"

#include <QFileInfo>

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string base, ours, theirs;
    std::string net, netOurs, netTheirs;
    std::string store;
    std::string conflicts;
    std::string resolve;
};

NetworkVersion version(const std::string &store, const std::string &net) {
    return {StoreAddress(QString::fromStdString(store)), net};
}

QString counted(qint64 count, const char *what) {
    return count == 0 ? QString()
                      : QStringLiteral(", %1 %2").arg(QString::number(count), QLatin1String(what));
}

void merge(const Options &options) {
    const QString path = QString::fromStdString(options.store);
    if (QFileInfo::exists(path))
        throw Failure(QStringLiteral("%1: is there already; give the name of a new file").arg(path));
    const QString conflicts = options.conflicts.empty() ? path + QStringLiteral(".conflicts")
                                                        : QString::fromStdString(options.conflicts);
    requireOutputPath(conflicts, QStringLiteral("list of conflicts"));
    const NetworkVersion ours = version(options.ours, options.netOurs);
    const NetworkVersion theirs = version(options.theirs, options.netTheirs);
    TwoEdits edits;
    {
        ProgressBar bar(QStringLiteral("comparing"));
        edits = compareVersions(version(options.base, options.net), ours, theirs, bar.hearer());
    }
    const MergedChanges merged =
        mergeWithAnswers(edits, options.resolve, conflicts, QStringLiteral("%1: not made").arg(path));
    NewFindings findings;
    findings.checkBefore(ours.store, ours.network);
    findings.checkBefore(theirs.store, theirs.network);
    writeMerged(path, ours, edits, merged.changes);
    findings.tellAfter(StoreAddress(path), {});
    print(QStringLiteral("%1 changes of ours, %2 of theirs%3%4\n")
              .arg(QString::number(edits.ours.size()), QString::number(edits.theirs.size()),
                   counted(qint64(merged.conflicts.size()), "conflicts resolved"),
                   counted(edits.renumbered, "new identifiers")),
          QStringLiteral("the store is made"));
}

} // namespace

void addMerge(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "merge",
        "Make a new store of two versions of a network and the one that both come from: what either changed "
        "is changed. Where both changed the same, the conflicts are written to a file.");
    command->add_option("BASE", options->base, kStoreHelp)->required();
    command->add_option("OURS", options->ours, kStoreHelp)->required();
    command->add_option("THEIRS", options->theirs, kStoreHelp)->required();
    command->add_option("-o,--output", options->store, "Store to make")->type_name("STORE")->required();
    command->add_option("--net", options->net, "Network of BASE: number or name; default: the store's first")
        ->type_name("NET");
    command->add_option("--net-ours", options->netOurs, "The same of OURS")->type_name("NET");
    command->add_option("--net-theirs", options->netTheirs, "The same of THEIRS")->type_name("NET");
    command->add_option("--conflicts", options->conflicts, "File for conflicts; default: STORE.conflicts")
        ->type_name("FILE");
    command->add_option("--resolve", options->resolve, "Conflicts with what is to become of each")
        ->type_name("FILE");
    command->callback([options, &run] { run.work = [options] { merge(*options); }; });
}

} // namespace commands
