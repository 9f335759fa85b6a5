#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/CompanionFiles.h"
#include "host/commands/Conflicts.h"
#include "host/commands/NewFindings.h"
#include "host/commands/OpenedStore.h"
#include "tools/differences/PatchApplication.h"
#include "tools/differences/SourceUpdate.h"
#include "tools/reports/OutputFile.h"
#include "tools/session/NewStore.h"
#include "tools/session/StoreBackup.h"
#include "tools/session/TemporaryFolder.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/NetReader.h"

#include <QFile>
#include <QFileInfo>

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string net;
    std::string source;
    std::string base;
    std::string conflicts;
    std::string resolve;
    bool noBackup = false;
};

/// A source imported into a store of its own, which goes with this object.
class Import {
public:
    explicit Import(const std::string &file) : mPath(mFolder.newFile(QStringLiteral("import.db"))) {
        CompanionFiles files;
        const bool isScenario = QString::fromStdString(file).endsWith(QLatin1String(".sumocfg"));
        (isScenario ? files.sumocfg : files.network) = file;
        const SumoScenario scenario = files.scenario();
        ProgressBar reading(QStringLiteral("reading"));
        const SumoNet net = readSumoNet(scenario.network, reading.hearer());
        const CompanionPlan plan = files.plan(scenario, net);
        makeStore(mPath, newestTemplate());
        const OpenedStore store(StoreAddress(mPath), Access::Write);
        importNetwork(store, net, plan, networkNameOf(scenario.network));
    }

    NetworkVersion version() const { return {StoreAddress(mPath), {}}; }

private:
    TemporaryFolder mFolder;
    QString mPath;
};

/// The file that the network was imported from: the one that is named, else the one that the store names, as long as
/// it is there and is not the new one itself.
std::string baseOf(const Options &options, const StoreReader &store, const NamedNetwork &network) {
    if (!options.base.empty())
        return options.base;
    const QString source = sourceOf(store, network);
    const bool isOther = QFileInfo(source) != QFileInfo(QString::fromStdString(options.source));
    if (source.isEmpty() || !QFileInfo(source).isFile() || !isOther)
        throw Failure(
            QStringLiteral("network \"%1\": what it was imported from is not there any more (%2); name the "
                           "file as it was then with --base")
                .arg(printable::line(network.name), printable::line(source)));
    tell(QStringLiteral("imported from %1; --base names another file").arg(printable::line(source)));
    return source.toStdString();
}

void update(const Options &options) {
    const StoreAddress address(QString::fromStdString(options.store));
    StoreSession::require(address, Access::Write);
    NetworkVersion ours{address, options.net};
    std::string base;
    long netId = 0;
    {
        const StoreReader store(address);
        const NamedNetwork network = store.networkOf(options.net);
        netId = network.id;
        base = baseOf(options, store, network);
    }
    const QString conflicts =
        QString::fromStdString(options.conflicts.empty() ? options.source + ".conflicts" : options.conflicts);
    requireOutputPath(conflicts, QStringLiteral("list of conflicts"));
    SourceUpdate change;
    {
        const Import was(base);
        const Import is(options.source);
        ProgressBar comparing(QStringLiteral("comparing"));
        change = compareWithSource(ours, was.version(), is.version(), comparing.hearer());
    }
    for (const QString &line : qAsConst(change.remarks))
        tell(line);
    const MergedChanges merged = mergeWithAnswers(change.edits, options.resolve, conflicts,
                                                  QStringLiteral("the network is as it was"));
    NewFindings findings;
    findings.checkBefore(address, options.net);
    QString copy;
    if (!options.noBackup && !address.isServer())
        copy = keepCopy(address.path(), QStringLiteral("update"));
    try {
        const OpenedStore store(address, Access::Write);
        applyChanges(store, netId, merged.changes,
                     PatchHeader{change.edits.digests.ours, {}, change.edits.words});
    } catch (...) {
        // It would be a copy of what is there.
        if (!copy.isEmpty())
            QFile::remove(copy);
        throw;
    }
    if (!copy.isEmpty())
        tell(QStringLiteral("the store as it was: %1").arg(copy));
    findings.tellAfter(address, options.net);
    print(QStringLiteral("%1 rows are new or others, %2 edits stay\n")
              .arg(QString::number(merged.changes.size()), QString::number(change.edits.ours.size())),
          QStringLiteral("the network is brought to its new source"));
}

} // namespace

void addUpdate(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "update",
        "Bring an imported network to a newer version of its source, by names: what is the same there keeps "
        "its numbers and everything that was edited since the import. As a whole or not at all.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command->add_option("NET", options->net, "Number or name of the network; a number goes first")
        ->required();
    command
        ->add_option("NEWFILE", options->source,
                     "SUMO network (.net.xml, .net.xml.gz) or scenario (.sumocfg)")
        ->required();
    command
        ->add_option("--base", options->base,
                     "The source as it was imported; default: the file that the store names")
        ->type_name("OLDFILE");
    command->add_option("--conflicts", options->conflicts, "File for conflicts; default: NEWFILE.conflicts")
        ->type_name("FILE");
    command->add_option("--resolve", options->resolve, "Conflicts with what is to become of each")
        ->type_name("FILE");
    command->add_flag("--no-backup", options->noBackup, "Keep no copy of a store that is a file");
    command->callback([options, &run] { run.work = [options] { update(*options); }; });
}

} // namespace commands
