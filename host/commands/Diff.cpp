#include "host/Printable.h"
#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "host/commands/PatchFile.h"
#include "tools/differences/AlignedNetwork.h"
#include "tools/differences/DifferenceReport.h"
#include "tools/differences/NetworkDiff.h"
#include "tools/differences/PatchText.h"
#include "tools/drawing/DifferenceMarks.h"
#include "tools/drawing/NetworkDrawing.h"
#include "tools/reports/OutputFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string one;
    std::string other;
    std::string net;
    std::string otherNet;
    std::string patch;
    std::string picture;
    std::string by = "number";
    bool summary = false;
    bool json = false;
    bool exitCode = false;
};

QJsonArray toJson(const QList<DifferenceReport::Count> &counts) {
    QJsonArray list;
    for (const DifferenceReport::Count &count : counts)
        list.append(QJsonObject{{QStringLiteral("kind"), count.kind},
                                {QStringLiteral("added"), count.added},
                                {QStringLiteral("removed"), count.removed},
                                {QStringLiteral("changed"), count.changed}});
    return list;
}

QString textOf(const QList<DifferenceReport::Count> &counts) {
    QString text;
    for (const DifferenceReport::Count &count : counts)
        text += QStringLiteral("%1 %2 added, %3 removed, %4 changed\n")
                    .arg(count.kind.leftJustified(22), QString::number(count.added),
                         QString::number(count.removed), QString::number(count.changed));
    return text;
}

QString textOf(const QStringList &lines) {
    QString text;
    for (const QString &line : lines)
        text += printable::line(line) + QLatin1Char('\n');
    return text;
}

/// The second network under the numbers of the first; null where these tell what is the same.
std::unique_ptr<AlignedNetwork> alignedBy(const std::string &by, const StoreReader &one,
                                          const NamedNetwork &first, StoreReader &other,
                                          const NamedNetwork &second) {
    if (by == "number")
        return nullptr;
    const Matching matching = by == "geometry" ? Matching::NamesThenGeometry : Matching::Names;
    auto aligned = std::make_unique<AlignedNetwork>(one, first, other, second, matching);
    for (const QString &line : aligned->alignment().remarks())
        tell(line);
    return aligned;
}

NetworkObjects objectsOf(const StoreAddress &address, const NamedNetwork &network) {
    const OpenedStore store(address, Access::Read);
    return readNetwork(store, store.hasSeveralNetworks() ? network.id : 0);
}

/// Draws the second network with what differs.
void draw(const Options &options, const DifferenceReport &report, const NamedNetwork &first,
          const StoreAddress &other, const NamedNetwork &second) {
    const NetworkObjects before = objectsOf(QString::fromStdString(options.one), first);
    const NetworkObjects after = objectsOf(other, second);
    const DifferenceMarks found = marksOf(report, before, after);
    QStringList leftOut =
        drawToFile(after, QString::fromStdString(options.picture), kPictureSize, found.marks);
    if (found.nowhere > 0)
        leftOut.append(QStringLiteral("objects without a place that differ: %1").arg(found.nowhere));
    for (const QString &line : qAsConst(leftOut))
        tell(QStringLiteral("not in the picture: ") + line);
}

void diff(const Options &options) {
    const QString patch = QString::fromStdString(options.patch);
    if (!patch.isEmpty())
        requireOutputPath(patch, QStringLiteral("patch"));
    if (!options.picture.empty())
        requirePicturePath(QString::fromStdString(options.picture));
    const StoreReader one(QString::fromStdString(options.one));
    StoreReader given(QString::fromStdString(options.other));
    const NamedNetwork first = one.networkOf(options.net);
    const NamedNetwork asGiven = given.networkOf(options.otherNet);
    const std::unique_ptr<AlignedNetwork> aligned = alignedBy(options.by, one, first, given, asGiven);
    const StoreReader &other = aligned ? aligned->store() : given;
    const NamedNetwork &second = aligned ? aligned->network() : asGiven;
    DifferenceReport report;
    QByteArray lines;
    QJsonArray changes;
    ComparedNetworks compared;
    {
        ProgressBar comparing(QStringLiteral("comparing"));
        const auto use = [&](const RowChange &change) {
            report.add(change);
            if (!patch.isEmpty())
                lines += patchtext::lineOf(change);
            if (options.json)
                changes.append(QJsonDocument::fromJson(patchtext::lineOf(change)).object());
        };
        compared = diffNetworks(one, first, other, second, use, comparing.hearer());
    }
    if (!patch.isEmpty())
        writeOutputFile(
            patch, patchtext::lineOf(PatchHeader{compared.before, compared.after, compared.words}) + lines);
    if (options.json)
        printJson(QJsonDocument(QJsonObject{{QStringLiteral("before"), compared.before},
                                            {QStringLiteral("after"), compared.after},
                                            {QStringLiteral("summary"), toJson(report.counts())},
                                            {QStringLiteral("changes"), changes}}));
    else if (options.summary)
        print(textOf(report.counts()));
    else if (patch.isEmpty())
        print(textOf(report.lines(other, second)));
    if (!options.picture.empty())
        draw(options, report, first, aligned ? aligned->address() : QString::fromStdString(options.other),
             second);
    if (options.exitCode && !report.isEmpty())
        throw Incomplete(QStringLiteral("the networks differ"));
}

} // namespace

void addDiff(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "diff",
        "Say what differs between two networks of any stores, object by object, or write it as a patch. "
        "Objects are the same by their numbers, unless --by says otherwise.");
    command->add_option("A", options->one, kStoreHelp)->required();
    command->add_option("B", options->other, kStoreHelp)->required();
    command->add_option("--net", options->net, "Network of A: number or name; default: the store's first")
        ->type_name("NET");
    command
        ->add_option("--net-b", options->otherNet, "Network of B: number or name; default: the store's first")
        ->type_name("NET");
    command
        ->add_option("-o,--output", options->patch,
                     "Patch to write, for \"apply\": it makes B's network of A's")
        ->type_name("FILE");
    command
        ->add_option("--by", options->by,
                     "What is the same: by number; by name, for networks that were made independently; or by "
                     "geometry, which also matches links whose names differ and says so")
        ->check(CLI::IsMember({"number", "name", "geometry"}))
        ->capture_default_str();
    command->add_flag("--summary", options->summary, "Only how many objects of each kind differ");
    command->add_flag("--json", options->json, "Everything as JSON");
    command
        ->add_option("--picture", options->picture,
                     "Picture of B with what differs, .svg or .png: new green, gone red, changed amber")
        ->type_name("FILE");
    command->add_flag("--exit-code", options->exitCode, "End with 3 where anything differs");
    command->callback([options, &run] {
        run.paints = !options->picture.empty();
        run.work = [options] { diff(*options); };
    });
}

} // namespace commands
