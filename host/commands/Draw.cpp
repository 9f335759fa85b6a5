#include "host/ProgressBar.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "tools/drawing/NetworkDrawing.h"
#include "tools/kinds/NetworkObjects.h"
#include "tools/kinds/Roads.h"
#include "tools/reports/Failure.h"
#include "tools/session/NetworkChoice.h"

using namespace moratools;

namespace commands {

void addDraw(CLI::App &program, Run &run) {
    struct Options {
        std::string store;
        std::string picture;
        std::string net;
        int size = 2400;
        bool roadsOnly = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *command =
        program.add_subcommand("draw", "Draw a network of a store: lanes to scale, connectors, direction.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command->add_option("PICTURE", options->picture, "Path of the picture, .svg or .png")->required();
    command->add_option("--net", options->net, kNetHelp)->type_name("NET");
    command->add_option("--size", options->size, "Longer side of the plan in pixels")
        ->check(CLI::Range(200, 20000))
        ->capture_default_str()
        ->type_name("PX");
    command->add_flag("--roads-only", options->roadsOnly,
                      "Without what is no road: rails, waterways, and what is on them");
    command->callback([options, &run] {
        run.paints = true;
        run.work = [options] {
            // Reading a large network takes its time.
            requirePicturePath(QString::fromStdString(options->picture));
            const OpenedStore store(QString::fromStdString(options->store), Access::Read);
            ProgressBar reading(QStringLiteral("reading"));
            NetworkObjects network = readNetwork(store, chosenNetwork(store, options->net), reading.hearer());
            const QStringList damage = damageOf(network);
            if (options->roadsOnly)
                keepRoads(network);
            const QStringList leftOut =
                damage + drawToFile(network, QString::fromStdString(options->picture), options->size);
            for (const QString &line : leftOut)
                tell(QStringLiteral("left out: ") + line);
            if (!damage.isEmpty())
                throw Incomplete(
                    QStringLiteral("drawn, but the store is damaged and not all of it is in the picture; "
                                   "restore it from a copy"));
            if (!leftOut.isEmpty())
                throw Incomplete(QStringLiteral("drawn, but what has no place on the plan is not in the "
                                                "picture; the lines above name it"));
        };
    });
}

} // namespace commands
