#include "host/commands/Commands.h"
#include "host/store/NewStore.h"

namespace commands {

void addNew(CLI::App &program, Run &run) {
    struct Options {
        std::string store;
        std::string name = newestTemplate().toStdString();
    };
    const auto options = std::make_shared<Options>();
    CLI::App *command = program.add_subcommand(
        "new", "Make an empty store from a template. An existing file is never touched.");
    command->add_option("STORE", options->store, "Path of the new store")->required();
    command
        ->add_option("--template", options->name,
                     "Template: " + templateNames().join(QStringLiteral(", ")).toStdString())
        ->capture_default_str()
        ->type_name("NAME");
    command->callback([options, &run] {
        run = [options] {
            makeStore(QString::fromStdString(options->store), QString::fromStdString(options->name));
        };
    });
}

} // namespace commands
