#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/CompanionFiles.h"
#include "host/commands/OpenedStore.h"
#include "host/commands/StoreText.h"
#include "tools/drawing/NetworkDrawing.h"
#include "tools/kinds/Comparison.h"
#include "tools/kinds/StoreInfo.h"
#include "tools/reports/Failure.h"
#include "tools/session/NewStore.h"
#include "tools/session/TemporaryFolder.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/NetReader.h"

#include <QElapsedTimer>
#include <QLocale>

#include <memory>

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string svg;
    std::string png;
    CompanionFiles companions;
};

/// Seconds that each step took, in order.
class Stopwatch {
public:
    Stopwatch() { mTimer.start(); }
    void lap(const char *step) {
        mLaps += QStringLiteral("%1%2 %3 s")
                     .arg(mLaps.isEmpty() ? QString() : QStringLiteral(", "), QLatin1String(step),
                          QString::number(double(mTimer.restart()) / 1000, 'f', 2));
    }
    QString laps() const { return mLaps; }

private:
    QElapsedTimer mTimer;
    QString mLaps;
};

QString reportOf(const Comparison &comparison, const Stopwatch &stopwatch, const StoreInfo &info) {
    const QLocale locale;
    const QString verdict = comparison.isEqual()
                                ? QStringLiteral("all equal")
                                : QStringLiteral("%1 different").arg(locale.toString(comparison.differences));
    return textOf(info) +
           QStringLiteral("\nread back   %1 values compared, %2 of them coordinates bit for bit: %3\n"
                          "seconds     %4\n")
               .arg(locale.toString(comparison.fields), locale.toString(comparison.coordinates), verdict,
                    stopwatch.laps());
}

NetworkObjects write(const QString &store, const SumoNet &net, const CompanionPlan &plan,
                     const QString &name) {
    const OpenedStore open(store, Access::Write);
    ProgressBar progress(QStringLiteral("writing"));
    return importNetwork(open, net, plan, name, progress.hearer());
}

void roundTrip(const Options &options) {
    for (const std::string &picture : {options.svg, options.png}) {
        if (!picture.empty())
            requirePicturePath(QString::fromStdString(picture));
    }
    const SumoScenario scenario = options.companions.scenario();
    std::unique_ptr<TemporaryFolder> folder;
    if (options.store.empty())
        folder = std::make_unique<TemporaryFolder>();
    const QString store =
        folder ? folder->newFile(QStringLiteral("roundtrip.mora")) : QString::fromStdString(options.store);
    Stopwatch stopwatch;
    SumoNet net;
    {
        ProgressBar progress(QStringLiteral("parsing"));
        net = readSumoNet(scenario.network, progress.hearer());
    }
    const CompanionPlan plan = options.companions.plan(scenario, net);
    stopwatch.lap("parsing");
    makeStore(store, newestTemplate());
    const NetworkObjects written = write(store, net, plan, networkNameOf(scenario.network));
    stopwatch.lap("writing");

    // The store was closed, so nothing below comes from memory.
    const OpenedStore open(store, Access::Read);
    ProgressBar progress(QStringLiteral("reading"));
    const NetworkObjects read = readNetwork(open, written.record.netId, progress.hearer());
    stopwatch.lap("reading");
    const Comparison comparison = compareNetworks(written, read, true, open.words());
    stopwatch.lap("comparing");
    for (const std::string &picture : {options.svg, options.png}) {
        if (!picture.empty())
            drawToFile(read, QString::fromStdString(picture), kPictureSize);
    }
    if (!options.svg.empty() || !options.png.empty())
        stopwatch.lap("drawing");
    for (const QString &difference : comparison.first)
        tell(difference);
    try {
        print(reportOf(comparison, stopwatch, takeStock(open, store)),
              options.store.empty() ? QString() : QStringLiteral("the store is made"));
    } catch (const OutputLost &) {
        // A difference is worse than that nobody reads of it.
        if (comparison.isEqual())
            throw;
    }
    if (!comparison.isEqual())
        throw Failure(
            QStringLiteral("what was read back differs from what was written; see the lines above"));
    reportLeftOut(plan);
}

} // namespace

void addRoundTrip(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "roundtrip",
        "Write a SUMO network, with demand and additional objects, into a new store, read it back through "
        "the library and compare both.");
    options->companions.addTo(*command);
    command->add_option("--store", options->store, "Keep the store in this new file")->type_name("FILE");
    command->add_option("--svg", options->svg, "Draw what was read back")->type_name("FILE");
    command->add_option("--png", options->png, "Draw what was read back")->type_name("FILE");
    command->callback([options, &run] {
        run.paints = !options->svg.empty() || !options->png.empty();
        run.work = [options] { roundTrip(*options); };
    });
}

} // namespace commands
