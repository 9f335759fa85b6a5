#include "host/commands/Commands.h"
#include "host/commands/PatchFile.h"
#include "tools/differences/PatchInversion.h"
#include "tools/reports/OutputFile.h"

#include <QBuffer>

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string patch;
    std::string output;
};

void invert(const Options &options) {
    const QString output = QString::fromStdString(options.output);
    requireOutputPath(output, QStringLiteral("patch"));
    const PatchFile file(QString::fromStdString(options.patch));
    QBuffer inverse;
    inverse.open(QIODevice::WriteOnly);
    invertPatch(file.device(), file.name(), inverse);
    writeOutputFile(output, inverse.data());
}

} // namespace

void addInvert(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command =
        program.add_subcommand("invert", "Write the patch that takes back what another one does.");
    command->add_option("PATCH", options->patch, "Patch to turn round")->required();
    command->add_option("-o,--output", options->output, "Patch to write")->type_name("FILE")->required();
    command->callback([options, &run] { run.work = [options] { invert(*options); }; });
}

} // namespace commands
